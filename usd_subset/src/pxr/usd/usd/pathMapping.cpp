#include <pxr/usd/usd/pathMapping.h>

#include <algorithm>

PXR_NAMESPACE_OPEN_SCOPE

namespace {

using Pair = Usd_PathMapping::Pair;

const SdfPath& end(const Pair& pair, bool ofTarget) { return ofTarget ? pair.second : pair.first; }

bool isBefore(const Pair& a, const Pair& b)
{
    const size_t lengthA = a.first.GetPathElementCount();
    const size_t lengthB = b.first.GetPathElementCount();
    return lengthA != lengthB ? lengthA < lengthB : a.first < b.first;
}

// The pair with the longest prefix of a path; null when there is none.
const Pair* bestMatch(const std::vector<Pair>& pairs, const SdfPath& path, bool byTarget)
{
    const Pair* best = nullptr;
    for (const Pair& pair : pairs) {
        const SdfPath& prefix = end(pair, byTarget);
        if (!prefix.IsEmpty() && path.HasPrefix(prefix) &&
            (!best || prefix.GetPathElementCount() >= end(*best, byTarget).GetPathElementCount())) {
            best = &pair;
        }
    }
    return best;
}

SdfPath mapWith(const std::vector<Pair>& pairs, const SdfPath& path, bool inverse, const Pair** match)
{
    *match = bestMatch(pairs, path, inverse);
    if (!*match || end(**match, !inverse).IsEmpty()) {
        return SdfPath();
    }
    return path.ReplacePrefix(end(**match, inverse), end(**match, !inverse), false);
}

// Whether another pair leads back to elsewhere from where a match leads to.
bool isHidden(const std::vector<Pair>& pairs, const SdfPath& mapped, const Pair* match, bool inverse)
{
    return bestMatch(pairs, mapped, !inverse) != match;
}

// Whether the pairs do without one of them what they do with it.
bool isImplied(const std::vector<Pair>& pairs, const Pair& pair)
{
    if (pair.first.IsAbsoluteRootPath()) {
        return false;
    }
    // What maps the parent of the source would map the source, too.
    const Pair* match = nullptr;
    const SdfPath parent = mapWith(pairs, pair.first.GetParentPath(), false, &match);
    if (parent.IsEmpty()) {
        return pair.second.IsEmpty();
    }
    const SdfPath mapped = pair.first.ReplacePrefix(match->first, match->second, false);
    if (pair.second.IsEmpty()) {
        return isHidden(pairs, mapped, match, false);
    }
    return mapped == pair.second && !isHidden(pairs, parent, match, false);
}

} // namespace

Usd_PathMapping::Usd_PathMapping(const SdfLayerOffset& offset)
    : _pairs{Pair(_Root(), _Root())}, _offset(offset)
{}

Usd_PathMapping::Usd_PathMapping(std::vector<Pair> pairs, const SdfLayerOffset& offset)
    : _pairs(std::move(pairs)), _offset(offset)
{
    _Simplify();
}

void Usd_PathMapping::_Simplify()
{
    std::stable_sort(_pairs.begin(), _pairs.end(), isBefore);
    const auto hasSameSource = [](const Pair& a, const Pair& b) { return a.first == b.first; };
    _pairs.erase(std::unique(_pairs.begin(), _pairs.end(), hasSameSource), _pairs.end());
    for (size_t i = 0; _pairs.size() > 1 && i != _pairs.size();) {
        if (isImplied(_pairs, _pairs[i])) {
            _pairs.erase(_pairs.begin() + static_cast<std::ptrdiff_t>(i));
        } else {
            ++i;
        }
    }
}

SdfPath Usd_PathMapping::_Map(const SdfPath& path, bool inverse) const
{
    if (path.IsEmpty() || IsIdentityPathMapping()) {
        return path;
    }
    const Pair* match = nullptr;
    const SdfPath mapped = mapWith(_pairs, path, inverse, &match);
    return mapped.IsEmpty() || isHidden(_pairs, mapped, match, inverse) ? SdfPath() : mapped;
}

Usd_PathMapping Usd_PathMapping::Compose(const Usd_PathMapping& inner) const
{
    const SdfLayerOffset offset = _offset * inner._offset;
    Usd_PathMapping composed(offset);
    if (IsIdentityPathMapping()) {
        composed._pairs = inner._pairs;
        return composed;
    }
    if (inner.IsIdentityPathMapping()) {
        composed._pairs = _pairs;
        return composed;
    }
    composed._pairs.clear();
    for (const Pair& pair : inner._pairs) {
        if (!pair.first.IsAbsoluteRootPath()) {
            composed._pairs.emplace_back(pair.first, MapSourceToTarget(pair.second));
        } else if (HasRootIdentity()) {
            composed._pairs.push_back(pair);
        }
    }
    for (const Pair& pair : _pairs) {
        const SdfPath source =
            pair.first.IsAbsoluteRootPath() ? SdfPath() : inner.MapTargetToSource(pair.first);
        if (!source.IsEmpty()) {
            composed._pairs.emplace_back(source, pair.second);
        }
    }
    composed._Simplify();
    return composed;
}

Usd_PathMapping Usd_PathMapping::GetInverse() const
{
    Usd_PathMapping inverse(_offset.GetInverse());
    inverse._pairs.clear();
    for (const Pair& pair : _pairs) {
        if (!pair.second.IsEmpty()) {
            inverse._pairs.emplace_back(pair.second, pair.first);
        }
    }
    std::stable_sort(inverse._pairs.begin(), inverse._pairs.end(), isBefore);
    return inverse;
}

Usd_PathMapping Usd_PathMapping::AddRootIdentity() const
{
    if (HasRootIdentity()) {
        return *this;
    }
    std::vector<Pair> pairs = _pairs;
    pairs.emplace_back(_Root(), _Root());
    return Usd_PathMapping(std::move(pairs), _offset);
}

PXR_NAMESPACE_CLOSE_SCOPE
