#include "contract_session.h"

#include <tests/support/scene_files.h>

#include <array>
#include <cmath>
#include <limits>

PXR_NAMESPACE_USING_DIRECTIVE

// Numbers and moments that no host should choose: everything that was asked for ends, and the next good
// request is answered.

namespace vesk::tests::contract {
namespace {

constexpr float kNan = std::numeric_limits<float>::quiet_NaN();
constexpr float kInf = std::numeric_limits<float>::infinity();
constexpr float kMax = std::numeric_limits<float>::max();
constexpr float kTiny = std::numeric_limits<float>::denorm_min();

constexpr std::array<float, 12> kNasty = {kNan,  kInf,   -kInf, 0.0f,  -0.0f, -1.0f,
                                          1e30f, -1e30f, kMax,  -kMax, kTiny, 1e-30f};

/// The same numbers in every run.
class Dice
{
public:
    unsigned next(unsigned below)
    {
        m_state = m_state * 1664525u + 1013904223u;
        return (m_state >> 8) % below;
    }

private:
    unsigned m_state = 1;
};

// Spoils one property of a camera.
void spoil(GfCamera& camera, unsigned property, float value, float other)
{
    GfMatrix4d m = camera.GetTransform();
    switch (property) {
    case 0:
        camera.SetHorizontalAperture(value);
        break;
    case 1:
        camera.SetVerticalAperture(value);
        break;
    case 2:
        camera.SetHorizontalApertureOffset(value);
        break;
    case 3:
        camera.SetFocalLength(value);
        break;
    case 4:
        camera.SetClippingRange(GfRange1f(value, other));
        break;
    case 5:
        camera.SetClippingPlanes({GfVec4f(value, other, value, other)});
        break;
    case 6:
        m[3][2] = value;
        camera.SetTransform(m);
        break;
    default:
        m[0][1] = value;
        camera.SetTransform(m);
        break;
    }
}

TEST_P(EveryDrawingRenderer, AnswersOrRefusesAThousandBadCameras)
{
    const TemporaryFolder folder;
    ContractSession session(GetParam(), kSphereScene, 16, 8);
    Dice dice;
    int answered = 0;
    for (int i = 0; i < 1000; ++i) {
        GfCamera camera = makeOrthographicCamera(4.0, 2.0, 10.0);
        if (dice.next(2) == 0) camera.SetProjection(GfCamera::Perspective);
        for (unsigned spoiled = 0; spoiled <= dice.next(3); ++spoiled) {
            const float value = kNasty[dice.next(kNasty.size())];
            spoil(camera, dice.next(8), value, kNasty[dice.next(kNasty.size())]);
        }
        session.renderer->setCamera(camera);
        const bool hasNoSize = dice.next(10) == 0;
        session.renderer->setRenderSize(hasNoSize ? 0 : 16, 8);
        RenderParameters parameters;
        parameters.samples = 1;
        const auto frame = session.renderer->renderFrame(parameters);
        const auto pick = session.renderer->singlePointPicking(8.0f, 4.0f, 2.0f);
        const auto capture =
            session.renderer->captureFrame(folder.path() / "a.png", TfToken("color"), false, {}, 1);
        const std::string error = errorOf(frame);
        answered += error == "no error";
        // The three see the same camera: either all have a view or none has.
        EXPECT_EQ(errorOf(pick), error) << i;
        EXPECT_EQ(errorOf(capture), error) << i;
        if (hasNoSize) {
            EXPECT_NE(error, "no error") << i;
        }
    }
    EXPECT_GT(answered, 100);
    EXPECT_LT(answered, 900);
    session.renderer->setRenderSize(16, 8);
    session.lookOrthographic(4.0);
    EXPECT_TRUE(session.renderer->renderFrame({}).get().converged);
    EXPECT_TRUE(session.renderer->singlePointPicking(8.0f, 4.0f, 0.0f).get().hit);
}

TEST_P(EveryDrawingRenderer, MissesAtPointsThatAreNotInThePictureWhateverTheRadius)
{
    constexpr std::array<float, 24> values = {kNan, kInf,  -kInf, 0.0f,  -0.0f,  kTiny,  -kTiny, 1e-30f,
                                              0.5f, 7.99f, 8.0f,  15.5f, 16.0f,  -0.01f, 1e4f,   -1e4f,
                                              1e9f, -1e9f, 3e9f,  1e30f, -1e30f, kMax,   -kMax,  4.25f};
    ContractSession session(GetParam(), kSphereScene, 16, 8);
    session.lookOrthographic(4.0);
    std::vector<base::Future<PickingResult>> picks;
    for (const float x : values) {
        for (const float y : values) {
            for (const float radius : values)
                picks.push_back(session.renderer->singlePointPicking(x, y, radius));
        }
    }
    auto pick = picks.begin();
    for (const float x : values) {
        for (const float y : values) {
            for (const float radius : values) {
                const bool isInside = x >= 0.0f && x < 16.0f && y >= 0.0f && y < 8.0f;
                const bool seesAll = isInside && radius >= 20.0f;
                const PickingResult result = (pick++)->get();
                if (!isInside) {
                    EXPECT_FALSE(result.hit) << x << " " << y << " " << radius;
                }
                if (seesAll) {
                    EXPECT_TRUE(result.hit) << x << " " << y << " " << radius;
                }
                if (result.hit) {
                    EXPECT_EQ(result.primPath, "/Ball");
                }
            }
        }
    }
}

TEST_P(EveryDrawingRenderer, EndsTenThousandRequestsThroughSwitchesAndItsDeath)
{
    const TemporaryFolder folder;
    for (int round = 0; round < 10; ++round) {
        ContractSession session(GetParam(), kSphereScene, 16, 8, true);
        std::vector<base::Future<HydraRenderJobResult>> frames;
        std::vector<base::Future<PickingResult>> picks;
        std::vector<base::Future<void>> captures;
        for (int i = 0; i < 334; ++i) {
            frames.push_back(session.renderer->renderFrame({}));
            picks.push_back(session.renderer->singlePointPicking(1.0f, 1.0f, 0.0f));
            captures.push_back(
                session.renderer->captureFrame(folder.path() / "a.png", TfToken("color"), false, {}, 1));
            if (i == 100) session.renderer->switchRenderer(GetParam(), {{"samples", VtValue(1)}});
            if (i == 200 && round % 2 == 0) session.document->runPendingTasks();
            if (i == 300 && round % 3 == 0) session.renderer->setDocument(nullptr);
        }
        session.renderer.reset();
        const auto ended = [](const auto& future) { return future.isReady(); };
        EXPECT_TRUE(std::all_of(frames.begin(), frames.end(), ended)) << round;
        EXPECT_TRUE(std::all_of(picks.begin(), picks.end(), ended)) << round;
        EXPECT_TRUE(std::all_of(captures.begin(), captures.end(), ended)) << round;
        session.document->runPendingTasks();
    }
}

} // namespace
} // namespace vesk::tests::contract
