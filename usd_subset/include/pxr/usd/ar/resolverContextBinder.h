#pragma once

/// Binds a resolver context for the length of a scope.

#include <pxr/base/vt/value.h>
#include <pxr/pxr.h>
#include <pxr/usd/ar/resolver.h>
#include <pxr/usd/ar/resolverContext.h>

PXR_NAMESPACE_OPEN_SCOPE

/// While alive, the context is bound on the thread that made the binder.
class ArResolverContextBinder
{
public:
    explicit ArResolverContextBinder(const ArResolverContext& context) : _context(context)
    {
        ArGetResolver().BindContext(_context, &_bindingData);
    }
    ArResolverContextBinder(const ArResolverContextBinder&) = delete;
    ArResolverContextBinder& operator=(const ArResolverContextBinder&) = delete;
    ~ArResolverContextBinder() { ArGetResolver().UnbindContext(_context, &_bindingData); }

private:
    ArResolverContext _context;
    VtValue _bindingData;
};

PXR_NAMESPACE_CLOSE_SCOPE
