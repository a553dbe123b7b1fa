#pragma once

/// A reference to something callable.

#include <pxr/pxr.h>

#include <memory>
#include <type_traits>
#include <utility>

PXR_NAMESPACE_OPEN_SCOPE

template <class Signature>
class TfFunctionRef;

/// Refers to a callable without owning it; for parameters only, valid while the callable lives.
template <class Ret, class... Args>
class TfFunctionRef<Ret(Args...)>
{
public:
    template <class Fn, class = std::enable_if_t<!std::is_same_v<std::decay_t<Fn>, TfFunctionRef>>>
    constexpr TfFunctionRef(Fn& fn) noexcept
        : _fn(const_cast<void*>(static_cast<const void*>(std::addressof(fn)))),
          _invoke([](void* callable, Args... args) -> Ret {
              return (*static_cast<Fn*>(callable))(std::forward<Args>(args)...);
          })
    {}
    template <class Fn, class = std::enable_if_t<!std::is_same_v<std::decay_t<Fn>, TfFunctionRef>>>
    constexpr TfFunctionRef(const Fn& fn) noexcept
        : _fn(const_cast<void*>(static_cast<const void*>(std::addressof(fn)))),
          _invoke([](void* callable, Args... args) -> Ret {
              return (*static_cast<const Fn*>(callable))(std::forward<Args>(args)...);
          })
    {}

    Ret operator()(Args... args) const { return _invoke(_fn, std::forward<Args>(args)...); }

    void swap(TfFunctionRef& other) noexcept
    {
        std::swap(_fn, other._fn);
        std::swap(_invoke, other._invoke);
    }
    friend void swap(TfFunctionRef& a, TfFunctionRef& b) noexcept { a.swap(b); }

private:
    void* _fn;
    Ret (*_invoke)(void*, Args...);
};

PXR_NAMESPACE_CLOSE_SCOPE
