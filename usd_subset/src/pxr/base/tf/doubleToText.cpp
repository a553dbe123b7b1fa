#include "pxr/base/tf/doubleToText.h"

#include <pxr/base/tf/stringUtils.h>

#include <charconv>
#include <cmath>
#include <cstdlib>
#include <cstring>
#include <ostream>

PXR_NAMESPACE_OPEN_SCOPE

namespace {

/// The significant digits of a number and the power of ten of the first one.
struct Decimal
{
    bool negative = false;
    std::string digits;
    int exponent = 0;
};

template <class Number>
Decimal Decompose(Number number)
{
    // The scientific form of to_chars is "[-]d[.ddd]e(+|-)xx" with the fewest digits.
    char buffer[64];
    const auto result = std::to_chars(buffer, buffer + sizeof(buffer), number, std::chars_format::scientific);
    Decimal decimal;
    const char* at = buffer;
    if (*at == '-') {
        decimal.negative = true;
        ++at;
    }
    for (; at != result.ptr && *at != 'e'; ++at) {
        if (*at != '.') {
            decimal.digits += *at;
        }
    }
    decimal.exponent = std::atoi(std::string(at + 1, result.ptr - at - 1).c_str());
    return decimal;
}

std::string PlainText(const Decimal& decimal, bool trailingZero)
{
    const int count = static_cast<int>(decimal.digits.size());
    if (decimal.exponent < 0) {
        return "0." + std::string(-decimal.exponent - 1, '0') + decimal.digits;
    }
    const int whole = decimal.exponent + 1;
    if (count > whole) {
        return decimal.digits.substr(0, whole) + "." + decimal.digits.substr(whole);
    }
    return decimal.digits + std::string(whole - count, '0') + (trailingZero ? ".0" : "");
}

std::string ExponentText(const Decimal& decimal)
{
    std::string text = decimal.digits.substr(0, 1);
    if (decimal.digits.size() > 1) {
        text += "." + decimal.digits.substr(1);
    }
    return text + "e" + std::to_string(decimal.exponent);
}

template <class Number>
std::string ShortestText(Number number, bool trailingZero)
{
    if (std::isnan(number)) {
        return "nan";
    }
    if (std::isinf(number)) {
        return number < 0 ? "-inf" : "inf";
    }
    const Decimal decimal = Decompose(number);
    const bool plain = decimal.exponent >= -6 && decimal.exponent < 15;
    return (decimal.negative ? "-" : "") + (plain ? PlainText(decimal, trailingZero) : ExponentText(decimal));
}

} // namespace

std::string Tf_ShortestText(double number, bool trailingZero) { return ShortestText(number, trailingZero); }
std::string Tf_ShortestText(float number, bool trailingZero) { return ShortestText(number, trailingZero); }

bool TfDoubleToString(double number, char* buffer, int length, bool emitTrailingZero)
{
    const std::string text = Tf_ShortestText(number, emitTrailingZero);
    if (length < 25 || text.size() >= static_cast<size_t>(length)) {
        return false;
    }
    std::memcpy(buffer, text.c_str(), text.size() + 1);
    return true;
}

std::ostream& operator<<(std::ostream& out, TfStreamFloat number)
{
    return out << Tf_ShortestText(number.value);
}
std::ostream& operator<<(std::ostream& out, TfStreamDouble number)
{
    return out << Tf_ShortestText(number.value);
}

std::string TfStringify(float value) { return Tf_ShortestText(value); }
std::string TfStringify(double value) { return Tf_ShortestText(value); }

PXR_NAMESPACE_CLOSE_SCOPE
