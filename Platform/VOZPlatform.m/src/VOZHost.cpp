#include "VOZHost.h"

#include "SystemCalls.h"

#include <atomic>
#include <cstdio>

namespace
{
class DefaultHost : public VOZHost
{
public:
    std::optional<std::string> EnvironmentValue(std::string const & i_name) override
    {
        return voz::platform::ReadEnvironment(i_name);
    }
    std::shared_ptr<VOZHostDocument> CurrentDocument() override { return nullptr; }
    void BrokenContract(std::string const & i_text, std::string const & i_file, int i_line) override
    {
        std::fprintf(stderr, "%s (%s:%d)\n", i_text.c_str(), i_file.c_str(), i_line);
    }
};

std::atomic<VOZHost *> installedHost{nullptr};
} // namespace

VOZHost::~VOZHost() = default;

VOZHost & VOZHost::Current()
{
    static DefaultHost standIn;
    VOZHost * const installed = installedHost.load();
    return installed != nullptr ? *installed : standIn;
}

void VOZHost::Install(VOZHost * i_host)
{
    installedHost.store(i_host);
}

std::optional<std::string> VOZMemoryHost::EnvironmentValue(std::string const & i_name)
{
    auto const entry = environment.find(i_name);
    return entry != environment.end() ? std::optional(entry->second) : std::nullopt;
}

std::shared_ptr<VOZHostDocument> VOZMemoryHost::CurrentDocument()
{
    return document;
}

void VOZMemoryHost::BrokenContract(std::string const & i_text, std::string const & i_file, int i_line)
{
    reports.push_back({i_text, i_file, i_line});
}
