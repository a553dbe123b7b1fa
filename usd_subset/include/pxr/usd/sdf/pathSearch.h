#pragma once

/// Searches by prefix in sorted ranges, sets and maps of paths. Included by path.h.

#include <pxr/pxr.h>
#include <pxr/usd/sdf/path.h>

#include <algorithm>
#include <iterator>
#include <map>
#include <set>
#include <utility>

PXR_NAMESPACE_OPEN_SCOPE

struct Sdf_PathIdentity
{
    SdfPath const& operator()(SdfPath const& path) const { return path; }
};

struct Sdf_PathOfEntry
{
    template <class Entry>
    SdfPath const& operator()(Entry const& entry) const
    {
        return entry.first;
    }
};

/// Finds the longest of the sorted paths that is a prefix of the given one. The path just before it in order
/// either is one, or shares with it all that the answer can have.
/// \param lowerBound finds the first element not less than a path
template <class Iterator, class LowerBound, class GetPath>
Iterator Sdf_FindLongestPrefix(Iterator begin, Iterator end, SdfPath path, bool strict,
                               LowerBound const& lowerBound, GetPath const& getPath)
{
    while (begin != end) {
        Iterator found = lowerBound(path);
        if (!strict && found != end && getPath(*found) == path) {
            return found;
        }
        if (found == begin) {
            break;
        }
        --found;
        if (path.HasPrefix(getPath(*found))) {
            return found;
        }
        path = path.GetCommonPrefix(getPath(*found));
        if (path.IsEmpty()) {
            break;
        }
        strict = false;
    }
    return end;
}

template <class Iterator, class GetPath>
Iterator Sdf_FindLongestPrefixInRange(Iterator begin, Iterator end, SdfPath const& path, bool strict,
                                      GetPath const& getPath)
{
    const auto lowerBound = [&](SdfPath const& p) {
        return std::lower_bound(begin, end, p,
                                [&](auto const& entry, SdfPath const& q) { return getPath(entry) < q; });
    };
    return Sdf_FindLongestPrefix(begin, end, path, strict, lowerBound, getPath);
}

template <class Iterator, class Container, class GetPath>
Iterator Sdf_FindLongestPrefixInTree(Container& container, SdfPath const& path, bool strict,
                                     GetPath const& getPath)
{
    const auto lowerBound = [&](SdfPath const& p) -> Iterator { return container.lower_bound(p); };
    return Sdf_FindLongestPrefix<Iterator>(container.begin(), container.end(), path, strict, lowerBound,
                                           getPath);
}

/// Returns the subrange of sorted paths that have the prefix.
template <class Iterator, class GetPath = Sdf_PathIdentity>
std::pair<Iterator, Iterator> SdfPathFindPrefixedRange(Iterator begin, Iterator end, SdfPath const& prefix,
                                                       GetPath const& getPath = GetPath())
{
    const Iterator first = std::lower_bound(
        begin, end, prefix, [&](auto const& entry, SdfPath const& p) { return getPath(entry) < p; });
    const Iterator last =
        std::partition_point(first, end, [&](auto const& entry) { return getPath(entry).HasPrefix(prefix); });
    return {first, last};
}

template <class Iterator>
using Sdf_IfRandomAccess =
    std::enable_if_t<std::is_base_of_v<std::random_access_iterator_tag,
                                       typename std::iterator_traits<Iterator>::iterator_category>>;

/// Returns the element of a sorted range that is the longest prefix of the path, else end.
template <class Iterator, class GetPath = Sdf_PathIdentity, class = Sdf_IfRandomAccess<Iterator>>
Iterator SdfPathFindLongestPrefix(Iterator begin, Iterator end, SdfPath const& path,
                                  GetPath const& getPath = GetPath())
{
    return Sdf_FindLongestPrefixInRange(begin, end, path, false, getPath);
}
/// As above, the path itself left out.
template <class Iterator, class GetPath = Sdf_PathIdentity, class = Sdf_IfRandomAccess<Iterator>>
Iterator SdfPathFindLongestStrictPrefix(Iterator begin, Iterator end, SdfPath const& path,
                                        GetPath const& getPath = GetPath())
{
    return Sdf_FindLongestPrefixInRange(begin, end, path, true, getPath);
}

inline SdfPathSet::const_iterator SdfPathFindLongestPrefix(SdfPathSet const& paths, SdfPath const& path)
{
    return Sdf_FindLongestPrefixInTree<SdfPathSet::const_iterator>(paths, path, false, Sdf_PathIdentity());
}
inline SdfPathSet::const_iterator SdfPathFindLongestStrictPrefix(SdfPathSet const& paths, SdfPath const& path)
{
    return Sdf_FindLongestPrefixInTree<SdfPathSet::const_iterator>(paths, path, true, Sdf_PathIdentity());
}
template <class T>
typename std::map<SdfPath, T>::const_iterator SdfPathFindLongestPrefix(std::map<SdfPath, T> const& map,
                                                                       SdfPath const& path)
{
    return Sdf_FindLongestPrefixInTree<typename std::map<SdfPath, T>::const_iterator>(map, path, false,
                                                                                      Sdf_PathOfEntry());
}
template <class T>
typename std::map<SdfPath, T>::iterator SdfPathFindLongestPrefix(std::map<SdfPath, T>& map,
                                                                 SdfPath const& path)
{
    return Sdf_FindLongestPrefixInTree<typename std::map<SdfPath, T>::iterator>(map, path, false,
                                                                                Sdf_PathOfEntry());
}
template <class T>
typename std::map<SdfPath, T>::const_iterator SdfPathFindLongestStrictPrefix(std::map<SdfPath, T> const& map,
                                                                             SdfPath const& path)
{
    return Sdf_FindLongestPrefixInTree<typename std::map<SdfPath, T>::const_iterator>(map, path, true,
                                                                                      Sdf_PathOfEntry());
}
template <class T>
typename std::map<SdfPath, T>::iterator SdfPathFindLongestStrictPrefix(std::map<SdfPath, T>& map,
                                                                       SdfPath const& path)
{
    return Sdf_FindLongestPrefixInTree<typename std::map<SdfPath, T>::iterator>(map, path, true,
                                                                                Sdf_PathOfEntry());
}

PXR_NAMESPACE_CLOSE_SCOPE
