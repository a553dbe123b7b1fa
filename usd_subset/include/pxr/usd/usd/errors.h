#pragma once

#include <pxr/export.h>
#include <pxr/pxr.h>
#include <pxr/usd/usd/api.h>

#include <stdexcept>

PXR_NAMESPACE_OPEN_SCOPE

/// Thrown when a prim handle is used after its prim has gone.
class VESK_USD_API UsdExpiredPrimAccessError : public std::runtime_error
{
public:
    using std::runtime_error::runtime_error;
    ~UsdExpiredPrimAccessError() override;
};

PXR_NAMESPACE_CLOSE_SCOPE
