#include "operations.h"

#include <apps/support/errors.h>

#include <pxr/base/gf/half.h>
#include <pxr/base/gf/matrix2d.h>
#include <pxr/base/gf/matrix3d.h>
#include <pxr/base/gf/matrix4d.h>
#include <pxr/base/gf/quatd.h>
#include <pxr/base/gf/quatf.h>
#include <pxr/base/gf/quath.h>
#include <pxr/base/gf/traits.h>
#include <pxr/base/gf/vec2d.h>
#include <pxr/base/gf/vec2f.h>
#include <pxr/base/gf/vec2h.h>
#include <pxr/base/gf/vec2i.h>
#include <pxr/base/gf/vec3d.h>
#include <pxr/base/gf/vec3f.h>
#include <pxr/base/gf/vec3h.h>
#include <pxr/base/gf/vec3i.h>
#include <pxr/base/gf/vec4d.h>
#include <pxr/base/gf/vec4f.h>
#include <pxr/base/gf/vec4h.h>
#include <pxr/base/gf/vec4i.h>
#include <pxr/base/vt/array.h>
#include <pxr/usd/sdf/assetPath.h>
#include <pxr/usd/sdf/schema.h>
#include <pxr/usd/sdf/timeCode.h>
#include <pxr/usd/sdf/valueTypeName.h>
#include <pxr/usd/usd/attribute.h>
#include <pxr/usd/usd/prim.h>

#include <cstdint>
#include <limits>
#include <stdexcept>
#include <string>
#include <type_traits>

PXR_NAMESPACE_USING_DIRECTIVE

namespace vesk::cli::replay {
namespace {

using apps::Json;
using framework::usd_document::UsdDocument;

[[noreturn]] void refuse(const std::string& meant)
{
    throw apps::UsageError("argument 'value' must be " + meant);
}

template <class T>
T readWhole(const Json& value)
{
    using Limits = std::numeric_limits<T>;
    const auto fits = [&] {
        if (!value.is_number_integer()) return false;
        if (value.is_number_unsigned())
            return value.get<std::uint64_t>() <= static_cast<std::uint64_t>(Limits::max());
        return !std::is_unsigned_v<T> &&
               value.get<std::int64_t>() >= static_cast<std::int64_t>(Limits::min());
    };
    if (!fits())
        refuse("a whole number from " + std::to_string(Limits::min()) + " to " +
               std::to_string(Limits::max()));
    return value.get<T>();
}

template <class T>
T readScalar(const Json& value)
{
    if constexpr (std::is_integral_v<T>)
        return readWhole<T>(value);
    else if constexpr (std::is_same_v<T, GfHalf>)
        return GfHalf(static_cast<float>(readNumber(value, "value")));
    else
        return static_cast<T>(readNumber(value, "value"));
}

template <class Vector>
Vector readVector(const Json& value)
{
    using Scalar = typename Vector::ScalarType;
    if (!value.is_array() || value.size() != Vector::dimension)
        refuse("an array of " + std::to_string(Vector::dimension) + " numbers");
    Vector vector;
    for (std::size_t i = 0; i < Vector::dimension; ++i)
        vector[i] = readScalar<Scalar>(value[i]);
    return vector;
}

/// Real part first, as scenes write quaternions.
template <class Quaternion>
Quaternion readQuaternion(const Json& value)
{
    using Scalar = typename Quaternion::ScalarType;
    if (!value.is_array() || value.size() != 4) refuse("an array of 4 numbers");
    return Quaternion(readScalar<Scalar>(value[0]), readScalar<Scalar>(value[1]),
                      readScalar<Scalar>(value[2]), readScalar<Scalar>(value[3]));
}

template <class Matrix>
Matrix readMatrix(const Json& value)
{
    constexpr std::size_t kSize = Matrix::numRows;
    if (!value.is_array() || value.size() != kSize) refuse("an array of " + std::to_string(kSize) + " rows");
    Matrix matrix;
    for (std::size_t r = 0; r < kSize; ++r) {
        const auto row = readNumbers(value[r], kSize, "value");
        for (std::size_t c = 0; c < kSize; ++c)
            matrix[static_cast<int>(r)][static_cast<int>(c)] = row[c];
    }
    return matrix;
}

template <class T>
T readElement(const Json& value)
{
    const Json step = {{"value", value}};
    const Arguments argument(step);
    if constexpr (std::is_same_v<T, bool>)
        return argument.flag("value");
    else if constexpr (std::is_arithmetic_v<T> || std::is_same_v<T, GfHalf>)
        return readScalar<T>(value);
    else if constexpr (std::is_same_v<T, std::string>)
        return argument.text("value");
    else if constexpr (std::is_same_v<T, TfToken>)
        return TfToken(argument.text("value"));
    else if constexpr (std::is_same_v<T, SdfAssetPath>)
        return SdfAssetPath(argument.text("value"));
    else if constexpr (std::is_same_v<T, SdfTimeCode>)
        return SdfTimeCode(readScalar<double>(value));
    else if constexpr (GfIsGfQuat<T>::value)
        return readQuaternion<T>(value);
    else if constexpr (GfIsGfMatrix<T>::value)
        return readMatrix<T>(value);
    else
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
    if (!value.is_array()) refuse("an array");
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
        readAsAnyOf<bool, unsigned char, int, unsigned int, std::int64_t, std::uint64_t, GfHalf, float,
                    double, SdfTimeCode, std::string, TfToken, SdfAssetPath>(kind, value, result) ||
        readAsAnyOf<GfVec2i, GfVec3i, GfVec4i, GfVec2h, GfVec3h, GfVec4h, GfVec2f, GfVec3f, GfVec4f, GfVec2d,
                    GfVec3d, GfVec4d, GfQuath, GfQuatf, GfQuatd, GfMatrix2d, GfMatrix3d, GfMatrix4d>(
            kind, value, result);
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
