#include "scene.h"

#include <pxr/base/tf/notice.h>
#include <pxr/base/tf/weakBase.h>
#include <pxr/usd/sdf/layer.h>
#include <pxr/usd/usd/editContext.h>
#include <pxr/usd/usd/inherits.h>
#include <pxr/usd/usd/notice.h>
#include <pxr/usd/usd/references.h>
#include <pxr/usd/usd/relationship.h>
#include <pxr/usd/usd/variantSets.h>
#include <pxr/usd/usdGeom/sphere.h>
#include <pxr/usd/usdGeom/xform.h>

#include <algorithm>

namespace conformance {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

/// Gathers what a stage tells of its changes.
class Listener : public TfWeakBase
{
public:
    explicit Listener(const UsdStageRefPtr& stage)
        : m_key(TfNotice::Register(TfCreateWeakPtr(this), &Listener::OnChanged, UsdStageWeakPtr(stage)))
    {}
    ~Listener() { TfNotice::Revoke(m_key); }

    /// What was told since the last call, sorted.
    Strings Take()
    {
        Strings taken;
        taken.swap(m_changes);
        std::sort(taken.begin(), taken.end());
        return taken;
    }

private:
    void OnChanged(const UsdNotice::ObjectsChanged& notice)
    {
        for (const SdfPath& path : notice.GetResyncedPaths()) {
            m_changes.push_back("resynced " + path.GetString());
        }
        for (const SdfPath& path : notice.GetChangedInfoOnlyPaths()) {
            m_changes.push_back("changed " + path.GetString());
        }
    }

    Strings m_changes;
    TfNotice::Key m_key;
};

TEST(Notices, TellOfNewPrimsAndProperties)
{
    const Scene scene("");
    Listener listener(scene.GetStage());
    const UsdGeomSphere sphere = UsdGeomSphere::Define(scene.GetStage(), SdfPath("/S"));
    EXPECT_THAT(listener.Take(), ElementsAre("resynced /S"));
    sphere.CreateRadiusAttr().Set(2.0);
    EXPECT_THAT(listener.Take(), ElementsAre("changed /S.radius", "resynced /S.radius"));
    sphere.GetRadiusAttr().Set(3.0);
    EXPECT_THAT(listener.Take(), ElementsAre("changed /S.radius"));
}

TEST(Notices, TellOfEverythingThatAChangedClassConcerns)
{
    const Scene scene(R"(
        class "C" { int a = 1 }
        def "P" ( prepend inherits = </C> ) {}
        def "Q" ( prepend inherits = </C> ) {}
        def "Other" {})");
    Listener listener(scene.GetStage());
    scene.GetAttribute("/C.a").Set(2);
    EXPECT_THAT(listener.Take(), ElementsAre("changed /C.a", "changed /P.a", "changed /Q.a"));
    EXPECT_EQ(2, scene.Get<int>("/Q.a"));
}

TEST(Notices, TellOfWhatAChangedAssetConcerns)
{
    const Scene scene({{"root.usda", "def \"P\" ( prepend references = @a.usda@</R> ) {}"},
                       {"a.usda", "def \"R\" { def \"K\" { int a = 1 } }"}});
    Listener listener(scene.GetStage());
    const SdfLayerRefPtr asset = SdfLayer::FindOrOpen(scene.GetFile("a.usda"));
    asset->SetField(SdfPath("/R/K.a"), SdfFieldKeys->Default, VtValue(5));
    EXPECT_THAT(listener.Take(), ElementsAre("changed /P/K.a"));
    EXPECT_EQ(5, scene.Get<int>("/P/K.a"));
}

TEST(Notices, TellOfPrimsWhoseArcsChange)
{
    const Scene scene("def \"P\" {}\ndef \"Q\" { def \"K\" {} }");
    Listener listener(scene.GetStage());
    scene.GetPrim("/P").GetReferences().AddInternalReference(SdfPath("/Q"));
    EXPECT_THAT(listener.Take(), ElementsAre("resynced /P"));
    EXPECT_THAT(scene.GetChildren("/P"), ElementsAre("K"));
    scene.GetPrim("/P").GetReferences().ClearReferences();
    EXPECT_THAT(scene.GetChildren("/P"), IsEmpty());
}

TEST(Notices, TellNothingOfAValueThatIsTheSame)
{
    const Scene scene("def \"P\" { int a = 1 }");
    Listener listener(scene.GetStage());
    scene.GetAttribute("/P.a").Set(1);
    EXPECT_THAT(listener.Take(), IsEmpty());
}

TEST(Edits, ThatDeactivateAPrimRemoveItsChildren)
{
    const Scene scene("def \"P\" { def \"K\" {} }");
    Listener listener(scene.GetStage());
    scene.GetPrim("/P").SetActive(false);
    EXPECT_THAT(listener.Take(), ElementsAre("resynced /P"));
    EXPECT_FALSE(scene.GetPrim("/P/K"));
    scene.GetPrim("/P").SetActive(true);
    EXPECT_TRUE(scene.GetPrim("/P/K"));
}

TEST(Edits, GoToTheEditTarget)
{
    const Scene scene({{"root.usda", "( subLayers = [@a.usda@] )"}, {"a.usda", "def \"P\" { int a = 1 }"}});
    const SdfLayerRefPtr weaker = SdfLayer::FindOrOpen(scene.GetFile("a.usda"));
    {
        const UsdEditContext context(scene.GetStage(), UsdEditTarget(weaker));
        scene.GetAttribute("/P.a").Set(2);
    }
    EXPECT_EQ(2, scene.Get<int>("/P.a"));
    EXPECT_FALSE(scene.GetStage()->GetRootLayer()->GetPrimAtPath(SdfPath("/P")));
    scene.GetAttribute("/P.a").Set(3);
    EXPECT_EQ(3, scene.Get<int>("/P.a"));
    EXPECT_EQ(VtValue(2), weaker->GetField(SdfPath("/P.a"), SdfFieldKeys->Default));
}

TEST(Edits, IntoVariantsStayThere)
{
    const Scene scene(R"(
        def "P" ( variants = { string v = "x" }; prepend variantSets = "v" ) { variantSet "v" = { "x" {} "y" {} }
        })");
    {
        const UsdEditContext context(scene.GetPrim("/P").GetVariantSet("v").GetVariantEditContext());
        scene.GetPrim("/P").CreateAttribute(TfToken("a"), SdfValueTypeNames->Int).Set(1);
    }
    EXPECT_EQ(1, scene.Get<int>("/P.a"));
    scene.GetPrim("/P").GetVariantSet("v").SetVariantSelection("y");
    EXPECT_FALSE(scene.GetAttribute("/P.a"));
}

TEST(Edits, OfSublayersRecomposeTheStage)
{
    const Scene scene({{"root.usda", "def \"P\" {}"}, {"a.usda", "def \"Q\" {}"}});
    scene.GetStage()->GetRootLayer()->InsertSubLayerPath("a.usda");
    EXPECT_TRUE(scene.GetPrim("/Q"));
    scene.GetStage()->GetRootLayer()->RemoveSubLayerPath(0);
    EXPECT_FALSE(scene.GetPrim("/Q"));
}

TEST(Edits, ThatRemoveAPrimLeaveOnlyWhatOtherLayersSay)
{
    const Scene scene({{"root.usda", "( subLayers = [@a.usda@] )\nover \"P\" { int a = 1 }\ndef \"Q\" {}"},
                       {"a.usda", "def \"P\" { int a = 2 }"}});
    scene.GetStage()->RemovePrim(SdfPath("/P"));
    scene.GetStage()->RemovePrim(SdfPath("/Q"));
    EXPECT_EQ(2, scene.Get<int>("/P.a"));
    EXPECT_FALSE(scene.GetPrim("/Q"));
}

} // namespace
} // namespace conformance
