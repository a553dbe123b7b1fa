#pragma once

/// Cuts the text of a layer into blanks, words, numbers, strings and marks.

#include <pxr/pxr.h>

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

PXR_NAMESPACE_OPEN_SCOPE

/// Where and why a text cannot be read; thrown by the scanner and caught where the file is read.
struct Sdf_TextProblem
{
    size_t offset;
    std::string found;
    std::string expected;
};

/// A number as it is written: whole where it can be, so that large integers keep all their digits.
struct Sdf_TextNumber
{
    enum Kind
    {
        Signed,
        Unsigned,
        Real
    };
    Kind kind = Real;
    int64_t integer = 0;
    uint64_t natural = 0;
    double real = 0.0;
};

/// Reads a text from left to right. What separates two things matters in the text format, so nothing is
/// skipped but by the operations that say so. Those that read something throw an Sdf_TextProblem where it is
/// not there; those that accept something leave the position as it is then.
class Sdf_TextScanner
{
public:
    explicit Sdf_TextScanner(std::string_view text) : _text(text) {}

    [[noreturn]] void Fail(const std::string& expected) const;
    [[noreturn]] void Fail(size_t offset, const std::string& found, const std::string& expected) const;
    /// Returns the first line, without its end, and goes on behind it.
    std::string_view Header();

    bool AtEnd() const { return _pos >= _text.size(); }
    /// Returns the next character, or 0 at the end.
    char Peek() const { return _pos < _text.size() ? _text[_pos] : '\0'; }
    bool Accept(char c)
    {
        const bool there = Peek() == c && !AtEnd();
        _pos += there ? 1 : 0;
        return there;
    }
    void Expect(char c, const char* where);
    size_t Offset() const { return _pos; }
    void GoTo(size_t offset) { _pos = offset; }
    /// Returns the text from an offset to here.
    std::string_view Since(size_t offset) const { return _text.substr(offset, _pos - offset); }

    /// Skips spaces, tabs and block comments; says whether a space or tab was among them.
    bool SkipBlanks();
    /// Skips blanks and comments to the end of the line.
    void SkipLineRest();
    /// Skips blanks, comments and line ends.
    void SkipLines();
    /// Skips the blanks that part two words; one at least must be there.
    void Gap(const char* before);
    /// Reads `=` with blanks around it.
    bool AcceptAssign();
    void Assign(const char* behind);

    /// An identifier: a letter or `_`, then letters, digits and `_` of any alphabet. Empty where there is
    /// none.
    std::string_view PeekIdentifier() const { return _text.substr(_pos, _IdentifierEnd(_pos) - _pos); }
    bool AcceptWord(std::string_view word);
    /// A keyword is told by the ASCII characters that follow it alone.
    bool AcceptKeyword(std::string_view word);
    /// Reads identifiers joined by `:`, as properties are named.
    std::string_view PropertyName(const char* what);
    /// Reads identifiers joined by `::`, none of them a word that the format has for itself.
    bool AtName() const;
    std::string_view Name(const char* what);
    /// Says whether a word is one of those that the format has for itself.
    static bool IsReserved(std::string_view word);

    bool AtString() const { return Peek() == '"' || Peek() == '\''; }
    std::string String(const char* what);
    bool AtAsset() const { return Peek() == '@'; }
    std::string Asset(const char* what);
    bool AtPath() const { return Peek() == '<'; }
    /// Returns the text between `<` and `>`.
    std::string_view Path(const char* what);
    bool AtNumber() const;
    Sdf_TextNumber Number(const char* what);
    /// Reads a number as the nearest double.
    double Real(const char* what);

    /// Reads an opening mark, items with commas between them, and the closing mark. A comma may stand behind
    /// the last item; lines may end behind the opening mark, a comma, and the last item.
    template <class Item>
    void List(char open, char close, const char* where, const Item& item)
    {
        Expect(open, where);
        SkipLines();
        while (!Accept(close)) {
            item();
            SkipBlanks();
            if (Accept(',')) {
                SkipLines();
                continue;
            }
            SkipLines();
            if (Peek() != close) {
                Fail(std::string("',' or '") + close + "' " + where);
            }
        }
    }
    /// Reads statements up to the closing mark: each but the last ends with its line or with `;`.
    template <class Item>
    void Statements(char close, const char* where, const Item& item)
    {
        SkipLines();
        while (!Accept(close)) {
            item();
            const bool ended = EndStatement();
            SkipLines();
            if (!ended && Peek() != close) {
                Fail(std::string("a new line, ';' or '") + close + "' " + where);
            }
        }
    }
    /// Reads the line end or `;` behind a statement, with what may stand before it.
    bool EndStatement();
    /// Reads the line end behind a statement that ends with a brace.
    bool EndLine();

private:
    size_t _IdentifierEnd(size_t pos) const;
    size_t _NameEnd() const;
    bool _SkipBlockComment();
    bool _SkipLineComment();
    std::string _Excerpt() const;
    size_t _StringEnd(size_t* quotes) const;
    size_t _NumberEnd(const char* what) const;

    std::string_view _text;
    size_t _pos = 0;
};

/// Returns the line and the column, in bytes, of an offset as `LINE:COLUMN`, both counted from 1.
std::string Sdf_PlaceOf(std::string_view text, size_t offset);
/// Returns the offset of the first byte behind the first line that is not UTF-8 text; the size of the text
/// where all is well.
size_t Sdf_FindBadByte(std::string_view text);

PXR_NAMESPACE_CLOSE_SCOPE
