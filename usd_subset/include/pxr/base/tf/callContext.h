#pragma once

/// Where in the source a call was made.

#include <pxr/pxr.h>

#include <cstddef>

PXR_NAMESPACE_OPEN_SCOPE

/// The caller's source position; pass it as an argument.
#define TF_CALL_CONTEXT PXR_NS::TfCallContext(__FILE__, __func__, __LINE__, __PRETTY_FUNCTION__)

class TfCallContext
{
public:
    constexpr TfCallContext() = default;
    constexpr TfCallContext(char const* file, char const* function, size_t line, char const* prettyFunction)
        : _file(file), _function(function), _line(line), _prettyFunction(prettyFunction)
    {}

    char const* GetFile() const { return _file; }
    char const* GetFunction() const { return _function; }
    size_t GetLine() const { return _line; }
    char const* GetPrettyFunction() const { return _prettyFunction; }

    /// Asks that reports of this context leave out the position.
    TfCallContext const& Hide() const
    {
        _hidden = true;
        return *this;
    }
    bool IsHidden() const { return _hidden; }
    explicit operator bool() const { return _file && _function; }

private:
    char const* _file = nullptr;
    char const* _function = nullptr;
    size_t _line = 0;
    char const* _prettyFunction = nullptr;
    mutable bool _hidden = false;
};

PXR_NAMESPACE_CLOSE_SCOPE
