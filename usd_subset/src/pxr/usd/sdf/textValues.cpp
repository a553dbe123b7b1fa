#include "pxr/usd/sdf/textValues.h"

#include "pxr/usd/sdf/textQuoting.h"

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
#include <pxr/base/vt/array.h>
#include <pxr/base/vt/types.h>
#include <pxr/usd/sdf/schema.h>
#include <pxr/usd/sdf/types.h>

#include <cstring>
#include <limits>
#include <typeindex>
#include <unordered_map>

PXR_NAMESPACE_OPEN_SCOPE

namespace {

double readReal(Sdf_TextScanner& scanner, const char* what)
{
    if (!scanner.AtString()) {
        return scanner.Number(what).real;
    }
    // Numbers that are none are also written as strings.
    const size_t offset = scanner.Offset();
    const std::string text = scanner.String(what);
    const double inf = std::numeric_limits<double>::infinity();
    if (text == "inf" || text == "-inf") {
        return text == "inf" ? inf : -inf;
    }
    if (text != "nan") {
        scanner.Fail(offset, "\"" + text + "\"", what);
    }
    return std::numeric_limits<double>::quiet_NaN();
}

template <class T>
void readInteger(Sdf_TextScanner& scanner, T* out)
{
    scanner.Peek();
    const size_t offset = scanner.Offset();
    const Sdf_TextNumber number = scanner.Number("an integer");
    typedef std::numeric_limits<T> Limits;
    const bool negative = number.kind == Sdf_TextNumber::Signed;
    const bool minusZero = number.kind == Sdf_TextNumber::Real && number.real == 0.0;
    bool fits = minusZero;
    if (negative) {
        fits = Limits::is_signed && number.integer >= static_cast<int64_t>(Limits::min());
        *out = static_cast<T>(number.integer);
    } else if (number.kind == Sdf_TextNumber::Unsigned) {
        fits = number.natural <= static_cast<uint64_t>(Limits::max());
        *out = static_cast<T>(number.natural);
    } else {
        *out = T(0);
    }
    if (!fits) {
        scanner.Fail(offset,
                     number.kind == Sdf_TextNumber::Real ? "a number that is not an integer of 64 bits"
                                                         : "an integer that is too large",
                     "an integer from " + std::to_string(Limits::min()) + " to " +
                         std::to_string(Limits::max()));
    }
}

void read(Sdf_TextScanner& s, int* out) { readInteger(s, out); }
void read(Sdf_TextScanner& s, unsigned int* out) { readInteger(s, out); }
void read(Sdf_TextScanner& s, unsigned char* out) { readInteger(s, out); }
void read(Sdf_TextScanner& s, int64_t* out) { readInteger(s, out); }
void read(Sdf_TextScanner& s, uint64_t* out) { readInteger(s, out); }
void read(Sdf_TextScanner& s, double* out) { *out = readReal(s, "a number"); }
void read(Sdf_TextScanner& s, float* out) { *out = static_cast<float>(readReal(s, "a number")); }
void read(Sdf_TextScanner& s, GfHalf* out) { *out = GfHalf(static_cast<float>(readReal(s, "a number"))); }
void read(Sdf_TextScanner& s, SdfTimeCode* out) { *out = SdfTimeCode(readReal(s, "a number")); }

void read(Sdf_TextScanner& scanner, bool* out)
{
    const char* const what = "true, false, 1 or 0";
    scanner.Peek();
    const size_t offset = scanner.Offset();
    std::string text;
    if (scanner.AtString()) {
        text = scanner.String(what);
    } else if (scanner.AtNumber()) {
        const Sdf_TextNumber number = scanner.Number(what);
        text = number.kind == Sdf_TextNumber::Unsigned ? (number.natural ? "1" : "0") : "";
    } else {
        text = std::string(scanner.Word(what));
    }
    for (char& c : text) {
        c = c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
    }
    *out = text == "true" || text == "yes" || text == "1";
    if (!*out && text != "false" && text != "no" && text != "0") {
        scanner.Fail(offset, "'" + text + "'", what);
    }
}

void read(Sdf_TextScanner& scanner, std::string* out)
{
    *out = scanner.AtString() || scanner.PeekWord().empty() ? scanner.String("a string")
                                                            : std::string(scanner.Word("a string"));
}
void read(Sdf_TextScanner& scanner, TfToken* out)
{
    std::string text;
    read(scanner, &text);
    *out = TfToken(text);
}
void read(Sdf_TextScanner& scanner, SdfAssetPath* out)
{
    *out = SdfAssetPath(scanner.Asset("an asset path such as @file.usda@"));
}
void read(Sdf_TextScanner& scanner, SdfOpaqueValue*)
{
    scanner.Fail("no value, as attributes of this type have none");
}

// Reads `count` numbers between brackets.
template <class Scalar, class Store>
void readTuple(Sdf_TextScanner& scanner, int count, const Store& store)
{
    scanner.Expect('(', "to open a tuple");
    for (int i = 0; i < count; ++i) {
        if (i > 0) {
            scanner.Expect(',', "between the numbers of a tuple");
        }
        Scalar value;
        read(scanner, &value);
        store(i, value);
    }
    scanner.Accept(',');
    scanner.Expect(')', "to close a tuple");
}

template <class Vec>
void readVec(Sdf_TextScanner& scanner, Vec* out)
{
    typedef typename Vec::ScalarType Scalar;
    readTuple<Scalar>(scanner, static_cast<int>(Vec::dimension),
                      [out](int i, const Scalar& v) { (*out)[static_cast<size_t>(i)] = v; });
}

#define SDF_READ_VEC(Type)                                                                                   \
    void read(Sdf_TextScanner& s, Type* out) { readVec(s, out); }
SDF_READ_VEC(GfVec2d)
SDF_READ_VEC(GfVec2f)
SDF_READ_VEC(GfVec2h)
SDF_READ_VEC(GfVec2i)
SDF_READ_VEC(GfVec3d)
SDF_READ_VEC(GfVec3f)
SDF_READ_VEC(GfVec3h)
SDF_READ_VEC(GfVec3i)
SDF_READ_VEC(GfVec4d)
SDF_READ_VEC(GfVec4f)
SDF_READ_VEC(GfVec4h)
SDF_READ_VEC(GfVec4i)
#undef SDF_READ_VEC

template <class Quat>
void readQuat(Sdf_TextScanner& scanner, Quat* out)
{
    typedef typename Quat::ScalarType Scalar;
    Scalar parts[4];
    readTuple<Scalar>(scanner, 4, [&parts](int i, const Scalar& v) { parts[i] = v; });
    *out = Quat(parts[0], parts[1], parts[2], parts[3]);
}
void read(Sdf_TextScanner& s, GfQuatd* out) { readQuat(s, out); }
void read(Sdf_TextScanner& s, GfQuatf* out) { readQuat(s, out); }
void read(Sdf_TextScanner& s, GfQuath* out) { readQuat(s, out); }

template <class Matrix>
void readMatrix(Sdf_TextScanner& scanner, int size, Matrix* out)
{
    scanner.Expect('(', "to open a matrix");
    for (int row = 0; row < size; ++row) {
        if (row > 0) {
            scanner.Expect(',', "between the rows of a matrix");
        }
        readTuple<double>(scanner, size, [out, row](int column, double v) { (*out)[row][column] = v; });
    }
    scanner.Accept(',');
    scanner.Expect(')', "to close a matrix");
}
void read(Sdf_TextScanner& s, GfMatrix2d* out) { readMatrix(s, 2, out); }
void read(Sdf_TextScanner& s, GfMatrix3d* out) { readMatrix(s, 3, out); }
void read(Sdf_TextScanner& s, GfMatrix4d* out) { readMatrix(s, 4, out); }

template <class T>
VtValue readScalar(Sdf_TextScanner& scanner)
{
    T value{};
    read(scanner, &value);
    return VtValue(value);
}

template <class T>
VtValue readArray(Sdf_TextScanner& scanner)
{
    VtArray<T> array;
    scanner.List('[', ']', "in an array", [&] {
        T value{};
        read(scanner, &value);
        array.push_back(value);
    });
    return VtValue::Take(array);
}

typedef VtValue (*Reader)(Sdf_TextScanner&);

const std::unordered_map<std::type_index, Reader>& readers()
{
    static const std::unordered_map<std::type_index, Reader> table = {
#define SDF_READER(Name, name, Type)                                                                         \
    {typeid(Type), &readScalar<Type>}, {typeid(VtArray<Type>), &readArray<Type>},
        SDF_FOR_EACH_VALUE_TYPE(SDF_READER)
#undef SDF_READER
    };
    return table;
}

} // namespace

double Sdf_ReadTextDouble(Sdf_TextScanner& scanner, const char* what) { return readReal(scanner, what); }

bool Sdf_CanReadTextValue(const std::type_info& type) { return readers().count(type) > 0; }

VtValue Sdf_ReadTextValue(Sdf_TextScanner& scanner, const std::type_info& type)
{
    return readers().at(type)(scanner);
}

std::string Sdf_ReadTextTypeName(Sdf_TextScanner& scanner, const char* what)
{
    std::string name(scanner.Word(what));
    if (scanner.Accept('[')) {
        scanner.Expect(']', "behind '[' in a type's name");
        name += "[]";
    }
    return name;
}

VtDictionary Sdf_ReadTextDictionary(Sdf_TextScanner& scanner, int depth)
{
    VtDictionary dictionary;
    scanner.Peek();
    const size_t begin = scanner.Offset();
    scanner.Expect('{', "to open a dictionary");
    if (depth >= kSdf_MaxTextValueDepth) {
        scanner.Fail(begin, "values nested deeper than " + std::to_string(kSdf_MaxTextValueDepth),
                     "fewer levels");
    }
    scanner.Statements('}', "in a dictionary", [&] {
        scanner.Peek();
        const size_t offset = scanner.Offset();
        const std::string typeName = Sdf_ReadTextTypeName(scanner, "the type of a dictionary's entry or '}'");
        const std::string key =
            scanner.AtString() ? scanner.String("a key") : std::string(scanner.Word("a key"));
        scanner.Expect('=', "behind a dictionary's key");
        if (typeName == "dictionary") {
            dictionary[key] = VtValue(Sdf_ReadTextDictionary(scanner, depth + 1));
            return;
        }
        const SdfValueTypeName type = SdfSchema::GetInstance().FindType(typeName);
        if (!type || !Sdf_CanReadTextValue(type.GetDefaultValue().GetTypeid())) {
            scanner.Fail(offset, "'" + typeName + "'", "the name of a value type, or dictionary");
        }
        dictionary[key] = Sdf_ReadTextValue(scanner, type.GetDefaultValue().GetTypeid());
    });
    return dictionary;
}

std::string Sdf_RecordTextValue(Sdf_TextScanner& scanner, int depth)
{
    const char c = scanner.Peek();
    const size_t begin = scanner.Offset();
    if (depth >= kSdf_MaxTextValueDepth) {
        scanner.Fail(begin, "values nested deeper than " + std::to_string(kSdf_MaxTextValueDepth),
                     "fewer levels");
    }
    if (c == '(' || c == '[') {
        std::string text(1, c);
        scanner.List(c, c == '(' ? ')' : ']', "in a value", [&] {
            text += (text.size() > 1 ? ", " : "") + Sdf_RecordTextValue(scanner, depth + 1);
        });
        return text + (c == '(' ? ')' : ']');
    }
    if (scanner.AtString()) {
        return Sdf_QuoteString(scanner.String("a value"));
    }
    if (scanner.AtAsset()) {
        return Sdf_QuoteAssetPath(scanner.Asset("a value"));
    }
    if (scanner.AtPath()) {
        return "<" + std::string(scanner.Path("a value")) + ">";
    }
    if (scanner.AtNumber()) {
        const Sdf_TextNumber number = scanner.Number("a value");
        return number.kind == Sdf_TextNumber::Signed     ? std::to_string(number.integer)
               : number.kind == Sdf_TextNumber::Unsigned ? std::to_string(number.natural)
                                                         : Sdf_NumberToText(number.real);
    }
    return std::string(scanner.Word("a value"));
}

PXR_NAMESPACE_CLOSE_SCOPE
