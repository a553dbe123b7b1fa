#include "scene.h"

#include <pxr/usd/usd/editContext.h>
#include <pxr/usd/usd/references.h>
#include <pxr/usd/usd/stageCache.h>
#include <pxr/usd/usd/stageCacheContext.h>
#include <pxr/usd/usd/stageLoadRules.h>
#include <pxr/usd/usd/variantSets.h>

#include <gmock/gmock.h>

#include <cstdio>
#include <filesystem>
#include <fstream>

using namespace usd_tests;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

/// A folder that goes with the test.
class Folder
{
public:
    Folder()
    {
        std::string pattern = (std::filesystem::temp_directory_path() / "usd_tests_XXXXXX").string();
        m_path = mkdtemp(pattern.data());
    }
    ~Folder() { std::filesystem::remove_all(m_path); }
    std::string file(const char* name) const { return (m_path / name).string(); }

private:
    std::filesystem::path m_path;
};

} // namespace

TEST(EditTarget, IsTheRootLayerAtFirst)
{
    const UsdStageRefPtr scene = stage("");
    EXPECT_EQ(scene->GetEditTarget().GetLayer(), scene->GetRootLayer());
    EXPECT_TRUE(scene->GetEditTarget().IsValid());
    EXPECT_FALSE(UsdEditTarget().IsValid());
}

TEST(EditTarget, DecidesWhichLayerIsWritten)
{
    const UsdStageRefPtr scene = stage("def \"A\" { double a = 1 }");
    {
        const UsdEditContext context(UsdStagePtr(scene), UsdEditTarget(scene->GetSessionLayer()));
        attribute(scene, "/A.a").Set(2.0);
    }
    EXPECT_EQ(scene->GetEditTarget().GetLayer(), scene->GetRootLayer());
    EXPECT_EQ(scene->GetRootLayer()->GetFieldAs<double>(SdfPath("/A.a"), TfToken("default")), 1);
    EXPECT_EQ(scene->GetSessionLayer()->GetFieldAs<double>(SdfPath("/A.a"), TfToken("default")), 2);
}

TEST(EditTarget, MustBeALayerOfTheStage)
{
    const UsdStageRefPtr scene = stage("");
    const SdfLayerRefPtr other = layer("");
    Errors errors;
    scene->SetEditTarget(UsdEditTarget(other));
    scene->SetEditTarget(UsdEditTarget());
    EXPECT_THAT(errors.take(), ElementsAre("Layer @" + other->GetIdentifier() +
                                               "@ is not in the local LayerStack rooted at @" +
                                               scene->GetRootLayer()->GetIdentifier() + "@",
                                           "Attempt to set an invalid UsdEditTarget as current"));
    EXPECT_EQ(scene->GetEditTarget().GetLayer(), scene->GetRootLayer());
}

TEST(EditTarget, OfAVariantTranslatesPathsIntoIt)
{
    const SdfLayerRefPtr root = layer("");
    const UsdEditTarget target =
        UsdEditTarget::ForLocalDirectVariant(SdfLayerHandle(root), SdfPath("/A{v=x}"));
    EXPECT_EQ(target.MapToSpecPath(SdfPath("/A/B.b")), SdfPath("/A{v=x}B.b"));
    EXPECT_EQ(target.MapToSpecPath(SdfPath("/C")), SdfPath("/C"));
}

TEST(EditTarget, ALayerIndexOutOfRangeIsAnError)
{
    const UsdStageRefPtr scene = stage("");
    Errors errors;
    EXPECT_FALSE(scene->GetEditTargetForLocalLayer(size_t(7)).IsValid());
    EXPECT_THAT(errors.take(), ElementsAre("Layer index 7 is out of range: only 2 entries in layer stack"));
}

TEST(Files, AreMadeSavedAndOpenedAgain)
{
    const Folder folder;
    const std::string file = folder.file("scene.usda");
    {
        const UsdStageRefPtr scene = UsdStage::CreateNew(file);
        ASSERT_TRUE(scene);
        scene->DefinePrim(SdfPath("/A"), TfToken("Xform"));
        scene->Save();
    }
    const UsdStageRefPtr scene = UsdStage::Open(file);
    ASSERT_TRUE(scene);
    EXPECT_EQ(prim(scene, "/A").GetTypeName(), TfToken("Xform"));
}

TEST(Files, ThatAreMissingAreOneError)
{
    const Folder folder;
    const std::string file = folder.file("none.usda");
    Errors errors;
    EXPECT_FALSE(UsdStage::Open(file));
    EXPECT_THAT(errors.take(), ElementsAre("Failed to open layer @" + file + "@: the file was not found"));
}

TEST(Files, ThatCannotBeReadAreOneErrorWithTheReason)
{
    const Folder folder;
    const std::string file = folder.file("broken.usda");
    std::ofstream(file) << "#usda 1.0\ndef \"A\" {\n";
    Errors errors;
    EXPECT_FALSE(UsdStage::Open(file));
    const std::vector<std::string> texts = errors.take();
    ASSERT_EQ(texts.size(), 1u);
    EXPECT_THAT(texts[0], testing::StartsWith("Failed to open layer @" + file + "@: "));
}

TEST(Files, AreReloadedWithoutTheEditsThatWereNotSaved)
{
    const Folder folder;
    const std::string file = folder.file("scene.usda");
    std::ofstream(file) << "#usda 1.0\ndef \"A\" { double a = 1; }\n";
    const UsdStageRefPtr scene = UsdStage::Open(file);
    attribute(scene, "/A.a").Set(2.0);
    scene->Reload();
    EXPECT_EQ(valueOf<double>(attribute(scene, "/A.a")), 1);
}

TEST(Files, OfAnUnsavedAnonymousLayerAreAWarning)
{
    const UsdStageRefPtr scene = stage("");
    scene->DefinePrim(SdfPath("/A"));
    Warnings warnings;
    scene->Save();
    EXPECT_THAT(warnings.texts, ElementsAre("Not saving @" + scene->GetRootLayer()->GetIdentifier() +
                                            "@ because it is an anonymous layer"));
}

TEST(Files, AnExportHoldsTheComposedStage)
{
    const SdfLayerRefPtr weak = layer("def Xform \"A\" ( doc = \"weak\" ) { double a = 1\n double "
                                      "b.timeSamples = { 1: 2 }\n rel r = </A> }");
    const UsdStageRefPtr scene = UsdStage::Open(
        SdfLayerHandle(layerWithSublayers({weak}, "over \"A\" { double a = 5 }", {SdfLayerOffset(10)})));
    std::string text;
    ASSERT_TRUE(scene->ExportToString(&text, false));
    const SdfLayerRefPtr flat = SdfLayer::CreateAnonymous("flat.usda");
    ASSERT_TRUE(flat->ImportFromString(text)) << text;
    const UsdStageRefPtr again = UsdStage::Open(SdfLayerHandle(flat));
    EXPECT_EQ(again->GetLayerStack(false).size(), 1u);
    EXPECT_EQ(prim(again, "/A").GetTypeName(), TfToken("Xform"));
    EXPECT_EQ(prim(again, "/A").GetDocumentation(), "weak");
    EXPECT_EQ(valueOf<double>(attribute(again, "/A.a")), 5);
    EXPECT_THAT(flat->ListTimeSamplesForPath(SdfPath("/A.b")), ElementsAre(11));
    SdfPathVector targets;
    EXPECT_TRUE(again->GetRelationshipAtPath(SdfPath("/A.r")).GetTargets(&targets));
    EXPECT_THAT(targets, ElementsAre(SdfPath("/A")));
}

TEST(StageCache, GivesTheSameStageForTheSameLayer)
{
    UsdStageCache cache;
    const SdfLayerRefPtr root = layer("");
    const UsdStageCacheContext context(cache);
    const UsdStageRefPtr one = UsdStage::Open(SdfLayerHandle(root));
    EXPECT_EQ(UsdStage::Open(SdfLayerHandle(root)), one);
    EXPECT_EQ(cache.Size(), 1u);
    EXPECT_EQ(cache.Find(cache.GetId(one)), one);
    {
        const UsdStageCacheContext block(UsdBlockStageCaches);
        EXPECT_NE(UsdStage::Open(SdfLayerHandle(root)), one);
    }
    EXPECT_TRUE(cache.Erase(one));
    EXPECT_TRUE(cache.IsEmpty());
}

TEST(LoadRules, HoldBelowAPathUntilAnotherRule)
{
    UsdStageLoadRules rules = UsdStageLoadRules::LoadNone();
    EXPECT_FALSE(rules.IsLoaded(SdfPath("/A")));
    rules.LoadWithDescendants(SdfPath("/A/B"));
    EXPECT_TRUE(rules.IsLoaded(SdfPath("/A/B/C")));
    EXPECT_EQ(rules.GetEffectiveRuleForPath(SdfPath("/A")), UsdStageLoadRules::OnlyRule);
    EXPECT_FALSE(rules.IsLoaded(SdfPath("/A/X")));
    rules.LoadWithoutDescendants(SdfPath("/D"));
    EXPECT_TRUE(rules.IsLoaded(SdfPath("/D")));
    EXPECT_FALSE(rules.IsLoaded(SdfPath("/D/E")));
    EXPECT_TRUE(rules.IsLoadedWithNoDescendants(SdfPath("/D")));
    rules.Unload(SdfPath("/A"));
    EXPECT_FALSE(rules.IsLoaded(SdfPath("/A/B/C")));
}

TEST(LoadRules, AreMinimizedToThoseThatSaySomething)
{
    UsdStageLoadRules rules;
    rules.SetRules({{SdfPath("/"), UsdStageLoadRules::AllRule},
                    {SdfPath("/A"), UsdStageLoadRules::NoneRule},
                    {SdfPath("/A/B"), UsdStageLoadRules::NoneRule}});
    rules.Minimize();
    ASSERT_EQ(rules.GetRules().size(), 1u);
    EXPECT_EQ(rules.GetRules()[0].first, SdfPath("/A"));
}

TEST(Variants, AreAddedAndSelected)
{
    const UsdStageRefPtr scene = stage("def \"A\" {}");
    UsdVariantSet set = prim(scene, "/A").GetVariantSets().AddVariantSet("look");
    EXPECT_TRUE(set.AddVariant("red"));
    EXPECT_TRUE(set.AddVariant("blue"));
    EXPECT_THAT(prim(scene, "/A").GetVariantSets().GetNames(), ElementsAre("look"));
    EXPECT_THAT(set.GetVariantNames(), ElementsAre("blue", "red"));
    EXPECT_EQ(set.GetVariantSelection(), "");
    EXPECT_TRUE(set.SetVariantSelection("red"));
    EXPECT_EQ(set.GetVariantSelection(), "red");
    EXPECT_TRUE(set.HasAuthoredVariantSelection());
}

TEST(References, AreWrittenToTheEditTarget)
{
    const UsdStageRefPtr scene = stage("def \"A\" {}\n def \"B\" {}");
    EXPECT_FALSE(prim(scene, "/A").HasAuthoredReferences());
    EXPECT_TRUE(prim(scene, "/A").GetReferences().AddInternalReference(SdfPath("/B")));
    EXPECT_TRUE(prim(scene, "/A").HasAuthoredReferences());
    const auto items =
        scene->GetRootLayer()->GetPrimAtPath(SdfPath("/A"))->GetReferenceList().GetPrependedItems();
    ASSERT_EQ(items.size(), 1u);
    EXPECT_EQ(SdfReference(items[0]).GetPrimPath(), SdfPath("/B"));
}
