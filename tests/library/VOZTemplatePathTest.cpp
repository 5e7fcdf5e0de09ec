#include "VOZTemplatePath.h"

#include "CATDocument.h"
#include "HostFixture.h"
#include "TempFolder.h"
#include "VOZStatus.h"

#include <gtest/gtest.h>

#include <cstring>

namespace
{
using Record = std::shared_ptr<VOZHostDocument>;

Record partNamed(std::string const & name)
{
    auto part = std::make_shared<VOZHostDocument>();
    part->storageName = name;
    part->isPart = true;
    return part;
}

Record analysisNamed(std::string const & name)
{
    auto analysis = std::make_shared<VOZHostDocument>();
    analysis->storageName = name;
    analysis->isAnalysis = true;
    return analysis;
}

class TemplatePath : public HostFixture
{
protected:
    TemplatePath() { host.environment["VOZDRAVO3D"] = root.Path(); }

    // The part that is open, with its choice of a template.
    void OpenPart(std::string const & choice)
    {
        host.document = partNamed("door.CATPart");
        host.document->parameters = {{"Other", "door\\Other", "x"}, {"Name", "door\\TemplateName", choice}};
    }
    std::string ConfigPath()
    {
        char path[1024] = "untouched";
        mStatus = VOZTemplatePath::GetConfigPath(path);
        return path;
    }
    std::string MatPath()
    {
        char path[1024] = "untouched";
        mStatus = VOZTemplatePath::GetMatPath(path);
        return path;
    }
    std::string RootPath()
    {
        char path[1024] = "untouched";
        mStatus = VOZTemplatePath::GetPath(path);
        return path;
    }
    std::string PartBehind(Record const & document)
    {
        CATDocument * found = nullptr;
        mLong = VOZTemplatePath::GetLinkPartDocument(found, document != nullptr ? document->Object() : nullptr);
        return found != nullptr ? found->StorageName().ConvertToChar() : "";
    }

    TempFolder root;
    std::string base = root.Path() + "/config.cfg";
    int mStatus = 1;
    long mLong = 1;
};

TEST_F(TemplatePath, BearsItsNameInTheMetadata)
{
    EXPECT_STREQ(VOZTemplatePath::ClassName(), "VOZTemplatePath");
    EXPECT_EQ(VOZTemplatePath::MetaObject()->Base(), CATBaseUnknown::MetaObject());
    EXPECT_EQ(VOZTemplatePath().IsAKindOf("CATBaseUnknown"), 1);
}

TEST_F(TemplatePath, RootIsTheFirstVariableThenTheSecond)
{
    host.environment["KELM7DRAVO3D"] = "/second";
    EXPECT_EQ(RootPath(), root.Path());
    EXPECT_EQ(mStatus, 0);
    host.environment.erase("VOZDRAVO3D");
    EXPECT_EQ(RootPath(), "/second");
    EXPECT_EQ(mStatus, 0);
}

TEST_F(TemplatePath, WithoutARootThereIsNoPath)
{
    host.environment.clear();
    EXPECT_EQ(RootPath(), "untouched");
    EXPECT_EQ(mStatus, -1);
    EXPECT_EQ(ConfigPath(), "untouched");
    EXPECT_EQ(mStatus, -1);
    EXPECT_EQ(MatPath(), "untouched");
    EXPECT_EQ(mStatus, -1);
}

TEST_F(TemplatePath, ARootUnderThreeCharactersIsCopiedAndCountsAsMissing)
{
    host.environment["KELM7DRAVO3D"] = "/second";
    host.environment["VOZDRAVO3D"] = "C:";
    EXPECT_EQ(RootPath(), "C:");
    EXPECT_EQ(mStatus, -1);
    EXPECT_EQ(ConfigPath(), "untouched");
    EXPECT_EQ(mStatus, -1);
    MatPath();
    EXPECT_EQ(mStatus, -1);
    host.environment["VOZDRAVO3D"] = "C:\\";
    EXPECT_EQ(RootPath(), "C:\\");
    EXPECT_EQ(mStatus, 0);
}

// The text that just fits, and the next one: cut short it would be the path of something else.
TEST_F(TemplatePath, APathThatTheBufferCannotHoldIsRefused)
{
    auto const ofSize = [](std::size_t size) { return "/" + std::string(size - 1, 'r'); };
    host.environment["VOZDRAVO3D"] = ofSize(1023);
    EXPECT_EQ(RootPath(), ofSize(1023));
    EXPECT_EQ(mStatus, 0);
    host.environment["VOZDRAVO3D"] = ofSize(1024);
    EXPECT_EQ(RootPath(), "untouched");
    EXPECT_EQ(mStatus, -1);

    std::size_t const tail = std::strlen("/config.cfg");
    host.environment["VOZDRAVO3D"] = ofSize(1023 - tail);
    EXPECT_EQ(ConfigPath(), ofSize(1023 - tail) + "/config.cfg");
    EXPECT_EQ(mStatus, 0);
    EXPECT_EQ(MatPath(), ofSize(1023 - tail) + "/dat");
    EXPECT_EQ(mStatus, 0);
    host.environment["VOZDRAVO3D"] = ofSize(1024 - tail);
    EXPECT_EQ(ConfigPath(), "untouched");
    EXPECT_EQ(mStatus, -1);
    EXPECT_EQ(MatPath(), "untouched");
    EXPECT_EQ(mStatus, -1);

    host.environment["VOZMaterialDB"] = ofSize(1023);
    EXPECT_EQ(MatPath(), ofSize(1023));
    EXPECT_EQ(mStatus, 0);
    host.environment["VOZMaterialDB"] = ofSize(100000);
    EXPECT_EQ(MatPath(), "untouched");
    EXPECT_EQ(mStatus, -1);
}

TEST_F(TemplatePath, ATemplateOfTooLongAPathIsNoConfiguration)
{
    root.Write("config.cfg", "TemplateLocation=/t\n");
    std::size_t const around = std::strlen("/t\\.cfg");
    OpenPart(std::string(1023 - around, 'n'));
    EXPECT_EQ(ConfigPath(), "/t\\" + std::string(1023 - around, 'n') + ".cfg");
    EXPECT_EQ(mStatus, 0);
    OpenPart(std::string(1024 - around, 'n'));
    ConfigPath();
    EXPECT_EQ(mStatus, -1);
    MatPath();
    EXPECT_EQ(mStatus, -1);
}

TEST_F(TemplatePath, IncrementalTemplatesLieUnderTheFirstVariableOnly)
{
    CATUnicodeString path("untouched");
    EXPECT_EQ(VOZTemplatePath::GetIncrementalTemplatePath(path), 0);
    EXPECT_EQ(path.ConvertToChar(), root.Path() + "/Increment");
    host.environment["KELM7DRAVO3D"] = "/second";
    host.environment["VOZDRAVO3D"] = "x";
    EXPECT_EQ(VOZTemplatePath::GetIncrementalTemplatePath(path), 0); // no shortest length here
    EXPECT_STREQ(path.ConvertToChar(), "x/Increment");
    host.environment.erase("VOZDRAVO3D");
    EXPECT_EQ(VOZTemplatePath::GetIncrementalTemplatePath(path), -1);
    EXPECT_STREQ(path.ConvertToChar(), "x/Increment");
}

TEST_F(TemplatePath, WithoutATemplateLocationTheBaseFileCountsWhateverThePartSays)
{
    OpenPart("Aluminium");
    EXPECT_EQ(ConfigPath(), base); // no file at all
    EXPECT_EQ(mStatus, 0);
    root.Write("config.cfg", "SolverRam=3\n");
    EXPECT_EQ(ConfigPath(), base);
    EXPECT_EQ(mStatus, 0);
}

TEST_F(TemplatePath, ThePartsTemplateReplacesTheFile)
{
    root.Write("config.cfg", "TemplateLocation=C:\\Templates\n");
    OpenPart("Aluminium");
    EXPECT_EQ(ConfigPath(), "C:\\Templates\\Aluminium.cfg");
    EXPECT_EQ(mStatus, 0);
    OpenPart("default"); // case counts
    EXPECT_EQ(ConfigPath(), "C:\\Templates\\default.cfg");
    OpenPart("");
    EXPECT_EQ(ConfigPath(), "C:\\Templates\\.cfg");
}

TEST_F(TemplatePath, ATemplateNamedDefaultKeepsTheBaseFile)
{
    root.Write("config.cfg", "TemplateLocation=/t\n");
    OpenPart("Default");
    EXPECT_EQ(ConfigPath(), base);
    EXPECT_EQ(mStatus, 0);
}

TEST_F(TemplatePath, WithoutAPartOrItsParameterTheBaseFileCounts)
{
    root.Write("config.cfg", "TemplateLocation=/t\n");
    testing::internal::CaptureStdout();
    EXPECT_EQ(ConfigPath(), base);
    EXPECT_EQ(mStatus, 0);
    EXPECT_EQ(testing::internal::GetCapturedStdout(), " Build failed ! No Container.\n");
    host.document = partNamed("door.CATPart");
    EXPECT_EQ(ConfigPath(), base);
    EXPECT_EQ(mStatus, 0);
}

TEST_F(TemplatePath, TheTemplateNameMayStandAnywhereInTheFullName)
{
    root.Write("config.cfg", "TemplateLocation=/t\n");
    host.document = partNamed("door.CATPart");
    host.document->parameters = {{"TemplateName", "door\\Short", "short"},
                                 {"a", "door\\MyTemplateNameOfOld", "first"},
                                 {"b", "TemplateName", "second"}};
    EXPECT_EQ(ConfigPath(), "/t\\first.cfg");
}

TEST_F(TemplatePath, TheChoiceIsMadeAnewAtEachCall)
{
    root.Write("config.cfg", "TemplateLocation=/t\n");
    OpenPart("one");
    EXPECT_EQ(ConfigPath(), "/t\\one.cfg");
    host.document->parameters[1].value = "two";
    EXPECT_EQ(ConfigPath(), "/t\\two.cfg");
    host.document.reset();
    EXPECT_EQ(ConfigPath(), base);
}

TEST_F(TemplatePath, MaterialVariableNeedsNeitherRootNorFile)
{
    host.environment.clear();
    host.environment["VOZMaterialDB"] = "/materials";
    EXPECT_EQ(MatPath(), "/materials");
    EXPECT_EQ(mStatus, 0);
    host.environment["VOZMaterialDB"] = "";
    EXPECT_EQ(MatPath(), "");
    EXPECT_EQ(mStatus, 0);
}

TEST_F(TemplatePath, MaterialPathComesFromTheFileInForceOrIsDatUnderTheRoot)
{
    EXPECT_EQ(MatPath(), root.Path() + "/dat");
    EXPECT_EQ(mStatus, 0);
    root.Write("config.cfg", "TemplateLocation=" + root.Path() + "\nMaterialDBPath=C:\\db\n");
    EXPECT_EQ(MatPath(), "C:\\db");
    OpenPart("alu");
    root.Write("alu.cfg", "MaterialDBPath=/alu\n");
    EXPECT_EQ(MatPath(), "/alu"); // the template's file replaces the whole of the base file
    root.Write("alu.cfg", "Other=1\n");
    EXPECT_EQ(MatPath(), root.Path() + "/dat");
    EXPECT_EQ(mStatus, 0);
}

TEST_F(TemplatePath, AnalysisManagerAndModelBelongToTheDocumentOrTheCurrentOne)
{
    CATISamAnalysisManager_var manager;
    CATISamAnalysisModel_var model;
    EXPECT_EQ(VOZTemplatePath::GetAnalysisManager(manager, nullptr), E_FAIL);
    EXPECT_EQ(VOZTemplatePath::GetAnalysisModel(model, nullptr), E_FAIL);
    EXPECT_TRUE(!manager);
    host.document = analysisNamed("study.CATAnalysis");
    EXPECT_EQ(VOZTemplatePath::GetAnalysisManager(manager, nullptr), 0);
    EXPECT_FALSE(!manager);
    EXPECT_EQ(VOZTemplatePath::GetAnalysisModel(model, nullptr), 0);
    EXPECT_FALSE(!model);
    Record const part = partNamed("a.CATPart");
    EXPECT_EQ(VOZTemplatePath::GetAnalysisManager(manager, part->Object()), E_FAIL);
}

TEST_F(TemplatePath, EveryStepOfTheAnalysisThatIsMissingFails)
{
    for (char const * const name : {"CATISamAccess", "CATISamAnalysisContainer", "CATISamAnalysisManager"})
    {
        host.document = analysisNamed("study.CATAnalysis");
        host.document->withheld = {name};
        CATISamAnalysisManager_var manager;
        EXPECT_EQ(VOZTemplatePath::GetAnalysisManager(manager, nullptr), E_FAIL) << name;
    }
    host.document->withheld = {"CATISamAnalysisModel"};
    CATISamAnalysisModel_var model;
    EXPECT_EQ(VOZTemplatePath::GetAnalysisModel(model, nullptr), E_FAIL);
}

TEST_F(TemplatePath, MeshPartObjectsAreCountedFromOne)
{
    Record const part = partNamed("a.CATPart");
    Record const analysis = analysisNamed("study.CATAnalysis");
    CATISpecObject * object = nullptr;
    EXPECT_EQ(VOZTemplatePath::GetMeshPartSpecObject(object, analysis->Object(), 1), E_FAIL); // no set
    analysis->meshSet = {{part}, {nullptr}, {part, false}};
    for (int const index : {0, -1, 2, 3, 4}) // outside, without support, not a mesh part, outside
        EXPECT_EQ(VOZTemplatePath::GetMeshPartSpecObject(object, analysis->Object(), index), E_FAIL) << index;
    EXPECT_EQ(object, nullptr);
    ASSERT_EQ(VOZTemplatePath::GetMeshPartSpecObject(object, analysis->Object(), 1), 0);
    ASSERT_NE(object, nullptr);
    EXPECT_EQ(CATILinkableObject_var(object)->GetDocument(), part->Object());
    EXPECT_EQ(object->Release(), 0U);
    for (char const * const name : {"CATISamAnalysisScan", "CATISamAnalysisSet", "CATIMSHMeshPart"})
    {
        analysis->withheld = {name};
        EXPECT_EQ(VOZTemplatePath::GetMeshPartSpecObject(object, analysis->Object(), 1), E_FAIL) << name;
    }
}

TEST_F(TemplatePath, TheCurrentPartIsItsOwnAnswer)
{
    EXPECT_EQ(PartBehind(nullptr), "");
    EXPECT_EQ(mLong, E_FAIL);
    host.document = partNamed("Door.CatPART.bak");
    EXPECT_EQ(PartBehind(nullptr), "Door.CatPART.bak");
    EXPECT_EQ(mLong, 0);
}

TEST_F(TemplatePath, ANameThatBeginsWithThePatternIsNoPart)
{
    host.document = partNamed(".catpart");
    EXPECT_EQ(PartBehind(nullptr), "");
    EXPECT_EQ(mLong, E_FAIL);
}

TEST_F(TemplatePath, ADocumentThatIsGivenIsAskedForItsLinksEvenIfItIsAPart)
{
    Record const part = partNamed("a.CATPart");
    EXPECT_EQ(PartBehind(part), "");
    EXPECT_EQ(mLong, E_FAIL);
}

TEST_F(TemplatePath, TheFirstLinkedPartIsTheAnswer)
{
    Record const analysis = analysisNamed("study.CATAnalysis");
    Record const first = partNamed("first.catpart");
    Record const second = partNamed("second.CATPart");
    Record const other = partNamed("a.CATProduct");
    analysis->links = {other, first, second};
    EXPECT_EQ(PartBehind(analysis), "first.catpart");
    EXPECT_EQ(mLong, 0);
    host.document = analysis;
    EXPECT_EQ(PartBehind(nullptr), "first.catpart");
    first->storageName = ".CATPart"; // here any position counts
    EXPECT_EQ(PartBehind(analysis), ".CATPart");
}

TEST_F(TemplatePath, WithoutALinkedPartTheFirstMeshPartsSupportIs)
{
    Record const analysis = analysisNamed("study.CATAnalysis");
    Record const part = partNamed("a.CATPart");
    Record const other = partNamed("a.CATProduct");
    EXPECT_EQ(PartBehind(analysis), "");
    EXPECT_EQ(mLong, E_FAIL);
    analysis->meshSet = {{part}, {other}};
    EXPECT_EQ(PartBehind(analysis), "a.CATPart");
    analysis->links = {other};
    EXPECT_EQ(PartBehind(analysis), "a.CATPart");
    analysis->meshSet = {{other}, {part}};
    EXPECT_EQ(PartBehind(analysis), "");
    EXPECT_EQ(mLong, E_FAIL);
    part->withheld = {"CATILinkableObject"};
    analysis->meshSet = {{part}};
    EXPECT_EQ(PartBehind(analysis), "");
}

TEST_F(TemplatePath, WithoutALinkObjectTheMeshPartsAreNotAsked)
{
    Record const analysis = analysisNamed("study.CATAnalysis");
    Record const part = partNamed("a.CATPart");
    analysis->meshSet = {{part}};
    analysis->withheld = {"CATListPtrCATDocument"};
    EXPECT_EQ(PartBehind(analysis), "");
    EXPECT_EQ(mLong, E_FAIL);
}

TEST_F(TemplatePath, ParametersAreFoundByShortNameOrByAPieceOfTheFullName)
{
    host.document = partNamed("a.CATPart");
    host.document->parameters = {{"long", "a\\short", "1"}, {"short", "a\\x", "2"}, {"short", "a\\long", "3"}};
    CATIParmPublisher * raw = nullptr;
    ASSERT_EQ(VOZTemplatePath::CreatePartParmPublisher(&raw), 0);
    CATIParmPublisher_var const publisher(CATIParmPublisher_var::Adopt(raw));
    auto const value = [&](std::string name, int match) -> std::string
    {
        CATICkeParm_var const found = VOZTemplatePath::GetParameter(publisher, name.data(), match);
        return !found ? "none" : found->ValueAsText().ConvertToChar();
    };
    EXPECT_EQ(value("short", 0), "2");
    EXPECT_EQ(value("long", 0), "1");
    EXPECT_EQ(value("shor", 0), "none");
    EXPECT_EQ(value("Short", 0), "none");
    EXPECT_EQ(value("short", 1), "1");
    EXPECT_EQ(value("hor", -1), "1");
    EXPECT_EQ(value("lon", 2), "3");
    EXPECT_EQ(value("a\\", 1), "1");
    EXPECT_EQ(value("Long", 1), "none");
    char name[] = "short";
    EXPECT_TRUE(!VOZTemplatePath::GetParameter(CATIParmPublisher_var(), name, 0));
}

TEST_F(TemplatePath, ContainerAndPublisherComeWithOneReference)
{
    host.document = partNamed("a.CATPart");
    CATIContainer * container = nullptr;
    ASSERT_EQ(VOZTemplatePath::CreateInstanceContainer(&container), 0);
    EXPECT_STREQ(container->IsA(), "CATIContainer");
    EXPECT_EQ(container->Release(), 0U);
    CATIParmPublisher * publisher = nullptr;
    ASSERT_EQ(VOZTemplatePath::CreatePartParmPublisher(&publisher), 0);
    EXPECT_EQ(publisher->Release(), 0U);
}

TEST_F(TemplatePath, AnAnalysisLeadsToItsPartsContainer)
{
    host.document = analysisNamed("study.CATAnalysis");
    testing::internal::CaptureStdout();
    CATIContainer * container = nullptr;
    EXPECT_EQ(VOZTemplatePath::CreateInstanceContainer(&container), E_FAIL); // no part behind it
    Record const part = partNamed("a.CATPart");
    part->parameters = {{"n", "a\\n", "of the part"}};
    host.document->links = {part};
    ASSERT_EQ(VOZTemplatePath::CreateInstanceContainer(&container), 0);
    container->Release();
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "");
    CATIParmPublisher * raw = nullptr;
    ASSERT_EQ(VOZTemplatePath::CreatePartParmPublisher(&raw), 0);
    CATIParmPublisher_var const publisher(CATIParmPublisher_var::Adopt(raw));
    char name[] = "n";
    EXPECT_STREQ(VOZTemplatePath::GetParameter(publisher, name, 0)->ValueAsText().ConvertToChar(), "of the part");
}

TEST_F(TemplatePath, EveryStepToThePublisherThatIsMissingSaysSo)
{
    struct Case
    {
        char const * withheld;
        char const * said;
    };
    Case const cases[] = {
        {"CATInit", "ERROR in QueryInterface on CATInit for doc\n Build failed ! No Container.\n"},
        {"CATIContainer", "ERROR in GetRootContainer\n Build failed ! No Container.\n"},
        {"CATIPrtContainer", "ERROR in QueryInterface for CATIPrtContainer\n Build failed ! No Container.\n"},
        {"CATICkeParmFactory", "ERROR in QueryInterface on container for CATICkeParmFactory\n"},
        {"CATISpecObject", "Mechanical Part not retreived.\n"},
        {"CATIParmPublisher", "ERROR in QueryInterface on Container for CATIParmPublisher\n"},
    };
    for (Case const & one : cases)
    {
        host.document = partNamed("a.CATPart");
        host.document->withheld = {one.withheld};
        testing::internal::CaptureStdout();
        CATIParmPublisher * publisher = nullptr;
        EXPECT_EQ(VOZTemplatePath::CreatePartParmPublisher(&publisher), E_FAIL) << one.withheld;
        EXPECT_EQ(publisher, nullptr);
        EXPECT_EQ(testing::internal::GetCapturedStdout(), one.said) << one.withheld;
    }
}

TEST_F(TemplatePath, TheContainersFailureCarriesTheInterfacesOwnCode)
{
    host.document = partNamed("a.CATPart");
    CATIContainer * container = nullptr;
    testing::internal::CaptureStdout();
    host.document->withheld = {"CATInit"};
    EXPECT_EQ(VOZTemplatePath::CreateInstanceContainer(&container), E_NOINTERFACE);
    host.document->withheld = {"CATIPrtContainer"};
    EXPECT_EQ(VOZTemplatePath::CreateInstanceContainer(&container), E_NOINTERFACE);
    host.document->withheld = {"CATIContainer"};
    EXPECT_NE(VOZTemplatePath::CreateInstanceContainer(&container), 0);
    host.document.reset();
    EXPECT_EQ(VOZTemplatePath::CreateInstanceContainer(&container), E_FAIL);
    testing::internal::GetCapturedStdout();
    EXPECT_EQ(container, nullptr);
}
} // namespace
