#include "pxr/usd/sdf/textScanner.h"
#include "pxr/usd/sdf/textUnicode.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <limits>

PXR_NAMESPACE_OPEN_SCOPE

// Finds the closing quotes of the string at the current position.
size_t Sdf_TextScanner::_StringEnd(size_t* quotes) const
{
    const char quote = _text[_pos];
    const char three[] = {quote, quote, quote};
    const bool triple = _text.substr(_pos, 3) == std::string_view(three, 3);
    *quotes = triple ? 3 : 1;
    const std::string_view closing(three, *quotes);
    for (size_t p = _pos + *quotes; p < _text.size(); ++p) {
        const char c = _text[p];
        if (c == '\\' && p + 1 < _text.size() && (_text[p + 1] == '\\' || _text[p + 1] == quote)) {
            ++p;
        } else if (c == quote && _text.substr(p, *quotes) == closing) {
            return p;
        } else if (!triple && (c == '\n' || c == '\r')) {
            break;
        }
    }
    Fail(_pos, triple ? "a string without an end" : "a string that does not end on its line",
         "the closing " + std::string(closing));
}

std::string Sdf_TextScanner::String(const char* what)
{
    if (!AtString()) {
        Fail(what);
    }
    size_t quotes = 0;
    const size_t end = _StringEnd(&quotes);
    const std::string_view body = _text.substr(_pos + quotes, end - _pos - quotes);
    _pos = end + quotes;
    std::string result;
    result.reserve(body.size());
    for (size_t p = 0; p < body.size();) {
        const size_t slash = std::min(body.find('\\', p), body.size());
        result.append(body.substr(p, slash - p));
        p = slash + 1 < body.size() ? Sdf_Unescape(body, slash + 1, &result) : body.size();
    }
    return result;
}

std::string Sdf_TextScanner::Asset(const char* what)
{
    if (!AtAsset()) {
        Fail(what);
    }
    const bool triple = _text.substr(_pos, 3) == "@@@";
    const size_t marks = triple ? 3 : 1;
    std::string path;
    for (size_t p = _pos + marks; p < _text.size() && _text[p] != '\n' && _text[p] != '\r'; ++p) {
        if (triple && _text.substr(p, 4) == "\\@@@") {
            path += "@@@";
            p += 3;
        } else if (_text[p] == '@' && (!triple || _text.substr(p, 3) == "@@@")) {
            p += marks;
            // Marks that follow the closing three belong to the path itself.
            for (int extra = 0; triple && extra < 2 && p < _text.size() && _text[p] == '@'; ++extra, ++p) {
                path += '@';
            }
            _pos = p;
            return path;
        } else if (Sdf_IsControl(_text.substr(p, 2))) {
            Fail(p, "a control character in an asset path", "printable characters");
        } else {
            path += _text[p];
        }
    }
    Fail(_pos, "an asset path that does not end on its line", triple ? "the closing @@@" : "the closing @");
}

std::string_view Sdf_TextScanner::Path(const char* what)
{
    if (!AtPath()) {
        Fail(what);
    }
    const size_t end = _text.find_first_of(">\r\n", _pos);
    if (end == std::string_view::npos || _text[end] != '>') {
        Fail(_pos, "a path that does not end on its line", "the closing >");
    }
    const std::string_view path = _text.substr(_pos + 1, end - _pos - 1);
    _pos = end + 1;
    return path;
}

bool Sdf_TextScanner::AtNumber() const
{
    const char c = Peek();
    if (Sdf_IsDigit(c) || c == '-' || c == '.') {
        return true;
    }
    if (c != 'i' && c != 'n') {
        return false;
    }
    Sdf_TextScanner ahead = *this;
    return ahead.AcceptKeyword("inf") || ahead.AcceptKeyword("nan");
}

// Finds the end of a number in digits: digits, a point, digits, and an exponent, parts of it left out.
size_t Sdf_TextScanner::_NumberEnd(const char* what) const
{
    size_t end = _pos + (Peek() == '-' ? 1 : 0);
    const auto digits = [&] {
        const size_t begin = end;
        while (end < _text.size() && Sdf_IsDigit(_text[end])) {
            ++end;
        }
        return end - begin;
    };
    const auto at = [&](size_t pos) { return pos < _text.size() ? _text[pos] : '\0'; };
    const bool whole = digits() > 0;
    if (at(end) == '.') {
        ++end;
        if (digits() == 0 && !whole) {
            Fail(what);
        }
    } else if (!whole) {
        Fail(what);
    }
    if (at(end) == 'e' || at(end) == 'E') {
        ++end;
        end += at(end) == '+' || at(end) == '-' ? 1 : 0;
        if (digits() == 0) {
            Fail(end, "no digit", "the digits of an exponent");
        }
    }
    return end;
}

namespace {

// Says whether a number that no double can hold is too small for one, rather than too large.
bool isTiny(std::string_view number)
{
    const size_t mark = std::min(number.find_first_of("eE"), number.size());
    const std::string_view mantissa = number.substr(0, mark);
    long exponent = 0;
    const bool negative = mark + 1 < number.size() && number[mark + 1] == '-';
    for (const char c : number.substr(std::min(mark + 1, number.size()))) {
        exponent = Sdf_IsDigit(c) ? std::min(exponent * 10 + (c - '0'), 1000000000000L) : exponent;
    }
    // The place of the first digit that is not zero, counted from the point.
    const long point = static_cast<long>(std::min(mantissa.find('.'), mantissa.size()));
    const long first = static_cast<long>(std::min(mantissa.find_first_of("123456789"), mantissa.size()));
    return (negative ? -exponent : exponent) + (point - first) < 0;
}

double readReal(std::string_view number)
{
    double real = 0.0;
    const bool negative = number.front() == '-';
    const std::from_chars_result result = std::from_chars(number.data(), number.data() + number.size(), real);
    if (result.ec == std::errc::result_out_of_range) {
        real = isTiny(number) ? 0.0 : std::numeric_limits<double>::infinity();
        real = negative ? -real : real;
    }
    return real;
}

} // namespace

Sdf_TextNumber Sdf_TextScanner::Number(const char* what)
{
    Sdf_TextNumber number;
    const size_t begin = _pos;
    const bool negative = Accept('-');
    if (AcceptKeyword("inf")) {
        number.real = (negative ? -1 : 1) * std::numeric_limits<double>::infinity();
        return number;
    }
    if (!negative && AcceptKeyword("nan")) {
        number.real = std::numeric_limits<double>::quiet_NaN();
        return number;
    }
    _pos = begin;
    const size_t end = _NumberEnd(what);
    const std::string_view text = _text.substr(begin, end - begin);
    _pos = end;
    if (text != "-0" && text.find_first_of(".eE") == std::string_view::npos) {
        const char* const last = text.data() + text.size();
        number.kind = negative ? Sdf_TextNumber::Signed : Sdf_TextNumber::Unsigned;
        const std::errc error = negative ? std::from_chars(text.data(), last, number.integer).ec
                                         : std::from_chars(text.data(), last, number.natural).ec;
        if (error == std::errc()) {
            number.real =
                negative ? static_cast<double>(number.integer) : static_cast<double>(number.natural);
            return number;
        }
    }
    number.kind = Sdf_TextNumber::Real;
    number.real = readReal(text);
    return number;
}

double Sdf_TextScanner::Real(const char* what)
{
    // The usual number is read in one go; the others, and zeros with a sign, are read the long way.
    const char* const first = _text.data() + _pos;
    const char* const last = _text.data() + _text.size();
    double real = 0.0;
    if (first != last &&
        (Sdf_IsDigit(*first) || (*first == '-' && first + 1 != last && Sdf_IsDigit(first[1])))) {
        const std::from_chars_result result = std::from_chars(first, last, real);
        const bool more = result.ptr != last && (*result.ptr == 'e' || *result.ptr == 'E');
        if (result.ec == std::errc() && !more && (real != 0.0 || *first != '-')) {
            _pos += static_cast<size_t>(result.ptr - first);
            return real;
        }
    }
    return Number(what).real;
}

PXR_NAMESPACE_CLOSE_SCOPE
