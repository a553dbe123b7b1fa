#include <pxr/base/tf/getenv.h>

#include <pxr/base/tf/stringUtils.h>

#include <cstdlib>

PXR_NAMESPACE_OPEN_SCOPE

std::string TfGetenv(const std::string& name, const std::string& fallback)
{
    const char* value = std::getenv(name.c_str());
    return value && *value ? value : fallback;
}

int TfGetenvInt(const std::string& name, int fallback)
{
    const std::string value = TfGetenv(name);
    return value.empty() ? fallback : std::atoi(value.c_str());
}

bool TfGetenvBool(const std::string& name, bool fallback)
{
    const std::string value = TfStringToLowerAscii(TfGetenv(name));
    return value.empty() ? fallback : value == "true" || value == "yes" || value == "on" || value == "1";
}

double TfGetenvDouble(const std::string& name, double fallback)
{
    const std::string value = TfGetenv(name);
    return value.empty() ? fallback : TfStringToDouble(value);
}

PXR_NAMESPACE_CLOSE_SCOPE
