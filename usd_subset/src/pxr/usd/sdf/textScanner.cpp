#include "pxr/usd/sdf/textScanner.h"

#include "pxr/usd/sdf/textUnicode.h"

#include <pxr/base/tf/unicodeUtils.h>

#include <algorithm>
#include <cstring>
#include <unordered_set>

PXR_NAMESPACE_OPEN_SCOPE

std::string Sdf_PlaceOf(std::string_view text, size_t offset)
{
    const std::string_view before = text.substr(0, offset);
    const size_t line = static_cast<size_t>(std::count(before.begin(), before.end(), '\n')) + 1;
    const size_t lineEnd = before.rfind('\n');
    const size_t column = lineEnd == std::string_view::npos ? before.size() + 1 : before.size() - lineEnd;
    return std::to_string(line) + ":" + std::to_string(column);
}

size_t Sdf_FindBadByte(std::string_view text)
{
    size_t i = std::min(text.find('\n'), text.size());
    while (i < text.size()) {
        // Eight characters of ASCII at a time.
        uint64_t eight = 0;
        while (i + 8 <= text.size() &&
               (std::memcpy(&eight, text.data() + i, 8), (eight & 0x8080808080808080u) == 0)) {
            i += 8;
        }
        if (i < text.size()) {
            const size_t length = Sdf_Utf8Length(text.substr(i));
            if (length == 0) {
                return i;
            }
            i += length;
        }
    }
    return text.size();
}

bool Sdf_TextScanner::IsReserved(std::string_view word)
{
    static const std::unordered_set<std::string_view> words = {"add",
                                                               "append",
                                                               "bezier",
                                                               "class",
                                                               "config",
                                                               "connect",
                                                               "curve",
                                                               "custom",
                                                               "customData",
                                                               "def",
                                                               "default",
                                                               "delete",
                                                               "dictionary",
                                                               "displayUnit",
                                                               "doc",
                                                               "held",
                                                               "hermite",
                                                               "inherits",
                                                               "kind",
                                                               "linear",
                                                               "loop",
                                                               "nameChildren",
                                                               "None",
                                                               "none",
                                                               "offset",
                                                               "oscillate",
                                                               "over",
                                                               "payload",
                                                               "permission",
                                                               "post",
                                                               "pre",
                                                               "prefixSubstitutions",
                                                               "prepend",
                                                               "properties",
                                                               "references",
                                                               "rel",
                                                               "relocates",
                                                               "reorder",
                                                               "repeat",
                                                               "reset",
                                                               "rootPrims",
                                                               "scale",
                                                               "sloped",
                                                               "specializes",
                                                               "spline",
                                                               "subLayers",
                                                               "suffixSubstitutions",
                                                               "symmetryArguments",
                                                               "symmetryFunction",
                                                               "timeSamples",
                                                               "uniform",
                                                               "variantSet",
                                                               "variantSets",
                                                               "variants",
                                                               "varying"};
    return words.count(word) > 0;
}

std::string Sdf_TextScanner::_Excerpt() const
{
    if (_pos >= _text.size()) {
        return "the end of the file";
    }
    const auto isWord = [](char c) {
        return Sdf_IsAsciiLetter(c) || Sdf_IsDigit(c) || static_cast<unsigned char>(c) >= 0x80;
    };
    const unsigned char first = static_cast<unsigned char>(_text[_pos]);
    if (first == '\n' || first == '\r') {
        return "the end of the line";
    }
    if (first < ' ' || first == 0x7F) {
        return "a control character";
    }
    size_t end = _pos + 1;
    const bool word = isWord(_text[_pos]);
    while (end < _text.size() && end < _pos + 40 && isWord(_text[end]) == word &&
           (word || static_cast<unsigned char>(_text[end]) > ' ')) {
        ++end;
    }
    // A cut through a character would make the message itself bad text.
    while (end < _text.size() && end > _pos + 1 && (static_cast<unsigned char>(_text[end]) & 0xC0) == 0x80) {
        --end;
    }
    return "'" + std::string(_text.substr(_pos, end - _pos)) + "'";
}

void Sdf_TextScanner::Fail(const std::string& expected) const { Fail(_pos, _Excerpt(), expected); }

void Sdf_TextScanner::Fail(size_t offset, const std::string& found, const std::string& expected) const
{
    throw Sdf_TextProblem{offset, found, expected};
}

std::string_view Sdf_TextScanner::Header()
{
    const size_t end = std::min(_text.find('\n'), _text.size());
    std::string_view line = _text.substr(0, end);
    _pos = std::min(end + 1, _text.size());
    const size_t last = line.find_last_not_of(" \t\n\v\f\r");
    return line.substr(0, last == std::string_view::npos ? 0 : last + 1);
}

void Sdf_TextScanner::Expect(char c, const char* where)
{
    if (!Accept(c)) {
        Fail(std::string("'") + c + "' " + where);
    }
}

bool Sdf_TextScanner::_SkipBlockComment()
{
    if (_text.substr(_pos, 2) != "/*") {
        return false;
    }
    const size_t end = _text.find("*/", _pos + 2);
    if (end == std::string_view::npos) {
        Fail(_pos, "a comment without an end", "'*/'");
    }
    _pos = end + 2;
    return true;
}

// A comment ends where its line does; a carriage return alone is part of it.
bool Sdf_TextScanner::_SkipLineComment()
{
    if (Peek() != '#' && _text.substr(_pos, 2) != "//") {
        return false;
    }
    _pos = std::min(_text.find('\n', _pos), _text.size());
    return true;
}

bool Sdf_TextScanner::SkipBlanks()
{
    bool blank = false;
    for (;;) {
        const char c = Peek();
        if (c == ' ' || c == '\t') {
            blank = true;
            ++_pos;
        } else if (c != '/' || !_SkipBlockComment()) {
            return blank;
        }
    }
}

void Sdf_TextScanner::SkipLineRest()
{
    do {
        SkipBlanks();
    } while (_SkipLineComment());
}

void Sdf_TextScanner::SkipLines()
{
    for (;;) {
        const char c = Peek();
        if (c == ' ' || c == '\n' || c == '\t' || c == '\r') {
            ++_pos;
        } else if ((c != '#' && c != '/') || !(_SkipLineComment() || _SkipBlockComment())) {
            return;
        }
    }
}

void Sdf_TextScanner::Gap(const char* before)
{
    if (!SkipBlanks()) {
        Fail(std::string("a space before ") + before);
    }
}

bool Sdf_TextScanner::AcceptAssign()
{
    const size_t start = _pos;
    SkipBlanks();
    if (!Accept('=')) {
        _pos = start;
        return false;
    }
    SkipBlanks();
    return true;
}

void Sdf_TextScanner::Assign(const char* behind)
{
    if (!AcceptAssign()) {
        SkipBlanks();
        Fail(std::string("'=' behind ") + behind);
    }
}

bool Sdf_TextScanner::EndStatement()
{
    SkipLineRest();
    return Accept('\n') || Accept(';') || Accept('\r');
}

bool Sdf_TextScanner::EndLine()
{
    SkipLineRest();
    return Accept('\n') || Accept('\r');
}

size_t Sdf_TextScanner::_IdentifierEnd(size_t pos) const
{
    size_t end = pos;
    for (; end < _text.size(); ++end) {
        const char c = _text[end];
        if (static_cast<unsigned char>(c) >= 0x80) {
            const char* next = _text.data() + end;
            const uint32_t code = Tf_NextCodePoint(&next, _text.data() + _text.size());
            if (!(end == pos ? TfIsUtf8CodePointXidStart(code) : TfIsUtf8CodePointXidContinue(code))) {
                break;
            }
            end = static_cast<size_t>(next - _text.data()) - 1;
        } else if (!Sdf_IsAsciiLetter(c) && (end == pos || !Sdf_IsDigit(c))) {
            break;
        }
    }
    return end;
}

bool Sdf_TextScanner::AcceptWord(std::string_view word)
{
    if (_text.compare(_pos, word.size(), word) != 0 || PeekIdentifier().size() != word.size()) {
        return false;
    }
    _pos += word.size();
    return true;
}

bool Sdf_TextScanner::AcceptKeyword(std::string_view word)
{
    if (_text.compare(_pos, word.size(), word) != 0) {
        return false;
    }
    const size_t end = _pos + word.size();
    if (end < _text.size() && (Sdf_IsAsciiLetter(_text[end]) || Sdf_IsDigit(_text[end]))) {
        return false;
    }
    _pos = end;
    return true;
}

std::string_view Sdf_TextScanner::PropertyName(const char* what)
{
    const size_t begin = _pos;
    size_t end = _IdentifierEnd(begin);
    if (end == begin) {
        Fail(what);
    }
    while (end < _text.size() && _text[end] == ':') {
        const size_t next = _IdentifierEnd(end + 1);
        if (next == end + 1) {
            break;
        }
        end = next;
    }
    _pos = end;
    return _text.substr(begin, end - begin);
}

// Returns the end of the name at the current position; the position itself where there is none.
size_t Sdf_TextScanner::_NameEnd() const
{
    size_t end = _IdentifierEnd(_pos);
    if (end == _pos || IsReserved(_text.substr(_pos, end - _pos))) {
        return _pos;
    }
    while (_text.substr(end, 2) == "::") {
        const size_t next = _IdentifierEnd(end + 2);
        if (next == end + 2 || IsReserved(_text.substr(end + 2, next - end - 2))) {
            break;
        }
        end = next;
    }
    return end;
}

bool Sdf_TextScanner::AtName() const { return _NameEnd() > _pos; }

std::string_view Sdf_TextScanner::Name(const char* what)
{
    const size_t begin = _pos;
    const size_t end = _NameEnd();
    if (end == begin) {
        Fail(what);
    }
    _pos = end;
    return _text.substr(begin, end - begin);
}

PXR_NAMESPACE_CLOSE_SCOPE
