#pragma once

/// Paths of prims, properties and the other parts of scene description.

#include <pxr/base/tf/hash.h>
#include <pxr/base/tf/span.h>
#include <pxr/base/tf/token.h>
#include <pxr/export.h>
#include <pxr/pxr.h>

#include <atomic>
#include <cstdint>
#include <iosfwd>
#include <iterator>
#include <set>
#include <string>
#include <utility>
#include <vector>

PXR_NAMESPACE_OPEN_SCOPE

class SdfPath;
class SdfPathAncestorsRange;
class Sdf_PathNode;

typedef std::set<class SdfPath> SdfPathSet;
typedef std::vector<class SdfPath> SdfPathVector;

/// The part of a node that handles touch inline.
struct Sdf_PathNodeHead
{
    mutable std::atomic<uint32_t> count{1};
    uint32_t hash = 0; ///< of the last element and of the address of what is above it
};

/// A path in scene description: a handle of pointer size to an interned node, hence equality, hash and copies
/// cost one word. Absolute ("/World/Cube.size") or relative ("../Cube"). Elements: prims, variant selections
/// ("/A{set=variant}B"), properties (".name", namespaced ".a:b"), targets ("/A.rel[/B]"), relational
/// attributes
/// ("/A.rel[/B].attr"), mappers (".attr.mapper[/B]"), mapper arguments and expressions.
/// Text and tree may have any length and depth. Thread: any; one object is written by one thread at a time.
class SdfPath
{
public:
    VESK_USD_API static const SdfPath& EmptyPath();
    /// Returns "/".
    VESK_USD_API static const SdfPath& AbsoluteRootPath();
    /// Returns ".".
    VESK_USD_API static const SdfPath& ReflexiveRelativePath();

    /// Makes the empty path.
    SdfPath() noexcept = default;
    /// Parses the text; ill-formed text, "" among it, gives the empty path and one warning.
    VESK_USD_API explicit SdfPath(const std::string& text);
    SdfPath(const SdfPath& other) noexcept : _node(other._node) { _AddRef(); }
    SdfPath(SdfPath&& other) noexcept : _node(std::exchange(other._node, nullptr)) {}
    SdfPath& operator=(const SdfPath& other) noexcept
    {
        SdfPath copy(other);
        swap(*this, copy);
        return *this;
    }
    SdfPath& operator=(SdfPath&& other) noexcept
    {
        SdfPath moved(std::move(other));
        swap(*this, moved);
        return *this;
    }
    ~SdfPath()
    {
        if (_node) {
            _Release(_node);
        }
    }

    /// \name Kind
    /// @{
    VESK_USD_API size_t GetPathElementCount() const;
    VESK_USD_API bool IsAbsolutePath() const;
    VESK_USD_API bool IsAbsoluteRootPath() const;
    VESK_USD_API bool IsPrimPath() const;
    VESK_USD_API bool IsAbsoluteRootOrPrimPath() const;
    VESK_USD_API bool IsRootPrimPath() const;
    /// True for properties of prims and for relational attributes.
    VESK_USD_API bool IsPropertyPath() const;
    VESK_USD_API bool IsPrimPropertyPath() const;
    VESK_USD_API bool IsNamespacedPropertyPath() const;
    VESK_USD_API bool IsPrimVariantSelectionPath() const;
    VESK_USD_API bool IsPrimOrPrimVariantSelectionPath() const;
    VESK_USD_API bool ContainsPrimVariantSelection() const;
    VESK_USD_API bool ContainsPropertyElements() const;
    VESK_USD_API bool ContainsTargetPath() const;
    VESK_USD_API bool IsRelationalAttributePath() const;
    VESK_USD_API bool IsTargetPath() const;
    VESK_USD_API bool IsMapperPath() const;
    VESK_USD_API bool IsMapperArgPath() const;
    VESK_USD_API bool IsExpressionPath() const;
    bool IsEmpty() const noexcept { return !_node; }
    /// @}

    /// \name Text
    /// The forms that return references cache the text with the interned path.
    /// @{
    VESK_USD_API TfToken GetAsToken() const;
    VESK_USD_API TfToken const& GetToken() const;
    VESK_USD_API std::string GetAsString() const;
    VESK_USD_API const std::string& GetString() const;
    VESK_USD_API const char* GetText() const;
    /// @}

    /// \name Parts
    /// @{
    /// Returns the path's prefixes, shortest first, the path itself last, the root left out.
    VESK_USD_API SdfPathVector GetPrefixes() const;
    /// Returns the last `numPrefixes` of them.
    VESK_USD_API SdfPathVector GetPrefixes(size_t numPrefixes) const;
    VESK_USD_API void GetPrefixes(SdfPathVector* prefixes) const;
    VESK_USD_API void GetPrefixes(SdfPathVector* prefixes, size_t numPrefixes) const;
    /// Returns a range over the path and its ancestors, the path itself first, the root left out.
    VESK_USD_API SdfPathAncestorsRange GetAncestorsRange() const;
    /// Returns the name of the last prim or property element, "" for other kinds.
    VESK_USD_API const std::string& GetName() const;
    VESK_USD_API const TfToken& GetNameToken() const;
    /// Returns the text of the last element with its punctuation, such as ".name" or "{set=variant}".
    VESK_USD_API std::string GetElementString() const;
    VESK_USD_API TfToken GetElementToken() const;
    /// Returns the innermost target of a target, relational attribute or mapper path, else the empty path.
    VESK_USD_API const SdfPath& GetTargetPath() const;
    VESK_USD_API void GetAllTargetPathsRecursively(SdfPathVector* result) const;
    /// Returns the variant set and variant of a variant selection path, else two empty strings.
    VESK_USD_API std::pair<std::string, std::string> GetVariantSelection() const;
    VESK_USD_API bool HasPrefix(const SdfPath& prefix) const;
    VESK_USD_API SdfPath GetParentPath() const;
    /// Returns the nearest prim path, variant selections of the last prim and below taken off.
    VESK_USD_API SdfPath GetPrimPath() const;
    VESK_USD_API SdfPath GetPrimOrPrimVariantSelectionPath() const;
    VESK_USD_API SdfPath GetAbsoluteRootOrPrimPath() const;
    VESK_USD_API SdfPath StripAllVariantSelections() const;
    /// @}

    /// \name New paths; the empty path with a warning or coding error where the result would be ill-formed
    /// @{
    VESK_USD_API SdfPath ReplaceName(TfToken const& newName) const;
    VESK_USD_API SdfPath AppendPath(const SdfPath& newSuffix) const;
    VESK_USD_API SdfPath AppendChild(TfToken const& childName) const;
    VESK_USD_API SdfPath AppendProperty(TfToken const& propName) const;
    VESK_USD_API SdfPath AppendVariantSelection(const std::string& variantSet,
                                                const std::string& variant) const;
    VESK_USD_API SdfPath AppendTarget(const SdfPath& targetPath) const;
    VESK_USD_API SdfPath AppendRelationalAttribute(TfToken const& attrName) const;
    VESK_USD_API SdfPath ReplaceTargetPath(const SdfPath& newTargetPath) const;
    VESK_USD_API SdfPath AppendMapper(const SdfPath& targetPath) const;
    VESK_USD_API SdfPath AppendMapperArg(TfToken const& argName) const;
    VESK_USD_API SdfPath AppendExpression() const;
    VESK_USD_API SdfPath AppendElementString(const std::string& element) const;
    VESK_USD_API SdfPath AppendElementToken(const TfToken& elementTok) const;
    /// Returns this path with a prefix replaced, in target paths too unless told not to.
    VESK_USD_API SdfPath ReplacePrefix(const SdfPath& oldPrefix, const SdfPath& newPrefix,
                                       bool fixTargetPaths = true) const;
    VESK_USD_API SdfPath GetCommonPrefix(const SdfPath& path) const;
    /// Returns this and the other path without their longest common suffix.
    VESK_USD_API std::pair<SdfPath, SdfPath> RemoveCommonSuffix(const SdfPath& otherPath,
                                                                bool stopAtRootPrim = false) const;
    /// Returns this path made absolute below the anchor, an absolute prim path.
    VESK_USD_API SdfPath MakeAbsolutePath(const SdfPath& anchor) const;
    VESK_USD_API SdfPath MakeRelativePath(const SdfPath& anchor) const;
    /// @}

    /// \name Names
    /// An identifier starts with a letter (XID_Start of Unicode) or '_' and goes on with letters, digits
    /// (XID_Continue). A namespaced one is identifiers with ':' between them.
    /// @{
    VESK_USD_API static bool IsValidIdentifier(const std::string& name);
    VESK_USD_API static bool IsValidNamespacedIdentifier(const std::string& name);
    VESK_USD_API static std::vector<std::string> TokenizeIdentifier(const std::string& name);
    VESK_USD_API static TfTokenVector TokenizeIdentifierAsTokens(const std::string& name);
    VESK_USD_API static std::string JoinIdentifier(const std::vector<std::string>& names);
    VESK_USD_API static std::string JoinIdentifier(const TfTokenVector& names);
    VESK_USD_API static std::string JoinIdentifier(const std::string& lhs, const std::string& rhs);
    VESK_USD_API static std::string JoinIdentifier(const TfToken& lhs, const TfToken& rhs);
    VESK_USD_API static std::string StripNamespace(const std::string& name);
    VESK_USD_API static TfToken StripNamespace(const TfToken& name);
    /// Returns the name without a leading namespace, and whether it had it.
    VESK_USD_API static std::pair<std::string, bool> StripPrefixNamespace(const std::string& name,
                                                                          const std::string& matchNamespace);
    /// Returns whether the text is a path; if not, says why.
    VESK_USD_API static bool IsValidPathString(const std::string& pathString, std::string* errMsg = nullptr);
    /// @}

    bool operator==(const SdfPath& rhs) const { return _node == rhs._node; }
    bool operator!=(const SdfPath& rhs) const { return !(*this == rhs); }
    /// Orders depth first: a path comes right before its descendants, siblings by their names' text.
    bool operator<(const SdfPath& rhs) const
    {
        if (_node == rhs._node || !_node || !rhs._node) {
            return !_node && rhs._node;
        }
        return _LessThan(*this, rhs);
    }
    bool operator>(const SdfPath& rhs) const { return rhs < *this; }
    bool operator<=(const SdfPath& rhs) const { return !(rhs < *this); }
    bool operator>=(const SdfPath& rhs) const { return !(*this < rhs); }

    template <class HashState>
    friend void TfHashAppend(HashState& h, SdfPath const& path)
    {
        h.Append(static_cast<const void*>(path._node));
    }
    struct Hash
    {
        size_t operator()(const SdfPath& path) const { return TfHash()(path); }
    };
    size_t GetHash() const { return Hash()(*this); }

    /// Orders arbitrarily and quickly, stable within one process only.
    struct FastLessThan
    {
        bool operator()(const SdfPath& a, const SdfPath& b) const
        {
            return std::less<const void*>()(a._node, b._node);
        }
    };

    /// Returns the absolute paths relative to anchors so low that no two prims get the same text.
    VESK_USD_API static SdfPathVector GetConciseRelativePaths(const SdfPathVector& paths);
    /// Removes all paths that have another of them as a prefix; sorts.
    VESK_USD_API static void RemoveDescendentPaths(SdfPathVector* paths);
    /// Removes all paths that are a prefix of another of them; sorts.
    VESK_USD_API static void RemoveAncestorPaths(SdfPathVector* paths);

    friend void swap(SdfPath& a, SdfPath& b) noexcept { std::swap(a._node, b._node); }
    friend size_t hash_value(SdfPath const& path) { return path.GetHash(); }

private:
    friend class Sdf_PathNode;
    friend class Sdf_PathTable;
    friend class Sdf_PathAccess;
    friend struct Sdf_PathKey;

    /// Takes over a reference to the node.
    explicit SdfPath(const Sdf_PathNode* node) noexcept : _node(node) {}
    void _AddRef() const noexcept
    {
        if (_node) {
            reinterpret_cast<const Sdf_PathNodeHead*>(_node)->count.fetch_add(1, std::memory_order_relaxed);
        }
    }
    VESK_USD_API static void _Release(const Sdf_PathNode* node) noexcept;
    VESK_USD_API static bool _LessThan(const SdfPath& a, const SdfPath& b);

    const Sdf_PathNode* _node = nullptr;
};

/// How a table finds paths among those that it holds without their being made first.
struct Sdf_PathKey
{
    static uint32_t GetHash(const SdfPath& path)
    {
        return path._node ? reinterpret_cast<const Sdf_PathNodeHead*>(path._node)->hash : 0;
    }
    /// The hash that a prim's property has, or would have.
    VESK_USD_API static uint32_t GetHashOfProperty(const SdfPath& prim, const TfToken& name);
    /// Whether a path is that of a prim's property of this name.
    VESK_USD_API static bool IsProperty(const SdfPath& path, const SdfPath& prim, const TfToken& name);
};

/// A range over a path and its ancestors, the path itself first.
class SdfPathAncestorsRange
{
public:
    explicit SdfPathAncestorsRange(const SdfPath& path) : _path(path) {}
    const SdfPath& GetPath() const { return _path; }

    struct iterator
    {
        using iterator_category = std::forward_iterator_tag;
        using value_type = SdfPath;
        using difference_type = std::ptrdiff_t;
        using reference = const SdfPath&;
        using pointer = const SdfPath*;

        iterator() = default;
        explicit iterator(const SdfPath& path) : _path(path) {}
        VESK_USD_API iterator& operator++();
        iterator operator++(int)
        {
            iterator before = *this;
            ++*this;
            return before;
        }
        const SdfPath& operator*() const { return _path; }
        const SdfPath* operator->() const { return &_path; }
        bool operator==(const iterator& o) const { return _path == o._path; }
        bool operator!=(const iterator& o) const { return _path != o._path; }

    private:
        SdfPath _path;
    };

    VESK_USD_API iterator begin() const;
    iterator end() const { return iterator(); }

private:
    SdfPath _path;
};

VESK_USD_API std::ostream& operator<<(std::ostream& out, const SdfPath& path);

PXR_NAMESPACE_CLOSE_SCOPE

#include <pxr/base/tf/declarePtrs.h>
#include <pxr/base/tf/diagnostic.h>
#include <pxr/base/tf/enum.h>
#include <pxr/base/tf/functionRef.h>
#include <pxr/base/tf/hashmap.h>
#include <pxr/base/tf/hashset.h>
#include <pxr/base/tf/iterator.h>
#include <pxr/base/tf/registryManager.h>
#include <pxr/base/tf/safeTypeCompare.h>
#include <pxr/base/tf/staticTokens.h>
#include <pxr/base/tf/stl.h>
#include <pxr/base/tf/stringUtils.h>
#include <pxr/base/tf/type.h>
#include <pxr/base/vt/types.h>
#include <pxr/base/vt/value.h>
#include <pxr/usd/sdf/pathSearch.h>
