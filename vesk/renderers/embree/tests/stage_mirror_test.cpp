#include "stage_mirror.h"

#include <pxr/base/gf/vec3d.h>
#include <pxr/usd/sdf/layer.h>
#include <pxr/usd/usd/attribute.h>

#include <gtest/gtest.h>

#include <limits>
#include <string>

PXR_NAMESPACE_USING_DIRECTIVE

namespace vesk::renderers::embree {
namespace {

UsdStageRefPtr openText(const std::string& text)
{
    const SdfLayerRefPtr layer = SdfLayer::CreateAnonymous(".usda");
    EXPECT_TRUE(layer->ImportFromString(text));
    return UsdStage::Open(layer);
}

constexpr const char* kTwoBalls = R"(#usda 1.0
def Xform "World" {
    def Sphere "A" { double3 xformOp:translate = (1, 0, 0)
        uniform token[] xformOpOrder = ["xformOp:translate"]
    }
    def Sphere "B" {
    }
}
)";

const SceneItem& itemOf(const SceneSnapshot& scene, std::size_t chunk)
{
    return scene.chunks[chunk]->groups[0]->items[0];
}

TEST(StageMirror, LooksOnlyAtWhatAnEditTouched)
{
    const UsdStageRefPtr stage = openText(kTwoBalls);
    StageMirror mirror;
    const auto before = mirror.update(stage, {}, {});
    EXPECT_EQ(mirror.visitedPrims(), 3u);

    stage->GetPrimAtPath(SdfPath("/World/A"))
        .GetAttribute(TfToken("xformOp:translate"))
        .Set(GfVec3d(0, 2, 0));
    StageChanges changes;
    changes.places = {SdfPath("/World/A")};
    const auto after = mirror.update(stage, {}, changes);

    EXPECT_EQ(mirror.visitedPrims(), 1u);
    ASSERT_EQ(after->chunks.size(), 2u);
    EXPECT_EQ(after->chunks[1], before->chunks[1]);                     // B is the very same
    EXPECT_EQ(itemOf(*after, 0).geometry, itemOf(*before, 0).geometry); // A kept its shape
    EXPECT_EQ(after->chunks[0]->placements[0].rows[3][1], 2.0);
}

TEST(StageMirror, ReadsAShapeAgainThatChanged)
{
    const UsdStageRefPtr stage = openText(kTwoBalls);
    StageMirror mirror;
    const auto before = mirror.update(stage, {}, {});
    stage->GetPrimAtPath(SdfPath("/World/B")).GetAttribute(TfToken("radius")).Set(3.0);
    StageChanges changes;
    changes.shapes = {SdfPath("/World/B")};
    const auto after = mirror.update(stage, {}, changes);
    EXPECT_NE(itemOf(*after, 1).geometry, itemOf(*before, 1).geometry);
    EXPECT_FLOAT_EQ(itemOf(*after, 1).geometry->upper.x, 3.0f);
    EXPECT_EQ(after->chunks[0], before->chunks[0]);
}

TEST(StageMirror, DropsARemovedPrimAndFindsANewOne)
{
    const UsdStageRefPtr stage = openText(kTwoBalls);
    StageMirror mirror;
    mirror.update(stage, {}, {});
    stage->RemovePrim(SdfPath("/World/A"));
    stage->DefinePrim(SdfPath("/World/C"), TfToken("Cube"));
    StageChanges changes;
    changes.subtrees = {SdfPath("/World/A"), SdfPath("/World/C")};
    const auto after = mirror.update(stage, {}, changes);
    ASSERT_EQ(after->chunks.size(), 2u);
    EXPECT_EQ(itemOf(*after, 0).path, SdfPath("/World/B"));
    EXPECT_EQ(itemOf(*after, 1).path, SdfPath("/World/C"));
}

TEST(StageMirror, LooksAtNothingElseWhenAPrimIsRemoved)
{
    const UsdStageRefPtr stage = openText(kTwoBalls);
    StageMirror mirror;
    mirror.update(stage, {}, {});
    stage->RemovePrim(SdfPath("/World/A"));
    StageChanges changes;
    changes.subtrees = {SdfPath("/World/A")};
    const auto after = mirror.update(stage, {}, changes);
    EXPECT_EQ(mirror.visitedPrims(), 0u);
    ASSERT_EQ(after->chunks.size(), 1u);
    EXPECT_EQ(itemOf(*after, 0).path, SdfPath("/World/B"));
    EXPECT_EQ(after->bounds, GfRange3d(GfVec3d(-1, -1, -1), GfVec3d(1, 1, 1)));
}

TEST(StageMirror, ShrinksTheBoundsWithWhatMovesInwards)
{
    const UsdStageRefPtr stage = openText(kTwoBalls);
    StageMirror mirror;
    EXPECT_EQ(mirror.update(stage, {}, {})->bounds, GfRange3d(GfVec3d(-1, -1, -1), GfVec3d(2, 1, 1)));
    const UsdAttribute place =
        stage->GetPrimAtPath(SdfPath("/World/A")).GetAttribute(TfToken("xformOp:translate"));
    StageChanges changes;
    changes.places = {SdfPath("/World/A")};
    place.Set(GfVec3d(0, 0, 0));
    EXPECT_EQ(mirror.update(stage, {}, changes)->bounds, GfRange3d(GfVec3d(-1, -1, -1), GfVec3d(1, 1, 1)));
    place.Set(GfVec3d(0, 7, 0));
    EXPECT_EQ(mirror.update(stage, {}, changes)->bounds, GfRange3d(GfVec3d(-1, -1, -1), GfVec3d(1, 8, 1)));
}

// An edit brings what a reading of the whole stage would bring.
void expectSame(const SceneSnapshot& a, const SceneSnapshot& b)
{
    EXPECT_EQ(a.bounds, b.bounds);
    EXPECT_EQ(a.lights.size(), b.lights.size());
    EXPECT_EQ(a.cameraPaths, b.cameraPaths);
    ASSERT_EQ(a.chunks.size(), b.chunks.size());
    for (std::size_t i = 0; i < a.chunks.size(); ++i) {
        ASSERT_EQ(a.chunks[i]->placements.size(), b.chunks[i]->placements.size());
        for (std::size_t k = 0; k < a.chunks[i]->placements.size(); ++k)
            EXPECT_EQ(a.chunks[i]->placements[k].matrix(), b.chunks[i]->placements[k].matrix());
        EXPECT_EQ(itemOf(a, i).path, itemOf(b, i).path);
    }
}

constexpr const char* kMoving = R"(#usda 1.0
def Xform "Still" {
    def Sphere "A" { }
    def Sphere "B" { double3 xformOp:translate = (4, 0, 0)
        uniform token[] xformOpOrder = ["xformOp:translate"]
    }
}
def Xform "Turning" { double xformOp:rotateZ.timeSamples = { 0: 0, 10: 90 }
    uniform token[] xformOpOrder = ["xformOp:rotateZ"]
    def Sphere "C" { double3 xformOp:translate = (4, 0, 0)
        uniform token[] xformOpOrder = ["xformOp:translate"]
    }
}
def Sphere "Growing" { double radius.timeSamples = { 0: 1, 10: 3 }
}
def Sphere "Blinking" { token visibility.timeSamples = { 0: "inherited", 5: "invisible" }
}
def DistantLight "Dimming" { float inputs:intensity.timeSamples = { 0: 1, 10: 0 }
}
def Camera "Eye" { double3 xformOp:translate.timeSamples = { 0: (0, 0, 0), 10: (9, 0, 0) }
    uniform token[] xformOpOrder = ["xformOp:translate"]
}
)";

TEST(StageMirror, ReadsAtANewTimeOnlyWhatChangesOverTime)
{
    const UsdStageRefPtr stage = openText(kMoving);
    StageMirror mirror;
    ExtractionRequest request;
    mirror.update(stage, request, {});
    EXPECT_EQ(mirror.visitedPrims(), 9u);
    request.time = 1.0;
    const auto before = mirror.update(stage, request, {}); // finds out what changes
    EXPECT_EQ(mirror.visitedPrims(), 9u);
    for (const double time : {2.0, 6.0, 4.0, 10.0, 0.0}) {
        request.time = time;
        const auto after = mirror.update(stage, request, {});
        EXPECT_EQ(mirror.visitedPrims(), 6u) << time; // all but Still and what lies below it
        StageMirror fresh;
        expectSame(*after, *fresh.update(stage, request, {}));
        const auto stillA = [](const SceneSnapshot& scene) {
            for (const auto& chunk : scene.chunks) {
                if (chunk->groups[0]->items[0].path == SdfPath("/Still/A")) return chunk;
            }
            return std::shared_ptr<const SceneChunk>();
        };
        EXPECT_EQ(stillA(*after), stillA(*before)) << time;
    }
}

TEST(StageMirror, ReadsEverythingBetweenTheDefaultTimeAndANumber)
{
    const UsdStageRefPtr stage = openText(R"(#usda 1.0
def Sphere "One" { double radius = 1
    double radius.timeSamples = { 5: 2 }
}
)");
    StageMirror mirror;
    ExtractionRequest request;
    request.time = std::numeric_limits<double>::quiet_NaN();
    EXPECT_FLOAT_EQ(itemOf(*mirror.update(stage, request, {}), 0).geometry->upper.x, 1.0f);
    request.time = 1.0;
    EXPECT_FLOAT_EQ(itemOf(*mirror.update(stage, request, {}), 0).geometry->upper.x, 2.0f);
    request.time = 2.0;
    EXPECT_FLOAT_EQ(itemOf(*mirror.update(stage, request, {}), 0).geometry->upper.x, 2.0f);
    request.time = std::numeric_limits<double>::quiet_NaN();
    EXPECT_FLOAT_EQ(itemOf(*mirror.update(stage, request, {}), 0).geometry->upper.x, 1.0f);
}

TEST(StageMirror, TakesUpAnEditAndANewTimeAtOnce)
{
    const UsdStageRefPtr stage = openText(kMoving);
    StageMirror mirror;
    ExtractionRequest request;
    for (const double time : {0.0, 1.0}) {
        request.time = time;
        mirror.update(stage, request, {});
    }
    stage->GetPrimAtPath(SdfPath("/Still/B"))
        .GetAttribute(TfToken("xformOp:translate"))
        .Set(GfVec3d(0, 0, 0), UsdTimeCode(0.0));
    stage->GetPrimAtPath(SdfPath("/Still/B"))
        .GetAttribute(TfToken("xformOp:translate"))
        .Set(GfVec3d(8, 0, 0), UsdTimeCode(8.0));
    StageChanges changes;
    changes.places = {SdfPath("/Still/B")};
    for (const double time : {3.0, 4.0, 5.0}) { // B began to move with the edit
        request.time = time;
        const auto after = mirror.update(stage, request, changes);
        changes = StageChanges();
        EXPECT_EQ(mirror.visitedPrims(), 7u);
        StageMirror fresh;
        expectSame(*after, *fresh.update(stage, request, {}));
    }
}

TEST(StageMirror, FollowsWhatMovesInsidePrototypesAndMaterials)
{
    const UsdStageRefPtr stage = openText(R"(#usda 1.0
def PointInstancer "Dust" { point3f[] positions = [(5, 0, 0), (0, 5, 0)]
    int[] protoIndices = [0, 0]
    rel prototypes = </Dust/Proto>
    def Xform "Proto" { def Sphere "S" { double radius.timeSamples = { 0: 1, 10: 3 }
        }
    }
}
class Xform "_Thing" { def Sphere "S" { double3 xformOp:translate.timeSamples = { 0: (0, 0, 0), 10: (9, 0, 0) }
        uniform token[] xformOpOrder = ["xformOp:translate"]
    }
}
def Xform "I" ( inherits = </_Thing>; instanceable = true ) { }
def Xform "J" ( inherits = </_Thing>; instanceable = true ) { }
)");
    StageMirror mirror;
    ExtractionRequest request;
    for (const double time : {0.0, 1.0, 5.0, 10.0}) {
        request.time = time;
        const auto after = mirror.update(stage, request, {});
        StageMirror fresh;
        const auto whole = fresh.update(stage, request, {});
        EXPECT_EQ(after->bounds, whole->bounds) << time;
        ASSERT_EQ(after->chunks.size(), whole->chunks.size());
    }
    EXPECT_EQ(mirror.visitedPrims(), 3u);
}

std::string manyCopies(int count)
{
    std::string positions;
    std::string indices;
    for (int i = 0; i < count; ++i) {
        positions += (i ? ", (" : "(") + std::to_string(i) + ", 0, 0)";
        indices += i ? ", 0" : "0";
    }
    return "#usda 1.0\ndef PointInstancer \"P\" { point3f[] positions = [" + positions +
           "]\n int[] protoIndices = [" + indices +
           "]\n rel prototypes = </P/Proto>\n def Xform \"Proto\" { def Sphere \"S\" { }\n def Cube \"C\" { "
           "}\n }\n}\n";
}

TEST(StageMirror, SharesOnePrototypeAmongAllCopiesOfAnInstancer)
{
    StageMirror mirror;
    const auto scene = mirror.update(openText(manyCopies(1000)), {}, {});
    ASSERT_EQ(scene->chunks.size(), 1u);
    const SceneChunk& chunk = *scene->chunks[0];
    EXPECT_EQ(chunk.placements.size(), 1000u);
    ASSERT_EQ(chunk.groups.size(), 1u);
    EXPECT_EQ(chunk.groups[0]->items.size(), 2u);
    EXPECT_EQ(chunk.placements[999].instanceIndex, 999);
    EXPECT_EQ(chunk.bounds, GfRange3d(GfVec3d(-1, -1, -1), GfVec3d(1000, 1, 1)));
}

TEST(StageMirror, KeepsNoMoreOfACopyThanItsPlaceAndItsNumbers) { EXPECT_LE(sizeof(Placement), 112u); }

TEST(StageMirror, SharesOnePrototypeAmongNativeInstancesThatLookAlike)
{
    StageMirror mirror;
    const auto scene = mirror.update(openText(R"(#usda 1.0
class Xform "_Thing" { def Sphere "S" {
    }
}
def Xform "A" ( inherits = </_Thing>; instanceable = true ) { }
def Xform "B" ( inherits = </_Thing>; instanceable = true ) { }
def Xform "Red" ( inherits = </_Thing>; instanceable = true ) {
    color3f[] primvars:displayColor = [(1, 0, 0)] ( interpolation = "constant" )
}
)"),
                                     {}, {});
    ASSERT_EQ(scene->chunks.size(), 3u);
    EXPECT_EQ(scene->chunks[0]->groups[0], scene->chunks[1]->groups[0]);
    EXPECT_NE(scene->chunks[0]->groups[0], scene->chunks[2]->groups[0]);
    // The shape is one, whatever it looks like.
    EXPECT_EQ(itemOf(*scene, 0).geometry, itemOf(*scene, 2).geometry);
}

TEST(StageMirror, ReadsEverythingAgainAfterAnEditInsideAPrototype)
{
    const UsdStageRefPtr stage = openText(manyCopies(3));
    StageMirror mirror;
    mirror.update(stage, {}, {});
    stage->GetPrimAtPath(SdfPath("/P/Proto/S")).GetAttribute(TfToken("radius")).Set(2.0);
    StageChanges changes;
    changes.shapes = {SdfPath("/P/Proto/S")};
    const auto after = mirror.update(stage, {}, changes);
    EXPECT_EQ(after->bounds, GfRange3d(GfVec3d(-2, -2, -2), GfVec3d(4, 2, 2)));
}

} // namespace
} // namespace vesk::renderers::embree
