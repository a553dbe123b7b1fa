#include "operations.h"

#include <apps/support/errors.h>

#include <pxr/base/gf/matrix4d.h>
#include <pxr/base/gf/quatd.h>
#include <pxr/base/gf/quatf.h>
#include <pxr/base/gf/vec2d.h>
#include <pxr/base/gf/vec2f.h>
#include <pxr/base/gf/vec3d.h>
#include <pxr/base/gf/vec3f.h>
#include <pxr/base/gf/vec4d.h>
#include <pxr/base/gf/vec4f.h>
#include <pxr/base/vt/array.h>
#include <pxr/usd/sdf/assetPath.h>
#include <pxr/usd/sdf/schema.h>
#include <pxr/usd/sdf/valueTypeName.h>
#include <pxr/usd/usd/attribute.h>
#include <pxr/usd/usd/prim.h>

#include <stdexcept>

PXR_NAMESPACE_USING_DIRECTIVE

namespace vesk::cli::replay {
namespace {

using apps::Json;
using framework::usd_document::UsdDocument;

template <class Vector>
Vector readVector(const Json& value)
{
    const std::vector<double> n = readNumbers(value, Vector::dimension, "value");
    Vector vector;
    for (std::size_t i = 0; i < Vector::dimension; ++i)
        vector[i] = static_cast<typename Vector::ScalarType>(n[i]);
    return vector;
}

/// Real part first, as scenes write quaternions.
template <class Quaternion>
Quaternion readQuaternion(const Json& value)
{
    using Scalar = typename Quaternion::ScalarType;
    const std::vector<double> n = readNumbers(value, 4, "value");
    return Quaternion(static_cast<Scalar>(n[0]), static_cast<Scalar>(n[1]), static_cast<Scalar>(n[2]),
                      static_cast<Scalar>(n[3]));
}

template <class T>
T readElement(const Json& value)
{
    const Json step = {{"value", value}};
    const Arguments argument(step);
    if constexpr (std::is_same_v<T, bool>)
        return argument.flag("value");
    else if constexpr (std::is_same_v<T, int>)
        return argument.integer("value");
    else if constexpr (std::is_arithmetic_v<T>)
        return static_cast<T>(argument.number("value"));
    else if constexpr (std::is_same_v<T, std::string>)
        return argument.text("value");
    else if constexpr (std::is_same_v<T, TfToken>)
        return TfToken(argument.text("value"));
    else if constexpr (std::is_same_v<T, SdfAssetPath>)
        return SdfAssetPath(argument.text("value"));
    else if constexpr (std::is_same_v<T, GfQuatf> || std::is_same_v<T, GfQuatd>)
        return readQuaternion<T>(value);
    else if constexpr (std::is_same_v<T, GfMatrix4d>) {
        GfMatrix4d matrix;
        if (!value.is_array() || value.size() != 4)
            throw apps::UsageError("argument 'value' must be four rows");
        for (int r = 0; r < 4; ++r) {
            const auto row = readNumbers(value[static_cast<std::size_t>(r)], 4, "value");
            for (int c = 0; c < 4; ++c)
                matrix[r][c] = row[static_cast<std::size_t>(c)];
        }
        return matrix;
    } else
        return readVector<T>(value);
}

/// Reads a value when the attribute's type holds T or an array of T.
template <class T>
bool readAs(const VtValue& kind, const Json& value, VtValue& result)
{
    if (kind.IsHolding<T>()) {
        result = readElement<T>(value);
        return true;
    }
    if (!kind.IsHolding<VtArray<T>>()) return false;
    if (!value.is_array()) throw apps::UsageError("argument 'value' must be an array");
    VtArray<T> array;
    for (const Json& element : value)
        array.push_back(readElement<T>(element));
    result = array;
    return true;
}

template <class... Types>
bool readAsAnyOf(const VtValue& kind, const Json& value, VtValue& result)
{
    return (readAs<Types>(kind, value, result) || ...);
}

VtValue readValue(const SdfValueTypeName& type, const std::string& typeText, const Json& value)
{
    const VtValue kind = type.GetDefaultValue();
    VtValue result;
    const bool read =
        readAsAnyOf<bool, int, float, double, std::string, TfToken, SdfAssetPath, GfVec2f, GfVec2d, GfVec3f,
                    GfVec3d, GfVec4f, GfVec4d, GfQuatf, GfQuatd, GfMatrix4d>(kind, value, result);
    if (!read)
        throw apps::UsageError("argument 'type': values of type '" + typeText + "' cannot be written here");
    return result;
}

void setAttribute(const UsdStagePtr& stage, const SdfPath& path, const TfToken& name,
                  const SdfValueTypeName& type, const VtValue& value, UsdTimeCode time)
{
    const UsdPrim prim = stage->GetPrimAtPath(path);
    if (!prim) throw std::runtime_error("there is no prim '" + path.GetAsString() + "'");
    UsdAttribute attribute = prim.GetAttribute(name);
    if (!attribute) attribute = prim.CreateAttribute(name, type);
    if (!attribute.Set(value, time)) {
        throw std::runtime_error("attribute '" + name.GetString() + "' of '" + path.GetAsString() +
                                 "' does not take the value");
    }
}

} // namespace

Action readEdit(const Arguments& step)
{
    const std::string pathText = step.text("path");
    const SdfPath path(pathText);
    const TfToken name(step.text("attribute"));
    const std::string typeText = step.text("type");
    const SdfValueTypeName type = SdfSchema::GetInstance().FindType(typeText);
    if (!type) throw apps::UsageError("argument 'type': there is no value type '" + typeText + "'");
    const VtValue value = readValue(type, typeText, step.value("value"));
    const auto number = step.optionalNumber("time");
    const UsdTimeCode time = number ? UsdTimeCode(*number) : UsdTimeCode::Default();
    return [=](Session& session) {
        return session.pending(session.document().edit("edit", [=](const UsdDocument::ExecContext& context) {
            setAttribute(UsdStagePtr(context.stage()), path, name, type, value, time);
        }));
    };
}

} // namespace vesk::cli::replay
