#pragma once

/// What is done when a scope ends.

#include <pxr/pxr.h>

#include <functional>
#include <utility>

PXR_NAMESPACE_OPEN_SCOPE

/// Calls a function when it goes out of scope.
template <class Function = std::function<void()>>
class TfScoped
{
public:
    explicit TfScoped(Function leave) : _leave(std::move(leave)) {}
    ~TfScoped() { _leave(); }
    TfScoped(const TfScoped&) = delete;
    TfScoped& operator=(const TfScoped&) = delete;

private:
    Function _leave;
};

/// Sets a variable, and sets it back when it goes out of scope.
template <class T>
class TfScopedVar
{
public:
    explicit TfScopedVar(T& variable, const T& value) : _variable(variable), _before(std::move(variable))
    {
        _variable = value;
    }
    ~TfScopedVar() { _variable = std::move(_before); }
    TfScopedVar(const TfScopedVar&) = delete;
    TfScopedVar& operator=(const TfScopedVar&) = delete;

private:
    T& _variable;
    T _before;
};

PXR_NAMESPACE_CLOSE_SCOPE
