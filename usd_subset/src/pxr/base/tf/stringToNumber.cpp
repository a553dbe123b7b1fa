#include <pxr/base/tf/stringUtils.h>

#include <charconv>
#include <cstring>
#include <limits>
#include <string_view>

PXR_NAMESPACE_OPEN_SCOPE

namespace {

double ParseDouble(const char* text, const char* end)
{
    const char* first = text;
    const bool negative = first != end && *first == '-';
    if (first != end && (*first == '+' || *first == '-')) {
        ++first;
    }
    // from_chars takes a sign of its own and more names of infinity than are meant here.
    const std::string_view unsignedText(first, end - first);
    const bool named = unsignedText == "inf" || unsignedText == "nan";
    if (!named && (first == end || !std::strchr("0123456789.", *first))) {
        return 0;
    }
    double number = 0;
    const auto result = std::from_chars(first, end, number);
    if (result.ptr != end) {
        return 0;
    }
    if (result.ec == std::errc::result_out_of_range) {
        // Too large or too small: the sign of the exponent tells which, and without one the digits do.
        const size_t exponent = unsignedText.find_first_of("eE");
        const bool small = exponent != std::string_view::npos ? unsignedText[exponent + 1] == '-'
                                                              : unsignedText.find('.') < 3;
        number = small ? 0.0 : std::numeric_limits<double>::infinity();
    }
    return negative ? -number : number;
}

template <class Integer>
Integer ParseInteger(const std::string& text, bool* outOfRange)
{
    if (outOfRange) {
        *outOfRange = false;
    }
    const char* first = text.data();
    const char* end = first + text.size();
    Integer number = 0;
    const bool negative = first != end && *first == '-';
    const auto result = std::from_chars(first, end, number);
    if (result.ec == std::errc::result_out_of_range) {
        if (outOfRange) {
            *outOfRange = true;
        }
        return negative ? std::numeric_limits<Integer>::min() : std::numeric_limits<Integer>::max();
    }
    return number;
}

} // namespace

double TfStringToDouble(const std::string& text)
{
    return ParseDouble(text.data(), text.data() + text.size());
}
double TfStringToDouble(const char* text) { return ParseDouble(text, text + std::strlen(text)); }
double TfStringToDouble(const char* text, int length) { return ParseDouble(text, text + length); }

long TfStringToLong(const std::string& text, bool* outOfRange)
{
    return ParseInteger<long>(text, outOfRange);
}
unsigned long TfStringToULong(const std::string& text, bool* outOfRange)
{
    return ParseInteger<unsigned long>(text, outOfRange);
}
int64_t TfStringToInt64(const std::string& text, bool* outOfRange)
{
    return ParseInteger<int64_t>(text, outOfRange);
}
uint64_t TfStringToUInt64(const std::string& text, bool* outOfRange)
{
    return ParseInteger<uint64_t>(text, outOfRange);
}

PXR_NAMESPACE_CLOSE_SCOPE
