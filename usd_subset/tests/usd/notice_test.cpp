#include "scene.h"

#include <pxr/usd/sdf/changeBlock.h>
#include <pxr/usd/sdf/schema.h>
#include <pxr/usd/usd/editContext.h>

#include <gmock/gmock.h>

using namespace usd_tests;
using testing::ElementsAre;
using testing::IsEmpty;

TEST(Notices, ANewPrimIsResynced)
{
    const UsdStageRefPtr scene = stage("");
    NoticeLog log(scene);
    scene->DefinePrim(SdfPath("/A/B"));
    EXPECT_THAT(log.take(), ElementsAre("resynced /A", "resynced /A/B"));
}

TEST(Notices, ANewPropertyIsResyncedAndItsValuesAreChangesOnly)
{
    const UsdStageRefPtr scene = stage("def Sphere \"S\" { }");
    const UsdAttribute radius = prim(scene, "/S").GetAttribute(TfToken("radius"));
    NoticeLog log(scene);
    radius.Set(2.0);
    EXPECT_THAT(log.take(), ElementsAre("resynced /S.radius", "changed /S.radius"));
    radius.Set(3.0);
    EXPECT_THAT(log.take(), ElementsAre("changed /S.radius"));
    radius.Set(3.0, 1.0);
    EXPECT_THAT(log.take(), ElementsAre("changed /S.radius"));
}

TEST(Notices, AValueThatStaysTheSameIsNone)
{
    const UsdStageRefPtr scene = stage("def \"A\" { double a = 1 }");
    NoticeLog log(scene);
    attribute(scene, "/A.a").Set(1.0);
    EXPECT_THAT(log.take(), IsEmpty());
}

TEST(Notices, AnOverWithoutOpinionsOfItsOwnDoesNotResyncThePrim)
{
    const UsdStageRefPtr scene = stage("def \"A\" { double a = 1 }");
    NoticeLog log(scene);
    {
        const UsdEditContext context(UsdStagePtr(scene), UsdEditTarget(scene->GetSessionLayer()));
        log.take();
        attribute(scene, "/A.a").Set(2.0);
        EXPECT_THAT(log.take(), ElementsAre("resynced /A.a", "changed /A", "changed /A.a"));
    }
    EXPECT_EQ(valueOf<double>(attribute(scene, "/A.a")), 2.0);
}

TEST(Notices, ActivationResyncsAndDropsWhatWasBelow)
{
    const UsdStageRefPtr scene = stage("def \"A\" { def \"B\" { double b = 1 } }");
    const UsdPrim a = prim(scene, "/A");
    const UsdPrim b = prim(scene, "/A/B");
    NoticeLog log(scene);
    a.SetActive(false);
    EXPECT_THAT(log.take(), ElementsAre("resynced /A"));
    EXPECT_TRUE(a);
    EXPECT_FALSE(b);
}

TEST(Notices, TypeKindAndSpecifierResyncAndPlainMetadataDoesNot)
{
    const UsdStageRefPtr scene = stage("def \"A\" { def \"B\" {} }");
    const UsdPrim a = prim(scene, "/A");
    NoticeLog log(scene);
    a.SetTypeName(TfToken("Xform"));
    EXPECT_THAT(log.take(), ElementsAre("resynced /A"));
    EXPECT_EQ(a.GetTypeName(), TfToken("Xform"));
    a.SetKind(TfToken("component"));
    EXPECT_THAT(log.take(), ElementsAre("resynced /A"));
    EXPECT_TRUE(a.IsComponent());
    a.SetSpecifier(SdfSpecifierClass);
    EXPECT_THAT(log.take(), ElementsAre("resynced /A"));
    EXPECT_TRUE(prim(scene, "/A/B").IsAbstract());
    a.SetDocumentation("text");
    EXPECT_THAT(log.take(), ElementsAre("changed /A"));
}

TEST(Notices, ARemovedPrimIsResyncedOnceForAllBelow)
{
    const UsdStageRefPtr scene = stage("def \"A\" { def \"B\" { double b = 1 } }");
    NoticeLog log(scene);
    EXPECT_TRUE(scene->RemovePrim(SdfPath("/A")));
    EXPECT_THAT(log.take(), ElementsAre("resynced /A"));
}

TEST(Notices, AChangeBlockMakesOneNoticeOfSeveralEdits)
{
    const UsdStageRefPtr scene = stage("def \"A\" { double a = 1\n double b = 1 }");
    NoticeLog log(scene);
    {
        SdfChangeBlock block;
        attribute(scene, "/A.a").Set(2.0);
        attribute(scene, "/A.b").Set(2.0);
        EXPECT_THAT(log.take(), IsEmpty());
    }
    EXPECT_THAT(log.take(), ElementsAre("changed /A.a", "changed /A.b"));
}

TEST(Notices, StageMetadataIsAChangeOfTheRoot)
{
    const UsdStageRefPtr scene = stage("");
    NoticeLog log(scene);
    scene->SetStartTimeCode(1);
    EXPECT_THAT(log.take(), ElementsAre("changed /"));
}

TEST(Notices, ASublayerWithContentResyncsEverything)
{
    const SdfLayerRefPtr weak = layer("def \"B\" { }");
    const UsdStageRefPtr scene = stage("def \"A\" { }");
    const UsdPrim a = prim(scene, "/A");
    NoticeLog log(scene);
    scene->GetRootLayer()->InsertSubLayerPath(weak->GetIdentifier());
    EXPECT_THAT(log.take(), ElementsAre("resynced /"));
    EXPECT_TRUE(a);
    EXPECT_TRUE(prim(scene, "/B"));
    scene->GetRootLayer()->RemoveSubLayerPath(0);
    EXPECT_THAT(log.take(), ElementsAre("resynced /"));
    EXPECT_FALSE(prim(scene, "/B"));
}

TEST(Notices, EditsOfASublayerThatCameEmptyAreSeen)
{
    const SdfLayerRefPtr weak = layer("");
    const UsdStageRefPtr scene = stage("def \"A\" { }");
    scene->GetRootLayer()->InsertSubLayerPath(weak->GetIdentifier());
    SdfCreatePrimInLayer(SdfLayerHandle(weak), SdfPath("/A/B"))->SetSpecifier(SdfSpecifierDef);
    EXPECT_TRUE(prim(scene, "/A/B"));
}

TEST(Notices, AChangedOffsetResyncsEverything)
{
    const SdfLayerRefPtr weak = layer("def \"A\" { double a.timeSamples = { 1: 1 } }");
    const UsdStageRefPtr scene = UsdStage::Open(SdfLayerHandle(layerWithSublayers({weak})));
    NoticeLog log(scene);
    scene->GetRootLayer()->SetSubLayerOffset(SdfLayerOffset(10), 0);
    EXPECT_THAT(log.take(), ElementsAre("resynced /"));
    EXPECT_EQ(attribute(scene, "/A.a").GetNumTimeSamples(), 1u);
    double lower = 0, upper = 0;
    bool hasSamples = false;
    attribute(scene, "/A.a").GetBracketingTimeSamples(0, &lower, &upper, &hasSamples);
    EXPECT_EQ(lower, 11);
}

TEST(Notices, NameTheFieldsThatChanged)
{
    struct Listener : TfWeakBase
    {
        void onChange(const UsdNotice::ObjectsChanged& notice)
        {
            fields = notice.GetChangedFields(SdfPath("/A"));
            affectsPrim = notice.AffectedObject(watched);
            resyncsPrim = notice.ResyncedObject(watched);
        }
        UsdPrim watched;
        TfTokenVector fields;
        bool affectsPrim = false;
        bool resyncsPrim = true;
    } listener;
    const UsdStageRefPtr scene = stage("def \"A\" { }");
    listener.watched = prim(scene, "/A");
    TfNotice::Key key =
        TfNotice::Register(TfCreateWeakPtr(&listener), &Listener::onChange, UsdStageWeakPtr(scene));
    prim(scene, "/A").SetDocumentation("text");
    TfNotice::Revoke(key);
    EXPECT_THAT(listener.fields, ElementsAre(SdfFieldKeys->Documentation));
    EXPECT_TRUE(listener.affectsPrim);
    EXPECT_FALSE(listener.resyncsPrim);
}

TEST(Notices, EditTargetAndMutingAreTold)
{
    const SdfLayerRefPtr weak = layer("def \"A\" { }");
    const UsdStageRefPtr scene = UsdStage::Open(SdfLayerHandle(layerWithSublayers({weak})));
    NoticeLog log(scene);
    scene->SetEditTarget(UsdEditTarget(scene->GetSessionLayer()));
    EXPECT_THAT(log.take(), ElementsAre("edit target"));
    scene->SetEditTarget(UsdEditTarget(scene->GetSessionLayer()));
    EXPECT_THAT(log.take(), IsEmpty());
    scene->MuteLayer(weak->GetIdentifier());
    EXPECT_THAT(log.take(), ElementsAre("muted 1 unmuted 0", "resynced /"));
}

TEST(Notices, AStageThatIsGoneHearsNothing)
{
    const SdfLayerRefPtr root = layer("def \"A\" { }");
    UsdStageRefPtr scene = UsdStage::Open(SdfLayerHandle(root));
    NoticeLog log(scene);
    scene.Reset();
    SdfCreatePrimInLayer(SdfLayerHandle(root), SdfPath("/B"));
    EXPECT_THAT(log.take(), IsEmpty());
}

TEST(Notices, TwoStagesOnOneLayerBothFollowIt)
{
    const SdfLayerRefPtr root = layer("def \"A\" { double a = 1 }");
    const UsdStageRefPtr one = UsdStage::Open(SdfLayerHandle(root));
    const UsdStageRefPtr other = UsdStage::Open(SdfLayerHandle(root));
    NoticeLog log(other);
    attribute(one, "/A.a").Set(2.0);
    EXPECT_THAT(log.take(), ElementsAre("changed /A.a"));
    EXPECT_EQ(valueOf<double>(attribute(other, "/A.a")), 2.0);
}
