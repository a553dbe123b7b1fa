#include "support.h"

#include <pxr/base/gf/matrix4d.h>
#include <pxr/base/gf/quatf.h>
#include <pxr/base/gf/vec2i.h>
#include <pxr/base/gf/vec3f.h>
#include <pxr/base/vt/array.h>
#include <pxr/base/vt/types.h>
#include <pxr/usd/sdf/attributeSpec.h>
#include <pxr/usd/sdf/primSpec.h>
#include <pxr/usd/sdf/relationshipSpec.h>
#include <pxr/usd/sdf/schema.h>
#include <pxr/usd/sdf/variantSetSpec.h>
#include <pxr/usd/sdf/variantSpec.h>

#include <cmath>
#include <limits>

using namespace sdf_tests;

namespace {

VtValue defaultOf(const SdfLayerRefPtr& layer, const char* path)
{
    return layer->GetField(SdfPath(path), SdfFieldKeys->Default);
}

// Reads one attribute of a prim and returns its default.
VtValue valueOf(const std::string& declaration)
{
    const SdfLayerRefPtr layer = Parse("def \"P\"\n{\n    " + declaration + "\n}\n");
    return layer ? defaultOf(layer, "/P.x") : VtValue();
}

} // namespace

TEST(TextReader, ReadsLayerMetadata)
{
    const auto layer = Parse(R"((
    "a comment"
    defaultPrim = "World"
    doc = """first
second"""
    startTimeCode = 1
    endTimeCode = 24.5
    timeCodesPerSecond = 48
    framesPerSecond = 25
    framePrecision = 5
    owner = "me"
    sessionOwner = "you"
    upAxis = "Z"
    metersPerUnit = 0.01
    customLayerData = {
        string name = "n"
        dictionary inner = { int count = 3 }
    }
    expressionVariables = { string WHICH = "a" }
    subLayers = [
        @./a.usda@,
        @b.usda@ (offset = 10; scale = 2)
    ]
    relocates = { </A/B>: </A/C>, </A/D>: <> }
)
)");
    ASSERT_TRUE(layer);
    EXPECT_EQ(layer->GetComment(), "a comment");
    EXPECT_EQ(layer->GetDefaultPrim(), "World");
    EXPECT_EQ(layer->GetDefaultPrimAsPath(), SdfPath("/World"));
    EXPECT_EQ(layer->GetDocumentation(), "first\nsecond");
    EXPECT_EQ(layer->GetStartTimeCode(), 1.0);
    EXPECT_EQ(layer->GetEndTimeCode(), 24.5);
    EXPECT_EQ(layer->GetTimeCodesPerSecond(), 48.0);
    EXPECT_EQ(layer->GetFramesPerSecond(), 25.0);
    EXPECT_EQ(layer->GetFramePrecision(), 5);
    EXPECT_EQ(layer->GetOwner(), "me");
    EXPECT_EQ(layer->GetSessionOwner(), "you");
    const SdfPath& root = SdfPath::AbsoluteRootPath();
    EXPECT_EQ(layer->GetFieldAs<TfToken>(root, TfToken("upAxis")), "Z");
    EXPECT_EQ(layer->GetFieldAs<double>(root, TfToken("metersPerUnit")), 0.01);
    EXPECT_EQ(layer->GetFieldDictValueByKey(root, SdfFieldKeys->CustomLayerData, TfToken("inner:count")),
              VtValue(3));
    EXPECT_EQ(layer->GetExpressionVariables()["WHICH"], VtValue(std::string("a")));
    EXPECT_EQ(std::vector<std::string>(layer->GetSubLayerPaths()),
              (std::vector<std::string>{"./a.usda", "b.usda"}));
    EXPECT_EQ(layer->GetSubLayerOffset(0), SdfLayerOffset());
    EXPECT_EQ(layer->GetSubLayerOffset(1), SdfLayerOffset(10, 2));
    EXPECT_EQ(layer->GetRelocates(),
              (SdfRelocates{{SdfPath("/A/B"), SdfPath("/A/C")}, {SdfPath("/A/D"), SdfPath()}}));
}

TEST(TextReader, FallsBackToFramesPerSecond)
{
    EXPECT_EQ(Parse("(framesPerSecond = 30)\n")->GetTimeCodesPerSecond(), 30.0);
    EXPECT_EQ(Parse("")->GetTimeCodesPerSecond(), 24.0);
}

TEST(TextReader, ReadsSpecifiersTypesAndNesting)
{
    const auto layer = Parse(R"(
def Xform "A" { over "B" { class Mesh "C" {
}
}
}
class "D"
{
}
)");
    ASSERT_TRUE(layer);
    EXPECT_EQ(layer->GetRootPrims().keys(), (std::vector<std::string>{"A", "D"}));
    EXPECT_EQ(layer->GetPrimAtPath(SdfPath("/A"))->GetTypeName(), "Xform");
    EXPECT_EQ(layer->GetPrimAtPath(SdfPath("/A/B"))->GetSpecifier(), SdfSpecifierOver);
    EXPECT_EQ(layer->GetPrimAtPath(SdfPath("/A/B/C"))->GetSpecifier(), SdfSpecifierClass);
    EXPECT_EQ(layer->GetPrimAtPath(SdfPath("/D"))->GetTypeName(), TfToken());
    EXPECT_FALSE(layer->GetPrimAtPath(SdfPath("/E")));
}

TEST(TextReader, ReadsPrimMetadata)
{
    const auto layer = Parse(R"(
def "P" (
    "comment"
    active = false
    instanceable = true
    hidden = true
    kind = "component"
    permission = private
    symmetryFunction = mirror
    prefixSubstitutions = { "$L": "Left" }
    assetInfo = { asset identifier = @x.usda@ }
    customData = { double[] weights = [1, 2.5] }
    prepend apiSchemas = ["A", "B"]
    delete apiSchemas = ["C"]
    inactiveIds = [3, 4]
    variants = { string shade = "red" }
    prepend variantSets = ["shade", "size"]
    unknownNumber = (1, 2.50, "three")
    unknownDictionary = { int a = 1 }
    append unknownList = ["x"]
)
{
}
)");
    ASSERT_TRUE(layer);
    const SdfPrimSpecHandle prim = layer->GetPrimAtPath(SdfPath("/P"));
    EXPECT_EQ(prim->GetComment(), "comment");
    EXPECT_FALSE(prim->GetActive());
    EXPECT_TRUE(prim->GetInstanceable());
    EXPECT_TRUE(prim->GetHidden());
    EXPECT_EQ(prim->GetKind(), "component");
    EXPECT_EQ(prim->GetPermission(), SdfPermissionPrivate);
    EXPECT_EQ(prim->GetSymmetryFunction(), "mirror");
    EXPECT_EQ(prim->GetPrefixSubstitutions()["$L"], VtValue(std::string("Left")));
    EXPECT_EQ(prim->GetAssetInfo().items()["identifier"], VtValue(SdfAssetPath("x.usda")));
    EXPECT_EQ(prim->GetCustomData().items()["weights"], VtValue(VtArray<double>{1.0, 2.5}));
    SdfTokenListOp schemas;
    schemas.SetPrependedItems({TfToken("A"), TfToken("B")});
    schemas.SetDeletedItems({TfToken("C")});
    EXPECT_EQ(prim->GetField(TfToken("apiSchemas")), VtValue(schemas));
    EXPECT_EQ(prim->GetField(TfToken("inactiveIds")), VtValue(SdfInt64ListOp::CreateExplicit({3, 4})));
    EXPECT_EQ(prim->GetVariantSelections().items().at("shade"), "red");
    EXPECT_EQ(prim->GetVariantSetNameList().GetAppliedItems(), (std::vector<std::string>{"shade", "size"}));
    EXPECT_EQ(prim->GetField(TfToken("unknownNumber")), VtValue(SdfUnregisteredValue("(1, 2.5, \"three\")")));
    EXPECT_EQ(prim->GetField(TfToken("unknownDictionary")),
              VtValue(SdfUnregisteredValue(VtDictionary{{"a", VtValue(1)}})));
    SdfUnregisteredValueListOp unknown;
    unknown.SetAppendedItems({SdfUnregisteredValue("\"x\"")});
    EXPECT_EQ(prim->GetField(TfToken("unknownList")), VtValue(SdfUnregisteredValue(unknown)));
}

TEST(TextReader, ReadsArcs)
{
    const auto layer = Parse(R"(
def "P" (
    references = [
        @a.usda@</A> (offset = 1; scale = 2),
        </Inner> (customData = { int n = 1 }),
        @b.usda@
    ]
    prepend payload = @@@odd@name.usda@@@
    inherits = </Class>
    add specializes = [<../Base>]
    relocates = { <Old> : <New> }
)
{
}
def "Q" (
    references = None
)
{
}
)");
    ASSERT_TRUE(layer);
    const SdfPrimSpecHandle prim = layer->GetPrimAtPath(SdfPath("/P"));
    const std::vector<SdfReference> references = prim->GetReferenceList().GetExplicitItems();
    ASSERT_EQ(references.size(), 3u);
    EXPECT_EQ(references[0], SdfReference("a.usda", SdfPath("/A"), SdfLayerOffset(1, 2)));
    EXPECT_EQ(references[1], SdfReference("", SdfPath("/Inner"), SdfLayerOffset(), {{"n", VtValue(1)}}));
    EXPECT_EQ(references[2], SdfReference("b.usda"));
    EXPECT_EQ(prim->GetPayloadList().GetPrependedItems(),
              std::vector<SdfPayload>{SdfPayload("odd@name.usda")});
    EXPECT_EQ(prim->GetInheritPathList().GetExplicitItems(), std::vector<SdfPath>{SdfPath("/Class")});
    EXPECT_EQ(prim->GetSpecializesList().GetAddedItems(), std::vector<SdfPath>{SdfPath("/Base")});
    EXPECT_EQ(prim->GetRelocates().items().at(SdfPath("/P/Old")), SdfPath("/P/New"));
    EXPECT_TRUE(layer->GetPrimAtPath(SdfPath("/Q"))->GetReferenceList().IsExplicit());
    EXPECT_TRUE(layer->GetPrimAtPath(SdfPath("/Q"))->HasReferences());
    EXPECT_EQ(layer->GetExternalReferences(),
              (std::set<std::string>{"", "a.usda", "b.usda", "odd@name.usda"}));
}

TEST(TextReader, ReadsEveryScalarType)
{
    EXPECT_EQ(valueOf("bool x = 1"), VtValue(true));
    EXPECT_EQ(valueOf("bool x = false"), VtValue(false));
    EXPECT_EQ(valueOf("uchar x = 255"), VtValue(static_cast<unsigned char>(255)));
    EXPECT_EQ(valueOf("int x = -2147483648"), VtValue(std::numeric_limits<int>::min()));
    EXPECT_EQ(valueOf("uint x = 4294967295"), VtValue(4294967295u));
    EXPECT_EQ(valueOf("int64 x = -9223372036854775808"), VtValue(std::numeric_limits<int64_t>::min()));
    EXPECT_EQ(valueOf("uint64 x = 18446744073709551615"), VtValue(std::numeric_limits<uint64_t>::max()));
    EXPECT_EQ(valueOf("half x = 0.5"), VtValue(GfHalf(0.5f)));
    EXPECT_EQ(valueOf("float x = 1e-3"), VtValue(0.001f));
    EXPECT_EQ(valueOf("double x = .25"), VtValue(0.25));
    EXPECT_EQ(valueOf("double x = -5."), VtValue(-5.0));
    EXPECT_EQ(valueOf("timecode x = 12"), VtValue(SdfTimeCode(12)));
    EXPECT_EQ(valueOf("string x = 'say \"hi\"'"), VtValue(std::string("say \"hi\"")));
    EXPECT_EQ(valueOf("token x = \"t\""), VtValue(TfToken("t")));
    EXPECT_EQ(valueOf("asset x = @a b.png@"), VtValue(SdfAssetPath("a b.png")));
    EXPECT_EQ(valueOf("int2 x = (1, -2)"), VtValue(GfVec2i(1, -2)));
    EXPECT_EQ(valueOf("color3f x = (0.25, 0.5, 1)"), VtValue(GfVec3f(0.25f, 0.5f, 1)));
    EXPECT_EQ(valueOf("quatf x = (1, 2, 3, 4)"), VtValue(GfQuatf(1, 2, 3, 4)));
    EXPECT_EQ(valueOf("matrix4d x = ( (1,0,0,0), (0,1,0,0), (0,0,1,0), (5,6,7,1) )"),
              VtValue(GfMatrix4d(1).SetTranslate(GfVec3d(5, 6, 7))));
}

TEST(TextReader, ReadsNumbersThatAreNone)
{
    const double inf = std::numeric_limits<double>::infinity();
    EXPECT_EQ(valueOf("double x = inf"), VtValue(inf));
    EXPECT_EQ(valueOf("double x = -inf"), VtValue(-inf));
    EXPECT_TRUE(std::isnan(valueOf("double x = nan").Get<double>()));
    EXPECT_EQ(valueOf("double x = 1e400"), VtValue(inf));
    EXPECT_EQ(valueOf("double x = 1e-400"), VtValue(0.0));
    EXPECT_TRUE(std::signbit(valueOf("double x = -0").Get<double>()));
}

TEST(TextReader, ReadsArrays)
{
    EXPECT_EQ(valueOf("int[] x = [1, 2, 3,]"), VtValue(VtIntArray{1, 2, 3}));
    EXPECT_EQ(valueOf("float[] x = []"), VtValue(VtFloatArray()));
    EXPECT_EQ(valueOf("point3f[] x = [(1, 2, 3), (4, 5, 6)]"),
              VtValue(VtVec3fArray{GfVec3f(1, 2, 3), GfVec3f(4, 5, 6)}));
    EXPECT_EQ(valueOf("token[] x = [\"a\", 'b']"), VtValue(VtTokenArray{TfToken("a"), TfToken("b")}));
    EXPECT_EQ(valueOf("asset[] x = [@a@, @b@]"),
              VtValue(VtArray<SdfAssetPath>{SdfAssetPath("a"), SdfAssetPath("b")}));
}

TEST(TextReader, ReadsEscapesInStrings)
{
    EXPECT_EQ(valueOf(R"(string x = "a\tb\\c\"d\x41\101\q")"), VtValue(std::string("a\tb\\c\"dAAq")));
    EXPECT_EQ(valueOf("string x = \"\"\"two\nlines \"quoted\" \"\"\""),
              VtValue(std::string("two\nlines \"quoted\" ")));
    EXPECT_EQ(valueOf("string x = ''"), VtValue(std::string()));
    EXPECT_EQ(valueOf("string x = \"\xC3\xA9\""), VtValue(std::string("\xC3\xA9")));
}

TEST(TextReader, ReadsAttributesWithAllTheirParts)
{
    const auto layer = Parse(R"(
def "P"
{
    custom uniform token a = "x" (
        "comment"
        doc = "text"
        allowedTokens = ["x", "y"]
        displayUnit = cm
        interpolation = "vertex"
    )
    double b.timeSamples = {
        2: 20,
        1: 10,
        3: None,
    }
    double b = 5
    float c.connect = </Q.out>
    prepend float c.connect = [<../Q.first>, </Q.second>]
    int d = None
    float e
    custom strange f = [1, (2, 3)]
    reorder properties = ["b", "a"]
}
)");
    ASSERT_TRUE(layer);
    const SdfAttributeSpecHandle a = layer->GetAttributeAtPath(SdfPath("/P.a"));
    EXPECT_TRUE(a->IsCustom());
    EXPECT_EQ(a->GetVariability(), SdfVariabilityUniform);
    EXPECT_EQ(a->GetTypeName(), SdfValueTypeNames->Token);
    EXPECT_EQ(a->GetComment(), "comment");
    EXPECT_EQ(a->GetDocumentation(), "text");
    EXPECT_EQ(a->GetAllowedTokens(), (VtTokenArray{TfToken("x"), TfToken("y")}));
    EXPECT_EQ(a->GetField(SdfFieldKeys->DisplayUnit), VtValue(TfToken("cm")));
    EXPECT_EQ(a->GetField(TfToken("interpolation")), VtValue(TfToken("vertex")));
    const SdfAttributeSpecHandle b = layer->GetAttributeAtPath(SdfPath("/P.b"));
    EXPECT_EQ(b->ListTimeSamples(), (std::set<double>{1, 2, 3}));
    double sample = 0;
    EXPECT_TRUE(b->QueryTimeSample(2, &sample));
    EXPECT_EQ(sample, 20.0);
    EXPECT_FALSE(b->QueryTimeSample(3, &sample));
    EXPECT_EQ(b->GetDefaultValue(), VtValue(5.0));
    const SdfPathListOp connections =
        layer->GetFieldAs<SdfPathListOp>(SdfPath("/P.c"), SdfFieldKeys->ConnectionPaths);
    EXPECT_EQ(connections.GetPrependedItems(),
              (std::vector<SdfPath>{SdfPath("/Q.first"), SdfPath("/Q.second")}));
    EXPECT_EQ(defaultOf(layer, "/P.d"), VtValue(SdfValueBlock()));
    EXPECT_FALSE(layer->HasField(SdfPath("/P.e"), SdfFieldKeys->Default));
    EXPECT_EQ(defaultOf(layer, "/P.f"), VtValue(SdfUnregisteredValue("[1, (2, 3)]")));
    EXPECT_EQ(std::vector<TfToken>(layer->GetPrimAtPath(SdfPath("/P"))->GetPropertyOrder()),
              (std::vector<TfToken>{TfToken("b"), TfToken("a")}));
}

TEST(TextReader, ReadsRelationships)
{
    const auto layer = Parse(R"(
def "P"
{
    rel none
    rel explicitNone = None
    custom rel one = </A>
    varying rel many = [</A>, </B.x>] (doc = "d")
    prepend rel edited = <C>
    delete rel edited = </D>
}
)");
    ASSERT_TRUE(layer);
    const auto targets = [&](const char* path) {
        return layer->GetFieldAs<SdfPathListOp>(SdfPath(path), SdfFieldKeys->TargetPaths);
    };
    EXPECT_FALSE(targets("/P.none").HasKeys());
    EXPECT_TRUE(targets("/P.explicitNone").IsExplicit());
    EXPECT_EQ(targets("/P.one").GetExplicitItems(), std::vector<SdfPath>{SdfPath("/A")});
    EXPECT_TRUE(layer->GetRelationshipAtPath(SdfPath("/P.one"))->IsCustom());
    EXPECT_EQ(targets("/P.many").GetExplicitItems(), (std::vector<SdfPath>{SdfPath("/A"), SdfPath("/B.x")}));
    EXPECT_EQ(layer->GetRelationshipAtPath(SdfPath("/P.many"))->GetVariability(), SdfVariabilityVarying);
    EXPECT_EQ(layer->GetRelationshipAtPath(SdfPath("/P.one"))->GetVariability(), SdfVariabilityUniform);
    EXPECT_EQ(targets("/P.edited").GetPrependedItems(), std::vector<SdfPath>{SdfPath("/P/C")});
    EXPECT_EQ(targets("/P.edited").GetDeletedItems(), std::vector<SdfPath>{SdfPath("/D")});
}

TEST(TextReader, ReadsVariants)
{
    const auto layer = Parse(R"(
def "P" (
    variantSets = "shade"
)
{
    variantSet "shade" = {
        "red" (
            kind = "prop"
        ) {
            int x = 1
            def "Child" {
                rel back = <..>
            }
            variantSet "inner" = {
                "deep" {
                }
            }
        }
        "green" {
        }
    }
}
)");
    ASSERT_TRUE(layer);
    const SdfPrimSpecHandle prim = layer->GetPrimAtPath(SdfPath("/P"));
    EXPECT_EQ(prim->GetVariantNames("shade"), (std::vector<std::string>{"red", "green"}));
    const SdfVariantSpecHandle red = prim->GetVariantSets()["shade"]->GetVariants()["red"];
    EXPECT_EQ(red->GetPrimSpec()->GetKind(), "prop");
    EXPECT_EQ(red->GetPrimSpec()->GetNameChildren().keys(), std::vector<std::string>{"Child"});
    EXPECT_EQ(red->GetVariantNames("inner"), std::vector<std::string>{"deep"});
    EXPECT_EQ(defaultOf(layer, "/P{shade=red}.x"), VtValue(1));
    EXPECT_EQ(layer->GetFieldAs<SdfPathListOp>(SdfPath("/P{shade=red}Child.back"), SdfFieldKeys->TargetPaths)
                  .GetExplicitItems(),
              std::vector<SdfPath>{SdfPath("/P")});
    EXPECT_EQ(layer->GetSpecType(SdfPath("/P{shade=}")), SdfSpecTypeVariantSet);
}

TEST(TextReader, SkipsCommentsAnywhere)
{
    const auto layer = Parse(R"(# one
// two
/* three
   lines */
(
    # in metadata
    upAxis = "Y" // behind a value
)
def /* between */ "P" # behind a name
{
    int[] x = [1, # inside
               /* too */ 2]
}
// the end)");
    ASSERT_TRUE(layer);
    EXPECT_EQ(defaultOf(layer, "/P.x"), VtValue(VtIntArray{1, 2}));
}

TEST(TextReader, ReadsOrdersAndSemicolonsAndOtherLineEnds)
{
    const auto layer = Parse("reorder rootPrims = [\"B\", \"A\"]\r\ndef \"A\" { int x = 1; int y = 2; }\r\n"
                             "def \"B\" {\r\n reorder nameChildren = [\"D\", \"C\"]\r\n}\r\n");
    ASSERT_TRUE(layer);
    EXPECT_EQ(std::vector<TfToken>(layer->GetRootPrimOrder()),
              (std::vector<TfToken>{TfToken("B"), TfToken("A")}));
    EXPECT_EQ(defaultOf(layer, "/A.y"), VtValue(2));
    EXPECT_EQ(std::vector<TfToken>(layer->GetPrimAtPath(SdfPath("/B"))->GetNameChildrenOrder()),
              (std::vector<TfToken>{TfToken("D"), TfToken("C")}));
}

TEST(TextReader, StopsBehindTheMetadataWhenAsked)
{
    const TemporaryDirectory directory;
    const std::string file = directory.Write("a.usda", "#usda 1.0\n(\n    upAxis = \"Z\"\n)\ndef \"A\" {}\n");
    const SdfLayerRefPtr layer = SdfLayer::OpenAsAnonymous(file, /* metadataOnly = */ true);
    ASSERT_TRUE(layer);
    EXPECT_EQ(layer->GetFieldAs<TfToken>(SdfPath::AbsoluteRootPath(), TfToken("upAxis")), "Z");
    EXPECT_TRUE(layer->GetRootPrims().empty());
}
