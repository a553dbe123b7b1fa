#include "viewport_fixture.h"

#include <pxr/base/gf/rotation.h>
#include <pxr/usd/usdGeom/xform.h>

#include <array>
#include <limits>
#include <random>

namespace vesk::framework::usd_viewport::tests {
namespace {

const char* const kChain = R"(#usda 1.0
def Cube "Box"
{
}
def Xform "A"
{
    def Xform "B"
    {
        def Xform "C"
        {
            def Camera "Cam"
            {
                float focusDistance = 5
            }
        }
    }
}
)";

/// A followed camera below parents of all kinds. An edit makes the viewport copy the camera, which may write
/// it, which is an edit again: this has to end.
class FeedbackTest : public ViewportTest
{
protected:
    static constexpr std::size_t kMostTasks = 8;

    FeedbackTest() : ViewportTest(kChain) {}

    /// Runs what is queued until nothing is left; returns how many tasks that took.
    std::size_t rest(std::size_t limit = kMostTasks)
    {
        std::size_t count = 0;
        while (watched.document->runNextTask()) {
            vesk::base::ThreadPool::defaultPool().waitUntilIdle();
            if (++count > limit + 1) {
                ADD_FAILURE() << "the document does not come to rest";
                watched.document->dropPendingTasks();
            }
        }
        return count;
    }

    /// The same for four viewports, with all that switching to a camera takes.
    void restOfAll() { rest(4 * kMostTasks); }

    template <class F>
    void edit(const std::string& label, F work)
    {
        watched.document->edit(label,
                               [work](const UsdDocument::ExecContext& context) { work(*context.stage()); });
    }

    void setParents(const std::array<GfMatrix4d, 3>& parents)
    {
        watched.stageChanges = 0;
        edit("parents", [parents](UsdStage& stage) {
            const char* const paths[] = {"/A", "/A/B", "/A/B/C"};
            for (std::size_t level = 0; level < parents.size(); ++level)
                UsdGeomXformable(stage.GetPrimAtPath(SdfPath(paths[level])))
                    .MakeMatrixXform()
                    .Set(parents[level]);
        });
        rest();
        EXPECT_LE(watched.stageChanges, 2) << "moved parents: at most one write for a clean camera";
        watched.document->clearUndo();
        watched.stageChanges = 0;
    }

    void setFocalLength(float focalLength)
    {
        edit("edit",
             [focalLength](UsdStage& stage) { cameraOf(stage).GetFocalLengthAttr().Set(focalLength); });
    }

    float focalLength() const
    {
        float value = 0.0f;
        cameraOf(*watched.stage).GetFocalLengthAttr().Get(&value);
        return value;
    }

    static UsdGeomCamera cameraOf(UsdStage& stage)
    {
        return UsdGeomCamera(stage.GetPrimAtPath(SdfPath("/A/B/C/Cam")));
    }

    double number(double low, double high)
    {
        return std::uniform_real_distribution<double>(low, high)(m_random);
    }

    /// A turn, scale, shear and shift of every kind; now and then one that cannot be inverted.
    GfMatrix4d parent(int round)
    {
        GfMatrix4d scale(1.0), shear(1.0);
        if (round % 3 != 0) scale.SetScale(GfVec3d(number(0.05, 4), number(-4, 4), number(0.05, 4)));
        if (round % 3 == 2) shear[0][1] = number(-1, 1);
        if (round % 97 == 0) scale.SetScale(GfVec3d(number(0.5, 2), 0.0, 1.0));
        GfMatrix4d place(GfRotation(GfVec3d(number(-1, 1), number(-1, 1), number(-1, 1)), number(-180, 180)),
                         GfVec3d(number(-50, 50), number(-50, 50), number(-50, 50)));
        return scale * shear * place;
    }

    std::array<GfMatrix4d, 3> chain(int round)
    {
        std::array<GfMatrix4d, 3> parents{GfMatrix4d(1.0), GfMatrix4d(1.0), GfMatrix4d(1.0)};
        for (int level = 0; level <= round % 3; ++level)
            parents[static_cast<std::size_t>(level)] = parent(round / 3 + level);
        return parents;
    }

    std::mt19937 m_random{20};
};

/// Ten thousand chains in parts, so that no part takes long.
class FeedbackOfChains : public FeedbackTest, public ::testing::WithParamInterface<int>
{
protected:
    static constexpr int kChains = 2500;
};

TEST_P(FeedbackOfChains, EndsWithOneMoreWriteAtMost)
{
    m_random.seed(static_cast<unsigned>(GetParam()));
    follow("/A/B/C/Cam");
    int written = 0;
    for (int round = 0; round < kChains; ++round) {
        SCOPED_TRACE("seed " + std::to_string(GetParam()) + ", round " + std::to_string(round));
        setParents(chain(round));
        const float value = 20.0f + static_cast<float>(round % 100);
        setFocalLength(value);
        ASSERT_LE(rest(), kMostTasks);
        const int extra = watched.stageChanges - 1;
        ASSERT_GE(extra, 0);
        ASSERT_LE(extra, 1);
        ASSERT_EQ(watched.document->undoLabels().size(), 1u + static_cast<std::size_t>(extra));
        ASSERT_EQ(focalLength(), value);
        written += extra;
        if (extra == 0) {
            watched.document->undo();
            ASSERT_LE(rest(), kMostTasks);
            ASSERT_EQ(watched.document->redoLabels(), std::vector<std::string>{"edit"});
            watched.document->redo();
            ASSERT_LE(rest(), kMostTasks);
            ASSERT_EQ(focalLength(), value);
        }
    }
    // A write of the lens leaves a camera that was clean before as it is.
    EXPECT_LT(written, kChains / 10);
    log.allowUntaken();
}

INSTANTIATE_TEST_SUITE_P(Seeds, FeedbackOfChains, ::testing::Values(1, 2, 3, 4),
                         [](const ::testing::TestParamInfo<int>& seed) {
                             return "Seed" + std::to_string(seed.param);
                         });

TEST_F(FeedbackTest, OfFourViewportsThatSeeDifferentBoundsEnds)
{
    std::vector<std::unique_ptr<ViewportModel>> models;
    for (int index = 0; index < 4; ++index) {
        models.push_back(makeModel());
        models.back()->setRenderProxyGeometry(index % 2 == 1);
        if (index >= 2) models.back()->setCurrentTime(10.0);
        models.back()->setActiveCameraPath("/A/B/C/Cam");
    }
    restOfAll();
    for (int round = 0; round < 500; ++round) {
        SCOPED_TRACE(round);
        edit("parents", [parents = chain(round)](UsdStage& stage) {
            UsdGeomXformable(stage.GetPrimAtPath(SdfPath("/A"))).MakeMatrixXform().Set(parents[0]);
        });
        restOfAll();
        watched.document->clearUndo();
        watched.stageChanges = 0;
        setFocalLength(20.0f + static_cast<float>(round));
        // The edit, one copy for each viewport, and room for one write with its copies.
        ASSERT_LE(rest(), kMostTasks);
        ASSERT_LE(watched.stageChanges, 2);
        for (const auto& each : models)
            ASSERT_EQ(each->getGfCamera().GetFocalLength(), focalLength());
    }
    log.allowUntaken();
}

TEST_F(FeedbackTest, OfAFocusThatCannotBeUsedEndsWithItsRepair)
{
    follow("/A/B/C/Cam");
    cacheBounds();
    for (const float focus :
         {0.0f, -1.0f, std::numeric_limits<float>::quiet_NaN(), std::numeric_limits<float>::infinity()}) {
        watched.stageChanges = 0;
        edit("focus", [focus](UsdStage& stage) { cameraOf(stage).GetFocusDistanceAttr().Set(focus); });
        EXPECT_LE(rest(), kMostTasks);
        EXPECT_LE(watched.stageChanges, 2);
    }
    log.allowUntaken();
}

TEST_F(FeedbackTest, OfNumbersThatAreNoneEnds)
{
    follow("/A/B/C/Cam");
    const double nan = std::numeric_limits<double>::quiet_NaN();
    const double infinity = std::numeric_limits<double>::infinity();
    for (const double bad : {nan, infinity, -infinity, 1e300}) {
        for (int place = 0; place < 16; ++place) {
            SCOPED_TRACE(std::to_string(bad) + " at " + std::to_string(place));
            GfMatrix4d transform(1.0);
            transform[place / 4][place % 4] = bad;
            watched.stageChanges = 0;
            edit("local", [transform](UsdStage& stage) { cameraOf(stage).MakeMatrixXform().Set(transform); });
            ASSERT_LE(rest(), kMostTasks);
            ASSERT_LE(watched.stageChanges, 2);
            setParents({transform, GfMatrix4d(1.0), GfMatrix4d(1.0)});
            setFocalLength(30.0f + static_cast<float>(place));
            ASSERT_LE(rest(), kMostTasks);
            ASSERT_LE(watched.stageChanges, 2);
        }
    }
    log.allowUntaken();
}

} // namespace
} // namespace vesk::framework::usd_viewport::tests
