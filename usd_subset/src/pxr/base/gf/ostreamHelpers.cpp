#include <pxr/base/gf/ostreamHelpers.h>

#include <charconv>
#include <cmath>
#include <cstdlib>
#include <ostream>
#include <string>

PXR_NAMESPACE_OPEN_SCOPE

namespace {

// Numbers from 1e-6 to below 1e15 are written without an exponent, as OpenUSD does.
constexpr int kLowestPlainExponent = -6;
constexpr int kPlainExponentEnd = 15;

template <class Real>
std::string ShortestText(Real value)
{
    if (std::isnan(value)) {
        return "nan";
    }
    if (std::isinf(value)) {
        return value < 0 ? "-inf" : "inf";
    }
    char buffer[40];
    const auto end =
        std::to_chars(buffer, buffer + sizeof(buffer), std::fabs(value), std::chars_format::scientific).ptr;
    const std::string text(buffer, end);
    const size_t e = text.find('e');
    const int exponent = std::atoi(text.c_str() + e + 1);
    std::string digits = text.substr(0, 1);
    if (e > 2) {
        digits += text.substr(2, e - 2);
    }
    std::string result = std::signbit(value) ? "-" : "";
    if (exponent < kLowestPlainExponent || exponent >= kPlainExponentEnd) {
        result += digits.substr(0, 1);
        if (digits.size() > 1) {
            result += "." + digits.substr(1);
        }
        return result + "e" + std::to_string(exponent);
    }
    if (exponent < 0) {
        return result + "0." + std::string(size_t(-exponent - 1), '0') + digits;
    }
    const size_t whole = size_t(exponent) + 1;
    if (digits.size() <= whole) {
        return result + digits + std::string(whole - digits.size(), '0');
    }
    return result + digits.substr(0, whole) + "." + digits.substr(whole);
}

} // namespace

std::ostream& operator<<(std::ostream& out, Gf_StreamFloat number)
{
    return out << ShortestText(number.value);
}

std::ostream& operator<<(std::ostream& out, Gf_StreamDouble number)
{
    return out << ShortestText(number.value);
}

PXR_NAMESPACE_CLOSE_SCOPE
