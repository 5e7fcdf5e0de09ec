// ZoneLimits.cpp: the five keys of the configuration file.

#include "ZoneLimits.h"

#include "FormingLimit.h"
#include "VOZCatConfigPaser.h"
#include "VOZTemplatePath.h"

bool ZoneLimits::Read()
{
    char path[VOZTemplatePath::kPathSize] = "";
    if (VOZTemplatePath::GetConfigPath(path) != 0)
        return false;
    VOZCatConfigPaser file(path);
    file.ReadAndPaser(); // if it fails no limit is found
    struct
    {
        char key[16];
        double & value;
    } entries[] = {{"ThinningLimit", mThinningLimit},
                   {"ThinningMargin", mThinningMargin},
                   {"ShearLimit", mShearLimit},
                   {"ShearMargin", mShearMargin},
                   {"WrinkleLimit", mWrinkleLimit}};
    for (auto & entry : entries)
    {
        entry.value = 0.0;
        file.GetDouble(entry.key, entry.value);
    }
    return true;
}

void ZoneLimits::Classify(FormingLimit const & i_limit, double i_major, double i_minor, int & o_forming,
                          int & o_safety) const
{
    i_limit.zones(i_major, i_minor, o_forming, o_safety, mThinningLimit, mThinningMargin, mShearLimit, mShearMargin,
                  mWrinkleLimit);
}
