#include "support.h"

#include <pxr/base/gf/vec3f.h>
#include <pxr/base/vt/array.h>
#include <pxr/base/vt/types.h>
#include <pxr/usd/sdf/attributeSpec.h>
#include <pxr/usd/sdf/primSpec.h>
#include <pxr/usd/sdf/relationshipSpec.h>
#include <pxr/usd/sdf/schema.h>

#include <limits>
#include <random>

using namespace sdf_tests;

namespace {

// A layer in the layout that the writer gives it, so that reading and writing it changes nothing.
const char* const kWritten = R"(#usda 1.0
(
    "a comment"
    customLayerData = {
        dictionary inner = {
            int[] numbers = [1, 2]
        }
        string "odd key" = 'with "quotes"'
    }
    defaultPrim = "World"
    doc = """first
second"""
    subLayers = [
        @a.usda@ (offset = 10; scale = 2),
        @@@b@c.usda@@@
    ]
    unknown = [1, (2.5, "x")]
    upAxis = "Y"
)

reorder rootPrims = ["Class", "World"]

def Xform "World" (
    "about the world"
    active = false
    prepend apiSchemas = ["A", "B"]
    assetInfo = {
        asset identifier = @x.usda@
    }
    delete inherits = </Old>
    append inherits = [
        </Class>,
        </Other>
    ]
    kind = "group"
    payload = None
    permission = private
    prefixSubstitutions = {
        "$L": "Left"
    }
    prepend references = @a.usda@</A> (offset = 1)
    specializes = </Base>
    variants = {
        string shade = "red"
    }
    prepend variantSets = "shade"
)
{
    reorder properties = ["b", "a"]
    custom uniform token a = "x" (
        doc = "d"
        interpolation = "vertex"
    )
    float b = 0.1
    float b.timeSamples = {
        1: 0.5,
        2.5: None,
    }
    float c.connect = </World.out>
    prepend float d.connect = [
        </World.x>,
        </World.y>,
    ]
    rel empty = None
    custom rel one = </A>
    point3f[] points = [(1, 2, 3), (0.1, -2.5e-7, 1e20)]
    prepend rel several = [
        </A>,
        </B.x>,
    ]
    int z = None

    def Sphere "Ball"
    {
    }

    over "Box"
    {
    }
    variantSet "shade" = {
        "green" {

        }
        "red" (
            kind = "prop"
        ) {
            int x = 1

            def "Inside"
            {
            }

        }
    }
}

class "Class"
{
}

)";

template <class T>
void expectRoundTrip(const char* type, T value)
{
    const SdfLayerRefPtr layer = SdfLayer::CreateAnonymous("a.usda");
    const SdfPrimSpecHandle prim = SdfPrimSpec::New(layer, "P", SdfSpecifierDef);
    const SdfValueTypeName typeName = SdfSchema::GetInstance().FindType(type);
    SdfAttributeSpec::New(prim, "x", typeName)->SetDefaultValue(VtValue(value));
    const SdfLayerRefPtr copy = SdfLayer::CreateAnonymous("b.usda");
    ASSERT_TRUE(copy->ImportFromString(Text(layer)));
    EXPECT_EQ(copy->GetField(SdfPath("/P.x"), SdfFieldKeys->Default), VtValue(value)) << Text(layer);
}

} // namespace

TEST(TextWriter, WritesWhatItReads)
{
    const SdfLayerRefPtr layer = SdfLayer::CreateAnonymous("a.usda");
    ASSERT_TRUE(layer->ImportFromString(kWritten));
    EXPECT_EQ(Text(layer), kWritten);
}

TEST(TextWriter, KeepsSplinesAsTheyStand)
{
    const char* const text =
        "#usda 1.0\n\ndef \"P\"\n{\n    double x.spline = {\n        bezier,\n        pre: held,\n"
        "        1: 5; post curve (1, 2),\n        2: 6; { string a = \"}\" },\n    }\n}\n\n";
    const SdfLayerRefPtr layer = SdfLayer::CreateAnonymous("a.usda");
    ASSERT_TRUE(layer->ImportFromString(text));
    EXPECT_EQ(Text(layer), text);
}

TEST(TextWriter, WritesAnEmptyLayer)
{
    EXPECT_EQ(Text(SdfLayer::CreateAnonymous("a.usda")), "#usda 1.0\n\n");
}

TEST(TextWriter, KeepsEveryFloatExactly)
{
    std::mt19937 random(7);
    for (int i = 0; i < 2000; ++i) {
        const uint32_t bits = random();
        float value = 0;
        std::memcpy(&value, &bits, sizeof value);
        if (value == value) {
            expectRoundTrip("float", value);
        }
    }
    expectRoundTrip("double", 0.1);
    expectRoundTrip("double", std::numeric_limits<double>::denorm_min());
    expectRoundTrip("double", std::numeric_limits<double>::max());
    expectRoundTrip("double", -std::numeric_limits<double>::infinity());
    expectRoundTrip("half", GfHalf(0.333f));
}

TEST(TextWriter, KeepsStringsWithAnyCharacter)
{
    std::string every;
    for (int c = 1; c < 128; ++c) {
        every += static_cast<char>(c);
    }
    expectRoundTrip("string", every);
    expectRoundTrip("string", std::string("both ' and \""));
    expectRoundTrip("string", std::string("ends with \\"));
    expectRoundTrip("string", std::string("\"\"\"\n\"\"\""));
    expectRoundTrip("string", std::string("gr\xC3\xBC\xC3\x9F"));
    expectRoundTrip("asset", SdfAssetPath("a@@@b@"));
    expectRoundTrip("string[]", VtStringArray{"", "a,b", "]"});
}

TEST(TextWriter, WritesOneSpecIntoAStream)
{
    const auto layer = Parse("def \"A\" {\n def \"B\" { int x = 1; }\n}\n");
    std::ostringstream text;
    ASSERT_TRUE(layer->GetPrimAtPath(SdfPath("/A/B"))->WriteToStream(text));
    EXPECT_EQ(text.str(), "def \"B\"\n{\n    int x = 1\n}\n");
}

TEST(TextWriter, WritesDeepScenesWithoutRecursion)
{
    const SdfLayerRefPtr layer = SdfLayer::CreateAnonymous("a.usda");
    SdfPath path = SdfPath::AbsoluteRootPath();
    for (int i = 0; i < 2000; ++i) {
        path = path.AppendChild(TfToken("A"));
    }
    ASSERT_TRUE(SdfJustCreatePrimInLayer(layer, path));
    const std::string text = Text(layer);
    EXPECT_EQ(static_cast<size_t>(std::count(text.begin(), text.end(), '{')), 2000u);
    layer->Clear();
    EXPECT_TRUE(layer->IsEmpty());
}
