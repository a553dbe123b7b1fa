#include "contract_session.h"

#include <tests/support/scene_files.h>

#include <ImfChannelList.h>
#include <ImfFrameBuffer.h>
#include <ImfHeader.h>
#include <ImfInputFile.h>
#include <png.h>

#include <filesystem>

PXR_NAMESPACE_USING_DIRECTIVE

namespace vesk::tests::contract {
namespace {

std::vector<std::uint8_t> readPng(const std::filesystem::path& path, int& width, int& height)
{
    png_image image{};
    image.version = PNG_IMAGE_VERSION;
    if (!png_image_begin_read_from_file(&image, path.c_str())) return {};
    image.format = PNG_FORMAT_RGBA;
    std::vector<std::uint8_t> bytes(PNG_IMAGE_SIZE(image));
    width = static_cast<int>(image.width);
    height = static_cast<int>(image.height);
    png_image_finish_read(&image, nullptr, bytes.data(), 0, nullptr);
    return bytes;
}

std::vector<float> readExrChannel(const std::filesystem::path& path, const char* channel)
{
    Imf::InputFile file(path.c_str());
    const auto window = file.header().dataWindow();
    const auto width = static_cast<std::size_t>(window.max.x - window.min.x + 1);
    const auto height = static_cast<std::size_t>(window.max.y - window.min.y + 1);
    std::vector<float> values(width * height);
    Imf::FrameBuffer frame;
    frame.insert(channel, Imf::Slice(Imf::FLOAT, reinterpret_cast<char*>(values.data()), sizeof(float),
                                     sizeof(float) * width));
    file.setFrameBuffer(frame);
    file.readPixels(window.min.y, window.max.y);
    return values;
}

base::Future<void> capture(ContractSession& session, const std::filesystem::path& path,
                           const char* aov = "color")
{
    return session.renderer->captureFrame(path, TfToken(aov), false, {}, 4);
}

TEST_P(EveryDrawingRenderer, CapturesTheColourThatTheFrameShows)
{
    const TemporaryFolder folder;
    ContractSession session(GetParam(), kSphereScene);
    session.lookOrthographic(4.0);
    capture(session, folder.path() / "ball.png").get();
    int width = 0;
    int height = 0;
    const std::vector<std::uint8_t> bytes = readPng(folder.path() / "ball.png", width, height);
    EXPECT_EQ(width, 200);
    EXPECT_EQ(height, 200);
    EXPECT_EQ(bytes, *session.render("color", 4).buffer().bytes);
}

TEST_P(EveryDrawingRenderer, LeavesNothingBesideTheFileThatItCaptured)
{
    const TemporaryFolder folder;
    ContractSession session(GetParam(), kSphereScene);
    session.lookOrthographic(4.0);
    capture(session, folder.path() / "a.png").get();
    capture(session, folder.path() / "a.png").get(); // replaces it
    int files = 0;
    for (const auto& entry : std::filesystem::directory_iterator(folder.path())) {
        EXPECT_EQ(entry.path().filename(), "a.png");
        ++files;
    }
    EXPECT_EQ(files, 1);
}

TEST_P(EveryDrawingRenderer, KeepsTheBackgroundOfATransparentCaptureClear)
{
    const TemporaryFolder folder;
    ContractSession session(GetParam(), kSphereScene);
    session.lookOrthographic(4.0);
    session.renderer->captureFrame(folder.path() / "cut.png", TfToken("color"), true, {}, 1).get();
    int width = 0;
    int height = 0;
    const std::vector<std::uint8_t> bytes = readPng(folder.path() / "cut.png", width, height);
    ASSERT_EQ(bytes.size(), 200u * 200u * 4u);
    EXPECT_EQ(bytes[3], 0);
    EXPECT_EQ(bytes[(100 * 200 + 100) * 4 + 3], 255);
}

TEST_P(EveryDrawingRenderer, UsesTheClearColourOfACaptureForThatPictureAlone)
{
    const TemporaryFolder folder;
    ContractSession session(GetParam(), kSphereScene);
    session.lookOrthographic(4.0);
    session.renderer
        ->captureFrame(folder.path() / "red.png", TfToken("color"), false, GfVec4f(1.0f, 0.0f, 0.0f, 1.0f), 1)
        .get();
    int width = 0;
    int height = 0;
    EXPECT_EQ(readPng(folder.path() / "red.png", width, height).at(0), 255);
    EXPECT_EQ(session.render("color").byte(0, 0, 0), 0);
}

TEST_P(EveryDrawingRenderer, WritesFloatOutputsAsTheyAre)
{
    const TemporaryFolder folder;
    ContractSession session(GetParam(), "#usda 1.0\ndef Cube \"Box\" { double size = 2\n}\n");
    session.lookPerspective(10.0);
    capture(session, folder.path() / "depth.exr", "linearDepth").get();
    const std::vector<float> depths = readExrChannel(folder.path() / "depth.exr", "Z");
    ASSERT_EQ(depths.size(), 200u * 200u);
    EXPECT_NEAR(depths[100 * 200 + 100], 9.0f, 1e-4f);
    EXPECT_TRUE(std::isinf(depths[0]));
}

TEST_P(EveryDrawingRenderer, WritesSeveralOutputsOfOneFrame)
{
    const TemporaryFolder folder;
    ContractSession session(GetParam(), kSphereScene);
    session.lookOrthographic(4.0);
    std::vector<AovCaptureRequest> requests(2);
    requests[0].path = folder.path() / "color.png";
    requests[0].aov = TfToken("color");
    requests[1].path = folder.path() / "id.exr";
    requests[1].aov = TfToken("primId");
    session.renderer->captureFrames(requests, false).get();
    EXPECT_TRUE(std::filesystem::exists(requests[0].path));
    EXPECT_EQ(readExrChannel(requests[1].path, "Y").at(0), -1.0f);
}

struct BadTarget
{
    const char* path; // below the test's folder
    const char* aov;
    const char* error; // with {} for the full path
};

TEST_P(EveryDrawingRenderer, ReportsATargetThatCannotBeWrittenWithOneSentenceAndNoFile)
{
    const std::vector<BadTarget> cases = {
        {"none/a.png", "color",
         "cannot write the image '{}', its folder does not exist: No such file or directory"},
        {"folder.png", "color", "cannot write the image '{}', a folder has that name: Is a directory"},
        {"a.gif", "color",
         "cannot tell the image format of '{}'; use a name that ends in .png or .exr: Invalid argument"},
        {"a", "color",
         "cannot tell the image format of '{}'; use a name that ends in .png or .exr: Invalid argument"},
        {"a.png", "depth",
         "the output 'depth' holds floats and '{}' cannot; use a name that ends in .exr: Invalid argument"},
        {"a.png", "sparkle",
         "unknown render output 'sparkle'; known outputs: color, depth, linearDepth, cameraDepth, normal, "
         "Neye, "
         "primId, instanceId, elementId: Invalid argument"}};
    const TemporaryFolder folder;
    std::filesystem::create_directory(folder.path() / "folder.png");
    ContractSession session(GetParam(), kSphereScene);
    session.lookOrthographic(4.0);
    for (const BadTarget& c : cases) {
        const std::filesystem::path path = folder.path() / c.path;
        std::string expected = c.error;
        if (const auto at = expected.find("{}"); at != std::string::npos)
            expected.replace(at, 2, path.string());
        EXPECT_EQ(errorOf(capture(session, path, c.aov)), expected);
    }
    EXPECT_EQ(errorOf(capture(session, std::string("a\0b.png", 7))),
              "the image's file name holds a NUL character: Invalid argument");
    for (const auto& entry : std::filesystem::directory_iterator(folder.path())) {
        EXPECT_EQ(entry.path().filename(), "folder.png");
    }
}

} // namespace
} // namespace vesk::tests::contract
