#include "image_decoding.h"

#include <ImfRgbaFile.h>
#include <png.h>
#include <tests/support/scene_files.h>

#include <gtest/gtest.h>

#include <cstdio>
#include <cstdlib>
#include <stdexcept>
#include <string>

#include <jpeglib.h>

namespace vesk::renderers::embree {
namespace {

std::string pngOf(int width, int height, png_uint_32 format, const std::vector<std::uint8_t>& pixels)
{
    png_image png{};
    png.version = PNG_IMAGE_VERSION;
    png.width = static_cast<png_uint_32>(width);
    png.height = static_cast<png_uint_32>(height);
    png.format = format;
    png_alloc_size_t size = 0;
    EXPECT_TRUE(png_image_write_to_memory(&png, nullptr, &size, 0, pixels.data(), 0, nullptr));
    std::string bytes(size, '\0');
    EXPECT_TRUE(png_image_write_to_memory(&png, bytes.data(), &size, 0, pixels.data(), 0, nullptr));
    bytes.resize(size);
    return bytes;
}

DecodedImage decode(const std::string& bytes) { return decodeImage(bytes.data(), bytes.size()); }

std::string errorOf(const std::string& bytes)
{
    try {
        decode(bytes);
    } catch (const std::runtime_error& error) {
        return error.what();
    }
    return "no error";
}

// A TGA without compression, blue first, its last row first.
std::string tga()
{
    std::string bytes(18, '\0');
    bytes[2] = 2;
    bytes[12] = 1; // one column
    bytes[14] = 2; // two rows
    bytes[16] = 24;
    return bytes + std::string("\x01\x02\x03\x04\x05\x06", 6);
}

TEST(ImageDecoding, ReadsPngWithItsFirstRowFirst)
{
    const DecodedImage image = decode(pngOf(1, 2, PNG_FORMAT_RGB, {1, 2, 3, 4, 5, 6}));
    EXPECT_EQ(image.width, 1);
    EXPECT_EQ(image.height, 2);
    EXPECT_EQ(image.channels, 3);
    EXPECT_EQ(image.bytes, (std::vector<std::uint8_t>{1, 2, 3, 255, 4, 5, 6, 255}));
}

TEST(ImageDecoding, TellsGreyPicturesFromColouredOnes)
{
    const DecodedImage image = decode(pngOf(2, 1, PNG_FORMAT_GRAY, {7, 9}));
    EXPECT_EQ(image.channels, 1);
    EXPECT_EQ(image.bytes, (std::vector<std::uint8_t>{7, 7, 7, 255, 9, 9, 9, 255}));
}

TEST(ImageDecoding, ReadsTgaThoughItHasNoSignature)
{
    const DecodedImage image = decode(tga());
    EXPECT_EQ(image.height, 2);
    EXPECT_EQ(image.bytes, (std::vector<std::uint8_t>{6, 5, 4, 255, 3, 2, 1, 255}));
}

TEST(ImageDecoding, ReadsRadiancePicturesAsNumbers)
{
    // One pixel: mantissas 128, 64, 0 and an exponent of 129 are 128 / 256 * 2, 64 / 256 * 2 and 0.
    const std::string hdr =
        std::string("#?RADIANCE\nFORMAT=32-bit_rle_rgbe\n\n-Y 1 +X 1\n") + std::string("\x80\x40\x00\x81", 4);
    const DecodedImage image = decode(hdr);
    ASSERT_EQ(image.floats.size(), 4u);
    EXPECT_FLOAT_EQ(image.floats[0], 1.0f);
    EXPECT_FLOAT_EQ(image.floats[1], 0.5f);
    EXPECT_FLOAT_EQ(image.floats[2], 0.0f);
}

// A picture of one colour, in which compression loses next to nothing.
std::string jpegOf(int width, int height, J_COLOR_SPACE space, const std::vector<std::uint8_t>& color)
{
    jpeg_compress_struct info{};
    jpeg_error_mgr errors{};
    info.err = jpeg_std_error(&errors);
    jpeg_create_compress(&info);
    unsigned char* buffer = nullptr;
    unsigned long size = 0;
    jpeg_mem_dest(&info, &buffer, &size);
    info.image_width = static_cast<JDIMENSION>(width);
    info.image_height = static_cast<JDIMENSION>(height);
    info.input_components = static_cast<int>(color.size());
    info.in_color_space = space;
    jpeg_set_defaults(&info);
    jpeg_set_quality(&info, 100, TRUE);
    jpeg_start_compress(&info, TRUE);
    std::vector<std::uint8_t> row;
    for (int x = 0; x < width; ++x)
        row.insert(row.end(), color.begin(), color.end());
    JSAMPROW rows[1] = {row.data()};
    for (int y = 0; y < height; ++y)
        jpeg_write_scanlines(&info, rows, 1);
    jpeg_finish_compress(&info);
    std::string bytes(reinterpret_cast<const char*>(buffer), size);
    jpeg_destroy_compress(&info);
    std::free(buffer);
    return bytes;
}

TEST(ImageDecoding, ReadsJpegInColourAndInGrey)
{
    const DecodedImage color = decode(jpegOf(5, 3, JCS_RGB, {200, 100, 50}));
    EXPECT_EQ(color.width, 5);
    EXPECT_EQ(color.height, 3);
    EXPECT_EQ(color.channels, 3);
    ASSERT_EQ(color.bytes.size(), 60u);
    EXPECT_NEAR(color.bytes[56], 200, 2);
    EXPECT_NEAR(color.bytes[57], 100, 2);
    EXPECT_NEAR(color.bytes[58], 50, 2);
    EXPECT_EQ(color.bytes[59], 255);
    const DecodedImage grey = decode(jpegOf(2, 2, JCS_GRAYSCALE, {90}));
    EXPECT_EQ(grey.channels, 1);
    EXPECT_NEAR(grey.bytes[0], 90, 1);
    EXPECT_EQ(grey.bytes[1], grey.bytes[0]);
}

TEST(ImageDecoding, ReadsOpenExrAsNumbersBeyondOne)
{
    const tests::TemporaryFolder folder;
    const std::string path = (folder.path() / "two.exr").string();
    {
        const Imf::Rgba pixels[2] = {{0.5f, 4.0f, -1.0f, 1.0f}, {0.0f, 0.25f, 100.0f, 0.5f}};
        Imf::RgbaOutputFile file(path.c_str(), 1, 2, Imf::WRITE_RGBA);
        file.setFrameBuffer(pixels, 1, 1);
        file.writePixels(2);
    }
    const DecodedImage image = decode(tests::readFile(path));
    EXPECT_EQ(image.width, 1);
    EXPECT_EQ(image.height, 2);
    EXPECT_EQ(image.floats, (std::vector<float>{0.5f, 4.0f, -1.0f, 1.0f, 0.0f, 0.25f, 100.0f, 0.5f}));
}

TEST(ImageDecoding, RefusesWhatIsNoPicture)
{
    EXPECT_EQ(errorOf("no picture at all"), "it is neither PNG, JPEG, OpenEXR, HDR nor TGA");
    EXPECT_EQ(errorOf(""), "it is neither PNG, JPEG, OpenEXR, HDR nor TGA");
}

TEST(ImageDecoding, RefusesEveryPictureThatEndsTooEarly)
{
    const std::string whole = pngOf(8, 8, PNG_FORMAT_RGBA, std::vector<std::uint8_t>(256, 90));
    // The last bytes are the end mark alone, which holds nothing of the picture.
    for (std::size_t size = 0; size + 16 < whole.size(); ++size)
        EXPECT_NE(errorOf(whole.substr(0, size)), "no error") << size;
    for (const std::string& magic : {std::string("\xff\xd8\xff\xe0"), std::string("\x76\x2f\x31\x01")})
        EXPECT_NE(errorOf(magic + "garbage"), "no error");
}

TEST(ImageDecoding, RefusesPicturesThatWouldFillTheMemory)
{
    std::string large = tga();
    large[12] = large[13] = large[14] = large[15] = '\x7f';
    EXPECT_EQ(errorOf(large), "it is too large: 32639x32639 pixels");
}

} // namespace
} // namespace vesk::renderers::embree
