// HostDocument.cpp: the host's document interfaces over a document record.
//
// A document consists of parts (its container, its manager, ...), and each part shows faces, one per interface. Which
// part shows which face is one table; a face is made when it is asked for, counted by itself, and keeps the record
// alive. What is asked on one face of a part is answered as on every other.

#include "CATDocument.h"
#include "CATICkeParm.h"
#include "CATISamAnalysis.h"
#include "VOZHost.h"
#include "VOZStatus.h"

#include <cstddef>
#include <memory>
#include <string_view>
#include <utility>

CATImplementClass(CATDocument, CATBaseUnknown)
CATImplementClass(CATInit, CATBaseUnknown)
CATImplementClass(CATILinkableObject, CATBaseUnknown)
CATImplementClass(CATISpecObject, CATBaseUnknown)
CATImplementClass(CATISamAnalysisModel, CATBaseUnknown)
CATImplementClass(CATISamAnalysisManager, CATBaseUnknown)
CATImplementClass(CATISamAnalysisContainer, CATBaseUnknown)
CATImplementClass(CATISamAccess, CATBaseUnknown)
CATImplementClass(CATISamAnalysisScan, CATBaseUnknown)
CATImplementClass(CATISamAnalysisSet, CATBaseUnknown)
CATImplementClass(CATIMSHMeshPart, CATBaseUnknown)
CATImplementClass(CATIContainer, CATBaseUnknown)
CATImplementClass(CATIPrtContainer, CATBaseUnknown)
CATImplementClass(CATICkeParmFactory, CATBaseUnknown)
CATImplementClass(CATICkeParm, CATBaseUnknown)
CATImplementClass(CATIParmPublisher, CATBaseUnknown)

namespace
{
using Record = std::shared_ptr<VOZHostDocument>;

enum class Kind
{
    Document,
    Root, // the root container
    Manager,
    Model,
    MeshSet,
    Member,  // of the mesh set
    Support, // what a mesh part lies on
    Part,    // the mechanical part
    Parm
};

struct Part
{
    Kind kind;
    Record record;
    std::size_t index = 0; // of a member or a parameter
};

long ask(Part const & part, char const * interface, CATBaseUnknown ** o_object);

// The part's face of that interface with one reference, or null.
CATBaseUnknown * give(Part const & part, char const * interface)
{
    CATBaseUnknown * object = nullptr;
    ask(part, interface, &object);
    return object;
}

template <class Interface>
CATInterfaceVar<Interface> giveVar(Part const & part)
{
    return CATInterfaceVar<Interface>::Adopt(static_cast<Interface *>(give(part, Interface::ClassName())));
}

template <class Interface>
class Face : public Interface
{
public:
    explicit Face(Part i_part) : mPart(std::move(i_part)) {}
    long QueryInterface(char const * i_interface, CATBaseUnknown ** o_object) override
    {
        return ask(mPart, i_interface, o_object);
    }

protected:
    Part Other(Kind i_kind, std::size_t i_index = 0) const { return {i_kind, mPart.record, i_index}; }

    Part mPart;
};

class InitFace : public Face<CATInit>
{
public:
    using Face::Face;
    CATBaseUnknown * GetRootContainer(char const * i_interface) override
    {
        return give(Other(Kind::Root), i_interface);
    }
};

class AccessFace : public Face<CATISamAccess>
{
public:
    using Face::Face;
    CATBaseUnknown_var GetAnalysisContainer() override { return giveVar<CATBaseUnknown>(Other(Kind::Root)); }
};

class AnalysisContainerFace : public Face<CATISamAnalysisContainer>
{
public:
    using Face::Face;
    CATISamAnalysisManager_var GetAnalysisManager() override
    {
        return giveVar<CATISamAnalysisManager>(Other(Kind::Manager));
    }
};

class ManagerFace : public Face<CATISamAnalysisManager>
{
public:
    using Face::Face;
    long GetAnalysisModel(CATISamAnalysisModel ** o_model) override
    {
        CATBaseUnknown * object = nullptr;
        long const status = ask(Other(Kind::Model), CATISamAnalysisModel::ClassName(), &object);
        *o_model = static_cast<CATISamAnalysisModel *>(object);
        return status;
    }
    long GetLinkedDocuments(CATListPtrCATDocument & io_documents) override
    {
        if (mPart.record->withheld.count("CATListPtrCATDocument") != 0)
            return E_NOINTERFACE;
        for (Record const & link : mPart.record->links)
            if (link != nullptr)
                io_documents.Append(link->Object());
        return 0;
    }
};

class ScanFace : public Face<CATISamAnalysisScan>
{
public:
    using Face::Face;
    std::vector<CATBaseUnknown_var> Scan(char const * i_type, int i_argument) override
    {
        std::vector<CATBaseUnknown_var> found;
        if (i_argument == 3 && std::string_view(i_type) == "MSHMeshSet" && !mPart.record->meshSet.empty())
            found.push_back(giveVar<CATBaseUnknown>(Other(Kind::MeshSet)));
        return found;
    }
};

class SetFace : public Face<CATISamAnalysisSet>
{
public:
    using Face::Face;
    std::vector<CATISpecObject_var> GetMembers() override
    {
        std::vector<CATISpecObject_var> members;
        for (std::size_t i = 0; i < mPart.record->meshSet.size(); ++i)
            members.push_back(giveVar<CATISpecObject>(Other(Kind::Member, i)));
        return members;
    }
};

class MeshPartFace : public Face<CATIMSHMeshPart>
{
public:
    using Face::Face;
    CATBaseUnknown_var GetSupport() override
    {
        Record const support = mPart.record->meshSet.at(mPart.index).support;
        return support != nullptr ? giveVar<CATBaseUnknown>({Kind::Support, support}) : CATBaseUnknown_var();
    }
};

class LinkableFace : public Face<CATILinkableObject>
{
public:
    using Face::Face;
    CATDocument * GetDocument() override { return mPart.record->Object(); }
};

class PrtContainerFace : public Face<CATIPrtContainer>
{
public:
    using Face::Face;
    CATISpecObject_var GetPart() override { return giveVar<CATISpecObject>(Other(Kind::Part)); }
};

class PublisherFace : public Face<CATIParmPublisher>
{
public:
    using Face::Face;
    std::vector<CATBaseUnknown_var> GetPublished(char const * i_type) override
    {
        std::vector<CATBaseUnknown_var> published;
        if (std::string_view(i_type) != CATICkeParm::ClassName())
            return published;
        for (std::size_t i = 0; i < mPart.record->parameters.size(); ++i)
            published.push_back(giveVar<CATBaseUnknown>(Other(Kind::Parm, i)));
        return published;
    }
};

class ParmFace : public Face<CATICkeParm>
{
public:
    using Face::Face;
    CATUnicodeString ShortName() const override { return Parameter().shortName.c_str(); }
    CATUnicodeString FullName() const override { return Parameter().fullName.c_str(); }
    CATUnicodeString ValueAsText() const override { return Parameter().value.c_str(); }

private:
    VOZHostDocument::Parameter const & Parameter() const { return mPart.record->parameters.at(mPart.index); }
};

bool always(Part const &)
{
    return true;
}
bool ofAnalysis(Part const & part)
{
    return part.record->isAnalysis;
}
bool ofPart(Part const & part)
{
    return part.record->isPart;
}
bool ofContainer(Part const & part)
{
    return ofAnalysis(part) || ofPart(part);
}
bool ofMeshPart(Part const & part)
{
    return part.record->meshSet.at(part.index).isMeshPart;
}

template <class Made>
CATBaseUnknown * make(Part const & part)
{
    return new Made(part);
}

struct FaceRule
{
    Kind kind;
    std::string_view interface;
    bool (*shows)(Part const &);
    CATBaseUnknown * (*make)(Part const &);
};

// clang-format off
constexpr FaceRule kFaces[] = {
    {Kind::Document, "CATInit",                  always,      make<InitFace>},
    {Kind::Document, "CATISamAccess",            ofAnalysis,  make<AccessFace>},
    {Kind::Root,     "CATIContainer",            ofContainer, make<Face<CATIContainer>>},
    {Kind::Root,     "CATIPrtContainer",         ofPart,      make<PrtContainerFace>},
    {Kind::Root,     "CATICkeParmFactory",       ofPart,      make<Face<CATICkeParmFactory>>},
    {Kind::Root,     "CATISamAnalysisContainer", ofAnalysis,  make<AnalysisContainerFace>},
    {Kind::Manager,  "CATISamAnalysisManager",   always,      make<ManagerFace>},
    {Kind::Model,    "CATISamAnalysisModel",     always,      make<Face<CATISamAnalysisModel>>},
    {Kind::Model,    "CATISamAnalysisScan",      always,      make<ScanFace>},
    {Kind::MeshSet,  "CATISamAnalysisSet",       always,      make<SetFace>},
    {Kind::Member,   "CATISpecObject",           always,      make<Face<CATISpecObject>>},
    {Kind::Member,   "CATIMSHMeshPart",          ofMeshPart,  make<MeshPartFace>},
    {Kind::Support,  "CATISpecObject",           always,      make<Face<CATISpecObject>>},
    {Kind::Support,  "CATILinkableObject",       always,      make<LinkableFace>},
    {Kind::Part,     "CATISpecObject",           always,      make<Face<CATISpecObject>>},
    {Kind::Part,     "CATIParmPublisher",        always,      make<PublisherFace>},
    {Kind::Parm,     "CATICkeParm",              always,      make<ParmFace>},
};
// clang-format on

long ask(Part const & part, char const * interface, CATBaseUnknown ** o_object)
{
    *o_object = nullptr;
    std::string_view const wanted(interface != nullptr ? interface : "");
    if (wanted == CATBaseUnknown::ClassName())
        *o_object = new Face<CATBaseUnknown>(part);
    else if (part.record->withheld.count(std::string(wanted)) == 0)
        for (FaceRule const & rule : kFaces)
            if (rule.kind == part.kind && rule.interface == wanted && rule.shows(part))
                *o_object = rule.make(part);
    return *o_object != nullptr ? 0 : E_NOINTERFACE;
}
} // namespace

// Owned by its record; where a caller has counted it up, it outlives the record as a document without name or faces.
class VOZHostDocument::DocumentObject : public CATDocument
{
public:
    explicit DocumentObject(VOZHostDocument * i_record) : mRecord(i_record) {}
    void Detach() { mRecord = nullptr; }
    CATUnicodeString StorageName() const override
    {
        return mRecord != nullptr ? CATUnicodeString(mRecord->storageName.c_str()) : CATUnicodeString();
    }
    long QueryInterface(char const * i_interface, CATBaseUnknown ** o_object) override
    {
        if (CATDocument::QueryInterface(i_interface, o_object) == 0)
            return 0;
        Record const record = mRecord != nullptr ? mRecord->weak_from_this().lock() : nullptr;
        return record != nullptr ? ask({Kind::Document, record}, i_interface, o_object) : E_NOINTERFACE;
    }

private:
    VOZHostDocument * mRecord;
};

VOZHostDocument::VOZHostDocument() = default;

VOZHostDocument::~VOZHostDocument()
{
    if (mObject == nullptr)
        return;
    mObject->Detach();
    mObject->Release();
}

CATDocument * VOZHostDocument::Object()
{
    if (mObject == nullptr)
        mObject = new DocumentObject(this);
    return mObject;
}

CATFrmEditor * CATFrmEditor::GetCurrentEditor()
{
    static CATFrmEditor editor;
    static Record shown; // keeps what the editor lends alive until the next call
    shown = VOZHost::Current().CurrentDocument();
    editor.mDocument = shown != nullptr ? shown->Object() : nullptr;
    return shown != nullptr ? &editor : nullptr;
}

CATDocument * CATListPtrCATDocument::operator[](int i_position) const
{
    return i_position >= 1 && i_position <= Size() ? mDocuments[static_cast<std::size_t>(i_position) - 1] : nullptr;
}
