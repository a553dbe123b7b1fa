#pragma once

/// Whether something is allowed, and why not.

#include <pxr/base/tf/diagnostic.h>
#include <pxr/pxr.h>

#include <string>
#include <utility>

PXR_NAMESPACE_OPEN_SCOPE

/// A yes, or a no with a reason.
class SdfAllowed
{
public:
    SdfAllowed() = default;
    SdfAllowed(bool allowed) : _allowed(allowed) {}
    SdfAllowed(const char* whyNot) : _allowed(false), _whyNot(whyNot) {}
    SdfAllowed(const std::string& whyNot) : _allowed(false), _whyNot(whyNot) {}
    SdfAllowed(bool allowed, const std::string& whyNot) : _allowed(allowed), _whyNot(allowed ? "" : whyNot) {}

    operator bool() const { return _allowed; }
    bool IsAllowed(std::string* whyNot) const
    {
        if (!_allowed && whyNot) {
            *whyNot = _whyNot;
        }
        return _allowed;
    }
    const std::string& GetWhyNot() const { return _whyNot; }
    bool operator==(const SdfAllowed& other) const
    {
        return _allowed == other._allowed && _whyNot == other._whyNot;
    }
    bool operator!=(const SdfAllowed& other) const { return !(*this == other); }

private:
    bool _allowed = true;
    std::string _whyNot;
};

PXR_NAMESPACE_CLOSE_SCOPE
