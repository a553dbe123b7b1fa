#include <pxr/usd/usd/pathMapping.h>

#include <algorithm>

PXR_NAMESPACE_OPEN_SCOPE

namespace {

const SdfPath& end(const Usd_PathMapping::Pair& pair, bool ofTarget)
{
    return ofTarget ? pair.second : pair.first;
}

// The pair with the longest prefix of a path; null when there is none.
const Usd_PathMapping::Pair* bestMatch(const std::vector<Usd_PathMapping::Pair>& pairs, const SdfPath& path,
                                       bool byTarget)
{
    const Usd_PathMapping::Pair* best = nullptr;
    for (const Usd_PathMapping::Pair& pair : pairs) {
        const SdfPath& prefix = end(pair, byTarget);
        if (path.HasPrefix(prefix) &&
            (!best || prefix.GetPathElementCount() > end(*best, byTarget).GetPathElementCount())) {
            best = &pair;
        }
    }
    return best;
}

} // namespace

Usd_PathMapping::Usd_PathMapping(const SdfLayerOffset& offset)
    : _pairs{Pair(_Root(), _Root())}, _offset(offset)
{}

Usd_PathMapping::Usd_PathMapping(std::vector<Pair> pairs, const SdfLayerOffset& offset)
    : _pairs(std::move(pairs)), _offset(offset)
{
    std::sort(_pairs.begin(), _pairs.end());
    _pairs.erase(std::unique(_pairs.begin(), _pairs.end()), _pairs.end());
}

bool Usd_PathMapping::HasRootIdentity() const
{
    return std::count(_pairs.begin(), _pairs.end(), Pair(_Root(), _Root())) != 0;
}

SdfPath Usd_PathMapping::_Map(const SdfPath& path, bool inverse) const
{
    if (path.IsEmpty() || IsIdentityPathMapping()) {
        return path;
    }
    const Pair* const match = bestMatch(_pairs, path, inverse);
    if (!match) {
        return SdfPath();
    }
    const SdfPath mapped = path.ReplacePrefix(end(*match, inverse), end(*match, !inverse));
    // Where another pair leads back from there to elsewhere, the path is hidden and does not map.
    return bestMatch(_pairs, mapped, !inverse) == match ? mapped : SdfPath();
}

Usd_PathMapping Usd_PathMapping::Compose(const Usd_PathMapping& inner) const
{
    const SdfLayerOffset offset = _offset * inner._offset;
    if (IsIdentityPathMapping()) {
        return Usd_PathMapping(inner._pairs, offset);
    }
    if (inner.IsIdentityPathMapping()) {
        return Usd_PathMapping(_pairs, offset);
    }
    std::vector<Pair> pairs;
    for (const Pair& pair : inner._pairs) {
        const SdfPath target = MapSourceToTarget(pair.second);
        if (!target.IsEmpty()) {
            pairs.emplace_back(pair.first, target);
        }
    }
    for (const Pair& pair : _pairs) {
        const SdfPath source = inner.MapTargetToSource(pair.first);
        if (!source.IsEmpty()) {
            pairs.emplace_back(source, pair.second);
        }
    }
    return Usd_PathMapping(std::move(pairs), offset);
}

PXR_NAMESPACE_CLOSE_SCOPE
