#include "pxr/usd/sdf/textQuoting.h"

#include <charconv>
#include <cmath>

PXR_NAMESPACE_OPEN_SCOPE

namespace {

template <class T>
std::string shortest(T value)
{
    if (std::isnan(value)) {
        return "nan";
    }
    if (std::isinf(value)) {
        return value > 0 ? "inf" : "-inf";
    }
    // Plain digits for numbers of usual size, an exponent for the others.
    const T size = std::abs(value);
    const bool plain = value == 0 || (size >= T(1e-6) && size < T(1e15));
    char text[64];
    const auto end = std::to_chars(text, text + sizeof text, value,
                                   plain ? std::chars_format::fixed : std::chars_format::scientific);
    std::string result(text, end.ptr);
    // The exponent without a plus and without zeros in front, as in 1e20 and 2.5e-7.
    const size_t exponent = result.find('e');
    if (exponent != std::string::npos) {
        const bool negative = result[exponent + 1] == '-';
        const size_t digits = result.find_first_not_of("+-0", exponent + 1);
        result.replace(exponent + 1, digits - exponent - 1, negative ? "-" : "");
    }
    return result;
}

void appendHex(unsigned char c, std::string* out)
{
    const char* const digits = "0123456789abcdef";
    *out += "\\x";
    *out += digits[c >> 4];
    *out += digits[c & 15];
}

} // namespace

std::string Sdf_QuoteString(const std::string& text)
{
    const bool lines = text.find('\n') != std::string::npos;
    const bool useSingle = text.find('"') != std::string::npos && text.find('\'') == std::string::npos;
    const char quote = useSingle ? '\'' : '"';
    std::string result(lines ? 3 : 1, quote);
    for (size_t i = 0; i < text.size(); ++i) {
        const unsigned char c = static_cast<unsigned char>(text[i]);
        if (c == '\n' && lines) {
            result += '\n';
        } else if (c == '\t') {
            result += "\\t";
        } else if (c == '\r') {
            result += "\\r";
        } else if (c == '\\' || c == static_cast<unsigned char>(quote)) {
            result += '\\';
            result += text[i];
        } else if (c < 0x20 || c == 0x7F) {
            appendHex(c, &result);
        } else {
            result += text[i];
        }
    }
    return result + std::string(lines ? 3 : 1, quote);
}

std::string Sdf_QuoteAssetPath(const std::string& path)
{
    if (path.find('@') == std::string::npos) {
        return "@" + path + "@";
    }
    std::string result = "@@@";
    for (size_t i = 0; i < path.size();) {
        if (path.compare(i, 3, "@@@") == 0) {
            result += "\\@@@";
            i += 3;
        } else {
            result += path[i++];
        }
    }
    return result + "@@@";
}

std::string Sdf_NumberToText(double value) { return shortest(value); }

std::string Sdf_NumberToText(float value) { return shortest(value); }

PXR_NAMESPACE_CLOSE_SCOPE
