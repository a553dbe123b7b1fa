#pragma once

/// What every spec class has: an empty value, copies, and construction from an identity.

#include <pxr/pxr.h>
#include <pxr/usd/sdf/declareHandles.h>
#include <pxr/usd/sdf/identity.h>
#include <pxr/usd/sdf/types.h>

// clang-format off
#define SDF_DECLARE_ABSTRACT_SPEC(SpecType, BaseSpecType)                         \
public:                                                                           \
    SpecType() {}                                                                 \
    SpecType(const SpecType& spec) : BaseSpecType(spec) {}                        \
    SpecType& operator=(const SpecType& spec) = default;                          \
    explicit SpecType(const Sdf_IdentityRefPtr& identity) : BaseSpecType(identity) {} \
                                                                                  \
protected:                                                                        \
    friend struct Sdf_CastAccess;                                                 \
    explicit SpecType(const SdfSpec& spec) : BaseSpecType(spec) {}

#define SDF_DECLARE_SPEC(SpecType, BaseSpecType) SDF_DECLARE_ABSTRACT_SPEC(SpecType, BaseSpecType)
// clang-format on
