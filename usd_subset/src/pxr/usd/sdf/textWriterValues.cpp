#include "pxr/usd/sdf/textQuoting.h"
#include "pxr/usd/sdf/textWriter.h"

#include <pxr/base/gf/matrix2d.h>
#include <pxr/base/gf/matrix3d.h>
#include <pxr/base/gf/matrix4d.h>
#include <pxr/base/gf/quatd.h>
#include <pxr/base/gf/quatf.h>
#include <pxr/base/gf/quath.h>
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
#include <pxr/base/tf/diagnostic.h>
#include <pxr/base/tf/stringUtils.h>
#include <pxr/base/vt/array.h>
#include <pxr/base/vt/dictionary.h>
#include <pxr/base/vt/types.h>
#include <pxr/usd/sdf/path.h>
#include <pxr/usd/sdf/types.h>

#include <charconv>
#include <typeindex>
#include <unordered_map>

PXR_NAMESPACE_OPEN_SCOPE

namespace {

void append(std::string& out, bool v) { out += v ? '1' : '0'; }
void append(std::string& out, unsigned char v) { out += std::to_string(static_cast<unsigned>(v)); }
void append(std::string& out, int v) { out += std::to_string(v); }
void append(std::string& out, unsigned int v) { out += std::to_string(v); }
void append(std::string& out, int64_t v) { out += std::to_string(v); }
void append(std::string& out, uint64_t v) { out += std::to_string(v); }
void append(std::string& out, float v) { out += Sdf_NumberToText(v); }
void append(std::string& out, double v) { out += Sdf_NumberToText(v); }
void append(std::string& out, GfHalf v)
{
    // Six digits tell all halves apart.
    char text[32];
    const auto end =
        std::to_chars(text, text + sizeof text, static_cast<float>(v), std::chars_format::general, 6);
    out.append(text, end.ptr);
}
void append(std::string& out, const SdfTimeCode& v) { out += Sdf_NumberToText(v.GetValue()); }
void append(std::string& out, const std::string& v) { out += Sdf_QuoteString(v); }
void append(std::string& out, const TfToken& v) { out += Sdf_QuoteString(v.GetString()); }
void append(std::string& out, const SdfAssetPath& v) { out += Sdf_QuoteAssetPath(v.GetAssetPath()); }
void append(std::string& out, const SdfOpaqueValue&) { out += "None"; }

// Writes `count` parts between brackets.
template <class Part>
void appendTuple(std::string& out, size_t count, const Part& part)
{
    out += '(';
    for (size_t i = 0; i < count; ++i) {
        out += i > 0 ? ", " : "";
        part(i);
    }
    out += ')';
}

#define SDF_APPEND_VEC(Type)                                                                                 \
    void append(std::string& out, const Type& v)                                                             \
    {                                                                                                        \
        appendTuple(out, Type::dimension, [&](size_t i) { append(out, v[i]); });                             \
    }
SDF_APPEND_VEC(GfVec2d)
SDF_APPEND_VEC(GfVec2f)
SDF_APPEND_VEC(GfVec2h)
SDF_APPEND_VEC(GfVec2i)
SDF_APPEND_VEC(GfVec3d)
SDF_APPEND_VEC(GfVec3f)
SDF_APPEND_VEC(GfVec3h)
SDF_APPEND_VEC(GfVec3i)
SDF_APPEND_VEC(GfVec4d)
SDF_APPEND_VEC(GfVec4f)
SDF_APPEND_VEC(GfVec4h)
SDF_APPEND_VEC(GfVec4i)
#undef SDF_APPEND_VEC

#define SDF_APPEND_QUAT(Type)                                                                                \
    void append(std::string& out, const Type& q)                                                             \
    {                                                                                                        \
        appendTuple(out, 4, [&](size_t i) { append(out, i == 0 ? q.GetReal() : q.GetImaginary()[i - 1]); }); \
    }
SDF_APPEND_QUAT(GfQuatd)
SDF_APPEND_QUAT(GfQuatf)
SDF_APPEND_QUAT(GfQuath)
#undef SDF_APPEND_QUAT

template <class Matrix>
void appendMatrix(std::string& out, int size, const Matrix& m)
{
    out += "( ";
    for (int row = 0; row < size; ++row) {
        out += row > 0 ? ", " : "";
        appendTuple(out, static_cast<size_t>(size),
                    [&](size_t i) { append(out, m[row][static_cast<int>(i)]); });
    }
    out += " )";
}
void append(std::string& out, const GfMatrix2d& m) { appendMatrix(out, 2, m); }
void append(std::string& out, const GfMatrix3d& m) { appendMatrix(out, 3, m); }
void append(std::string& out, const GfMatrix4d& m) { appendMatrix(out, 4, m); }

template <class T>
void appendScalar(std::string& out, const VtValue& value)
{
    append(out, value.UncheckedGet<T>());
}

template <class T>
void appendArray(std::string& out, const VtValue& value)
{
    out += '[';
    bool first = true;
    for (const T& item : value.UncheckedGet<VtArray<T>>()) {
        out += first ? "" : ", ";
        append(out, item);
        first = false;
    }
    out += ']';
}

typedef void (*Appender)(std::string&, const VtValue&);

const std::unordered_map<std::type_index, Appender>& appenders()
{
    static const std::unordered_map<std::type_index, Appender> table = {
#define SDF_APPENDER(Name, name, Type)                                                                       \
    {typeid(Type), &appendScalar<Type>}, {typeid(VtArray<Type>), &appendArray<Type>},
        SDF_FOR_EACH_VALUE_TYPE(SDF_APPENDER)
#undef SDF_APPENDER
    };
    return table;
}

} // namespace

std::string Sdf_ValueToText(const VtValue& value)
{
    if (value.IsEmpty() || value.IsHolding<SdfValueBlock>()) {
        return "None";
    }
    if (value.IsHolding<SdfUnregisteredValue>()) {
        const VtValue& held = value.UncheckedGet<SdfUnregisteredValue>().GetValue();
        return held.IsHolding<std::string>() ? held.UncheckedGet<std::string>() : std::string("None");
    }
    if (value.IsHolding<SdfPath>()) {
        return "<" + value.UncheckedGet<SdfPath>().GetString() + ">";
    }
    const auto appender = appenders().find(value.GetTypeid());
    if (appender == appenders().end()) {
        TF_CODING_ERROR("A value of type %s cannot be written as text", value.GetTypeName().c_str());
        return "None";
    }
    std::string text;
    appender->second(text, value);
    return text;
}

std::string Sdf_DictionaryToText(const VtDictionary& dictionary, int indent)
{
    const std::string inner(static_cast<size_t>(indent + 1) * 4, ' ');
    std::string text = "{\n";
    for (const auto& entry : dictionary) {
        const std::string key = TfIsValidIdentifier(entry.first) ? entry.first : Sdf_QuoteString(entry.first);
        if (entry.second.IsHolding<VtDictionary>()) {
            text += inner + "dictionary " + key + " = " +
                    Sdf_DictionaryToText(entry.second.UncheckedGet<VtDictionary>(), indent + 1) + "\n";
            continue;
        }
        const SdfValueTypeName type = SdfGetValueTypeNameForValue(entry.second);
        if (!type || appenders().count(entry.second.GetTypeid()) == 0) {
            TF_CODING_ERROR("The entry \"%s\" of type %s cannot be written as text", entry.first.c_str(),
                            entry.second.GetTypeName().c_str());
            continue;
        }
        text +=
            inner + type.GetAsToken().GetString() + " " + key + " = " + Sdf_ValueToText(entry.second) + "\n";
    }
    return text + inner.substr(4) + "}";
}

PXR_NAMESPACE_CLOSE_SCOPE
