#pragma once

/// Work on strings.

#include <pxr/base/tf/token.h>
#include <pxr/export.h>
#include <pxr/pxr.h>

#include <cstdarg>
#include <cstdint>
#include <iosfwd>
#include <set>
#include <sstream>
#include <string>
#include <vector>

PXR_NAMESPACE_OPEN_SCOPE

/// \name Formatting
/// @{
VESK_USD_API std::string TfStringPrintf(const char* format, ...) __attribute__((format(printf, 1, 2)));
VESK_USD_API std::string TfVStringPrintf(const char* format, va_list arguments)
    __attribute__((format(printf, 1, 0)));
VESK_USD_API std::string TfVStringPrintf(const std::string& format, va_list arguments);
/// Returns the text, "" for null.
inline std::string TfSafeString(const char* text) { return text ? std::string(text) : std::string(); }
inline std::string TfIntToString(int number) { return std::to_string(number); }
/// @}

/// \name Numbers
/// Independent of the locale.
/// @{
/// Reads a text that is a number and nothing else, "inf" and "nan" among them; any other text is 0.
VESK_USD_API double TfStringToDouble(const std::string& text);
VESK_USD_API double TfStringToDouble(const char* text);
VESK_USD_API double TfStringToDouble(const char* text, int length);
/// Read an integer at the start of the text; one that does not fit sets outOfRange and gives the limit.
VESK_USD_API long TfStringToLong(const std::string& text, bool* outOfRange = nullptr);
VESK_USD_API unsigned long TfStringToULong(const std::string& text, bool* outOfRange = nullptr);
VESK_USD_API int64_t TfStringToInt64(const std::string& text, bool* outOfRange = nullptr);
VESK_USD_API uint64_t TfStringToUInt64(const std::string& text, bool* outOfRange = nullptr);
/// Writes the shortest text that reads back to the same double into the buffer; 128 bytes are enough. Returns
/// false when it does not fit.
VESK_USD_API bool TfDoubleToString(double number, char* buffer, int length, bool emitTrailingZero);

/// Streams as the shortest text that reads back to the same number.
struct TfStreamFloat
{
    explicit TfStreamFloat(float number) : value(number) {}
    float value;
};
struct TfStreamDouble
{
    explicit TfStreamDouble(double number) : value(number) {}
    double value;
};
VESK_USD_API std::ostream& operator<<(std::ostream& out, TfStreamFloat number);
VESK_USD_API std::ostream& operator<<(std::ostream& out, TfStreamDouble number);
/// @}

/// \name Looking
/// @{
VESK_USD_API bool TfStringStartsWith(const std::string& text, const std::string& prefix);
VESK_USD_API bool TfStringEndsWith(const std::string& text, const std::string& suffix);
inline bool TfStringContains(const std::string& text, const std::string& part)
{
    return text.find(part) != std::string::npos;
}
VESK_USD_API std::string TfStringGetCommonPrefix(const std::string& a, const std::string& b);
/// Returns what is behind the last delimiter, "" when there is none.
VESK_USD_API std::string TfStringGetSuffix(const std::string& name, char delimiter = '.');
/// Returns what is before the last delimiter, the whole name when there is none.
VESK_USD_API std::string TfStringGetBeforeSuffix(const std::string& name, char delimiter = '.');
/// Returns the last element of a file path.
VESK_USD_API std::string TfGetBaseName(const std::string& path);
/// Returns a file path up to and with its last slash.
VESK_USD_API std::string TfGetPathName(const std::string& path);
/// @}

/// \name Changing
/// The case functions change ASCII letters.
/// @{
VESK_USD_API std::string TfStringToLower(const std::string& text);
VESK_USD_API std::string TfStringToUpper(const std::string& text);
VESK_USD_API std::string TfStringCapitalize(const std::string& text);
VESK_USD_API std::string TfStringToLowerAscii(const std::string& text);
VESK_USD_API std::string TfStringTrimLeft(const std::string& text, const char* trimChars = " \n\t\r");
VESK_USD_API std::string TfStringTrimRight(const std::string& text, const char* trimChars = " \n\t\r");
VESK_USD_API std::string TfStringTrim(const std::string& text, const char* trimChars = " \n\t\r");
VESK_USD_API std::string TfStringReplace(const std::string& source, const std::string& from,
                                         const std::string& to);
/// @}

/// \name Joining and cutting
/// @{
template <class Iterator>
std::string TfStringJoin(Iterator begin, Iterator end, const char* separator = " ")
{
    std::string joined;
    for (Iterator i = begin; i != end; ++i) {
        if (i != begin) {
            joined += separator;
        }
        joined += *i;
    }
    return joined;
}
VESK_USD_API std::string TfStringJoin(const std::vector<std::string>& parts, const char* separator = " ");
VESK_USD_API std::string TfStringJoin(const std::set<std::string>& parts, const char* separator = " ");
/// Cuts at every separator; parts may be empty. No text or no separator gives no parts.
VESK_USD_API std::vector<std::string> TfStringSplit(const std::string& text, const std::string& separator);
/// Cuts at runs of any of the delimiters; no part is empty.
VESK_USD_API std::vector<std::string> TfStringTokenize(const std::string& text,
                                                       const char* delimiters = " \t\n");
VESK_USD_API std::set<std::string> TfStringTokenizeToSet(const std::string& text,
                                                         const char* delimiters = " \t\n");
/// Joins two paths and normalizes.
VESK_USD_API std::string TfStringCatPaths(const std::string& prefix, const std::string& suffix);
/// @}

/// \name Values as text
/// @{
template <typename T>
std::string TfStringify(const T& value)
{
    std::ostringstream stream;
    stream << value;
    return stream.str();
}
VESK_USD_API std::string TfStringify(bool value);
VESK_USD_API std::string TfStringify(float value);
VESK_USD_API std::string TfStringify(double value);
inline std::string TfStringify(const std::string& value) { return value; }

template <typename T>
T TfUnstringify(const std::string& text, bool* status = nullptr)
{
    T value = T();
    std::istringstream stream(text);
    stream >> value;
    if (status && !stream) {
        *status = false;
    }
    return value;
}
/// @}

/// \name Identifiers of C
/// @{
VESK_USD_API bool TfIsValidIdentifier(const std::string& text);
/// Replaces what is not allowed by '_'; no text gives "_".
VESK_USD_API std::string TfMakeValidIdentifier(const std::string& text);
/// @}

/// Orders as a dictionary does: letter case and leading zeros matter last, numbers count by value.
struct TfDictionaryLessThan
{
    VESK_USD_API bool operator()(const std::string& a, const std::string& b) const;
    bool operator()(const TfToken& a, const TfToken& b) const
    {
        return (*this)(a.GetString(), b.GetString());
    }
};

PXR_NAMESPACE_CLOSE_SCOPE
