#pragma once

/// What a resolver takes into account besides the asset path itself.

#include <pxr/base/tf/hash.h>
#include <pxr/pxr.h>
#include <pxr/usd/ar/api.h>
#include <pxr/usd/ar/ar.h>
#include <pxr/usd/ar/defaultResolverContext.h>

#include <memory>
#include <string>
#include <type_traits>
#include <vector>

PXR_NAMESPACE_OPEN_SCOPE

/// A value that holds at most one context object; the subset's resolver knows ArDefaultResolverContext.
/// Thread: as std::shared_ptr.
class ArResolverContext
{
public:
    ArResolverContext() = default;
    ArResolverContext(const ArDefaultResolverContext& context)
        : _context(std::make_shared<ArDefaultResolverContext>(context))
    {}
    /// Holds the first context that is not empty.
    AR_API explicit ArResolverContext(const std::vector<ArResolverContext>& contexts);

    bool IsEmpty() const { return !_context; }

    /// Returns the held object of this type, or null.
    template <class ContextObject>
    const ContextObject* Get() const
    {
        if constexpr (std::is_same_v<ContextObject, ArDefaultResolverContext>) {
            return _context.get();
        } else {
            return nullptr;
        }
    }

    AR_API std::string GetDebugString() const;

    AR_API bool operator==(const ArResolverContext& rhs) const;
    bool operator!=(const ArResolverContext& rhs) const { return !(*this == rhs); }
    AR_API bool operator<(const ArResolverContext& rhs) const;
    friend size_t hash_value(const ArResolverContext& c) { return c._context ? hash_value(*c._context) : 0; }

private:
    std::shared_ptr<const ArDefaultResolverContext> _context;
};

PXR_NAMESPACE_CLOSE_SCOPE
