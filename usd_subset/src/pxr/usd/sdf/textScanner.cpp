#include "pxr/usd/sdf/textScanner.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <limits>

PXR_NAMESPACE_OPEN_SCOPE

namespace {

bool isDigit(char c) { return c >= '0' && c <= '9'; }
bool isWordStart(char c)
{
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || c == '_' ||
           static_cast<unsigned char>(c) >= 0x80;
}
bool isWordPart(char c) { return isWordStart(c) || isDigit(c); }

// The characters U+0000 to U+001F and U+007F to U+009F.
bool isControl(std::string_view text)
{
    const unsigned char first = static_cast<unsigned char>(text[0]);
    return first < 0x20 || first == 0x7F ||
           (first == 0xC2 && text.size() > 1 && static_cast<unsigned char>(text[1]) < 0xA0);
}

int hexDigit(char c)
{
    return isDigit(c)             ? c - '0'
           : c >= 'a' && c <= 'f' ? c - 'a' + 10
           : c >= 'A' && c <= 'F' ? c - 'A' + 10
                                  : -1;
}

// Appends what the escape at `p` (behind the backslash) stands for and returns the position behind it.
size_t unescape(std::string_view text, size_t p, std::string* out)
{
    const std::string_view names = "abfnrtv";
    const std::string_view values = "\a\b\f\n\r\t\v";
    const char c = text[p];
    const size_t known = names.find(c);
    if (known != std::string_view::npos) {
        out->push_back(values[known]);
        return p + 1;
    }
    int code = 0;
    size_t end = p;
    if (c == 'x') {
        for (end = p + 1; end < text.size() && end < p + 3 && hexDigit(text[end]) >= 0; ++end) {
            code = code * 16 + hexDigit(text[end]);
        }
        out->push_back(static_cast<char>(code));
        return end;
    }
    while (end < text.size() && end < p + 3 && text[end] >= '0' && text[end] <= '7') {
        code = code * 8 + (text[end++] - '0');
    }
    if (end == p) {
        out->push_back(c);
        return p + 1;
    }
    out->push_back(static_cast<char>(code));
    return end;
}

// Returns the length of the UTF-8 sequence at the start of the text, 0 for none.
size_t utf8Length(std::string_view text)
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

} // namespace

size_t Sdf_LineOf(std::string_view text, size_t offset)
{
    const auto end = text.begin() + static_cast<std::ptrdiff_t>(std::min(offset, text.size()));
    return static_cast<size_t>(std::count(text.begin(), end, '\n')) + 1;
}

size_t Sdf_FindBadByte(std::string_view text)
{
    for (size_t i = 0; i < text.size();) {
        if (static_cast<unsigned char>(text[i] - 1) < 0x7F) {
            ++i;
            continue;
        }
        const size_t length = text[i] == '\0' ? 0 : utf8Length(text.substr(i));
        if (length == 0) {
            return i;
        }
        i += length;
    }
    return text.size();
}

std::string Sdf_TextScanner::_Excerpt() const
{
    if (_pos >= _text.size()) {
        return "the end of the file";
    }
    size_t end = _pos + 1;
    const bool word = isWordPart(_text[_pos]);
    while (end < _text.size() && end < _pos + 40 && isWordPart(_text[end]) == word &&
           (word || static_cast<unsigned char>(_text[end]) > ' ')) {
        ++end;
    }
    // A cut through a character would make the message itself bad text.
    while (end < _text.size() && end > _pos + 1 && (static_cast<unsigned char>(_text[end]) & 0xC0) == 0x80) {
        --end;
    }
    return "'" + std::string(_text.substr(_pos, end - _pos)) + "'";
}

void Sdf_TextScanner::Fail(const std::string& expected)
{
    _Skip();
    Fail(_pos, _Excerpt(), expected);
}

void Sdf_TextScanner::Fail(size_t offset, const std::string& found, const std::string& expected) const
{
    throw Sdf_TextProblem{offset, found, expected};
}

std::string_view Sdf_TextScanner::Header()
{
    const size_t end = std::min(_text.find_first_of("\r\n"), _text.size());
    const std::string_view line = _text.substr(0, end);
    _pos = end;
    return line;
}

void Sdf_TextScanner::_SkipComment()
{
    if (_text[_pos] == '/' && _text[_pos + 1] == '*') {
        const size_t end = _text.find("*/", _pos + 2);
        if (end == std::string_view::npos) {
            Fail(_pos, "a comment without an end", "'*/'");
        }
        _pos = end + 2;
        return;
    }
    _pos = std::min(_text.find_first_of("\r\n", _pos), _text.size());
}

void Sdf_TextScanner::_Skip()
{
    while (_pos < _text.size()) {
        const char c = _text[_pos];
        if (c == ' ' || c == '\t') {
            ++_pos;
        } else if (c == '\n' || c == '\r') {
            _newLine = true;
            ++_pos;
        } else if (c == '#' || (c == '/' && _pos + 1 < _text.size() &&
                                (_text[_pos + 1] == '/' || _text[_pos + 1] == '*'))) {
            _SkipComment();
        } else {
            return;
        }
    }
}

bool Sdf_TextScanner::AtEnd()
{
    _Skip();
    return _pos >= _text.size();
}

char Sdf_TextScanner::Peek() { return AtEnd() ? '\0' : _text[_pos]; }

bool Sdf_TextScanner::Accept(char c)
{
    if (Peek() != c || AtEnd()) {
        return false;
    }
    ++_pos;
    _newLine = false;
    return true;
}

void Sdf_TextScanner::Expect(char c, const char* where)
{
    if (!Accept(c)) {
        Fail(std::string("'") + c + "' " + where);
    }
}

bool Sdf_TextScanner::AtNewLine()
{
    _Skip();
    return _newLine;
}

void Sdf_TextScanner::EndStatement(char close, const char* where)
{
    const bool newLine = AtNewLine();
    if (!Accept(';') && !newLine && Peek() != close && !AtEnd()) {
        Fail(close == '\0' ? std::string("a new line or ';' ") + where
                           : std::string("a new line, ';' or '") + close + "' " + where);
    }
}

std::string_view Sdf_TextScanner::PeekWord()
{
    if (!isWordStart(Peek())) {
        return std::string_view();
    }
    size_t end = _pos + 1;
    while (end < _text.size()) {
        const bool joint = _text[end] == ':' && end + 1 < _text.size() &&
                           (isWordPart(_text[end + 1]) ||
                            (_text[end + 1] == ':' && end + 2 < _text.size() && isWordPart(_text[end + 2])));
        if (!isWordPart(_text[end]) && !joint) {
            break;
        }
        end += joint && _text[end + 1] == ':' ? 2 : 1;
    }
    return _text.substr(_pos, end - _pos);
}

bool Sdf_TextScanner::AcceptWord(std::string_view word)
{
    if (PeekWord() != word) {
        return false;
    }
    _pos += word.size();
    _newLine = false;
    return true;
}

std::string_view Sdf_TextScanner::Word(const char* what)
{
    const std::string_view word = PeekWord();
    if (word.empty()) {
        Fail(what);
    }
    _pos += word.size();
    _newLine = false;
    return word;
}

bool Sdf_TextScanner::AtString()
{
    const char c = Peek();
    return c == '"' || c == '\'';
}

// Finds the closing quotes of the string at the current position.
size_t Sdf_TextScanner::_StringEnd(size_t* quotes)
{
    const char quote = _text[_pos];
    const bool triple = _text.substr(_pos, 3) == std::string(3, quote);
    *quotes = triple ? 3 : 1;
    const std::string_view closing = triple ? _text.substr(_pos, 3) : _text.substr(_pos, 1);
    for (size_t p = _pos + *quotes; p < _text.size(); ++p) {
        if (_text[p] == '\\') {
            ++p;
        } else if (_text.substr(p, *quotes) == closing) {
            return p;
        } else if (!triple && (_text[p] == '\n' || _text[p] == '\r')) {
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
    _newLine = false;
    std::string result;
    result.reserve(body.size());
    for (size_t p = 0; p < body.size();) {
        const size_t slash = std::min(body.find('\\', p), body.size());
        result.append(body.substr(p, slash - p));
        p = slash + 1 < body.size() ? unescape(body, slash + 1, &result) : body.size();
    }
    return result;
}

std::string_view Sdf_TextScanner::Block(const char* where)
{
    Peek();
    const size_t begin = _pos;
    Expect('{', where);
    for (size_t depth = 1; depth > 0;) {
        if (AtEnd()) {
            Fail(std::string("'}' ") + where);
        } else if (AtString()) {
            size_t quotes = 0;
            const size_t end = _StringEnd(&quotes);
            _pos = end + quotes;
        } else {
            depth += _text[_pos] == '{' ? 1 : 0;
            depth -= _text[_pos] == '}' ? 1 : 0;
            ++_pos;
        }
    }
    _newLine = false;
    return _text.substr(begin, _pos - begin);
}

bool Sdf_TextScanner::AtAsset() { return Peek() == '@'; }

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
            _newLine = false;
            return path;
        } else if (isControl(_text.substr(p, 2))) {
            Fail(p, "a control character in an asset path", "printable characters");
        } else {
            path += _text[p];
        }
    }
    Fail(_pos, "an asset path that does not end on its line", triple ? "the closing @@@" : "the closing @");
}

bool Sdf_TextScanner::AtPath() { return Peek() == '<'; }

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
    _newLine = false;
    return path;
}

bool Sdf_TextScanner::AtNumber()
{
    const char c = Peek();
    if (isDigit(c) || c == '-' || c == '.') {
        return true;
    }
    const std::string_view word = PeekWord();
    return word == "inf" || word == "nan";
}

Sdf_TextNumber Sdf_TextScanner::Number(const char* what)
{
    if (!AtNumber()) {
        Fail(what);
    }
    const size_t begin = _pos;
    const bool negative = _text[begin] == '-';
    size_t end = begin + (negative ? 1 : 0);
    const size_t digits = end;
    bool whole = true;
    Sdf_TextNumber number;
    if (_text.substr(end, 3) == "inf" || (!negative && _text.substr(end, 3) == "nan")) {
        const double inf = std::numeric_limits<double>::infinity();
        number.real = _text[end] == 'n' ? std::numeric_limits<double>::quiet_NaN() : negative ? -inf : inf;
        end += 3;
    } else {
        while (end < _text.size() && isDigit(_text[end])) {
            ++end;
        }
        whole = end > digits;
        const char* const first = _text.data() + begin;
        const char* const last = _text.data() + _text.size();
        const char next = end < _text.size() ? _text[end] : '\0';
        if (whole && next != '.' && next != 'e' && next != 'E') {
            const bool zero = negative && _text.substr(digits, end - digits) == "0";
            const std::errc error = negative ? std::from_chars(first, last, number.integer).ec
                                             : std::from_chars(first, last, number.natural).ec;
            number.kind = negative ? Sdf_TextNumber::Signed : Sdf_TextNumber::Unsigned;
            whole = error == std::errc() && !zero;
        } else {
            whole = false;
        }
        if (whole) {
            number.real =
                negative ? static_cast<double>(number.integer) : static_cast<double>(number.natural);
        } else {
            number.kind = Sdf_TextNumber::Real;
            const std::from_chars_result result = std::from_chars(first, last, number.real);
            if (result.ec == std::errc::invalid_argument) {
                Fail(what);
            }
            end = static_cast<size_t>(result.ptr - _text.data());
            if (result.ec == std::errc::result_out_of_range) {
                // Too large is infinite, too small is zero, as the exponent's sign tells.
                const std::string_view digitsRead = _text.substr(begin, end - begin);
                const bool tiny = digitsRead.find("e-") != std::string_view::npos ||
                                  digitsRead.find("E-") != std::string_view::npos ||
                                  digitsRead.substr(negative ? 1 : 0, 2) == "0.";
                number.real = std::copysign(tiny ? 0.0 : std::numeric_limits<double>::infinity(),
                                            negative ? -1.0 : 1.0);
            }
        }
    }
    if (end < _text.size() && isWordPart(_text[end])) {
        Fail(what);
    }
    _pos = end;
    _newLine = false;
    return number;
}

PXR_NAMESPACE_CLOSE_SCOPE
