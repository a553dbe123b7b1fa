#include "viewport_fixture.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <tuple>

namespace vesk::framework::usd_viewport::tests {
namespace {

using vesk::usd::model::Selector;
using vesk::usd::model::SelectorHash;
using Selectors = std::unordered_set<Selector, SelectorHash>;

class PickingTest : public ViewportTest
{
protected:
    void SetUp() override
    {
        ViewportTest::SetUp();
        const int viewport[2] = {800, 600};
        const int render[2] = {1600, 1200};
        model->setViewportSize(viewport);
        model->setRenderSize(render, 2.0f);
        forget();
    }

    static PickingResult hit(const std::string& prim, const std::string& secondary,
                             const std::string& tertiary)
    {
        PickingResult result;
        result.hit = true;
        result.primPath = prim;
        result.secondaryPath = secondary;
        result.instanceIndex = 7;
        result.tertiaryPath = tertiary;
        result.point = GfVec3d(1, 2, 3);
        result.normal = GfVec3d(0, 0, 1);
        result.depth = 2.5;
        return result;
    }

    std::vector<std::string> picked(const PickingResult& result, bool tertiary, bool secondary,
                                    bool expand = false, Selectors selectors = {})
    {
        const Future<PrimPathPickingResult> future =
            model->getPrimPathsFromPointPicking(1, 2, 3, tertiary, secondary, expand, std::move(selectors));
        renderer->picks.back().setValue(result);
        const PickingResult raw = future.get().pickingResult;
        EXPECT_EQ(std::tie(raw.hit, raw.primPath, raw.secondaryPath, raw.instanceIndex, raw.tertiaryPath),
                  std::tie(result.hit, result.primPath, result.secondaryPath, result.instanceIndex,
                           result.tertiaryPath));
        EXPECT_EQ(std::tie(raw.point, raw.normal, raw.depth),
                  std::tie(result.point, result.normal, result.depth));
        return future.get().primPaths;
    }
};

TEST_F(PickingTest, APointReachesTheRendererInPhysicalPixels)
{
    const Future<PickingResult> future = model->singlePointPicking(100, 50, 3);
    EXPECT_EQ(renderer->take(), std::vector<std::string>{"singlePointPicking 400 200 6"});
    EXPECT_FALSE(future.isReady());
    renderer->picks.back().setValue(hit("/A", "", ""));
    EXPECT_EQ(future.get().primPath, "/A");
    expectSilence();
}

TEST_F(PickingTest, AColourIsAskedForAtTheSamePoint)
{
    const Future<GfVec4f> future = model->colorPicking(100, 50, TfToken("depth"));
    EXPECT_EQ(renderer->take(), std::vector<std::string>{"colorPicking 400 200 depth"});
    renderer->colors.back().setValue(GfVec4f(1, 2, 3, 4));
    EXPECT_EQ(future.get(), GfVec4f(1, 2, 3, 4));
}

TEST_F(PickingTest, PointsOutsideArePassedOn)
{
    model->singlePointPicking(-100, 5000, 0);
    EXPECT_EQ(renderer->take(), std::vector<std::string>{"singlePointPicking -400 20000 0"});
    const int none[2] = {0, 600};
    model->setViewportSize(none);
    model->singlePointPicking(0, 0, 1);
    EXPECT_NE(renderer->take()[0].find("nan"), std::string::npos);
    model->colorPicking(1, 300, TfToken("color"));
    EXPECT_EQ(renderer->take(), std::vector<std::string>{"colorPicking inf 1200 color"});
}

TEST_F(PickingTest, APointIsDividedThenMultipliedInFloat)
{
    const int viewport[2] = {3, 7};
    const int render[2] = {10, 30};
    model->setViewportSize(viewport);
    model->setRenderSize(render, 1.0f);
    // 1 / 3 and 1 / 7 are rounded to 24 bits before they are multiplied: one unit in the last place above the
    // floats nearest 10 / 3 and 30 / 7.
    const std::array<float, 2> expected{0x1.aaaaacp+1f, 0x1.124926p+2f};
    EXPECT_EQ(model->viewportToRenderCoordinates(1, 1), expected);
}

TEST_F(PickingTest, AFailedPickIsTheRenderersOwnFailure)
{
    const Future<PickingResult> point = model->singlePointPicking(1, 2, 3);
    const Future<GfVec4f> color = model->colorPicking(1, 2, TfToken("color"));
    const std::exception_ptr error = std::make_exception_ptr(std::runtime_error("device lost"));
    renderer->picks.back().setError(error);
    renderer->colors.back().setError(error);
    EXPECT_EQ(point.error(), error);
    EXPECT_EQ(color.error(), error);
}

TEST_F(PickingTest, TheRadiusIsScaledByTheRatioAlone)
{
    const int render[2] = {80, 60};
    model->setRenderSize(render, 1.5f);
    renderer->take();
    model->singlePointPicking(100, 50, 3);
    EXPECT_EQ(renderer->take(), std::vector<std::string>{"singlePointPicking 15 7.5 4.5"});
}

TEST_F(PickingTest, APickTakesTheChosenPath)
{
    const struct
    {
        bool tertiary, secondary;
        const char *secondaryPath, *tertiaryPath, *expected;
    } rows[] = {
        {false, false, "/S", "/T", "/P"}, {true, false, "/S", "/T", "/T"}, {true, false, "/S", "", "/P"},
        {false, true, "/S", "/T", "/S"},  {false, true, "", "/T", "/P"},   {true, true, "/S", "/T", "/S"},
        {true, true, "", "/T", "/T"},     {true, true, "", "", "/P"},      {true, true, "/S", "", "/S"}};
    for (const auto& row : rows)
        EXPECT_EQ(picked(hit("/P", row.secondaryPath, row.tertiaryPath), row.tertiary, row.secondary),
                  std::vector<std::string>{row.expected});
}

TEST_F(PickingTest, AHitWithoutAPathIsOneEmptyPath)
{
    EXPECT_EQ(picked(hit("", "", ""), false, false), std::vector<std::string>{""});
    EXPECT_EQ(picked(hit("not a path", "", ""), false, false, true, {Selector(SdfPath("/A"))}),
              std::vector<std::string>{"not a path"});
}

TEST_F(PickingTest, AMissSelectsNothing)
{
    PickingResult miss = hit("/P", "/S", "/T");
    miss.hit = false;
    EXPECT_TRUE(picked(miss, true, true, true, {Selector(SdfPath("/P"))}).empty());
}

TEST_F(PickingTest, AMemberOfTheSelectionSelectsAllOfIt)
{
    const Selectors selection{Selector(SdfPath("/A")), Selector(SdfPath("/B")), Selector(SdfPath("/C"))};
    std::vector<std::string> inOrder;
    for (const Selector& selector : selection)
        inOrder.push_back(selector.path().GetString());
    EXPECT_EQ(picked(hit("/B", "", ""), false, false, true, selection), inOrder);
    EXPECT_EQ(picked(hit("/X", "/C", ""), false, true, true, selection), inOrder);
}

TEST_F(PickingTest, AnythingElseSelectsItself)
{
    const Selectors selection{Selector(SdfPath("/A")), Selector(SdfPath("/B"))};
    EXPECT_EQ(picked(hit("/X", "", ""), false, false, true, selection), std::vector<std::string>{"/X"});
    EXPECT_EQ(picked(hit("/A", "", ""), false, false, true, {}), std::vector<std::string>{"/A"});
    EXPECT_EQ(picked(hit("/A", "", ""), false, false, false, selection), std::vector<std::string>{"/A"});
}

TEST_F(PickingTest, AnInstanceIsNotItsInstancer)
{
    const Selectors selection{Selector(SdfPath("/I"), 3)};
    EXPECT_EQ(picked(hit("/I", "", ""), false, false, true, selection), std::vector<std::string>{"/I"});
}

TEST_F(PickingTest, AnInstanceIsListedWhenAnotherMemberIsHit)
{
    const Selectors selection{Selector(SdfPath("/I"), 3), Selector(SdfPath("/A"))};
    std::vector<std::string> paths = picked(hit("/A", "", ""), false, false, true, selection);
    std::sort(paths.begin(), paths.end());
    EXPECT_EQ(paths, (std::vector<std::string>{"/A", "/I"}));
}

TEST_F(PickingTest, AFailedPickFailsTheSelection)
{
    const Future<PrimPathPickingResult> future =
        model->getPrimPathsFromPointPicking(1, 2, 3, false, false, false, {});
    renderer->picks.back().setError(std::make_exception_ptr(std::runtime_error("device lost")));
    EXPECT_THROW(future.get(), std::runtime_error);
}

TEST_F(PickingTest, APickOutlivesTheModel)
{
    const Future<PrimPathPickingResult> future = model->getPrimPathsFromPointPicking(
        1, 2, 3, false, false, true, {Selector(SdfPath("/A")), Selector(SdfPath("/B"))});
    model.reset();
    EXPECT_FALSE(future.isReady());
    std::thread([this] { renderer->picks.back().setValue(hit("/A", "", "")); }).join();
    EXPECT_EQ(future.get().primPaths.size(), 2u);
}

TEST(PrimPathPicking, StartsEmpty)
{
    const PrimPathPickingResult result;
    EXPECT_TRUE(result.primPaths.empty());
    EXPECT_FALSE(result.pickingResult.hit);
}

} // namespace
} // namespace vesk::framework::usd_viewport::tests
