#pragma once

#include <pxr/export.h>
#include <pxr/pxr.h>
#include <pxr/usd/usd/attribute.h>

#include <vector>

PXR_NAMESPACE_OPEN_SCOPE

/// Which kind of attribute a connection leads to.
enum class UsdShadeAttributeType
{
    Invalid,
    Input,
    Output
};

/// What connecting does to the connections that are there.
enum class UsdShadeConnectionModification
{
    Replace,
    Prepend,
    Append
};

using UsdShadeAttributeVector = std::vector<UsdAttribute>;
using UsdShadeSourceInfoVector = std::vector<struct UsdShadeConnectionSourceInfo>;

PXR_NAMESPACE_CLOSE_SCOPE
