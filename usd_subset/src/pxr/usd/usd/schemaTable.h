#pragma once

#include <pxr/base/tf/token.h>
#include <pxr/base/vt/array.h>
#include <pxr/base/vt/value.h>
#include <pxr/pxr.h>
#include <pxr/usd/sdf/types.h>
#include <pxr/usd/sdf/valueTypeName.h>
#include <pxr/usd/usd/common.h>

#include <memory>
#include <string>
#include <vector>

PXR_NAMESPACE_OPEN_SCOPE

/// One property that a schema declares. Multiple-apply schemas have names with "__INSTANCE_NAME__" in them.
struct Usd_SchemaProperty
{
    SdfSpecType specType = SdfSpecTypeAttribute;
    SdfValueTypeName typeName;
    SdfVariability variability = SdfVariabilityVarying;
    VtValue fallback;
    VtArray<TfToken> allowedTokens;
};

/// One schema as its library's table gives it.
struct Usd_SchemaRecord
{
    struct Row
    {
        TfToken name;
        /// Changes the fallback of a property that a built-in API schema brings, rather than declaring one.
        bool isOverride = false;
        std::shared_ptr<const Usd_SchemaProperty> property;
    };

    TfToken identifier;
    std::string typeName;
    std::string baseTypeName;
    UsdSchemaKind kind = UsdSchemaKind::Invalid;
    TfTokenVector builtInApis;
    TfTokenVector canOnlyApplyTo;
    TfTokenVector autoApplyTo;
    std::vector<Row> rows;
};

/// A library's schemas, as text that is parsed when the registry is first used. An object of this class at
/// namespace scope adds its text; bases come before what derives from them.
///
/// One line each:
///   KIND IDENTIFIER CLASS : BASE_CLASS      KIND: base, abstract, concrete, api, multi (multiple-apply),
///   plain
///     apis NAME...                          built-in API schemas, strongest first
///     only IDENTIFIER...                    the types that it can be applied to
///     auto IDENTIFIER...                    the types that it belongs to without being applied
///     [override] [uniform] TYPE NAME [= FALLBACK] [| ALLOWED_TOKEN...]        TYPE: a value type, or rel
/// A line that begins with eight blanks continues the one before it.
class Usd_SchemaTable
{
public:
    explicit Usd_SchemaTable(const char* text);

    /// The schemas of all tables, bases first.
    static std::vector<Usd_SchemaRecord> ParseAll();

private:
    const char* _text;
    Usd_SchemaTable* _next;
};

PXR_NAMESPACE_CLOSE_SCOPE
