#include <vesk/renderers/picture/image_io.h>

#include <vesk/base/error_handling.h>

#include <ImfChannelList.h>
#include <ImfFrameBuffer.h>
#include <ImfHeader.h>
#include <ImfOutputFile.h>
#include <png.h>

#include <algorithm>
#include <atomic>
#include <cctype>
#include <cerrno>
#include <cstdio>
#include <memory>
#include <unistd.h>

PXR_NAMESPACE_USING_DIRECTIVE

namespace vesk::renderers::picture {
namespace {

namespace fs = std::filesystem;

[[noreturn]] void fail(std::errc code, const std::string& text)
{
    throw base::error_handling::Exception(std::make_error_code(code), text.c_str());
}

[[noreturn]] void failToWrite(const fs::path& path, int error)
{
    throw base::error_handling::Exception(std::error_code(error ? error : EIO, std::generic_category()),
                                          ("cannot write the image '" + path.string() + "'").c_str());
}

enum class Format
{
    Png,
    Exr,
    Unknown
};

Format formatOf(const fs::path& path)
{
    std::string extension = path.extension().string();
    std::transform(extension.begin(), extension.end(), extension.begin(),
                   [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
    return extension == ".png" ? Format::Png : extension == ".exr" ? Format::Exr : Format::Unknown;
}

/// A name beside the target that no other writer uses; removes the file unless it was moved to its place.
class SideFile
{
public:
    explicit SideFile(const fs::path& target) : m_target(target)
    {
        static std::atomic<unsigned> counter{0};
        std::error_code ignored;
        do {
            m_side = target;
            m_side += "." + std::to_string(::getpid()) + "-" + std::to_string(counter++) + ".partial";
        } while (fs::exists(m_side, ignored));
    }
    ~SideFile()
    {
        std::error_code ignored;
        if (!m_done) fs::remove(m_side, ignored);
    }
    SideFile(const SideFile&) = delete;
    SideFile& operator=(const SideFile&) = delete;

    const fs::path& path() const { return m_side; }

    void moveToPlace()
    {
        std::error_code error;
        fs::rename(m_side, m_target, error);
        if (error) failToWrite(m_target, error.value());
        m_done = true;
    }

private:
    fs::path m_target;
    fs::path m_side;
    bool m_done = false;
};

struct FileCloser
{
    void operator()(std::FILE* file) const { std::fclose(file); }
};

void onPngError(png_structp png, png_const_charp) { png_longjmp(png, 1); }
void onPngWarning(png_structp, png_const_charp) {}

// Nothing with a destructor lives in this function: an error of libpng jumps out of it.
bool encodePng(std::FILE* file, png_structp png, png_infop info, int width, int height, png_bytepp rows)
{
    if (setjmp(png_jmpbuf(png))) return false;
    png_init_io(png, file);
    png_set_IHDR(png, info, static_cast<png_uint_32>(width), static_cast<png_uint_32>(height), 8,
                 PNG_COLOR_TYPE_RGBA, PNG_INTERLACE_NONE, PNG_COMPRESSION_TYPE_DEFAULT,
                 PNG_FILTER_TYPE_DEFAULT);
    png_set_compression_level(png, 4);
    png_write_info(png, info);
    png_write_image(png, rows);
    png_write_end(png, nullptr);
    return true;
}

void writePng(const fs::path& path, const framework::hydra_renderer::AovBuffer& buffer)
{
    std::unique_ptr<std::FILE, FileCloser> file(std::fopen(path.c_str(), "wb"));
    if (!file) failToWrite(path, errno);
    auto bytes = *buffer.bytes;
    std::vector<png_bytep> rows(static_cast<std::size_t>(buffer.size[1]));
    for (std::size_t y = 0; y < rows.size(); ++y) {
        rows[y] = bytes.data() + y * 4 * static_cast<std::size_t>(buffer.size[0]);
    }
    errno = 0;
    png_structp png = png_create_write_struct(PNG_LIBPNG_VER_STRING, nullptr, onPngError, onPngWarning);
    png_infop info = png ? png_create_info_struct(png) : nullptr;
    const bool encoded =
        info && encodePng(file.get(), png, info, buffer.size[0], buffer.size[1], rows.data());
    const int error = errno;
    png_destroy_write_struct(&png, &info);
    if (!encoded) failToWrite(path, error);
    errno = 0;
    if (std::fclose(file.release()) != 0) failToWrite(path, errno);
}

std::vector<std::string> channelNames(Output output)
{
    switch (output) {
    case Output::Color:
        return {"R", "G", "B", "A"};
    case Output::Normal:
    case Output::EyeNormal:
        return {"X", "Y", "Z"};
    case Output::Depth:
    case Output::LinearDepth:
        return {"Z"};
    default:
        return {"Y"};
    }
}

void writeExr(const fs::path& path, const Film& film, const FrameSettings& settings, Output output)
{
    const std::vector<std::string> names = channelNames(output);
    const std::size_t count = names.size();
    std::vector<float> values(film.pixelCount() * count);
    // EXR colour is linear and multiplied by its opacity, as that format has it.
    const WorkingColors colors(film, settings);
    for (std::size_t i = 0; i < film.pixelCount(); ++i) {
        const OutputPixel pixel =
            output == Output::Color ? colors.at(i) : readPixel(film, settings, output, i);
        std::copy(pixel.channel, pixel.channel + count,
                  values.begin() + static_cast<std::ptrdiff_t>(i * count));
    }
    Imf::Header header(film.width(), film.height());
    header.compression() = Imf::ZIP_COMPRESSION;
    Imf::FrameBuffer frame;
    for (std::size_t c = 0; c < count; ++c) {
        header.channels().insert(names[c], Imf::Channel(Imf::FLOAT));
        frame.insert(names[c],
                     Imf::Slice(Imf::FLOAT, reinterpret_cast<char*>(values.data() + c), count * sizeof(float),
                                count * sizeof(float) * static_cast<std::size_t>(film.width())));
    }
    errno = 0;
    try {
        Imf::OutputFile file(path.c_str(), header, 1);
        file.setFrameBuffer(frame);
        file.writePixels(film.height());
    } catch (const std::exception&) {
        failToWrite(path, errno);
    }
}

} // namespace

void checkTarget(const fs::path& path, const TfToken& aov)
{
    const std::optional<Output> output = outputOf(aov);
    if (!output) {
        fail(std::errc::invalid_argument,
             "unknown render output '" + aov.GetString() + "'; known outputs: " + knownOutputs());
    }
    if (path.native().find('\0') != fs::path::string_type::npos) {
        fail(std::errc::invalid_argument, "the image's file name holds a NUL character");
    }
    const Format format = formatOf(path);
    if (format == Format::Unknown) {
        fail(std::errc::invalid_argument,
             "cannot tell the image format of '" + path.string() + "'; use a name that ends in .png or .exr");
    }
    if (format == Format::Png && *output != Output::Color) {
        fail(std::errc::invalid_argument, "the output '" + aov.GetString() + "' holds floats and '" +
                                              path.string() + "' cannot; use a name that ends in .exr");
    }
    std::error_code error;
    const fs::path folder = path.has_parent_path() ? path.parent_path() : fs::path(".");
    if (!fs::is_directory(folder, error)) {
        fail(std::errc::no_such_file_or_directory,
             "cannot write the image '" + path.string() + "', its folder does not exist");
    }
    if (fs::is_directory(path, error)) {
        fail(std::errc::is_a_directory,
             "cannot write the image '" + path.string() + "', a folder has that name");
    }
}

void writeImage(const fs::path& path, const Film& film, const FrameSettings& settings, Output output)
{
    SideFile side(path);
    try {
        if (formatOf(path) == Format::Png) {
            writePng(side.path(), readBuffer(film, settings, output));
        } else {
            writeExr(side.path(), film, settings, output);
        }
    } catch (const base::error_handling::Exception& error) {
        // The user knows the target's name, not the one beside it.
        failToWrite(path, error.code().value());
    }
    side.moveToPlace();
}

} // namespace vesk::renderers::picture
