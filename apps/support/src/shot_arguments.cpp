#include <apps/support/shot_arguments.h>

#include <apps/support/errors.h>

#include <algorithm>
#include <charconv>
#include <cmath>

namespace vesk::apps {
namespace {

constexpr int kLargestSide = 16384;

template <class Number>
bool readNumber(const std::string& text, Number& number)
{
    const char* const end = text.data() + text.size();
    const auto result = std::from_chars(text.data(), end, number);
    return result.ec == std::errc() && result.ptr == end;
}

} // namespace

std::array<int, 2> parseSize(const std::string& text)
{
    std::array<int, 2> size{};
    const std::size_t cross = text.find('x');
    const bool read = cross != std::string::npos && readNumber(text.substr(0, cross), size[0]) &&
                      readNumber(text.substr(cross + 1), size[1]);
    if (!read)
        throw UsageError("--size '" + text + "' is not of the form WIDTHxHEIGHT, for example 1280x720");
    for (const int side : size) {
        if (side < 1 || side > kLargestSide) {
            throw UsageError("--size '" + text +
                             "' is out of range: each side must be from 1 to 16384 pixels");
        }
    }
    return size;
}

std::array<float, 4> parseColor(const std::string& text)
{
    std::array<float, 4> color{0, 0, 0, 1};
    std::size_t from = 0;
    std::size_t count = 0;
    bool good = true;
    while (good && from <= text.size()) {
        const std::size_t comma = std::min(text.find(',', from), text.size());
        good = count < 4 && readNumber(text.substr(from, comma - from), color[count]) &&
               std::isfinite(color[count]);
        ++count;
        from = comma + 1;
    }
    if (!good || count < 3) {
        throw UsageError("the colour '" + text +
                         "' is not of the form R,G,B or R,G,B,A, for example 0.2,0.2,0.25,1");
    }
    return color;
}

const std::vector<std::string>& viewNames()
{
    static const std::vector<std::string> names{"current", "front", "back",   "left",
                                                "right",   "top",   "bottom", "three-quarters"};
    return names;
}

std::array<float, 2> parsePoint(const std::string& text)
{
    std::array<float, 2> point{};
    const std::size_t comma = text.find(',');
    const bool good = comma != std::string::npos && readNumber(text.substr(0, comma), point[0]) &&
                      readNumber(text.substr(comma + 1), point[1]) && std::isfinite(point[0]) &&
                      std::isfinite(point[1]);
    if (!good) throw UsageError("--at '" + text + "' is not of the form X,Y, for example 640.5,360.5");
    return point;
}

void addFramingOptions(CLI::App& verb, CameraArguments& arguments, const std::string& sizeHelp)
{
    const char* const group = "Camera";
    verb.add_option_function<std::string>(
            "--size", [&arguments](const std::string& text) { arguments.size = parseSize(text); }, sizeHelp)
        ->type_name("WxH")
        ->group(group);
    verb.add_option("--projection", arguments.projection, "perspective or orthographic")
        ->check(CLI::IsMember({"perspective", "orthographic"}))
        ->type_name("NAME")
        ->capture_default_str()
        ->group(group);
    verb.add_option("--path", arguments.paths, "Frame this prim; may be given several times")
        ->type_name("/PATH")
        ->expected(1)
        ->multi_option_policy(CLI::MultiOptionPolicy::TakeAll)
        ->group(group);
    verb.add_option("--time", arguments.time, "Time code (default: the stage's start, else 0)")
        ->type_name("T")
        ->group(group);
    verb.add_option("--device-pixel-ratio", arguments.devicePixelRatio, "Physical pixels per logical pixel")
        ->check(CLI::PositiveNumber)
        ->type_name("R")
        ->capture_default_str()
        ->group(group);
}

void addCameraOptions(CLI::App& verb, CameraArguments& arguments)
{
    const char* const group = "Camera";
    addFramingOptions(verb, arguments, "Picture size in logical pixels (default 1280x720)");
    verb.add_option("--view", arguments.view, "Direction to look from")
        ->check(CLI::IsMember(viewNames()))
        ->type_name("NAME")
        ->capture_default_str()
        ->group(group);
    verb.add_option("--camera", arguments.camera, "Look through this camera of the stage instead")
        ->type_name("/PATH")
        ->group(group);
}

} // namespace vesk::apps
