#include "CATEnvironment.h"

#include "VOZHost.h"

#include <cstdlib>
#include <cstring>

char const * CATGetEnv(char const * i_name)
{
    static thread_local std::string value;
    std::optional<std::string> const found = VOZHost::Current().EnvironmentValue(i_name != nullptr ? i_name : "");
    if (!found)
        return nullptr;
    value = *found;
    return value.c_str();
}

int CATGetEnvValue(char const * i_name, char ** o_value)
{
    *o_value = nullptr;
    std::optional<std::string> const found = VOZHost::Current().EnvironmentValue(i_name != nullptr ? i_name : "");
    if (!found)
        return -1;
    auto * const copy = static_cast<char *>(std::malloc(found->size() + 1));
    if (copy == nullptr)
        return -1;
    std::memcpy(copy, found->c_str(), found->size() + 1);
    *o_value = copy;
    return 0;
}
