#include "../sdf/support.h"
#include "counting_allocator.h"
#include "malformed_text.h"

#include <functional>

using namespace sdf_tests;

namespace {

/// A text that is made to exhaust its reader, the error that it ends in (none where it can be read), and how
/// many bytes reading may hold for each byte of it.
struct Hostile
{
    const char* name;
    std::function<std::string()> text;
    const char* error;
    size_t bytesPerByte = 4;
};

std::string inPrim(const std::string& statement) { return "#usda 1.0\ndef \"P\"\n{\n" + statement + "\n}\n"; }

std::string numbered(size_t count, const std::function<std::string(const std::string&)>& item)
{
    std::string text;
    for (size_t i = 0; i < count; ++i) {
        text += item(std::to_string(i));
    }
    return text;
}

const char* const kDeepPrims = "prims nested deeper than 1000 levels, expected fewer levels";
const char* const kDeepValues = "values nested deeper than 64 levels, expected fewer levels";
constexpr size_t kMillion = 1000000;

std::vector<Hostile> deepTexts()
{
    return {
        {"prims", [] { return "#usda 1.0\n" + repeated("def \"a\" {\n", kMillion); }, kDeepPrims},
        {"prims on one line", [] { return "#usda 1.0\n" + repeated("def \"a\"{", kMillion); }, kDeepPrims},
        {"variants", [] { return inPrim(repeated("variantSet \"v\" = {\n\"a\" {\n", kMillion)); },
         "variants nested deeper than 1000 levels, expected fewer levels"},
        {"prims in variants",
         [] { return inPrim(repeated("variantSet \"v\" = {\n\"a\" {\ndef \"b\" {\n", kMillion)); },
         kDeepPrims},
        {"dictionaries",
         [] { return "#usda 1.0\n(customLayerData = {" + repeated("dictionary a = {", kMillion); },
         kDeepValues},
        {"unknown lists", [] { return "#usda 1.0\n(a = " + repeated("[", kMillion); }, kDeepValues},
        {"unknown tuples", [] { return "#usda 1.0\n(a = " + repeated("(", kMillion); }, kDeepValues},
        {"unknown lists of tuples", [] { return "#usda 1.0\n(a = " + repeated("[(", kMillion); },
         "expected a value"},
        {"unknown list edits", [] { return "#usda 1.0\n(add a = " + repeated("[", kMillion); }, kDeepValues},
        {"lists", [] { return inPrim("int[] x = " + repeated("[", kMillion)); },
         "expected values nested less deep than 64 levels"},
        {"closed lists",
         [] { return inPrim("int[] x = " + repeated("[", kMillion) + "1" + repeated("]", kMillion)); },
         "expected values nested less deep than 64 levels"},
        {"tuples", [] { return inPrim("float3 x = " + repeated("(", kMillion)); }, "expected a number"},
        {"unknown type", [] { return inPrim("foo x = " + repeated("[", kMillion)); }, kDeepValues},
        {"path of prims", [] { return inPrim("rel x = </a" + repeated("/a", kMillion / 4) + ">"); }, nullptr,
         400},
        {"path of parents", [] { return inPrim("rel x = <.." + repeated("/..", kMillion / 4) + ">"); },
         "expected the path of a prim or property, not in a variant", 400},
        {"path of variants", [] { return inPrim("rel x = </a" + repeated("{v=x}", kMillion / 4) + ">"); },
         "expected the path of a prim or property, not in a variant", 400},
        {"path of targets", [] { return inPrim("rel x = </a" + repeated(".r[/a", kMillion / 4) + ">"); },
         "expected the path of a target that is well-formed", 400},
        {"splines", [] { return inPrim("double x.spline = {" + repeated("{", kMillion)); },
         "expected a time, bezier, hermite, pre, post, loop or '}'"},
        {"closing braces", [] { return "#usda 1.0\n" + repeated("}", kMillion); },
         "expected def, over, class or reorder rootPrims"},
        {"comments", [] { return "#usda 1.0\n" + repeated("/* ", kMillion); }, "expected '*/'"},
    };
}

std::vector<Hostile> wideTexts()
{
    constexpr size_t kMany = 20000;
    return {
        {"line comment", [] { return "#usda 1.0\n# " + std::string(8 << 20, 'x'); }, nullptr},
        {"block comments", [] { return "#usda 1.0\n" + repeated("/**/", kMillion); }, nullptr},
        {"blank lines", [] { return "#usda 1.0\n" + repeated("\n", 4 * kMillion); }, nullptr},
        {"header", [] { return "#usda 1.0" + std::string(8 << 20, ' '); }, nullptr},
        {"string without an end", [] { return "#usda 1.0\n(doc = \"" + std::string(8 << 20, 'x'); },
         "expected the closing \""},
        {"string", [] { return "#usda 1.0\n(doc = \"" + std::string(8 << 20, 'x') + "\")"; }, nullptr},
        {"escapes", [] { return "#usda 1.0\n(doc = \"" + repeated("\\\\", 2 * kMillion) + "\")"; }, nullptr},
        {"quotes", [] { return "#usda 1.0\n(doc = " + repeated("\"", 4 * kMillion); }, "expected"},
        {"marks", [] { return inPrim("asset x = " + repeated("@", 4 * kMillion)); }, "expected"},
        {"name", [] { return "#usda 1.0\ndef \"" + std::string(4 << 20, 'a') + "\" {}\n"; }, nullptr, 16},
        {"type", [] { return inPrim(std::string(4 << 20, 'a') + " x"); }, nullptr, 16},
        {"property", [] { return inPrim("int " + repeated("a:", kMillion) + "b"); }, nullptr, 16},
        {"digits", [] { return inPrim("double x = " + std::string(4 << 20, '9')); }, nullptr},
        {"exponent", [] { return inPrim("double x = 1e" + std::string(4 << 20, '9')); }, nullptr},
        {"numbers", [] { return inPrim("float[] x = [" + repeated("0.125, ", kMillion) + "]"); }, nullptr},
        {"integers", [] { return inPrim("int[] x = [" + repeated("1,", 4 * kMillion) + "]"); }, nullptr, 16},
        {"strings", [] { return inPrim("string[] x = [" + repeated("\"\",", kMillion) + "]"); }, nullptr, 64},
        {"points", [] { return inPrim("point3f[] x = [" + repeated("(nan, inf, -inf), ", kMillion) + "]"); },
         nullptr},
        {"count that no array has", [] { return inPrim("float[1152921504606846976] x = [1]"); },
         "expected ']' behind '[' in a type's name"},
        {"prims",
         [] {
             return "#usda 1.0\n" + numbered(kMany, [](const std::string& i) {
                        return "def Sphere \"p" + i + "\" {\ndouble radius = nan\n}\n";
                    });
         },
         nullptr, 40},
        {"one prim many times", [] { return "#usda 1.0\n" + repeated("def \"a\" {}\n", kMillion); },
         "expected each prim once"},
        {"properties",
         [] { return inPrim(numbered(kMany, [](const std::string& i) { return "int a" + i + " = 1\n"; })); },
         nullptr, 60},
        {"one property many times", [] { return inPrim(repeated("int a = 1\n", kMillion)); }, nullptr},
        {"variant sets",
         [] {
             return inPrim(numbered(kMany, [](const std::string& i) {
                 return "variantSet \"v" + i + "\" = {\n\"a\" {\n}\n}\n";
             }));
         },
         nullptr, 60},
        {"variants",
         [] {
             return inPrim("variantSet \"v\" = {\n" +
                           numbered(kMany, [](const std::string& i) { return "\"a" + i + "\" {\n}\n"; }) +
                           "}");
         },
         nullptr, 100},
        {"targets",
         [] {
             return inPrim("rel x = [" +
                           numbered(kMany, [](const std::string& i) { return "</a" + i + ">, "; }) + "]");
         },
         nullptr, 60},
        {"references",
         [] {
             return "#usda 1.0\ndef \"P\" (references = [" +
                    numbered(kMany, [](const std::string& i) { return "@" + i + ".usda@, "; }) +
                    "]\n) {\n}\n";
         },
         nullptr, 60},
        {"sublayers",
         [] {
             return "#usda 1.0\n(subLayers = [" +
                    numbered(kMany, [](const std::string& i) { return "@" + i + ".usda@, "; }) + "])\n";
         },
         nullptr, 60},
        {"entries",
         [] {
             return "#usda 1.0\n(customLayerData = {\n" +
                    numbered(kMany, [](const std::string& i) { return "int a" + i + " = 1\n"; }) + "})\n";
         },
         nullptr, 60},
        {"unknown fields",
         [] {
             return "#usda 1.0\n(\n" +
                    numbered(2000, [](const std::string& i) { return "a" + i + " = 1\n"; }) + ")\n";
         },
         nullptr, 200},
        {"time samples",
         [] {
             return inPrim("double x.timeSamples = {" +
                           numbered(kMany, [](const std::string& i) { return i + ": 1, "; }) + "}");
         },
         nullptr, 60},
        {"edits of one list",
         [] {
             return inPrim(
                 numbered(kMany, [](const std::string& i) { return "prepend rel x = </a" + i + ">\n"; }));
         },
         nullptr, 20},
        {"variant selections",
         [] {
             return "#usda 1.0\ndef \"P\" (\n" +
                    numbered(
                        300,
                        [](const std::string& i) { return "variants = {\nstring a" + i + " = \"x\"\n}\n"; }) +
                    ")\n{\n}\n";
         },
         nullptr, 100},
    };
}

void expectBounded(const Hostile& hostile)
{
    SCOPED_TRACE(hostile.name);
    const std::string text = hostile.text();
    std::vector<std::string> errors;
    size_t peak = 0;
    {
        const SdfLayerRefPtr layer = SdfLayer::CreateAnonymous("hostile.usda");
        const AllocationCount count;
        Errors mark;
        layer->ImportFromString(text);
        errors = mark.Take();
        peak = count.PeakBytes();
    }
    if (hostile.error) {
        ASSERT_EQ(errors.size(), 1u);
        EXPECT_NE(errors[0].find(hostile.error), std::string::npos) << errors[0].substr(0, 300);
        EXPECT_LT(errors[0].size(), 2 * text.size() + 1000);
    } else {
        EXPECT_EQ(errors, std::vector<std::string>());
    }
    if (AllocationCount::IsCounting()) {
        EXPECT_LT(peak, hostile.bytesPerByte * text.size() + (16u << 20))
            << "text of " << text.size() << " bytes";
    }
}

} // namespace

TEST(HostileText, OfGreatDepthIsOneErrorInBoundedMemory)
{
    for (const Hostile& hostile : deepTexts()) {
        expectBounded(hostile);
    }
}

TEST(HostileText, OfGreatWidthIsReadInMemoryProportionalToIt)
{
    for (const Hostile& hostile : wideTexts()) {
        expectBounded(hostile);
    }
}

TEST(HostileText, CanBeWrittenAgainWhereItCanBeRead)
{
    const SdfLayerRefPtr layer = SdfLayer::CreateAnonymous("deep.usda");
    ASSERT_TRUE(
        layer->ImportFromString("#usda 1.0\n" + repeated("def \"a\" {\n", 1000) + repeated("}\n", 1000)));
    const SdfLayerRefPtr copy = SdfLayer::CreateAnonymous("copy.usda");
    EXPECT_TRUE(copy->ImportFromString(Text(layer)));
    EXPECT_EQ(Text(copy), Text(layer));
}
