#include "run_cli.h"

#include <apps/support/image_file.h>

#include <gtest/gtest.h>

namespace vesk::cli::tests {
namespace {

class Sheet : public ::testing::Test
{
protected:
    vesk::tests::TemporaryFolder m_folder;
    const std::string m_scene = m_folder.write("scene.usda", kScene).string();
    const std::string m_file = (m_folder.path() / "sheet.png").string();
};

TEST_F(Sheet, ShowsEveryDirectionAndEveryCamera)
{
    const CliResult result = runCli({"sheet", m_scene, "-o", m_file, "--size", "64x36", "--samples", "1"});
    ASSERT_EQ(result.exitCode, 0) << result.err;
    EXPECT_EQ(result.out, m_file + "\n");
    // Seven directions and two cameras in rows of four: three rows of 36 pixels with a caption of 24.
    const apps::Image sheet = apps::readPng(m_file);
    EXPECT_EQ(sheet.width, 8 + 4 * (64 + 8));
    EXPECT_EQ(sheet.height, 8 + 3 * (36 + 24 + 8));
}

TEST_F(Sheet, IsTheSameFromRunToRun)
{
    ASSERT_EQ(runCli({"sheet", m_scene, "-o", m_file, "--size", "32x32", "--samples", "1"}).exitCode, 0);
    const std::string again = (m_folder.path() / "again.png").string();
    ASSERT_EQ(runCli({"sheet", m_scene, "-o", again, "--size", "32x32", "--samples", "1"}).exitCode, 0);
    EXPECT_EQ(vesk::tests::readFile(m_file), vesk::tests::readFile(again));
}

TEST_F(Sheet, RefusesAFormatThatItCannotWrite)
{
    const CliResult result = runCli({"sheet", m_scene, "-o", "sheet.exr"});
    EXPECT_EQ(result.exitCode, 2);
    EXPECT_EQ(result.err, "vesk: 'sheet.exr' must end in .png; see vesk sheet --help\n");
}

TEST_F(Sheet, RefusesAMissingFolder)
{
    const std::string file = (m_folder.path() / "missing" / "sheet.png").string();
    const CliResult result = runCli({"sheet", m_scene, "-o", file});
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_EQ(result.err, "vesk: cannot write '" + file + "': the folder '" +
                              (m_folder.path() / "missing").string() + "' does not exist; create it first\n");
}

} // namespace
} // namespace vesk::cli::tests
