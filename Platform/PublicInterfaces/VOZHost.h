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
#include <string>
#include <vector>

// A document as the library sees it. Its file name ("part.CATPart", "study.CATAnalysis") tells its kind.
struct VOZHostDocument
{
    struct Parameter
    {
        std::string shortName;
        std::string fullName;
        std::string value; // as text
    };

    std::string storageName;
    bool isAnalysis = false;                             // has an analysis container with a manager and a model
    std::vector<std::shared_ptr<VOZHostDocument>> links; // the documents that the analysis links to, in order
    std::vector<std::shared_ptr<VOZHostDocument>>
        meshParts;       // per mesh part of the analysis: the document of its support; null: no support
    bool isPart = false; // has a part container, whose part publishes the parameters
    std::vector<Parameter> parameters;
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
