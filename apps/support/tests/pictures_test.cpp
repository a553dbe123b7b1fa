#include <apps/support/contact_sheet.h>
#include <apps/support/errors.h>
#include <apps/support/image_file.h>
#include <apps/support/side_file.h>
#include <tests/support/scene_files.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace vesk::apps {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;

std::vector<int> colorAt(const Image& image, int x, int y)
{
    const std::uint8_t* pixel = image.pixel(x, y);
    return {pixel[0], pixel[1], pixel[2], pixel[3]};
}

TEST(PngFile, ComesBackAsItWasWritten)
{
    const tests::TemporaryFolder folder;
    Image image(3, 2, 10, 20, 30);
    image.pixel(2, 1)[0] = 200;
    image.pixel(2, 1)[3] = 128;
    writePng(folder.path() / "a.png", image);

    const Image back = readPng(folder.path() / "a.png");

    EXPECT_EQ(back.width, 3);
    EXPECT_EQ(back.height, 2);
    EXPECT_EQ(back.rgba, image.rgba);
}

TEST(PngFile, LeavesNothingBesideItWhenItIsWritten)
{
    const tests::TemporaryFolder folder;
    writePng(folder.path() / "a.png", Image(1, 1, 0, 0, 0));

    const auto begin = std::filesystem::directory_iterator(folder.path());
    EXPECT_EQ(std::distance(begin, std::filesystem::directory_iterator()), 1);
}

TEST(SideFile, NeverWritesOverAFileThatExists)
{
    const tests::TemporaryFolder folder;
    const std::filesystem::path target = folder.path() / "a.png";
    const std::string text = "the user's own";
    std::filesystem::path taken;
    {
        const SideFile first(target);
        taken = first.path();
    }
    folder.write(taken.filename().string(), text);
    writePng(target, Image(1, 1, 0, 0, 0));

    EXPECT_EQ(tests::readFile(taken), text);
    EXPECT_EQ(readPng(target).width, 1);
}

TEST(SideFile, IsRemovedUnlessItTookItsPlace)
{
    const tests::TemporaryFolder folder;
    {
        const SideFile side(folder.path() / "a.json");
        EXPECT_EQ(side.path().parent_path(), folder.path());
        EXPECT_TRUE(std::filesystem::exists(side.path()));
    }
    EXPECT_TRUE(std::filesystem::is_empty(folder.path()));
}

TEST(SideFile, IsRemovedWhereItsPlaceIsAFolder)
{
    const tests::TemporaryFolder folder;
    const std::filesystem::path target = folder.path() / "a.png";
    std::filesystem::create_directories(target / "inner");
    EXPECT_THROW(writePng(target, Image(1, 1, 0, 0, 0)), JobError);
    const auto begin = std::filesystem::directory_iterator(folder.path());
    EXPECT_EQ(std::distance(begin, std::filesystem::directory_iterator()), 1);
}

TEST(PngFile, ThatCannotBeReadIsNamed)
{
    try {
        readPng("/no/such/picture.png");
        FAIL() << "a missing picture was read";
    } catch (const JobError& error) {
        EXPECT_THAT(error.what(), HasSubstr("cannot read the picture '/no/such/picture.png': "));
    }
}

TEST(PngFile, ThatCannotBeWrittenIsNamed)
{
    try {
        writePng("/no/such/folder/picture.png", Image(1, 1, 0, 0, 0));
        FAIL() << "a picture was written into a missing folder";
    } catch (const JobError& error) {
        EXPECT_THAT(error.what(), HasSubstr("cannot write '/no/such/folder/picture.png': "));
    }
}

TEST(ContactSheet, PutsPicturesIntoRowsOfTheGivenLength)
{
    // Three cells of 40 x 20 in rows of two: a gap of 8 around each, 24 pixels for each caption.
    const std::vector<SheetEntry> entries(3, SheetEntry{Image(40, 20, 255, 0, 0), ""});
    const Image sheet = makeContactSheet(entries, 2, 40, 20);

    EXPECT_EQ(sheet.width, 8 + 2 * (40 + 8));
    EXPECT_EQ(sheet.height, 8 + 2 * (20 + 24 + 8));
}

TEST(ContactSheet, KeepsThePictureColourAndItsPlace)
{
    const Image sheet =
        makeContactSheet({{Image(40, 20, 255, 0, 0), ""}, {Image(40, 20, 0, 255, 0), ""}}, 2, 40, 20);

    EXPECT_THAT(colorAt(sheet, 8 + 20, 8 + 10), ElementsAre(255, 0, 0, 255));
    EXPECT_THAT(colorAt(sheet, 8 + 48 + 20, 8 + 10), ElementsAre(0, 255, 0, 255));
}

TEST(ContactSheet, FitsATallPictureIntoTheMiddleOfItsCell)
{
    // 10 x 40 in a cell of 40 x 20 becomes 5 x 20, so the cell's sides stay background.
    const Image sheet = makeContactSheet({{Image(10, 40, 255, 0, 0), ""}}, 1, 40, 20);

    EXPECT_THAT(colorAt(sheet, 8 + 20, 8 + 10), ElementsAre(255, 0, 0, 255));
    EXPECT_THAT(colorAt(sheet, 8 + 2, 8 + 10), ElementsAre(32, 32, 34, 255));
}

TEST(ContactSheet, WritesTheCaptionUnderThePicture)
{
    const Image plain = makeContactSheet({{Image(80, 20, 255, 0, 0), ""}}, 1, 80, 20);
    const Image captioned = makeContactSheet({{Image(80, 20, 255, 0, 0), "front"}}, 1, 80, 20);

    const auto rowsAbove = static_cast<std::ptrdiff_t>(plain.width) * 4 * (8 + 20);
    EXPECT_TRUE(std::equal(plain.rgba.begin(), plain.rgba.begin() + rowsAbove, captioned.rgba.begin()));
    EXPECT_NE(plain.rgba, captioned.rgba);
}

} // namespace
} // namespace vesk::apps
