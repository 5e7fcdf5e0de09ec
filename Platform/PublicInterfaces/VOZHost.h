// VOZHost.h: what a host supplies, behind one small interface.
//
// A workbench process implements VOZHost over its own session. Without one the default host stands in: it reads
// the process's environment anew at each call, has no document, and writes broken contracts to standard error.
// VOZMemoryHost is a host held in memory, which tests and programs fill in a few lines.

#ifndef VOZHOST_H
#define VOZHOST_H

#include "ExportedByVOZPlatform.h"

#include <map>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <vector>

class CATDocument;

// A document as the library sees it, made with std::make_shared. Its file name ("part.CATPart", "study.CATAnalysis")
// tells its kind; which interfaces it gives follows from the two flags. The object that stands for it in the host's
// interfaces (see CATDocument.h) is made on demand and lives as long as the record.
struct ExportedByVOZPlatform VOZHostDocument : std::enable_shared_from_this<VOZHostDocument>
{
    struct Parameter
    {
        std::string shortName;
        std::string fullName;
        std::string value; // as text
    };
    struct MeshSetMember
    {
        std::shared_ptr<VOZHostDocument> support; // the document that the mesh part's support lies in; null: no support
        bool isMeshPart = true;
    };

    std::string storageName;

    bool isAnalysis = false;                             // has an analysis container with a manager and a model
    std::vector<std::shared_ptr<VOZHostDocument>> links; // the documents that the analysis links to, in order
    std::vector<MeshSetMember> meshSet;                  // the analysis's mesh set, in order; empty: no such set

    bool isPart = false; // has a part container, whose part publishes the parameters
    std::vector<Parameter> parameters;

    // Interfaces, by class name, that the document's objects do not give although their kind would;
    // "CATListPtrCATDocument" stands for the link object of the analysis manager.
    std::set<std::string> withheld;

    // The record's object in the host's interfaces; the record keeps its reference.
    CATDocument * Object();

    VOZHostDocument();
    VOZHostDocument(VOZHostDocument const &) = delete;
    VOZHostDocument & operator=(VOZHostDocument const &) = delete;
    ~VOZHostDocument();

private:
    class DocumentObject;
    DocumentObject * mObject = nullptr;
};

class ExportedByVOZPlatform VOZHost
{
public:
    virtual ~VOZHost();

    virtual std::optional<std::string> EnvironmentValue(std::string const & i_name) = 0;
    virtual std::shared_ptr<VOZHostDocument> CurrentDocument() = 0; // null: no editor
    virtual void BrokenContract(std::string const & i_text, std::string const & i_file, int i_line) = 0;

    static VOZHost & Current();            // the host in force
    static void Install(VOZHost * i_host); // null: the default one again; the caller keeps ownership
};

class ExportedByVOZPlatform VOZMemoryHost : public VOZHost
{
public:
    struct Report
    {
        std::string text;
        std::string file;
        int line;
    };

    std::map<std::string, std::string> environment;
    std::shared_ptr<VOZHostDocument> document;
    std::vector<Report> reports; // broken contracts, in order

    std::optional<std::string> EnvironmentValue(std::string const & i_name) override;
    std::shared_ptr<VOZHostDocument> CurrentDocument() override;
    void BrokenContract(std::string const & i_text, std::string const & i_file, int i_line) override;
};

#endif
