#include "viewport_fixture.h"

namespace vesk::framework::usd_viewport::tests {
namespace {

/// What one operation makes of the camera of this file, to the last bit.
///
/// The numbers come from a program of their own, which computes each gesture by hand with the value types of
/// OpenUSD 24.11 and shares nothing with this library.
struct Row
{
    const char* name;
    void (*operation)(ViewportModel&);
    bool zUp;
    bool orthographic;
    double transform[4][3];
    float lens[5]; ///< horizontal and vertical aperture, focal length, focus distance, distance to the pivot
};

const Row kRows[] = {
    {"orbit",
     [](ViewportModel& model) { model.orbitCamera(123.4f, -56.7f, ""); },
     false,
     false,
     {{-0x1.3b368deb1d2eap-4, 0x1.d7dbf487fcb92p-1, -0x1.8590e1bfaa79ep-2},
      {-0x1.611746f72308cp-4, 0x1.7ef6b18912bb8p-2, 0x1.d8ca52d1f3fdap-1},
      {0x1.fc91ee906527p-1, 0x1.a966e72a8c673p-4, 0x1.9f0b9f5acbef8p-5},
      {0x1.095712b5c5338p+1, -0x1.096e34dd3c3dep+2, 0x1.4b0e8a25f70fdp+3}},
     {0x1.4f47aep+4f, 0x1.e94e3cp+3f, 0x1.18p+5f, 0x1.d33334p+2f, 0x1.666666p+3f}},
    {"orbit on a Z-up scene",
     [](ViewportModel& model) { model.orbitCamera(123.4f, -56.7f, ""); },
     true,
     false,
     {{0x1.2e0fc49e7282cp-2, 0x1.d575d096dc3b6p-1, -0x1.13404ea4a8c15p-2},
      {0x1.2caaa0d2e167ep-1, 0x1.88c7f807ea2p-5, 0x1.9db1216683016p-1},
      {0x1.81eb3884c3a29p-1, -0x1.95b3a125d56e1p-2, -0x1.0c71ab6ce0027p-1},
      {-0x1.38554422b384p-1, -0x1.37eefa0f93c56p+3, 0x1.f3f37409073fap+1}},
     {0x1.4f47aep+4f, 0x1.e94e3cp+3f, 0x1.18p+5f, 0x1.d33334p+2f, 0x1.666666p+3f}},
    {"orbit by angles",
     [](ViewportModel& model) { model.orbitCameraUsingDeltaAngles(33.3f, -12.1f, ""); },
     false,
     false,
     {{-0x1.86c30a4037e56p-2, 0x1.d7dbf487fcb92p-1, -0x1.22908cc649a9ap-4},
      {0x1.6cbb0b091166dp-2, 0x1.bd4df33fd1cd7p-3, 0x1.d149dae62d933p-1},
      {0x1.b4b50b27c203p-1, 0x1.493ce36a8c47ep-2, -0x1.a519c1731aed2p-2},
      {0x1.007f258f8146p-1, -0x1.b5a32c6780314p+0, 0x1.4b06d5b53545cp+2}},
     {0x1.4f47aep+4f, 0x1.e94e3cp+3f, 0x1.18p+5f, 0x1.d33334p+2f, 0x1.666666p+3f}},
    {"rotate",
     [](ViewportModel& model) { model.rotateCamera(123.4f, -56.7f, ""); },
     false,
     false,
     {{-0x1.3b368deb1d389p-4, 0x1.d7dbf487fcb93p-1, -0x1.8590e1bfaa78cp-2},
      {-0x1.611746f723058p-4, 0x1.7ef6b18912ba5p-2, 0x1.d8ca52d1f3fdfp-1},
      {0x1.fc91ee906527p-1, 0x1.a966e72a8c6edp-4, 0x1.9f0b9f5acbe1ep-5},
      {0x1.b333333333333p+0, -0x1.2666666666666p+1, 0x1.1cccccccccccdp+3}},
     {0x1.4f47aep+4f, 0x1.e94e3cp+3f, 0x1.18p+5f, 0x1.d33334p+2f, 0x1.666666p+3f}},
    {"rotate on a Z-up scene",
     [](ViewportModel& model) { model.rotateCamera(123.4f, -56.7f, ""); },
     true,
     false,
     {{0x1.2e0fc49e7282ep-2, 0x1.d575d096dc3b7p-1, -0x1.13404ea4a8c15p-2},
      {0x1.2caaa0d2e167ep-1, 0x1.88c7f807ea208p-5, 0x1.9db1216683016p-1},
      {0x1.81eb3884c3a2ap-1, -0x1.95b3a125d56e1p-2, -0x1.0c71ab6ce0027p-1},
      {0x1.b333333333333p+0, -0x1.2666666666666p+1, 0x1.1cccccccccccdp+3}},
     {0x1.4f47aep+4f, 0x1.e94e3cp+3f, 0x1.18p+5f, 0x1.d33334p+2f, 0x1.666666p+3f}},
    {"pan",
     [](ViewportModel& model) { model.panCamera(123.4f, -56.7f, ""); },
     false,
     false,
     {{-0x1.1eb851eb851ecp-2, 0x1.d7dbf487fcb92p-1, -0x1.13404ea4a8c15p-2},
      {0x0p+0, 0x1.1eb851eb851ecp-2, 0x1.eb851eb851eb8p-1},
      {0x1.eb851eb851eb8p-1, 0x1.13404ea4a8c15p-2, -0x1.41205bc01a36ep-4},
      {0x1.ef3a84851eb85p+0, -0x1.96fb1cd3404eap+1, 0x1.182ebc941205cp+3}},
     {0x1.4f47aep+4f, 0x1.e94e3cp+3f, 0x1.18p+5f, 0x1.d33334p+2f, 0x1.666666p+3f}},
    {"pan of an orthographic camera",
     [](ViewportModel& model) { model.panCamera(123.4f, -56.7f, ""); },
     false,
     true,
     {{-0x1.1eb851eb851ecp-2, 0x1.d7dbf487fcb92p-1, -0x1.13404ea4a8c15p-2},
      {0x0p+0, 0x1.1eb851eb851ecp-2, 0x1.eb851eb851eb8p-1},
      {0x1.eb851eb851eb8p-1, 0x1.13404ea4a8c15p-2, -0x1.41205bc01a36ep-4},
      {0x1.12839f3d70a3dp+1, -0x1.fbe13da40b78p+1, 0x1.140b5497f62b7p+3}},
     {0x1.4f47aep+4f, 0x1.e94e3cp+3f, 0x1.18p+5f, 0x1.d33334p+2f, 0x1.666666p+3f}},
    {"zoom",
     [](ViewportModel& model) { model.zoomCamera(123.4f, -56.7f, ""); },
     false,
     false,
     {{-0x1.1eb851eb851ecp-2, 0x1.d7dbf487fcb92p-1, -0x1.13404ea4a8c15p-2},
      {0x0p+0, 0x1.1eb851eb851ecp-2, 0x1.eb851eb851eb8p-1},
      {0x1.eb851eb851eb8p-1, 0x1.13404ea4a8c15p-2, -0x1.41205bc01a36ep-4},
      {0x1.8217c53333333p+0, -0x1.2d466670a3d7p+1, 0x1.1d4d2222e147bp+3}},
     {0x1.4f47aep+4f, 0x1.e94e3cp+3f, 0x1.18p+5f, 0x1.c66964p+2f, 0x1.60017ep+3f}},
    {"zoom of an orthographic camera",
     [](ViewportModel& model) { model.zoomCamera(123.4f, -56.7f, ""); },
     false,
     true,
     {{-0x1.1eb851eb851ecp-2, 0x1.d7dbf487fcb92p-1, -0x1.13404ea4a8c15p-2},
      {0x0p+0, 0x1.1eb851eb851ecp-2, 0x1.eb851eb851eb8p-1},
      {0x1.eb851eb851eb8p-1, 0x1.13404ea4a8c15p-2, -0x1.41205bc01a36ep-4},
      {0x1.8217c53333333p+0, -0x1.2d466670a3d7p+1, 0x1.1d4d2222e147bp+3}},
     {0x1.86451ep+7f, 0x1.b801dep+6f, 0x1.9p+5f, 0x1.c66964p+2f, 0x1.60017ep+3f}},
    {"move",
     [](ViewportModel& model) { model.moveCamera(1.1f, -2.2f, 3.3f, ""); },
     false,
     false,
     {{-0x1.1eb851eb851ecp-2, 0x1.d7dbf487fcb92p-1, -0x1.13404ea4a8c15p-2},
      {0x0p+0, 0x1.1eb851eb851ecp-2, 0x1.eb851eb851eb8p-1},
      {0x1.eb851eb851eb8p-1, 0x1.13404ea4a8c15p-2, -0x1.41205bc01a36ep-4},
      {0x1.23d70a051eb85p+2, -0x1.03e425c0ebeep+0, 0x1.8ef34d361134p+2}},
     {0x1.4f47aep+4f, 0x1.e94e3cp+3f, 0x1.18p+5f, 0x1.d33334p+2f, 0x1.dp+3f}},
    {"rack focus",
     [](ViewportModel& model) {
         GfCamera camera = model.getGfCamera();
         setRackFocus(camera, 77.7f);
         model.setGfCamera(camera, "");
     },
     false,
     false,
     {{-0x1.1eb851eb851ecp-2, 0x1.d7dbf487fcb92p-1, -0x1.13404ea4a8c15p-2},
      {0x0p+0, 0x1.1eb851eb851ecp-2, 0x1.eb851eb851eb8p-1},
      {0x1.eb851eb851eb8p-1, 0x1.13404ea4a8c15p-2, -0x1.41205bc01a36ep-4},
      {0x1.47fe0ae147ae1p+3, 0x1.80bffcb923a2p-4, 0x1.0674e5573eab4p+3}},
     {0x1.4f47aep+4f, 0x1.e94e3cp+3f, 0x1.36ccccp+6f, 0x1.034bc8p+4f, 0x1.666666p+3f}},
    {"rack focus of an orthographic camera",
     [](ViewportModel& model) {
         GfCamera camera = model.getGfCamera();
         setRackFocus(camera, 77.7f);
         model.setGfCamera(camera, "");
     },
     false,
     true,
     {{-0x1.1eb851eb851ecp-2, 0x1.d7dbf487fcb92p-1, -0x1.13404ea4a8c15p-2},
      {0x0p+0, 0x1.1eb851eb851ecp-2, 0x1.eb851eb851eb8p-1},
      {0x1.eb851eb851eb8p-1, 0x1.13404ea4a8c15p-2, -0x1.41205bc01a36ep-4},
      {0x1.831735c28f5c2p+4, 0x1.ffc14d6a161e4p+1, 0x1.c40924b5dcc64p+2}},
     {0x1.4f47aep+4f, 0x1.e94e3cp+3f, 0x1.36ccccp+6f, 0x1.ebafa6p+4f, 0x1.666666p+3f}},
    {"rack focus to a long lens",
     [](ViewportModel& model) {
         GfCamera camera = model.getGfCamera();
         setRackFocus(camera, 188.0f);
         model.setGfCamera(camera, "");
     },
     false,
     false,
     {{-0x1.1eb851eb851ecp-2, 0x1.d7dbf487fcb92p-1, -0x1.13404ea4a8c15p-2},
      {0x0p+0, 0x1.1eb851eb851ecp-2, 0x1.eb851eb851eb8p-1},
      {0x1.eb851eb851eb8p-1, 0x1.13404ea4a8c15p-2, -0x1.41205bc01a36ep-4},
      {0x1.02ae066666666p+5, 0x1.91c75a1cac083p+2, 0x1.997b30624dd3p+2}},
     {0x1.4f47aep+4f, 0x1.e94e3cp+3f, 0x1.77fffep+7f, 0x1.39b102p+5f, 0x1.666666p+3f}},
    {"adjust",
     [](ViewportModel& model) { model.setGfCamera(model.adjustGfCamera(model.getGfCamera()), ""); },
     false,
     false,
     {{-0x1.1eb851eb851ecp-2, 0x1.d7dbf487fcb92p-1, -0x1.13404ea4a8c15p-2},
      {0x0p+0, 0x1.1eb851eb851ecp-2, 0x1.eb851eb851eb8p-1},
      {0x1.eb851eb851eb8p-1, 0x1.13404ea4a8c15p-2, -0x1.41205bc01a36ep-4},
      {0x1.b333333333333p+0, -0x1.2666666666666p+1, 0x1.1cccccccccccdp+3}},
     {0x1.4f47aep+4f, 0x1.7a025cp+3f, 0x1.b09fa4p+4f, 0x1.d33334p+2f, 0x1.666666p+3f}},
    {"adjust of an orthographic camera",
     [](ViewportModel& model) { model.setGfCamera(model.adjustGfCamera(model.getGfCamera()), ""); },
     false,
     true,
     {{-0x1.1eb851eb851ecp-2, 0x1.d7dbf487fcb92p-1, -0x1.13404ea4a8c15p-2},
      {0x0p+0, 0x1.1eb851eb851ecp-2, 0x1.eb851eb851eb8p-1},
      {0x1.eb851eb851eb8p-1, 0x1.13404ea4a8c15p-2, -0x1.41205bc01a36ep-4},
      {0x1.b333333333333p+0, -0x1.2666666666666p+1, 0x1.1cccccccccccdp+3}},
     {0x1.8d5bf6p+7f, 0x1.cp+6f, 0x1.9p+5f, 0x1.d33334p+2f, 0x1.666666p+3f}},
};

class GestureNumbersTest : public ViewportTest
{
protected:
    // A rotation by the quaternion (0.48, 0.36, 0.64, 0.48), all of whose entries are short decimals.
    static GfCamera startCamera(bool orthographic)
    {
        GfCamera camera;
        camera.SetTransform(GfMatrix4d(-0.28, 0.9216, -0.2688, 0, 0, 0.28, 0.96, 0, 0.96, 0.2688, -0.0784, 0,
                                       1.7, -2.3, 8.9, 1));
        if (orthographic) camera.SetProjection(GfCamera::Orthographic);
        camera.SetFocalLength(35.0f);
        camera.SetFStop(2.8f);
        camera.SetFocusDistance(7.3f);
        return camera;
    }
};

TEST_F(GestureNumbersTest, AreThoseOfASeparateComputationBitForBit)
{
    // Sizes that divide nothing evenly: every rounding shows.
    const int size[2] = {1279, 721};
    model->setRenderSize(size, 1.0f);
    for (const Row& expected : kRows) {
        SCOPED_TRACE(expected.name);
        model->setZUp(expected.zUp);
        model->setDistanceToCenter(11.2f);
        model->setGfCamera(startCamera(expected.orthographic), "");
        expected.operation(*model);
        const GfCamera camera = model->getGfCamera();
        const GfMatrix4d transform = camera.GetTransform();
        for (int index = 0; index < 4; ++index) {
            for (int column = 0; column < 3; ++column)
                EXPECT_EQ(transform[index][column], expected.transform[index][column])
                    << index << " " << column;
        }
        EXPECT_EQ(camera.GetHorizontalAperture(), expected.lens[0]);
        EXPECT_EQ(camera.GetVerticalAperture(), expected.lens[1]);
        EXPECT_EQ(camera.GetFocalLength(), expected.lens[2]);
        EXPECT_EQ(camera.GetFocusDistance(), expected.lens[3]);
        EXPECT_EQ(model->distanceToCenter(), expected.lens[4]);
        EXPECT_EQ(camera.GetFStop(), 2.8f);
    }
}

} // namespace
} // namespace vesk::framework::usd_viewport::tests
