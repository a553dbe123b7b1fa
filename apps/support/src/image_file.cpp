#include <apps/support/image_file.h>

#include <apps/support/errors.h>
#include <apps/support/side_file.h>

#include <png.h>

namespace vesk::apps {

Image::Image(int w, int h, std::uint8_t red, std::uint8_t green, std::uint8_t blue)
    : width(w), height(h), rgba(static_cast<std::size_t>(w) * h * 4)
{
    for (std::size_t i = 0; i < rgba.size(); i += 4) {
        rgba[i] = red;
        rgba[i + 1] = green;
        rgba[i + 2] = blue;
        rgba[i + 3] = 255;
    }
}

Image readPng(const std::filesystem::path& path)
{
    png_image png{};
    png.version = PNG_IMAGE_VERSION;
    if (!png_image_begin_read_from_file(&png, path.c_str())) {
        throw JobError("cannot read the picture '" + path.string() + "': " + png.message);
    }
    png.format = PNG_FORMAT_RGBA;
    Image image;
    image.width = static_cast<int>(png.width);
    image.height = static_cast<int>(png.height);
    image.rgba.resize(PNG_IMAGE_SIZE(png));
    if (!png_image_finish_read(&png, nullptr, image.rgba.data(), 0, nullptr)) {
        throw JobError("cannot read the picture '" + path.string() + "': " + png.message);
    }
    return image;
}

void writePng(const std::filesystem::path& path, const Image& image)
{
    png_image png{};
    png.version = PNG_IMAGE_VERSION;
    png.width = static_cast<png_uint_32>(image.width);
    png.height = static_cast<png_uint_32>(image.height);
    png.format = PNG_FORMAT_RGBA;

    SideFile side(path);
    if (!png_image_write_to_file(&png, side.path().c_str(), 0, image.rgba.data(), 0, nullptr))
        throw JobError("cannot write '" + path.string() + "': " + png.message);
    side.moveToPlace();
}

} // namespace vesk::apps
