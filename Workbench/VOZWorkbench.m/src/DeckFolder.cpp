// DeckFolder.cpp: what stands in the folder of a deck, and the numbers behind a run of the library's driver.

#include "DeckFolder.h"

#include "Html.h"
#include "MaterialDatabase.h"
#include "OutputFile.h"
#include "VOZIncrementalSettings.h"
#include "VOZStatus.h"
#include "VOZTemplatePath.h"

#include <algorithm>
#include <cmath>
#include <filesystem>

namespace voz::workbench
{

namespace
{
namespace fs = std::filesystem;

constexpr char const * kMaterialFile = "materials.xml";
constexpr char const * kSettingsFolder = "Increment";
constexpr int kFewestOutputPoints = 3;
constexpr double kMillimetrePerMetre = 1000.0;
constexpr double kShortestPlateau = 0.001; // of the ramp: a shorter one has no row in the punch's curve

class SettingsList
{
public:
    explicit SettingsList(std::string const & i_path) : mList(10)
    {
        CATUnicodeString error;
        if (ReadIncrementSettingsFromXMLDatabase(CATUnicodeString(i_path.c_str()).ConvertToUTF16().c_str(), &error,
                                                 mList) != 0)
            throw InputError(i_path, 0, 0,
                             "the settings database cannot be read: " + std::string(error.ConvertToChar()));
    }
    ~SettingsList() { mList.DeleteAll(); }
    SettingsList(SettingsList const &) = delete;
    SettingsList & operator=(SettingsList const &) = delete;

    // Null where there is none of that name.
    VOZIncrementalSettings const * Find(std::string const & i_name, std::string & o_names) const
    {
        for (int i = 0; i < mList.GetSize(); ++i)
        {
            std::string const name = mList[i]->m_strName.ToUnicodeString().ConvertToChar();
            if (name == i_name)
                return mList[i];
            o_names += (o_names.empty() ? "\"" : ", \"") + name + "\"";
        }
        return nullptr;
    }

private:
    VOZTPtrArray<VOZIncrementalSettings, int> mList;
};

std::string Row(char const * i_name, char const * i_unit, double i_value)
{
    std::string const unit = *i_unit == '\0' ? "" : std::string(" unit=\"") + i_unit + "\"";
    return std::string("    <") + i_name + unit + ">" + Shortest(i_value) + "</" + i_name + ">\n";
}

// Empty where the installation has none.
std::string InstalledSettings()
{
    CATUnicodeString path;
    if (VOZTemplatePath::GetIncrementalTemplatePath(path) != 0)
        return "";
    std::string const text = path.ConvertToChar();
    std::error_code error;
    return fs::exists(text, error) ? text : "";
}

void CopySettings(std::string const & i_folder)
{
    std::string const installed = InstalledSettings();
    if (installed.empty())
        return;
    fs::path const copy = fs::path(i_folder) / kSettingsFolder;
    std::error_code error;
    fs::copy(installed, copy, fs::copy_options::recursive | fs::copy_options::overwrite_existing, error);
    if (error)
        throw OutputError(copy.string(), error.message());
}
} // namespace

std::string MaterialDatabaseText(Job const & i_job)
{
    JobMaterial const & material = i_job.materials.front();
    std::string const source = material.source.empty() ? "job file" : material.source;
    return "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<materials>\n  <material name=\"" + Escaped(material.name) +
           "\" group=\"job\">\n" + Row("thickness", "mm", i_job.thickness) + Row("K", "MPa", material.strength) +
           Row("n", "", material.exponent) + Row("r", "", material.anisotropy) + Row("yield", "MPa", material.yield) +
           Row("young", "MPa", material.modulus) + Row("poisson", "", material.poisson) +
           Row("density", "kg/m3", material.density) + "    <source of=\"all\">" + Escaped(source) +
           "</source>\n  </material>\n</materials>\n";
}

void PrepareDeckFolder(Job const & i_job, std::string const & i_folder)
{
    WriteText(InFolder(i_folder, kConfiguration), ConfigurationText(i_job.limits));
    std::string const materials = InFolder(i_folder, kMaterialFile);
    WriteText(materials, MaterialDatabaseText(i_job));
    std::vector<DatabaseMaterial> const written = ReadDatabase(materials); // its reader knows what no solver can take
    FindMaterial(written, i_job.materials.front().name, materials);
    CopySettings(i_folder);
}

JobIncremental IncrementalOf(Job const & i_job)
{
    return i_job.incremental.value_or(JobIncremental{});
}

void CheckTemplate(Job const & i_job)
{
    JobIncremental const incremental = IncrementalOf(i_job);
    if (incremental.templateName.empty())
        return;
    auto const refuse = [&](std::string const & i_message)
    { throw InputError(i_job.path, incremental.line, 0, "incremental.template: " + i_message); };
    std::string const path = InstalledSettings();
    if (path.empty())
        refuse("the installation (VOZDRAVO3D) has no settings database \"Increment\" with a \"" +
               incremental.templateName + "\"");
    SettingsList const list(path);
    std::string names;
    VOZIncrementalSettings const * const settings = list.Find(incremental.templateName, names);
    if (settings == nullptr)
        refuse("there are no settings \"" + incremental.templateName + "\"; " + path +
               (names.empty() ? " is empty" : " has " + names));
    else if (settings->m_nOutputPoints < kFewestOutputPoints)
        refuse("the settings \"" + incremental.templateName + "\" have " + std::to_string(settings->m_nOutputPoints) +
               " output points; the solver needs 3 or more");
}

DeckHost::DeckHost(std::string const & i_folder) : RouteHost(i_folder, i_folder, 1)
{
    Set("VOZMaterialDB", InFolder(i_folder, kMaterialFile));
}

DeckSolver::DeckSolver(Job const & i_job)
{
    CATUnicodeString name(IncrementalOf(i_job).templateName.c_str());
    SetTemplate(name);
}

long DeckSolver::FindFolder()
{
    return GetTemplateSettings() < 0 || GetWorkingFolder() < 0 ? E_FAIL : 0;
}

IncrementalFigures DeckSolver::Figures() const
{
    IncrementalFigures figures;
    figures.settings = CATUnicodeString(m_strTemplateName).ConvertToChar();
    figures.stroke = kMillimetrePerMetre * m_dPunchStroke;
    figures.velocity = m_dPunchVelocity;
    figures.acceleration = m_dPunchAcceleration;
    figures.rampTime = m_dPunchRampTime;
    figures.plateauTime = m_dPunchPlateauTime;
    figures.endTime = m_dTerminationTime;
    figures.binderCloseTime = m_dBinderCloseTime;
    figures.adaptFrequency = m_dAdaptFrequency;
    figures.adaptivityLevel = m_nAdaptivityLevel;
    figures.adaptSize = kMillimetrePerMetre * m_dAdaptSize;
    figures.massScalingTimeStep = m_dMassScalingTimeStep;
    figures.binderForce = std::max(0.0, m_dBlankHolderForce);
    figures.friction = m_dFrictionPunch;
    figures.toolOffset = kMillimetrePerMetre * std::abs(m_dOffsetPunch);
    figures.greatestElement = kMillimetrePerMetre * m_dMaxBlankElementSize;
    figures.leastElement = kMillimetrePerMetre * m_dMinBlankElementSize;
    int const count = m_padOutputPoints != nullptr ? m_nOutputPoints : 0;
    for (int i = 0; i < count; ++i) // the first state is that at the start, the last that at the end
    {
        bool const isFirst = i == 0;
        bool const isLast = i == count - 1;
        double const position = m_pSettings->m_nOutputPoints > i ? m_pSettings->m_padOutputPositions[i] : 0.0;
        figures.outputs.push_back({isFirst  ? 0.0
                                   : isLast ? 100.0
                                            : position,
                                   isFirst  ? 0.0
                                   : isLast ? m_dTerminationTime
                                            : m_padOutputPoints[i]});
    }
    figures.punchCurve = {{0.0, 0.0}, {m_dPunchRampTime, m_dPunchVelocity}};
    if (m_dPunchPlateauTime > kShortestPlateau * m_dPunchRampTime)
        figures.punchCurve.push_back({m_dPunchPlateauTime + m_dPunchRampTime, m_dPunchVelocity});
    figures.punchCurve.push_back({m_dTerminationTime, 0.0});
    return figures;
}

} // namespace voz::workbench
