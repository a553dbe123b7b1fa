#include <apps/support/json.h>

#include <charconv>
#include <cmath>

namespace vesk::apps {
namespace {

// Between these a decimal is written without an exponent.
constexpr double kSmallestPlain = 1e-4;
constexpr double kLargestPlain = 1e15;

void appendNumber(std::string& text, double value)
{
    const double size = std::fabs(value);
    const bool plain = size == 0.0 || (size >= kSmallestPlain && size < kLargestPlain);
    char digits[64];
    const auto written = std::to_chars(std::begin(digits), std::end(digits), value,
                                       plain ? std::chars_format::fixed : std::chars_format::scientific);
    const std::string_view number(digits, static_cast<std::size_t>(written.ptr - digits));
    text += number;
    if (number.find_first_of(".e") == std::string_view::npos) text += ".0";
}

std::string quoted(const std::string& text)
{
    return Json(text).dump(-1, ' ', false, Json::error_handler_t::replace);
}

void append(std::string& text, const Json& json);

void appendObject(std::string& text, const Json& object)
{
    const char* separator = "{";
    for (const auto& item : object.items()) {
        text += separator + quoted(item.key()) + ":";
        append(text, item.value());
        separator = ",";
    }
    text += object.empty() ? "{}" : "}";
}

void appendArray(std::string& text, const Json& array)
{
    const char* separator = "[";
    for (const Json& element : array) {
        text += separator;
        append(text, element);
        separator = ",";
    }
    text += array.empty() ? "[]" : "]";
}

void append(std::string& text, const Json& json)
{
    if (json.is_object())
        appendObject(text, json);
    else if (json.is_array())
        appendArray(text, json);
    else if (json.is_number_float() && std::isfinite(json.get<double>()))
        appendNumber(text, json.get<double>());
    else
        text += json.dump(-1, ' ', false, Json::error_handler_t::replace);
}

} // namespace

std::string jsonLine(const Json& json)
{
    std::string text;
    append(text, json);
    return text;
}

} // namespace vesk::apps
