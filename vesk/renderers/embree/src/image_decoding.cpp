#include "image_decoding.h"

#include <ImfRgbaFile.h>
#include <ImfStdIO.h>
#include <jpeglib.h>
#include <png.h>

#include <algorithm>
#include <csetjmp>
#include <cstring>
#include <limits>
#include <memory>
#include <stdexcept>

#if defined(__GNUC__)
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wunused-function"
#pragma GCC diagnostic ignored "-Wsign-compare"
#pragma GCC diagnostic ignored "-Wshadow"
#pragma GCC diagnostic ignored "-Wmissing-field-initializers"
#pragma GCC diagnostic ignored "-Wunused-but-set-variable"
#pragma GCC diagnostic ignored "-Wtype-limits"
#endif
#define STB_IMAGE_IMPLEMENTATION
#define STB_IMAGE_STATIC
#define STBI_ONLY_HDR
#define STBI_ONLY_TGA
#define STBI_NO_STDIO
#define STBI_MAX_DIMENSIONS 65536
#include <stb/stb_image.h>
#if defined(__GNUC__)
#pragma GCC diagnostic pop
#endif

namespace vesk::renderers::embree {
namespace {

void checkSize(std::int64_t width, std::int64_t height)
{
    if (width < 1 || height < 1) throw std::runtime_error("it has no pixels");
    if (width > kMostPixels || height > kMostPixels || width * height > kMostPixels) {
        throw std::runtime_error("it is too large: " + std::to_string(width) + "x" + std::to_string(height) +
                                 " pixels");
    }
}

DecodedImage decodePng(const char* data, std::size_t size)
{
    png_image png{};
    png.version = PNG_IMAGE_VERSION;
    if (!png_image_begin_read_from_memory(&png, data, size)) throw std::runtime_error(png.message);
    const std::unique_ptr<png_image, void (*)(png_image*)> release(&png, png_image_free);
    checkSize(png.width, png.height);
    DecodedImage image;
    image.width = static_cast<int>(png.width);
    image.height = static_cast<int>(png.height);
    image.channels =
        ((png.format & PNG_FORMAT_FLAG_COLOR) ? 3 : 1) + ((png.format & PNG_FORMAT_FLAG_ALPHA) ? 1 : 0);
    png.format = PNG_FORMAT_RGBA;
    image.bytes.resize(PNG_IMAGE_SIZE(png));
    if (!png_image_finish_read(&png, nullptr, image.bytes.data(), 0, nullptr))
        throw std::runtime_error(png.message);
    return image;
}

struct JpegErrors
{
    jpeg_error_mgr base; // first: the library hands this one back
    std::jmp_buf back;
    char text[JMSG_LENGTH_MAX];
};

void leaveJpeg(j_common_ptr info)
{
    auto* errors = reinterpret_cast<JpegErrors*>(info->err);
    info->err->format_message(info, errors->text);
    std::longjmp(errors->back, 1);
}

/// A decoder whose state outlives the library's way of leaving.
struct JpegReader
{
    jpeg_decompress_struct info{};
    JpegErrors errors{};
    DecodedImage image;
    std::vector<std::uint8_t> row;
    bool tooLarge = false;

    ~JpegReader() { jpeg_destroy_decompress(&info); }

    // Returns false where the library gave up; nothing with a destructor lives in here.
    bool read(const char* data, std::size_t size)
    {
        info.err = jpeg_std_error(&errors.base);
        errors.base.error_exit = leaveJpeg;
        errors.base.output_message = [](j_common_ptr) {};
        if (setjmp(errors.back)) return false;
        jpeg_create_decompress(&info);
        jpeg_mem_src(&info, reinterpret_cast<const unsigned char*>(data), static_cast<unsigned long>(size));
        jpeg_read_header(&info, TRUE);
        tooLarge = static_cast<std::int64_t>(info.image_width) * info.image_height > kMostPixels;
        if (tooLarge) return true;
        image.channels = info.num_components == 1 ? 1 : 3;
        if (info.num_components != 4) info.out_color_space = JCS_RGB;
        jpeg_start_decompress(&info);
        _readRows();
        jpeg_finish_decompress(&info);
        return true;
    }

private:
    void _readRows()
    {
        image.width = static_cast<int>(info.output_width);
        image.height = static_cast<int>(info.output_height);
        image.bytes.resize(4 * std::size_t(info.output_width) * info.output_height);
        const auto channels = static_cast<std::size_t>(info.output_components);
        row.resize(channels * info.output_width);
        std::uint8_t* to = image.bytes.data();
        while (info.output_scanline < info.output_height) {
            JSAMPROW rows[1] = {row.data()};
            jpeg_read_scanlines(&info, rows, 1);
            for (std::size_t x = 0; x < info.output_width; ++x, to += 4) {
                const std::uint8_t* p = &row[channels * x];
                // Four channels are inverted CMYK, as the programs that write it do.
                for (std::size_t c = 0; c < 3; ++c)
                    to[c] = channels == 4 ? static_cast<std::uint8_t>(p[c] * p[3] / 255)
                                          : p[channels == 1 ? 0 : c];
                to[3] = 255;
            }
        }
    }
};

DecodedImage decodeJpeg(const char* data, std::size_t size)
{
    JpegReader reader;
    if (!reader.read(data, size)) throw std::runtime_error(reader.errors.text);
    if (reader.tooLarge) checkSize(reader.info.image_width, reader.info.image_height);
    return std::move(reader.image);
}

/// Bytes in memory as the EXR library reads them.
class MemoryStream final : public Imf::IStream
{
public:
    MemoryStream(const char* data, std::size_t size) : IStream("texture"), m_data(data), m_size(size) {}

    bool read(char to[], int count) override
    {
        if (count < 0 || m_at + static_cast<std::size_t>(count) > m_size)
            throw std::runtime_error("it ends too early");
        std::memcpy(to, m_data + m_at, static_cast<std::size_t>(count));
        m_at += static_cast<std::size_t>(count);
        return m_at < m_size;
    }
    std::uint64_t tellg() override { return m_at; }
    void seekg(std::uint64_t position) override { m_at = std::min<std::size_t>(position, m_size); }

private:
    const char* m_data;
    std::size_t m_size;
    std::size_t m_at = 0;
};

DecodedImage readExr(const char* data, std::size_t size)
{
    MemoryStream stream(data, size);
    Imf::RgbaInputFile file(stream, 0);
    const Imath::Box2i box = file.dataWindow();
    const std::int64_t width = std::int64_t(box.max.x) - box.min.x + 1;
    const std::int64_t height = std::int64_t(box.max.y) - box.min.y + 1;
    checkSize(width, height);
    DecodedImage image;
    image.width = static_cast<int>(width);
    image.height = static_cast<int>(height);
    image.channels = 4;
    std::vector<Imf::Rgba> pixels(static_cast<std::size_t>(width * height));
    file.setFrameBuffer(pixels.data() - box.min.x - std::int64_t(box.min.y) * width, 1,
                        static_cast<std::size_t>(width));
    file.readPixels(box.min.y, box.max.y);
    image.floats.reserve(4 * pixels.size());
    for (const Imf::Rgba& p : pixels) {
        for (const half channel : {p.r, p.g, p.b, p.a})
            image.floats.push_back(channel);
    }
    return image;
}

// The library's own exceptions are of another kind.
DecodedImage decodeExr(const char* data, std::size_t size)
{
    try {
        return readExr(data, size);
    } catch (const std::bad_alloc&) {
        throw;
    } catch (const std::exception& error) {
        throw std::runtime_error(error.what());
    }
}

DecodedImage decodeOther(const char* data, std::size_t size)
{
    const auto* bytes = reinterpret_cast<const stbi_uc*>(data);
    const int length = static_cast<int>(std::min<std::size_t>(size, std::numeric_limits<int>::max()));
    DecodedImage image;
    if (!stbi_info_from_memory(bytes, length, &image.width, &image.height, &image.channels)) {
        throw std::runtime_error("it is neither PNG, JPEG, OpenEXR, HDR nor TGA");
    }
    checkSize(image.width, image.height);
    const std::size_t count =
        4 * static_cast<std::size_t>(image.width) * static_cast<std::size_t>(image.height);
    int channels = 0;
    if (stbi_is_hdr_from_memory(bytes, length)) {
        const std::unique_ptr<float, void (*)(void*)> pixels(
            stbi_loadf_from_memory(bytes, length, &image.width, &image.height, &channels, 4),
            stbi_image_free);
        if (!pixels) throw std::runtime_error(stbi_failure_reason());
        image.floats.assign(pixels.get(), pixels.get() + count);
    } else {
        const std::unique_ptr<stbi_uc, void (*)(void*)> pixels(
            stbi_load_from_memory(bytes, length, &image.width, &image.height, &channels, 4), stbi_image_free);
        if (!pixels) throw std::runtime_error(stbi_failure_reason());
        image.bytes.assign(pixels.get(), pixels.get() + count);
    }
    return image;
}

bool startsWith(const char* data, std::size_t size, std::initializer_list<unsigned char> magic)
{
    return size >= magic.size() && std::equal(magic.begin(), magic.end(), data, [](unsigned char m, char d) {
               return m == static_cast<unsigned char>(d);
           });
}

} // namespace

DecodedImage decodeImage(const char* data, std::size_t size)
{
    if (startsWith(data, size, {0x89, 'P', 'N', 'G'})) return decodePng(data, size);
    if (startsWith(data, size, {0xff, 0xd8, 0xff})) return decodeJpeg(data, size);
    if (startsWith(data, size, {0x76, 0x2f, 0x31, 0x01})) return decodeExr(data, size);
    return decodeOther(data, size);
}

} // namespace vesk::renderers::embree
