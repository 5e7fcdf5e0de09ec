// JobFuzz.cpp: any bytes as a job file: read or refused in words, never more. What is read survives its own lock.

#include "Job.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string_view>

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const * i_data, std::size_t i_size)
{
    using namespace voz::workbench;
    std::string_view const text(reinterpret_cast<char const *>(i_data), i_size);
    try
    {
        Job const job = ParseJob(text, "/tmp/job.toml");
        Job const again = ParseJob(LockedJob(job, {}, "/tmp"), "/tmp/job.toml");
        if (LockedJob(again, {}, "/tmp") != LockedJob(job, {}, "/tmp"))
            std::abort();
    }
    catch (InputError const &)
    {
    }
    return 0;
}
