#pragma once

/// Cuts the text of a layer into words, numbers, strings and marks.

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

/// Reads a text from left to right. Every operation skips blanks and comments first; those that read
/// something throw an Sdf_TextProblem where it is not there.
class Sdf_TextScanner
{
public:
    explicit Sdf_TextScanner(std::string_view text) : _text(text) {}

    [[noreturn]] void Fail(const std::string& expected);
    [[noreturn]] void Fail(size_t offset, const std::string& found, const std::string& expected) const;
    /// Returns the first line, without its end, and goes on behind it.
    std::string_view Header();

    bool AtEnd();
    /// Returns the next character, or 0 at the end.
    char Peek();
    bool Accept(char c);
    void Expect(char c, const char* where);
    /// Says whether a line ended since the last thing that was read.
    bool AtNewLine();
    size_t Offset() const { return _pos; }
    void GoTo(size_t offset) { _pos = offset; }

    /// A word is an identifier, namespaces included; PeekWord() is empty where there is none.
    std::string_view PeekWord();
    bool AcceptWord(std::string_view word);
    std::string_view Word(const char* what);

    bool AtString();
    std::string String(const char* what);
    bool AtAsset();
    std::string Asset(const char* what);
    bool AtPath();
    /// Returns the text between `<` and `>`.
    std::string_view Path(const char* what);
    bool AtNumber();
    Sdf_TextNumber Number(const char* what);

    /// Returns the text from `{` to the `}` that closes it, both included, as it stands.
    std::string_view Block(const char* where);

    /// Reads `[`, items, `]`, with commas between the items and one allowed behind the last.
    template <class Item>
    void List(char open, char close, const char* where, const Item& item)
    {
        Expect(open, where);
        while (!Accept(close)) {
            item();
            if (!Accept(',') && Peek() != close) {
                Fail(std::string("',' or '") + close + "' " + where);
            }
        }
    }
    /// Reads statements up to the closing mark, each on a line of its own or with `;` between them.
    template <class Item>
    void Statements(char close, const char* where, const Item& item)
    {
        while (!Accept(close)) {
            item();
            EndStatement(close, where);
        }
    }
    void EndStatement(char close, const char* where);

private:
    void _Skip();
    void _SkipComment();
    std::string _Excerpt() const;
    size_t _StringEnd(size_t* quotes);

    std::string_view _text;
    size_t _pos = 0;
    bool _newLine = true;
};

/// Returns the line, counted from 1, of an offset.
size_t Sdf_LineOf(std::string_view text, size_t offset);
/// Returns the offset of the first byte that is not UTF-8 text or is NUL; the size of the text where all is
/// well.
size_t Sdf_FindBadByte(std::string_view text);

PXR_NAMESPACE_CLOSE_SCOPE
