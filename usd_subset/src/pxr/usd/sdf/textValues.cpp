#include "pxr/usd/sdf/textValues.h"

#include "pxr/usd/sdf/textQuoting.h"
#include "pxr/usd/sdf/textUnicode.h"

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
#include <pxr/usd/sdf/path.h>
#include <pxr/usd/sdf/schema.h>
#include <pxr/usd/sdf/types.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <typeindex>
#include <unordered_map>
#include <vector>

PXR_NAMESPACE_OPEN_SCOPE

namespace {

// Above this size not every integer is a double.
constexpr double kExactIntegers = 9007199254740992.0;

// Reads a number, or a string that says which number that is none.
template <class T>
void readReal(Sdf_TextScanner& scanner, T* out)
{
    const size_t offset = scanner.Offset();
    if (!scanner.AtString()) {
        const double real = scanner.Real("a number");
        *out = static_cast<T>(real);
        if (std::is_same_v<T, float> && std::abs(real) >= kExactIntegers) {
            // An integer is rounded once.
            scanner.GoTo(offset);
            const Sdf_TextNumber number = scanner.Number("a number");
            *out = number.kind == Sdf_TextNumber::Unsigned ? static_cast<T>(number.natural)
                   : number.kind == Sdf_TextNumber::Signed ? static_cast<T>(number.integer)
                                                           : static_cast<T>(number.real);
        }
        return;
    }
    const std::string text = scanner.String("a number");
    const T inf = std::numeric_limits<T>::infinity();
    if (text != "inf" && text != "-inf" && text != "nan") {
        scanner.Fail(offset, "\"" + text + "\"", "a number");
    }
    *out = text == "inf" ? inf : text == "-inf" ? -inf : std::numeric_limits<T>::quiet_NaN();
}

// A number with a fraction loses it, as long as what is left fits.
template <class T>
bool fromReal(double real, T* out)
{
    const double low = static_cast<double>(std::numeric_limits<T>::min()) - 1.0;
    const double high = static_cast<double>(std::numeric_limits<T>::max()) + 1.0;
    const bool fits = real > low && real < high;
    *out = fits ? static_cast<T>(real) : T(0);
    return fits;
}

template <class T>
void readInteger(Sdf_TextScanner& scanner, T* out)
{
    typedef std::numeric_limits<T> Limits;
    const size_t offset = scanner.Offset();
    const Sdf_TextNumber number = scanner.Number("an integer");
    bool fits = false;
    if (number.kind == Sdf_TextNumber::Signed) {
        fits = number.integer == 0 ||
               (Limits::is_signed && number.integer >= static_cast<int64_t>(Limits::min()));
        *out = static_cast<T>(number.integer);
    } else if (number.kind == Sdf_TextNumber::Unsigned) {
        fits = number.natural <= static_cast<uint64_t>(Limits::max());
        *out = static_cast<T>(number.natural);
    } else {
        fits = fromReal(number.real, out);
    }
    if (!fits) {
        scanner.Fail(offset, "a number that does not fit",
                     "an integer from " + std::to_string(Limits::min()) + " to " +
                         std::to_string(Limits::max()));
    }
}

void read(Sdf_TextScanner& s, int* out) { readInteger(s, out); }
void read(Sdf_TextScanner& s, unsigned int* out) { readInteger(s, out); }
void read(Sdf_TextScanner& s, unsigned char* out) { readInteger(s, out); }
void read(Sdf_TextScanner& s, int64_t* out) { readInteger(s, out); }
void read(Sdf_TextScanner& s, uint64_t* out) { readInteger(s, out); }
void read(Sdf_TextScanner& s, double* out) { readReal(s, out); }
void read(Sdf_TextScanner& s, float* out) { readReal(s, out); }
void read(Sdf_TextScanner& s, GfHalf* out)
{
    float value = 0;
    readReal(s, &value);
    *out = GfHalf(value);
}
void read(Sdf_TextScanner& s, SdfTimeCode* out)
{
    double value = 0;
    readReal(s, &value);
    *out = SdfTimeCode(value);
}

void read(Sdf_TextScanner& scanner, bool* out)
{
    const char* const what = "true, false, yes, no or a number";
    if (scanner.AtNumber()) {
        const Sdf_TextNumber number = scanner.Number(what);
        *out = number.kind == Sdf_TextNumber::Unsigned ? number.natural != 0
               : number.kind == Sdf_TextNumber::Signed ? number.integer != 0
                                                       : number.real != 0.0;
        return;
    }
    const size_t offset = scanner.Offset();
    std::string text = scanner.AtString() ? scanner.String(what) : std::string(scanner.Name(what));
    for (char& c : text) {
        c = c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
    }
    *out = text == "true" || text == "yes" || text == "1";
    if (!*out && text != "false" && text != "no" && text != "0") {
        scanner.Fail(offset, "'" + text + "'", what);
    }
}

void read(Sdf_TextScanner& scanner, std::string* out) { *out = scanner.String("a string"); }
void read(Sdf_TextScanner& scanner, TfToken* out) { *out = TfToken(scanner.String("a string")); }
void read(Sdf_TextScanner& scanner, SdfAssetPath* out)
{
    const char* const what = "an asset path such as @file.usda@";
    const size_t offset = scanner.Offset();
    if (!scanner.AtString()) {
        *out = SdfAssetPath(scanner.Asset(what));
        return;
    }
    const std::string path = scanner.String(what);
    if (Sdf_HasControl(path)) {
        scanner.Fail(offset, "a control character in an asset path", "printable characters");
    }
    *out = SdfAssetPath(path);
}
void read(Sdf_TextScanner& scanner, SdfOpaqueValue*)
{
    scanner.Fail("no value, as attributes of this type have none");
}

// Reads `count` items between brackets; what is one item where a tuple is left is another's business.
template <class Item>
void readTuple(Sdf_TextScanner& scanner, int count, const Item& item)
{
    scanner.Expect('(', "to open a tuple");
    scanner.SkipLines();
    for (int i = 0; i < count; ++i) {
        if (i > 0) {
            scanner.SkipBlanks();
            scanner.Expect(',', "between the items of a tuple");
            scanner.SkipLines();
        }
        item(i);
    }
    scanner.SkipBlanks();
    scanner.Accept(',');
    scanner.SkipLines();
    scanner.Expect(')', "to close a tuple");
}

template <class Vec>
void readVec(Sdf_TextScanner& scanner, Vec* out)
{
    typedef typename Vec::ScalarType Scalar;
    readTuple(scanner, static_cast<int>(Vec::dimension), [&](int i) {
        Scalar value{};
        read(scanner, &value);
        (*out)[static_cast<size_t>(i)] = value;
    });
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
    readTuple(scanner, 4, [&](int i) { read(scanner, &parts[i]); });
    *out = Quat(parts[0], parts[1], parts[2], parts[3]);
}
void read(Sdf_TextScanner& s, GfQuatd* out) { readQuat(s, out); }
void read(Sdf_TextScanner& s, GfQuatf* out) { readQuat(s, out); }
void read(Sdf_TextScanner& s, GfQuath* out) { readQuat(s, out); }

template <class Matrix>
void readMatrix(Sdf_TextScanner& scanner, int size, Matrix* out)
{
    readTuple(scanner, size, [&](int row) {
        readTuple(scanner, size, [&](int column) { read(scanner, &(*out)[row][column]); });
    });
}
void read(Sdf_TextScanner& s, GfMatrix2d* out) { readMatrix(s, 2, out); }
void read(Sdf_TextScanner& s, GfMatrix3d* out) { readMatrix(s, 3, out); }
void read(Sdf_TextScanner& s, GfMatrix4d* out) { readMatrix(s, 4, out); }

template <class T>
VtValue readScalar(Sdf_TextScanner& scanner)
{
    T value{};
    read(scanner, &value);
    return VtValue::Take(value);
}

// Lists inside lists are read in their order, as one array; all of a depth must have one length.
struct Shape
{
    std::vector<size_t> lengths;
    size_t itemDepth = 0;
};

template <class Item>
void readList(Sdf_TextScanner& scanner, Shape* shape, size_t depth, const Item& item)
{
    const size_t begin = scanner.Offset();
    if (depth > static_cast<size_t>(kSdf_MaxTextValueDepth)) {
        scanner.Fail("values nested less deep than " + std::to_string(kSdf_MaxTextValueDepth) + " levels");
    }
    size_t count = 0;
    scanner.List('[', ']', "in an array", [&] {
        ++count;
        if (scanner.Peek() == '[') {
            readList(scanner, shape, depth + 1, item);
            return;
        }
        if (shape->itemDepth != depth) {
            if (shape->itemDepth != 0) {
                scanner.Fail("lists and items not side by side");
            }
            shape->itemDepth = depth;
        }
        item();
    });
    shape->lengths.resize(std::max(shape->lengths.size(), depth + 1), 0);
    size_t& length = shape->lengths[depth];
    if (count == 0 || (length != 0 && length != count)) {
        scanner.Fail(begin, "a list of " + std::to_string(count) + " items",
                     count == 0 ? "at least one item"
                                : "lists of equal length, " + std::to_string(length) + " here");
    }
    length = count;
}

template <class T>
VtValue readArray(Sdf_TextScanner& scanner)
{
    VtArray<T> array;
    Sdf_TextScanner ahead = scanner;
    ahead.Expect('[', "to open an array");
    ahead.SkipBlanks();
    if (ahead.Accept(']')) {
        scanner.GoTo(ahead.Offset());
        return VtValue::Take(array);
    }
    Shape shape;
    readList(scanner, &shape, 1, [&] {
        T value{};
        read(scanner, &value);
        array.push_back(std::move(value));
    });
    return VtValue::Take(array);
}

const std::unordered_map<std::type_index, Sdf_TextType::Reader>& readers()
{
    static const std::unordered_map<std::type_index, Sdf_TextType::Reader> table = {
#define SDF_READER(Name, name, Type)                                                                         \
    {typeid(Type), &readScalar<Type>}, {typeid(VtArray<Type>), &readArray<Type>},
        SDF_FOR_EACH_VALUE_TYPE(SDF_READER)
#undef SDF_READER
    };
    return table;
}

void checkDepth(const Sdf_TextScanner& scanner, int depth)
{
    if (depth >= kSdf_MaxTextValueDepth) {
        scanner.Fail(scanner.Offset(),
                     "values nested deeper than " + std::to_string(kSdf_MaxTextValueDepth) + " levels",
                     "fewer levels");
    }
}

VtValue readPath(Sdf_TextScanner& scanner)
{
    const size_t offset = scanner.Offset();
    const std::string path(scanner.Path("a path"));
    if (!path.empty() && !SdfPath::IsValidPathString(path)) {
        scanner.Fail(offset, "<" + path + ">", "a path that is well-formed");
    }
    return VtValue(path.empty() ? SdfPath() : SdfPath(path));
}

VtDictionary readDictionary(Sdf_TextScanner& scanner, int depth)
{
    VtDictionary dictionary;
    checkDepth(scanner, depth);
    scanner.Expect('{', "to open a dictionary");
    scanner.Statements('}', "in a dictionary", [&] {
        const size_t offset = scanner.Offset();
        const bool nested = scanner.AcceptKeyword("dictionary");
        std::string typeName;
        if (!nested) {
            typeName = std::string(scanner.Name("the type of a dictionary's entry or '}'"));
            typeName += Sdf_AcceptArrayBrackets(scanner) ? "[]" : "";
        }
        const Sdf_TextType type = nested ? Sdf_TextType() : Sdf_FindTextType(typeName);
        if (!nested && !type.read) {
            scanner.Fail(offset, "'" + typeName + "'", "the name of a value type, or dictionary");
        }
        scanner.Gap("a key");
        const std::string_view word = scanner.PeekIdentifier();
        const std::string key =
            scanner.AtString() || word.empty() ? scanner.String("a key") : std::string(word);
        scanner.AcceptWord(word);
        scanner.Assign("a dictionary's key");
        dictionary[key] = nested ? VtValue(readDictionary(scanner, depth + 1)) : type.read(scanner);
    });
    return dictionary;
}

std::string recordValue(Sdf_TextScanner& scanner, int depth, bool lists);

// Lists may hold lists and tuples, tuples hold tuples alone.
std::string recordItems(Sdf_TextScanner& scanner, int depth)
{
    checkDepth(scanner, depth);
    const size_t begin = scanner.Offset();
    const char open = scanner.Peek();
    const char close = open == '(' ? ')' : ']';
    std::string text(1, open);
    scanner.List(open, close, "in a value", [&] {
        text += (text.size() > 1 ? ", " : "") + recordValue(scanner, depth + 1, open == '[');
    });
    if (text.size() == 1) {
        scanner.Fail(begin, "an empty " + std::string(open == '(' ? "tuple" : "list"), "at least one item");
    }
    return text + close;
}

std::string recordValue(Sdf_TextScanner& scanner, int depth, bool lists)
{
    const char c = scanner.Peek();
    if (c == '(' || (c == '[' && lists)) {
        return recordItems(scanner, depth);
    }
    if (scanner.AtString()) {
        return Sdf_QuoteString(scanner.String("a value"));
    }
    if (scanner.AtAsset()) {
        return Sdf_QuoteAssetPath(scanner.Asset("a value"));
    }
    if (scanner.AtNumber()) {
        const Sdf_TextNumber number = scanner.Number("a value");
        return number.kind == Sdf_TextNumber::Signed     ? std::to_string(number.integer)
               : number.kind == Sdf_TextNumber::Unsigned ? std::to_string(number.natural)
                                                         : Sdf_NumberToText(number.real);
    }
    return std::string(scanner.Name("a value"));
}

} // namespace

bool Sdf_AcceptArrayBrackets(Sdf_TextScanner& scanner)
{
    const size_t end = scanner.Offset();
    scanner.SkipBlanks();
    if (!scanner.Accept('[')) {
        scanner.GoTo(end);
        return false;
    }
    scanner.SkipBlanks();
    scanner.Expect(']', "behind '[' in a type's name");
    return true;
}

Sdf_TextType Sdf_TextTypeOf(const std::type_info& type)
{
    const auto it = readers().find(type);
    return {TfToken(), it == readers().end() ? nullptr : it->second};
}

Sdf_TextType Sdf_FindTextType(const std::string& name)
{
    const TfToken token(name);
    const SdfValueTypeName type = SdfSchema::GetInstance().FindType(token);
    return {token, type ? Sdf_TextTypeOf(type.GetDefaultValue().GetTypeid()).read : nullptr};
}

VtValue Sdf_ReadTextValue(Sdf_TextScanner& scanner, const Sdf_TextType& type)
{
    if (scanner.AtPath()) {
        return readPath(scanner);
    }
    return type.read ? type.read(scanner) : VtValue(SdfUnregisteredValue(Sdf_RecordTextValue(scanner)));
}

VtDictionary Sdf_ReadTextDictionary(Sdf_TextScanner& scanner) { return readDictionary(scanner, 0); }

std::string Sdf_RecordTextValue(Sdf_TextScanner& scanner)
{
    Sdf_TextScanner ahead = scanner;
    if (ahead.Accept('[')) {
        ahead.SkipBlanks();
        if (ahead.Accept(']')) {
            scanner.GoTo(ahead.Offset());
            return "[]";
        }
    }
    return recordValue(scanner, 0, true);
}

std::string Sdf_RecordTextList(Sdf_TextScanner& scanner) { return recordItems(scanner, 0); }

PXR_NAMESPACE_CLOSE_SCOPE
