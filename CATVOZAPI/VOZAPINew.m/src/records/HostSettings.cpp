// HostSettings.cpp: environment values of the kernel.

#include "HostSettings.h"

#include "JobProblem.h"
#include "TextOf.h"
#include "VOZHost.h"

voz::onestep::Settings HostSettings()
{
    voz::onestep::Settings settings;
    std::string const steps = VOZHost::Current().EnvironmentValue("VOZStrokeSteps").value_or("");
    if (steps.empty())
        return settings;
    if (steps.size() != 1 || steps[0] < '1' || steps[0] > '3')
        throw JobError(TextOf("the environment value VOZStrokeSteps is \"", steps, "\"; expected 1, 2 or 3"));
    settings.steps = steps[0] - '0';
    return settings;
}
