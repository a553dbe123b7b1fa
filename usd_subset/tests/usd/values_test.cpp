#include "scene.h"

#include <pxr/usd/sdf/assetPath.h>
#include <pxr/usd/sdf/attributeSpec.h>
#include <pxr/usd/sdf/types.h>
#include <pxr/usd/sdf/valueTypeNames.h>

#include <gmock/gmock.h>

using namespace usd_tests;
using testing::ElementsAre;

TEST(Values, OfAnotherTypeAreNotGiven)
{
    const UsdStageRefPtr scene = stage("def \"A\" { double a = 5 }");
    float value = -1;
    EXPECT_FALSE(attribute(scene, "/A.a").Get(&value));
    EXPECT_EQ(value, -1);
}

TEST(Values, OfTheSchemaStandInForDefaultsOfAnotherType)
{
    const UsdStageRefPtr scene = stage("def Sphere \"S\" { float radius = 10 }");
    EXPECT_EQ(valueOf<double>(attribute(scene, "/S.radius")), 1);
    EXPECT_EQ(valueOf<float>(attribute(scene, "/S.radius")), 10);
}

TEST(Values, OfWeakerOpinionsStandInForDefaultsOfAnotherType)
{
    const UsdStageRefPtr scene =
        stage("def \"A\" (references = </B>) { float a = 10 }\ndef \"B\" { double a = 5 }");
    EXPECT_EQ(valueOf<double>(attribute(scene, "/A.a")), 5);
}

TEST(Values, OfTheSchemaDoNotStandInForSamplesOfAnotherType)
{
    const UsdStageRefPtr scene = stage("def Sphere \"S\" { float radius.timeSamples = { 1: 5 } }");
    double value = -1;
    EXPECT_FALSE(attribute(scene, "/S.radius").Get(&value, UsdTimeCode(1.0)));
}

TEST(Values, OfAnotherTypeAreNotTaken)
{
    const UsdStageRefPtr scene = stage("def \"A\" { double a = 5 }");
    Errors errors;
    EXPECT_FALSE(attribute(scene, "/A.a").Set(1.0f));
    EXPECT_THAT(errors.take(), ElementsAre("Type mismatch for </A.a>: expected 'double', got 'float'"));
    EXPECT_EQ(valueOf<double>(attribute(scene, "/A.a")), 5);
}

TEST(Values, TextBecomesWhatTheAttributeTakes)
{
    const UsdStageRefPtr scene = stage("def \"A\" { token t\n string s\n asset a }");
    EXPECT_TRUE(attribute(scene, "/A.t").Set("x"));
    EXPECT_TRUE(attribute(scene, "/A.s").Set("y"));
    EXPECT_TRUE(attribute(scene, "/A.a").Set("z.png"));
    EXPECT_EQ(valueOf<TfToken>(attribute(scene, "/A.t")), TfToken("x"));
    EXPECT_EQ(valueOf<std::string>(attribute(scene, "/A.s")), "y");
    EXPECT_EQ(valueOf<SdfAssetPath>(attribute(scene, "/A.a")).GetAssetPath(), "z.png");
}

TEST(Values, AreHiddenByABlockInAStrongerLayer)
{
    const SdfLayerRefPtr weak = layer("def \"A\" { double a = 1 }");
    const UsdStageRefPtr scene =
        UsdStage::Open(SdfLayerHandle(layerWithSublayers({weak}, "over \"A\" { double a = None }")));
    const UsdAttribute a = attribute(scene, "/A.a");
    double value = -1;
    EXPECT_FALSE(a.Get(&value));
    EXPECT_FALSE(a.HasValue());
    EXPECT_FALSE(a.HasAuthoredValue());
    EXPECT_TRUE(a.HasAuthoredValueOpinion());
    EXPECT_TRUE(a.GetResolveInfo().ValueIsBlocked());
}

TEST(Values, BlockingRemovesSamplesAndClearingRemovesTheBlock)
{
    const UsdStageRefPtr scene = stage("def \"A\" { double a = 1\n double a.timeSamples = { 1: 1 } }");
    const UsdAttribute a = attribute(scene, "/A.a");
    a.Block();
    EXPECT_EQ(a.GetNumTimeSamples(), 0u);
    EXPECT_TRUE(a.GetResolveInfo().ValueIsBlocked());
    EXPECT_TRUE(a.Clear());
    EXPECT_FALSE(a.GetResolveInfo().ValueIsBlocked());
    EXPECT_FALSE(a.HasAuthoredValueOpinion());
    EXPECT_TRUE(a.IsValid());
}

TEST(Values, OneSampleIsClearedAlone)
{
    const UsdStageRefPtr scene = stage("def \"A\" { double a.timeSamples = { 1: 1, 2: 2 } }");
    EXPECT_TRUE(attribute(scene, "/A.a").ClearAtTime(1.0));
    EXPECT_EQ(attribute(scene, "/A.a").GetNumTimeSamples(), 1u);
    EXPECT_EQ(valueOf<double>(attribute(scene, "/A.a"), 1.0), 2);
}

TEST(Values, FallBackOnWhatTheSchemaSays)
{
    const UsdStageRefPtr scene = stage("def Sphere \"S\" { }");
    const UsdAttribute radius = prim(scene, "/S").GetAttribute(TfToken("radius"));
    ASSERT_TRUE(radius);
    EXPECT_EQ(valueOf<double>(radius), 1.0);
    EXPECT_TRUE(radius.HasFallbackValue());
    EXPECT_TRUE(radius.HasValue());
    EXPECT_FALSE(radius.HasAuthoredValue());
    EXPECT_FALSE(radius.IsAuthored());
    EXPECT_EQ(radius.GetTypeName().GetAsToken(), TfToken("double"));
}

TEST(Values, ABlockHidesTheFallbackAtTheDefaultTimeAndNotAtNumbers)
{
    const UsdStageRefPtr scene = stage("def Sphere \"S\" { double radius = None }");
    double value = -1;
    EXPECT_FALSE(attribute(scene, "/S.radius").Get(&value));
    EXPECT_EQ(valueOf<double>(attribute(scene, "/S.radius"), 1.0), 1.0);
}

TEST(Values, AnAttributeOfASchemaIsWrittenWithTheSchemasType)
{
    const UsdStageRefPtr scene = stage("def Sphere \"S\" { }");
    EXPECT_TRUE(prim(scene, "/S").GetAttribute(TfToken("radius")).Set(2.0));
    const SdfAttributeSpecHandle spec = scene->GetRootLayer()->GetAttributeAtPath(SdfPath("/S.radius"));
    ASSERT_TRUE(spec);
    EXPECT_EQ(spec->GetTypeName().GetAsToken(), TfToken("double"));
    EXPECT_FALSE(spec->IsCustom());
}

TEST(Values, AssetPathsLeadFromTheLayerThatHoldsThem)
{
    const UsdStageRefPtr scene = stage("def \"A\" { asset a = @./no_such_file.png@ }");
    const SdfAssetPath path = valueOf<SdfAssetPath>(attribute(scene, "/A.a"));
    EXPECT_EQ(path.GetAssetPath(), "./no_such_file.png");
    EXPECT_EQ(path.GetResolvedPath(), "");
}

TEST(Properties, AreCreatedCustomUnlessToldOtherwise)
{
    const UsdStageRefPtr scene = stage("def \"A\" { }");
    const UsdAttribute own = prim(scene, "/A").CreateAttribute(TfToken("ns:own"), SdfValueTypeNames->Float3);
    EXPECT_TRUE(own.IsCustom());
    EXPECT_EQ(own.GetBaseName(), TfToken("own"));
    EXPECT_EQ(own.GetNamespace(), TfToken("ns"));
    EXPECT_EQ(own.GetTypeName(), SdfValueTypeNames->Float3);
    EXPECT_FALSE(
        prim(scene, "/A").CreateAttribute(TfToken("other"), SdfValueTypeNames->Int, false).IsCustom());
    EXPECT_THAT(prim(scene, "/A").GetAuthoredPropertiesInNamespace("ns").size(), 1u);
}

TEST(Properties, AreRemovedFromTheEditTarget)
{
    const UsdStageRefPtr scene = stage("def \"A\" { double a = 1 }");
    UsdPrim a = prim(scene, "/A");
    EXPECT_TRUE(a.RemoveProperty(TfToken("a")));
    EXPECT_FALSE(a.HasProperty(TfToken("a")));
    EXPECT_FALSE(a.RemoveProperty(TfToken("a")));
}

TEST(Properties, KnowWhetherTheyAreAttributesOrRelationships)
{
    const UsdStageRefPtr scene = stage("def \"A\" { double a = 1\n rel r }");
    EXPECT_TRUE(prim(scene, "/A").GetProperty(TfToken("a")).Is<UsdAttribute>());
    EXPECT_TRUE(prim(scene, "/A").GetProperty(TfToken("r")).Is<UsdRelationship>());
    EXPECT_FALSE(prim(scene, "/A").GetAttribute(TfToken("r")));
    EXPECT_FALSE(prim(scene, "/A").GetProperty(TfToken("none")));
    EXPECT_FALSE(attribute(scene, "/A.r"));
}

TEST(Properties, ConnectionsAreAddedAndRemoved)
{
    const UsdStageRefPtr scene =
        stage("def \"A\" { double a = 1 }\n def \"B\" { double b = 1\n double c = 1 }");
    const UsdAttribute a = attribute(scene, "/A.a");
    EXPECT_FALSE(a.HasAuthoredConnections());
    EXPECT_TRUE(a.AddConnection(SdfPath("/B.b")));
    EXPECT_TRUE(a.AddConnection(SdfPath("/B.c"), UsdListPositionFrontOfPrependList));
    SdfPathVector sources;
    EXPECT_TRUE(a.GetConnections(&sources));
    EXPECT_THAT(sources, ElementsAre(SdfPath("/B.c"), SdfPath("/B.b")));
    EXPECT_TRUE(a.RemoveConnection(SdfPath("/B.c")));
    EXPECT_TRUE(a.GetConnections(&sources));
    EXPECT_THAT(sources, ElementsAre(SdfPath("/B.b")));
}

TEST(Properties, TargetsAreAddedSetAndCleared)
{
    const UsdStageRefPtr scene = stage("def \"A\" { rel r }");
    const UsdRelationship r = scene->GetRelationshipAtPath(SdfPath("/A.r"));
    SdfPathVector targets;
    EXPECT_FALSE(r.GetTargets(&targets));
    EXPECT_TRUE(r.AddTarget(SdfPath("/X")));
    EXPECT_TRUE(r.AddTarget(SdfPath("/Y")));
    EXPECT_TRUE(r.GetTargets(&targets));
    EXPECT_THAT(targets, ElementsAre(SdfPath("/X"), SdfPath("/Y")));
    EXPECT_TRUE(r.SetTargets({}));
    EXPECT_TRUE(r.GetTargets(&targets)); // an opinion of no targets
    EXPECT_TRUE(targets.empty());
    EXPECT_TRUE(r.ClearTargets(false));
    EXPECT_FALSE(r.GetTargets(&targets));
}
