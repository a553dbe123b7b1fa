#include <pxr/base/tf/pathUtils.h>
#include <pxr/base/tf/stringUtils.h>

#include <algorithm>
#include <cstdio>

PXR_NAMESPACE_OPEN_SCOPE

namespace {

bool IsLetter(char c) { return ('a' <= c && c <= 'z') || ('A' <= c && c <= 'Z') || c == '_'; }
bool IsDigit(char c) { return '0' <= c && c <= '9'; }
char ToLower(char c) { return 'A' <= c && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; }
char ToUpper(char c) { return 'a' <= c && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c; }

} // namespace

std::string TfStringPrintf(const char* format, ...)
{
    va_list arguments;
    va_start(arguments, format);
    std::string text = TfVStringPrintf(format, arguments);
    va_end(arguments);
    return text;
}

std::string TfVStringPrintf(const char* format, va_list arguments)
{
    va_list again;
    va_copy(again, arguments);
    char buffer[512];
    const int length = std::vsnprintf(buffer, sizeof(buffer), format, arguments);
    std::string text;
    if (length >= 0 && static_cast<size_t>(length) < sizeof(buffer)) {
        text.assign(buffer, length);
    } else if (length >= 0) {
        text.resize(length + 1);
        std::vsnprintf(text.data(), text.size(), format, again);
        text.resize(length);
    }
    va_end(again);
    return text;
}

std::string TfVStringPrintf(const std::string& format, va_list arguments)
{
    return TfVStringPrintf(format.c_str(), arguments);
}

bool TfStringStartsWith(const std::string& text, const std::string& prefix)
{
    return text.compare(0, prefix.size(), prefix) == 0;
}

bool TfStringEndsWith(const std::string& text, const std::string& suffix)
{
    return text.size() >= suffix.size() &&
           text.compare(text.size() - suffix.size(), suffix.size(), suffix) == 0;
}

std::string TfStringGetCommonPrefix(const std::string& a, const std::string& b)
{
    const size_t length = std::min(a.size(), b.size());
    const auto end = std::mismatch(a.begin(), a.begin() + length, b.begin()).first;
    return std::string(a.begin(), end);
}

std::string TfStringGetSuffix(const std::string& name, char delimiter)
{
    const size_t at = name.rfind(delimiter);
    return at == std::string::npos ? std::string() : name.substr(at + 1);
}

std::string TfStringGetBeforeSuffix(const std::string& name, char delimiter)
{
    return name.substr(0, name.rfind(delimiter));
}

std::string TfGetBaseName(const std::string& path)
{
    const size_t last = path.find_last_not_of('/');
    if (last == std::string::npos) {
        return std::string();
    }
    const size_t slash = path.rfind('/', last);
    const size_t first = slash == std::string::npos ? 0 : slash + 1;
    return path.substr(first, last + 1 - first);
}

std::string TfGetPathName(const std::string& path)
{
    const size_t slash = path.rfind('/');
    return slash == std::string::npos ? std::string() : path.substr(0, slash + 1);
}

std::string TfStringToLower(const std::string& text)
{
    std::string lower = text;
    std::transform(lower.begin(), lower.end(), lower.begin(), ToLower);
    return lower;
}

std::string TfStringToLowerAscii(const std::string& text) { return TfStringToLower(text); }

std::string TfStringToUpper(const std::string& text)
{
    std::string upper = text;
    std::transform(upper.begin(), upper.end(), upper.begin(), ToUpper);
    return upper;
}

std::string TfStringCapitalize(const std::string& text)
{
    std::string capital = text;
    if (!capital.empty()) {
        capital[0] = ToUpper(capital[0]);
    }
    return capital;
}

std::string TfStringTrimLeft(const std::string& text, const char* trimChars)
{
    const size_t first = text.find_first_not_of(trimChars);
    return first == std::string::npos ? std::string() : text.substr(first);
}

std::string TfStringTrimRight(const std::string& text, const char* trimChars)
{
    return text.substr(0, text.find_last_not_of(trimChars) + 1);
}

std::string TfStringTrim(const std::string& text, const char* trimChars)
{
    return TfStringTrimLeft(TfStringTrimRight(text, trimChars), trimChars);
}

std::string TfStringReplace(const std::string& source, const std::string& from, const std::string& to)
{
    if (from.empty() || from == to) {
        return source;
    }
    std::string result;
    size_t done = 0;
    for (size_t at; (at = source.find(from, done)) != std::string::npos; done = at + from.size()) {
        result.append(source, done, at - done).append(to);
    }
    return result.append(source, done, std::string::npos);
}

std::string TfStringJoin(const std::vector<std::string>& parts, const char* separator)
{
    return TfStringJoin(parts.begin(), parts.end(), separator);
}

std::string TfStringJoin(const std::set<std::string>& parts, const char* separator)
{
    return TfStringJoin(parts.begin(), parts.end(), separator);
}

std::vector<std::string> TfStringSplit(const std::string& text, const std::string& separator)
{
    std::vector<std::string> parts;
    if (text.empty() || separator.empty()) {
        return parts;
    }
    size_t done = 0;
    for (size_t at; (at = text.find(separator, done)) != std::string::npos; done = at + separator.size()) {
        parts.push_back(text.substr(done, at - done));
    }
    parts.push_back(text.substr(done));
    return parts;
}

std::vector<std::string> TfStringTokenize(const std::string& text, const char* delimiters)
{
    std::vector<std::string> parts;
    size_t first = text.find_first_not_of(delimiters);
    while (first != std::string::npos) {
        const size_t end = std::min(text.find_first_of(delimiters, first), text.size());
        parts.push_back(text.substr(first, end - first));
        first = text.find_first_not_of(delimiters, end);
    }
    return parts;
}

std::set<std::string> TfStringTokenizeToSet(const std::string& text, const char* delimiters)
{
    const std::vector<std::string> parts = TfStringTokenize(text, delimiters);
    return std::set<std::string>(parts.begin(), parts.end());
}

std::string TfStringCatPaths(const std::string& prefix, const std::string& suffix)
{
    return TfNormPath(prefix + "/" + suffix);
}

std::string TfStringify(bool value) { return value ? "true" : "false"; }

bool TfIsValidIdentifier(const std::string& text)
{
    return !text.empty() && IsLetter(text[0]) &&
           std::all_of(text.begin() + 1, text.end(), [](char c) { return IsLetter(c) || IsDigit(c); });
}

std::string TfMakeValidIdentifier(const std::string& text)
{
    if (text.empty()) {
        return "_";
    }
    std::string identifier = text;
    for (size_t i = 0; i != identifier.size(); ++i) {
        if (!IsLetter(identifier[i]) && (i == 0 || !IsDigit(identifier[i]))) {
            identifier[i] = '_';
        }
    }
    return identifier;
}

PXR_NAMESPACE_CLOSE_SCOPE
