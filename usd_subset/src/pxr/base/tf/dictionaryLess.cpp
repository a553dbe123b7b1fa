#include <pxr/base/tf/stringUtils.h>

#include <string_view>
#include <tuple>

PXR_NAMESPACE_OPEN_SCOPE

namespace {

bool IsDigit(unsigned char c) { return '0' <= c && c <= '9'; }
bool IsLetter(unsigned char c) { return ('a' <= c && c <= 'z') || ('A' <= c && c <= 'Z'); }

/// The run of digits around a position of a text.
struct Number
{
    Number(std::string_view text, size_t at)
    {
        size_t first = at;
        while (first > 0 && IsDigit(text[first - 1])) {
            --first;
        }
        end = at;
        while (end < text.size() && IsDigit(text[end])) {
            ++end;
        }
        while (first < end && text[first] == '0') {
            ++first;
        }
        digits = text.substr(first, end - first);
    }

    size_t end;
    std::string_view digits; // without leading zeros
};

/// Compares two numbers by value: -1, 0 or 1.
int Compare(const Number& a, const Number& b)
{
    if (a.digits.size() != b.digits.size()) {
        return a.digits.size() < b.digits.size() ? -1 : 1;
    }
    const int order = a.digits.compare(b.digits);
    return order < 0 ? -1 : order > 0 ? 1 : 0;
}

/// Settles texts that differ in letter case and leading zeros alone, by their first difference.
bool LessByFirstDifference(std::string_view a, std::string_view b)
{
    size_t i = 0;
    while (i < a.size() && i < b.size() && a[i] == b[i]) {
        ++i;
    }
    const unsigned char l = i < a.size() ? a[i] : 0;
    const unsigned char r = i < b.size() ? b[i] : 0;
    return r == '0' || (l != '0' && l < r);
}

bool Less(std::string_view a, std::string_view b)
{
    size_t i = 0, j = 0;
    while (i < a.size() && j < b.size()) {
        const unsigned char l = a[i], r = b[j];
        if (l == r) {
            ++i, ++j;
            continue;
        }
        const bool letterZone = 0x40 <= l && l < 0x80 && 0x40 <= r && r < 0x80;
        if (letterZone && (l & ~0x20) != (r & ~0x20)) {
            // Five past the letters' places puts '_' before 'a'.
            return ((l + 5) & 31) < ((r + 5) & 31);
        }
        if (IsDigit(l) && IsDigit(r)) {
            const Number x(a, i), y(b, j);
            if (const int order = Compare(x, y)) {
                return order < 0;
            }
            i = x.end, j = y.end;
        } else if (IsDigit(l) || IsDigit(r)) {
            // A number that goes on is the larger one; where none began, a digit comes first.
            return i == 0 ? l < r : IsDigit(a[i - 1]) ? IsDigit(r) : IsDigit(l);
        } else if (!IsLetter(l) || !IsLetter(r)) {
            return l < r;
        } else {
            ++i, ++j;
        }
    }
    const bool aEnds = i == a.size(), bEnds = j == b.size();
    return aEnds != bEnds ? aEnds : LessByFirstDifference(a, b);
}

} // namespace

bool TfDictionaryLessThan::operator()(const std::string& a, const std::string& b) const
{
    return a != b && Less(a, b);
}

PXR_NAMESPACE_CLOSE_SCOPE
