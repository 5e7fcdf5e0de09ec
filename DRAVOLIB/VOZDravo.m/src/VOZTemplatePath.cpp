// VOZTemplatePath.cpp: every question about the installation and the open documents ends here.

#include "VOZTemplatePath.h"

#include "CATDocument.h"
#include "CATEnvironment.h"
#include "CATICkeParm.h"
#include "CATISamAnalysis.h"
#include "VOZCatConfigPaser.h"
#include "VOZStatus.h"

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>
#include <vector>

CATImplementClass(VOZTemplatePath, CATBaseUnknown)

namespace
{
constexpr int kValueSize = 256; // what a value of the configuration file needs at most
constexpr std::size_t kShortestPath = 3;
constexpr int kEqual = 2; // of CATUnicodeString::Compare

// The install root; null if neither variable is set.
char const * findRoot()
{
    char const * const root = CATGetEnv("VOZDRAVO3D");
    return root != nullptr ? root : CATGetEnv("KELM7DRAVO3D");
}

// A text that the buffer cannot hold is refused: cut short it would be the path of something else.
bool put(std::string const & text, char * o_path)
{
    if (text.size() >= VOZTemplatePath::kPathSize)
        return false;
    std::memcpy(o_path, text.c_str(), text.size() + 1);
    return true;
}

bool isShort(char const * path)
{
    return std::strlen(path) < kShortestPath;
}

// Where the file holds the key, its value is copied.
bool readKey(char * file, char const * key, char (&o_value)[kValueSize])
{
    VOZCatConfigPaser config(file);
    config.ReadAndPaser();
    std::string name(key);
    return config.GetString(name.data(), o_value) >= 0;
}

// The part's own choice of a template; empty where the part cannot be reached or publishes none.
CATICkeParm_var findTemplateName()
{
    CATIParmPublisher * publisher = nullptr;
    if (VOZTemplatePath::CreatePartParmPublisher(&publisher) != 0)
        return {};
    CATIParmPublisher_var const held(CATIParmPublisher_var::Adopt(publisher));
    char name[] = "TemplateName";
    return VOZTemplatePath::GetParameter(held, name, 1);
}

long fail(char const * message)
{
    std::printf("%s\n", message);
    return E_FAIL;
}

CATDocument * findCurrentDocument()
{
    CATFrmEditor const * const editor = CATFrmEditor::GetCurrentEditor();
    return editor != nullptr ? editor->GetDocument() : nullptr;
}

// Where the name of a part's file begins to look like one; -1 if it does not.
int searchPartName(CATDocument & document)
{
    CATUnicodeString name = document.StorageName();
    CATUnicodeString pattern(".CATPart");
    name.ToLower();
    pattern.ToLower();
    return name.SearchSubString(pattern);
}

// The first linked document that is a part; null if none is. E_FAIL without a way to the links.
long findLinkedPart(CATDocument *& o_document, CATDocument * analysis)
{
    o_document = nullptr;
    CATISamAnalysisManager_var manager;
    CATListPtrCATDocument links;
    if (VOZTemplatePath::GetAnalysisManager(manager, analysis) != 0 || manager->GetLinkedDocuments(links) != 0)
        return E_FAIL;
    for (int i = 1; i <= links.Size() && o_document == nullptr; ++i)
        if (searchPartName(*links[i]) >= 0)
            o_document = links[i];
    return 0;
}

// The part behind the first mesh part's support.
long findSupportingPart(CATDocument *& o_document, CATDocument * analysis)
{
    CATISpecObject * object = nullptr;
    if (VOZTemplatePath::GetMeshPartSpecObject(object, analysis, 1) != 0)
        return E_FAIL;
    CATISpecObject_var const support(CATISpecObject_var::Adopt(object));
    CATILinkableObject_var const linkable(support);
    CATDocument * const document = !linkable ? nullptr : linkable->GetDocument();
    if (document == nullptr || searchPartName(*document) < 0)
        return E_FAIL;
    o_document = document;
    return 0;
}
} // namespace

int VOZTemplatePath::GetPath(char * o_path)
{
    char const * const root = findRoot();
    if (root == nullptr || !put(root, o_path))
        return -1;
    return isShort(o_path) ? -1 : 0;
}

int VOZTemplatePath::GetIncrementalTemplatePath(CATUnicodeString & o_path)
{
    char const * const root = CATGetEnv("VOZDRAVO3D");
    if (root == nullptr)
        return -1;
    o_path = root;
    o_path.Append("/Increment");
    return 0;
}

int VOZTemplatePath::GetConfigPath(char * o_path)
{
    char const * const root = findRoot();
    if (root == nullptr || isShort(root) || !put(std::string(root) + "/config.cfg", o_path))
        return -1;

    char location[kValueSize] = "";
    if (!readKey(o_path, "TemplateLocation", location))
        return 0;
    CATICkeParm_var const choice = findTemplateName();
    if (!choice)
        return 0;
    CATUnicodeString const name = choice->ValueAsText();
    if (name == "Default")
        return 0;
    return put(std::string(location) + "\\" + name.ConvertToChar() + ".cfg", o_path) ? 0 : -1;
}

int VOZTemplatePath::GetMatPath(char * o_path)
{
    char * value = nullptr;
    if (CATGetEnvValue("VOZMaterialDB", &value) == 0 && value != nullptr)
    {
        bool const fits = put(value, o_path);
        std::free(value);
        return fits ? 0 : -1;
    }
    char const * const found = findRoot();
    if (found == nullptr || isShort(found))
        return -1;
    std::string const root(found);

    char config[kPathSize] = "";
    if (GetConfigPath(config) != 0 || isShort(config))
        return -1;
    char location[kValueSize] = "";
    bool const isConfigured = readKey(config, "MaterialDBPath", location);
    return put(isConfigured ? location : root + "/dat", o_path) ? 0 : -1;
}

long VOZTemplatePath::GetAnalysisManager(CATISamAnalysisManager_var & o_manager, CATDocument * i_document)
{
    CATDocument * const document = i_document != nullptr ? i_document : findCurrentDocument();
    CATISamAccess_var const access(document);
    if (!access)
        return E_FAIL;
    CATISamAnalysisContainer_var const container(access->GetAnalysisContainer());
    if (!container)
        return E_FAIL;
    CATISamAnalysisManager_var const manager = container->GetAnalysisManager();
    if (!manager)
        return E_FAIL;
    o_manager = manager;
    return 0;
}

long VOZTemplatePath::GetAnalysisModel(CATISamAnalysisModel_var & o_model, CATDocument * i_document)
{
    CATISamAnalysisManager_var manager;
    if (GetAnalysisManager(manager, i_document) != 0)
        return E_FAIL;
    CATISamAnalysisModel * model = nullptr;
    if (manager->GetAnalysisModel(&model) != 0 || model == nullptr)
        return E_FAIL;
    o_model = CATISamAnalysisModel_var::Adopt(model);
    return 0;
}

long VOZTemplatePath::GetMeshPartSpecObject(CATISpecObject *& o_object, CATDocument * i_document, int i_index)
{
    CATISamAnalysisModel_var model;
    if (GetAnalysisModel(model, i_document) != 0)
        return E_FAIL;
    CATISamAnalysisScan_var const scan(model);
    if (!scan)
        return E_FAIL;
    std::vector<CATBaseUnknown_var> const sets = scan->Scan("MSHMeshSet", 3);
    CATISamAnalysisSet_var const set = sets.empty() ? CATISamAnalysisSet_var() : CATISamAnalysisSet_var(sets.front());
    if (!set)
        return E_FAIL;
    std::vector<CATISpecObject_var> const members = set->GetMembers();
    if (i_index < 1 || i_index > static_cast<int>(members.size()))
        return E_FAIL;
    CATIMSHMeshPart_var const meshPart(members[static_cast<std::size_t>(i_index) - 1]);
    if (!meshPart)
        return E_FAIL;
    CATISpecObject_var const support(meshPart->GetSupport());
    if (!support)
        return E_FAIL;
    o_object = support.Object();
    o_object->AddRef();
    return 0;
}

long VOZTemplatePath::GetLinkPartDocument(CATDocument *& o_document, CATDocument * i_document)
{
    CATDocument * document = i_document;
    if (document == nullptr)
    {
        document = findCurrentDocument();
        if (document == nullptr)
            return E_FAIL;
        if (searchPartName(*document) > 0) // a name that begins with the pattern is none
        {
            o_document = document;
            return 0;
        }
    }
    CATDocument * linked = nullptr;
    if (findLinkedPart(linked, document) != 0)
        return E_FAIL;
    if (linked == nullptr)
        return findSupportingPart(o_document, document);
    o_document = linked;
    return 0;
}

// NOLINTNEXTLINE(performance-unnecessary-value-param): the interface's signature
CATICkeParm_var VOZTemplatePath::GetParameter(CATIParmPublisher_var i_publisher, char * i_name, int i_match)
{
    if (!i_publisher)
        return {};
    CATUnicodeString const wanted(i_name);
    for (CATBaseUnknown_var const & object : i_publisher->GetPublished("CATICkeParm"))
    {
        CATICkeParm_var parameter(object);
        if (!parameter)
            continue;
        CATUnicodeString const shortName = parameter->ShortName();
        CATUnicodeString const fullName = parameter->FullName();
        if (i_match == 0 ? shortName.Compare(wanted) == kEqual : fullName.SearchSubString(wanted, 0) >= 0)
            return parameter;
    }
    return {};
}

long VOZTemplatePath::CreateInstanceContainer(CATIContainer ** o_container)
{
    CATDocument * document = findCurrentDocument();
    if (document == nullptr)
        return E_FAIL;
    if (document->StorageName().SearchSubString(".CATAnalysis") >= 0 && GetLinkPartDocument(document, nullptr) != 0)
        return E_FAIL;

    CATBaseUnknown * face = nullptr;
    if (long const status = document->QueryInterface(CATInit::ClassName(), &face); status != 0)
    {
        std::printf("ERROR in QueryInterface on CATInit for doc\n");
        return status;
    }
    CATInit_var const init(CATInit_var::Adopt(static_cast<CATInit *>(face)));
    CATBaseUnknown_var const root(CATBaseUnknown_var::Adopt(init->GetRootContainer("CATIContainer")));
    if (!root)
        return fail("ERROR in GetRootContainer");

    CATBaseUnknown * part = nullptr;
    if (long const status = root->QueryInterface(CATIPrtContainer::ClassName(), &part); status != 0)
    {
        std::printf("ERROR in QueryInterface for CATIPrtContainer\n");
        return status;
    }
    part->Release();
    *o_container = static_cast<CATIContainer *>(root.Object());
    (*o_container)->AddRef();
    return 0;
}

long VOZTemplatePath::CreatePartParmPublisher(CATIParmPublisher ** o_publisher)
{
    CATIContainer * created = nullptr;
    if (CreateInstanceContainer(&created) != 0)
        return fail(" Build failed ! No Container.");
    CATIContainer_var const container(CATIContainer_var::Adopt(created));
    if (!CATICkeParmFactory_var(container))
        return fail("ERROR in QueryInterface on container for CATICkeParmFactory");
    CATIPrtContainer_var const partContainer(container);
    if (!partContainer)
        return fail("ERROR in QueryInterface on container for CATIPrtContainer");
    CATISpecObject_var const part = partContainer->GetPart();
    if (!part)
        return fail("Mechanical Part not retreived.");
    CATIParmPublisher_var const publisher(part);
    if (!publisher)
        return fail("ERROR in QueryInterface on Container for CATIParmPublisher");
    *o_publisher = publisher.Object();
    (*o_publisher)->AddRef();
    return 0;
}
