#include <pxr/usd/sdf/path.h>

#include <pxr/base/tf/diagnostic.h>
#include <pxr/base/tf/stringUtils.h>
#include <pxr/base/tf/unicodeUtils.h>

#include <algorithm>
#include <string_view>

PXR_NAMESPACE_OPEN_SCOPE

namespace {

constexpr char kDelimiter = ':';

/// Letters, digits and the underscore: what nearly all names are made of.
bool IsPlain(char c)
{
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == '_';
}

bool IsIdentifier(std::string_view name)
{
    if (!name.empty() && !(name.front() >= '0' && name.front() <= '9') &&
        std::all_of(name.begin(), name.end(), IsPlain)) {
        return true;
    }
    const char* at = name.data();
    const char* end = at + name.size();
    if (at == end) {
        return false;
    }
    const uint32_t first = Tf_NextCodePoint(&at, end);
    if (first != '_' && !TfIsUtf8CodePointXidStart(first)) {
        return false;
    }
    while (at != end) {
        if (!TfIsUtf8CodePointXidContinue(Tf_NextCodePoint(&at, end))) {
            return false;
        }
    }
    return true;
}

/// Cuts at the delimiters; parts may be empty.
std::vector<std::string> Cut(const std::string& name)
{
    return name.empty() ? std::vector<std::string>{""} : TfStringSplit(name, std::string(1, kDelimiter));
}

} // namespace

bool SdfPath::IsValidIdentifier(const std::string& name) { return IsIdentifier(name); }

bool SdfPath::IsValidNamespacedIdentifier(const std::string& name)
{
    std::string_view rest = name;
    for (;;) {
        const size_t at = rest.find(kDelimiter);
        if (!IsIdentifier(rest.substr(0, at))) {
            return false;
        }
        if (at == std::string_view::npos) {
            return true;
        }
        rest.remove_prefix(at + 1);
    }
}

std::vector<std::string> SdfPath::TokenizeIdentifier(const std::string& name)
{
    std::vector<std::string> parts = Cut(name);
    return std::all_of(parts.begin(), parts.end(), IsValidIdentifier) ? parts : std::vector<std::string>();
}

TfTokenVector SdfPath::TokenizeIdentifierAsTokens(const std::string& name)
{
    return TfToTokenVector(TokenizeIdentifier(name));
}

std::string SdfPath::JoinIdentifier(const std::vector<std::string>& names)
{
    std::string joined;
    for (const std::string& name : names) {
        joined = JoinIdentifier(joined, name);
    }
    return joined;
}

std::string SdfPath::JoinIdentifier(const TfTokenVector& names)
{
    return JoinIdentifier(TfToStringVector(names));
}

std::string SdfPath::JoinIdentifier(const std::string& lhs, const std::string& rhs)
{
    return lhs.empty() || rhs.empty() ? lhs + rhs : lhs + kDelimiter + rhs;
}

std::string SdfPath::JoinIdentifier(const TfToken& lhs, const TfToken& rhs)
{
    return JoinIdentifier(lhs.GetString(), rhs.GetString());
}

std::string SdfPath::StripNamespace(const std::string& name)
{
    return name.substr(name.rfind(kDelimiter) + 1);
}

TfToken SdfPath::StripNamespace(const TfToken& name) { return TfToken(StripNamespace(name.GetString())); }

std::pair<std::string, bool> SdfPath::StripPrefixNamespace(const std::string& name,
                                                           const std::string& matchNamespace)
{
    if (matchNamespace.empty()) {
        return {name, false};
    }
    std::string prefix = matchNamespace;
    if (prefix.back() != kDelimiter) {
        prefix += kDelimiter;
    }
    return TfStringStartsWith(name, prefix) ? std::make_pair(name.substr(prefix.size()), true)
                                            : std::make_pair(name, false);
}

void SdfPath::RemoveDescendentPaths(SdfPathVector* paths)
{
    std::sort(paths->begin(), paths->end());
    // In order, descendants come right behind their ancestor.
    const auto covered = [](const SdfPath& kept, const SdfPath& next) { return next.HasPrefix(kept); };
    paths->erase(std::unique(paths->begin(), paths->end(), covered), paths->end());
}

void SdfPath::RemoveAncestorPaths(SdfPathVector* paths)
{
    std::sort(paths->begin(), paths->end());
    const auto covers = [](const SdfPath& kept, const SdfPath& previous) { return kept.HasPrefix(previous); };
    paths->erase(paths->begin(), std::unique(paths->rbegin(), paths->rend(), covers).base());
}

SdfPathVector SdfPath::GetConciseRelativePaths(const SdfPathVector& paths)
{
    const size_t count = paths.size();
    SdfPathVector prims(count), anchors(count), labels(count);
    const auto relabel = [&](size_t i, const SdfPath& anchor) {
        anchors[i] = anchor;
        labels[i] = anchor.IsAbsoluteRootPath() ? prims[i] : prims[i].MakeRelativePath(anchor);
    };
    for (size_t i = 0; i != count; ++i) {
        if (!paths[i].IsAbsolutePath()) {
            TF_WARN("argument to GetConciseRelativePaths contains a relative path.");
            return paths;
        }
        prims[i] = paths[i].GetPrimPath();
        relabel(i, prims[i].GetParentPath());
    }
    // Paths that read alike and are not get one more element in front, all at once, until none do.
    for (bool ambiguous = true; ambiguous;) {
        std::vector<size_t> again;
        for (size_t i = 0; i != count; ++i) {
            for (size_t j = 0; j != count; ++j) {
                if (labels[i] == labels[j] && prims[i] != prims[j]) {
                    again.push_back(i);
                    break;
                }
            }
        }
        ambiguous = !again.empty();
        for (size_t i : again) {
            relabel(i, anchors[i].GetParentPath());
        }
    }
    SdfPathVector result(count);
    for (size_t i = 0; i != count; ++i) {
        result[i] = anchors[i].IsAbsoluteRootPath() ? paths[i] : paths[i].MakeRelativePath(anchors[i]);
    }
    return result;
}

PXR_NAMESPACE_CLOSE_SCOPE
