#include "pxr/usd/usd/schemaLiteral.h"

#include <pxr/base/gf/matrix4d.h>
#include <pxr/base/gf/quatf.h>
#include <pxr/base/gf/vec2d.h>
#include <pxr/base/gf/vec2f.h>
#include <pxr/base/gf/vec2i.h>
#include <pxr/base/gf/vec3f.h>
#include <pxr/base/gf/vec4f.h>
#include <pxr/base/tf/token.h>
#include <pxr/base/vt/array.h>
#include <pxr/usd/sdf/assetPath.h>
#include <pxr/usd/sdf/timeCode.h>

#include <cstdint>
#include <cstdlib>
#include <unordered_map>
#include <vector>

PXR_NAMESPACE_OPEN_SCOPE

namespace {

using _Atoms = std::vector<std::string>;

/// The numbers and quoted texts of a literal in their order, without brackets, commas and quotes.
_Atoms _Split(const std::string& text)
{
    _Atoms atoms;
    for (size_t i = 0; i < text.size();) {
        const char c = text[i];
        if (c == '"' || c == '@') {
            const size_t end = std::min(text.find(c, i + 1), text.size());
            atoms.push_back(text.substr(i + 1, end - i - 1));
            i = end + 1;
        } else if (std::string(" ,()[]").find(c) != std::string::npos) {
            ++i;
        } else {
            const size_t end = std::min(text.find_first_of(" ,()[]", i), text.size());
            atoms.push_back(text.substr(i, end - i));
            i = end;
        }
    }
    return atoms;
}

double _Number(const std::string& atom) { return std::strtod(atom.c_str(), nullptr); }

template <class T>
struct _Reader
{
    static constexpr size_t size = T::dimension;
    static T Read(const std::string* atoms)
    {
        T vec;
        for (size_t i = 0; i < size; ++i) {
            vec[i] = static_cast<typename T::ScalarType>(_Number(atoms[i]));
        }
        return vec;
    }
};

#define USD_SCALAR_READER(T, expression)                                                                     \
    template <>                                                                                              \
    struct _Reader<T>                                                                                        \
    {                                                                                                        \
        static constexpr size_t size = 1;                                                                    \
        static T Read(const std::string* atoms) { return expression; }                                       \
    };
USD_SCALAR_READER(bool, _Number(*atoms) != 0.0)
USD_SCALAR_READER(int, static_cast<int>(_Number(*atoms)))
USD_SCALAR_READER(int64_t, static_cast<int64_t>(_Number(*atoms)))
USD_SCALAR_READER(float, static_cast<float>(_Number(*atoms)))
USD_SCALAR_READER(double, _Number(*atoms))
USD_SCALAR_READER(TfToken, TfToken(*atoms, TfToken::Immortal))
USD_SCALAR_READER(std::string, *atoms)
USD_SCALAR_READER(SdfAssetPath, SdfAssetPath(*atoms))
USD_SCALAR_READER(SdfTimeCode, SdfTimeCode(_Number(*atoms)))
#undef USD_SCALAR_READER

template <>
struct _Reader<GfQuatf>
{
    static constexpr size_t size = 4;
    static GfQuatf Read(const std::string* atoms)
    {
        return GfQuatf(_Reader<float>::Read(atoms), _Reader<GfVec3f>::Read(atoms + 1));
    }
};

template <class T>
VtValue _ReadOne(const _Atoms& atoms)
{
    return atoms.size() == _Reader<T>::size ? VtValue(_Reader<T>::Read(atoms.data())) : VtValue();
}

template <class T>
VtValue _ReadArray(const _Atoms& atoms)
{
    if (atoms.size() % _Reader<T>::size != 0) {
        return VtValue();
    }
    VtArray<T> array;
    for (size_t i = 0; i < atoms.size(); i += _Reader<T>::size) {
        array.push_back(_Reader<T>::Read(atoms.data() + i));
    }
    return VtValue(array);
}

} // namespace

VtValue Usd_ParseSchemaLiteral(const std::string& typeName, const std::string& text)
{
    static const std::unordered_map<std::string, VtValue (*)(const _Atoms&)> readers = {
        {"bool", _ReadOne<bool>},          {"int", _ReadOne<int>},
        {"float", _ReadOne<float>},        {"double", _ReadOne<double>},
        {"token", _ReadOne<TfToken>},      {"string", _ReadOne<std::string>},
        {"asset", _ReadOne<SdfAssetPath>}, {"timecode", _ReadOne<SdfTimeCode>},
        {"float2", _ReadOne<GfVec2f>},     {"float3", _ReadOne<GfVec3f>},
        {"float4", _ReadOne<GfVec4f>},     {"int2", _ReadOne<GfVec2i>},
        {"color3f", _ReadOne<GfVec3f>},    {"point3f", _ReadOne<GfVec3f>},
        {"vector3f", _ReadOne<GfVec3f>},   {"quatf", _ReadOne<GfQuatf>},
        {"int[]", _ReadArray<int>},        {"int64[]", _ReadArray<int64_t>},
        {"float[]", _ReadArray<float>},    {"token[]", _ReadArray<TfToken>},
        {"float3[]", _ReadArray<GfVec3f>}, {"vector3f[]", _ReadArray<GfVec3f>},
        {"float4[]", _ReadArray<GfVec4f>},
    };
    const auto it = readers.find(typeName);
    return it == readers.end() ? VtValue() : it->second(_Split(text));
}

PXR_NAMESPACE_CLOSE_SCOPE
