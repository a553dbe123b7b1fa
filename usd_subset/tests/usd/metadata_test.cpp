#include "scene.h"

#include <pxr/base/vt/dictionary.h>
#include <pxr/usd/sdf/schema.h>

#include <gmock/gmock.h>

using namespace usd_tests;
using testing::ElementsAre;

TEST(Metadata, TheStrongestOpinionCounts)
{
    const SdfLayerRefPtr weak = layer("def \"A\" ( doc = \"weak\"\n kind = \"group\" ) {}");
    const UsdStageRefPtr scene =
        UsdStage::Open(SdfLayerHandle(layerWithSublayers({weak}, "over \"A\" ( doc = \"strong\" ) {}")));
    EXPECT_EQ(prim(scene, "/A").GetDocumentation(), "strong");
    TfToken kind;
    EXPECT_TRUE(prim(scene, "/A").GetKind(&kind));
    EXPECT_EQ(kind, TfToken("group"));
}

TEST(Metadata, DictionariesAreMergedKeyByKey)
{
    const SdfLayerRefPtr weak = layer(
        "def \"A\" ( customData = { int a = 1\n int b = 1\n dictionary d = { int x = 1\n int y = 1 } } ) {}");
    const UsdStageRefPtr scene = UsdStage::Open(SdfLayerHandle(layerWithSublayers(
        {weak}, "over \"A\" ( customData = { int b = 2\n dictionary d = { int y = 2 } } ) {}")));
    const UsdPrim a = prim(scene, "/A");
    EXPECT_EQ(a.GetCustomDataByKey(TfToken("a")), VtValue(1));
    EXPECT_EQ(a.GetCustomDataByKey(TfToken("b")), VtValue(2));
    EXPECT_EQ(a.GetCustomDataByKey(TfToken("d:x")), VtValue(1));
    EXPECT_EQ(a.GetCustomDataByKey(TfToken("d:y")), VtValue(2));
    EXPECT_EQ(a.GetCustomData().size(), 3u);
}

TEST(Metadata, DictionaryEntriesAreWrittenAndClearedAlone)
{
    const UsdStageRefPtr scene = stage("def \"A\" ( customData = { int a = 1 } ) {}");
    const UsdPrim a = prim(scene, "/A");
    a.SetCustomDataByKey(TfToken("n:x"), VtValue(5));
    EXPECT_TRUE(a.HasCustomDataKey(TfToken("n:x")));
    EXPECT_TRUE(a.HasAuthoredCustomDataKey(TfToken("a")));
    a.ClearCustomDataByKey(TfToken("a"));
    EXPECT_FALSE(a.HasCustomDataKey(TfToken("a")));
    EXPECT_EQ(a.GetCustomDataByKey(TfToken("n:x")), VtValue(5));
    a.ClearCustomData();
    EXPECT_FALSE(a.HasAuthoredCustomData());
}

TEST(Metadata, OfPropertiesIsComposedAsThatOfPrims)
{
    const UsdStageRefPtr scene =
        stage("def \"A\" { double a = 1 (\n displayGroup = \"G:H\"\n hidden = true ) }");
    const UsdAttribute a = attribute(scene, "/A.a");
    EXPECT_EQ(a.GetDisplayGroup(), "G:H");
    EXPECT_THAT(a.GetNestedDisplayGroups(), ElementsAre("G", "H"));
    EXPECT_TRUE(a.IsHidden());
    EXPECT_TRUE(a.ClearDisplayGroup());
    EXPECT_FALSE(a.HasAuthoredDisplayGroup());
}

TEST(Metadata, OfAnUnknownNameIsRefused)
{
    const UsdStageRefPtr scene = stage("def \"A\" {}");
    Errors errors;
    EXPECT_FALSE(prim(scene, "/A").SetMetadata(TfToken("noSuchField"), 1));
    EXPECT_THAT(errors.take(), ElementsAre("Unregistered metadata field: noSuchField"));
}

TEST(Metadata, OfTheStageIsTheSessionLayersOverTheRootLayers)
{
    const SdfLayerRefPtr root = layer("( startTimeCode = 1\n endTimeCode = 10\n metersPerUnit = 0.5 )");
    const SdfLayerRefPtr session = layer("( startTimeCode = 5 )");
    const UsdStageRefPtr scene = UsdStage::Open(SdfLayerHandle(root), SdfLayerHandle(session));
    EXPECT_EQ(scene->GetStartTimeCode(), 5);
    EXPECT_EQ(scene->GetEndTimeCode(), 10);
    EXPECT_TRUE(scene->HasAuthoredTimeCodeRange());
    double meters = 0;
    EXPECT_TRUE(scene->GetMetadata(TfToken("metersPerUnit"), &meters));
    EXPECT_EQ(meters, 0.5);
}

TEST(Metadata, OfTheStageIsNotTakenFromSublayers)
{
    const SdfLayerRefPtr weak = layer("( startTimeCode = 1\n endTimeCode = 10 )");
    const UsdStageRefPtr scene = UsdStage::Open(SdfLayerHandle(layerWithSublayers({weak})));
    EXPECT_FALSE(scene->HasAuthoredTimeCodeRange());
    EXPECT_EQ(scene->GetEndTimeCode(), 0);
}

TEST(Metadata, OfTheStageFallsBackOnTheFormatsDefaults)
{
    const UsdStageRefPtr scene = stage("");
    EXPECT_EQ(scene->GetFramesPerSecond(), 24);
    EXPECT_EQ(scene->GetTimeCodesPerSecond(), 24);
    EXPECT_FALSE(scene->HasAuthoredMetadata(SdfFieldKeys->FramesPerSecond));
    EXPECT_TRUE(scene->HasMetadata(SdfFieldKeys->FramesPerSecond));
}

TEST(Metadata, OfTheStageIsWrittenToRootOrSessionLayerOnly)
{
    const SdfLayerRefPtr weak = layer("");
    const UsdStageRefPtr scene = UsdStage::Open(SdfLayerHandle(layerWithSublayers({weak})));
    scene->SetStartTimeCode(3);
    EXPECT_EQ(scene->GetRootLayer()->GetStartTimeCode(), 3);
    scene->SetEditTarget(scene->GetEditTargetForLocalLayer(SdfLayerHandle(weak)));
    Errors errors;
    EXPECT_FALSE(scene->SetMetadata(SdfFieldKeys->StartTimeCode, 4.0));
    EXPECT_THAT(errors.take(),
                ElementsAre("Cannot edit layer metadata 'startTimeCode' in current edit target \"" +
                            weak->GetIdentifier() +
                            "\", as it is not the root layer or session layer of stage \"" +
                            scene->GetRootLayer()->GetIdentifier() + "\"."));
}

TEST(Metadata, AllOfItIsListedWithoutArcsAndValues)
{
    const UsdStageRefPtr scene =
        stage("def Xform \"A\" ( doc = \"d\"\n inherits = </B> ) { double a = 1 }\n class \"B\" {}");
    const UsdMetadataValueMap all = prim(scene, "/A").GetAllAuthoredMetadata();
    std::vector<std::string> keys;
    for (const auto& entry : all) {
        keys.push_back(entry.first.GetString());
    }
    EXPECT_THAT(keys, ElementsAre("documentation", "specifier", "typeName"));
}
