#include "run_cli.h"

#include <apps/support/image_file.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace vesk::cli::tests {
namespace {

using ::testing::HasSubstr;

class Tour : public ::testing::Test
{
protected:
    vesk::tests::TemporaryFolder m_folder;
    const std::string m_scene = m_folder.write("scene.usda", kScene).string();
    const std::filesystem::path m_out = m_folder.path() / "pictures" / "of_scene";
    const CliResult m_result = runCli({"tour", m_scene, "-o", m_out.string(), "--size", "64x36"});
};

TEST_F(Tour, VisitsDirectionsGesturesTimesAndCameras)
{
    ASSERT_EQ(m_result.exitCode, 0) << m_result.err;
    for (const char* name :
         {"front", "back", "left", "right", "top", "bottom", "three-quarters", "orbited", "panned", "zoomed",
          "orthographic", "time_1", "time_3", "time_5", "camera_World_Front", "camera_World_Side", "sheet"}) {
        EXPECT_TRUE(std::filesystem::is_regular_file(m_out / (std::string(name) + ".png"))) << name;
    }
}

TEST_F(Tour, EndsWithASheetOfAllPictures)
{
    ASSERT_EQ(m_result.exitCode, 0) << m_result.err;
    // 16 pictures in rows of four: four rows.
    const apps::Image sheet = apps::readPng(m_out / "sheet.png");
    EXPECT_EQ(sheet.width, 8 + 4 * (480 + 8));
    EXPECT_EQ(sheet.height, 8 + 4 * (270 + 24 + 8));
}

TEST_F(Tour, SaysWhatItDid)
{
    EXPECT_THAT(m_result.out, HasSubstr("prims                7\n"));
    EXPECT_THAT(m_result.out, HasSubstr("bounds               (-1, -1, -1) to (10, 1, 1)\n"));
    EXPECT_THAT(m_result.out, HasSubstr("first picture after  "));
    EXPECT_THAT(m_result.out, HasSubstr((m_out / "sheet.png").string() + "\n"));
}

TEST_F(Tour, SizesACamerasPictureToTheCamerasWindow)
{
    // The default apertures are 20.955 to 15.2908: 36 rows make 36 * 1.37043 = 49.3 columns.
    const apps::Image image = apps::readPng(m_out / "camera_World_Front.png");
    EXPECT_EQ(image.width, 49);
    EXPECT_EQ(image.height, 36);
}

} // namespace
} // namespace vesk::cli::tests
