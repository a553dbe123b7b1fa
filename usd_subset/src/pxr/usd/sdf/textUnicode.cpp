#include "pxr/usd/sdf/textUnicode.h"

PXR_NAMESPACE_OPEN_SCOPE

namespace {

int hexDigit(char c)
{
    return Sdf_IsDigit(c)         ? c - '0'
           : c >= 'a' && c <= 'f' ? c - 'a' + 10
           : c >= 'A' && c <= 'F' ? c - 'A' + 10
                                  : -1;
}

} // namespace

bool Sdf_IsControl(std::string_view text)
{
    const unsigned char first = static_cast<unsigned char>(text[0]);
    return first < 0x20 || first == 0x7F ||
           (first == 0xC2 && text.size() > 1 && static_cast<unsigned char>(text[1]) < 0xA0);
}

bool Sdf_HasControl(std::string_view text)
{
    for (size_t i = 0; i < text.size(); ++i) {
        if (Sdf_IsControl(text.substr(i, 2))) {
            return true;
        }
    }
    return false;
}

size_t Sdf_Utf8Length(std::string_view text)
{
    const auto byte = [&](size_t i) { return static_cast<unsigned char>(text[i]); };
    const unsigned char first = byte(0);
    const size_t length = first < 0x80   ? 1
                          : first < 0xC2 ? 0
                          : first < 0xE0 ? 2
                          : first < 0xF0 ? 3
                          : first < 0xF5 ? 4
                                         : 0;
    if (length == 0 || length > text.size()) {
        return 0;
    }
    for (size_t i = 1; i < length; ++i) {
        if ((byte(i) & 0xC0) != 0x80) {
            return 0;
        }
    }
    const bool overlong = (first == 0xE0 && byte(1) < 0xA0) || (first == 0xF0 && byte(1) < 0x90);
    const bool outside = (first == 0xED && byte(1) > 0x9F) || (first == 0xF4 && byte(1) > 0x8F);
    return overlong || outside ? 0 : length;
}

size_t Sdf_Unescape(std::string_view text, size_t pos, std::string* out)
{
    const std::string_view names = "abfnrtv";
    const std::string_view values = "\a\b\f\n\r\t\v";
    const char c = text[pos];
    const size_t known = names.find(c);
    if (known != std::string_view::npos) {
        out->push_back(values[known]);
        return pos + 1;
    }
    int code = 0;
    size_t end = pos;
    if (c == 'x') {
        for (end = pos + 1; end < text.size() && end < pos + 3 && hexDigit(text[end]) >= 0; ++end) {
            code = code * 16 + hexDigit(text[end]);
        }
        out->push_back(static_cast<char>(code));
        return end;
    }
    while (end < text.size() && end < pos + 3 && text[end] >= '0' && text[end] <= '7') {
        code = code * 8 + (text[end++] - '0');
    }
    if (end == pos) {
        out->push_back(c);
        return pos + 1;
    }
    out->push_back(static_cast<char>(code));
    return end;
}

PXR_NAMESPACE_CLOSE_SCOPE
