#pragma once

#include <pxr/export.h>
#include <pxr/pxr.h>
#include <pxr/usd/sdf/layerOffset.h>
#include <pxr/usd/sdf/path.h>

#include <utility>
#include <vector>

PXR_NAMESPACE_OPEN_SCOPE

/// Translates paths and times between the place where opinions are written (the source) and the place where
/// they take effect (the target). Paths under none of the source paths do not translate; nor do those under a
/// source path whose target is empty. No two paths translate to the same one.
class VESK_USD_API Usd_PathMapping
{
public:
    using Pair = std::pair<SdfPath, SdfPath>; // source, target

    /// The mapping that changes nothing, apart from the time.
    explicit Usd_PathMapping(const SdfLayerOffset& offset = SdfLayerOffset());
    Usd_PathMapping(std::vector<Pair> pairs, const SdfLayerOffset& offset);

    bool IsIdentity() const { return IsIdentityPathMapping() && _offset.IsIdentity(); }
    bool IsIdentityPathMapping() const { return _pairs.size() == 1 && HasRootIdentity(); }
    bool HasRootIdentity() const { return !_pairs.empty() && _pairs.front() == Pair(_Root(), _Root()); }

    /// The path at the other end; empty when there is none.
    SdfPath MapSourceToTarget(const SdfPath& path) const { return _Map(path, false); }
    SdfPath MapTargetToSource(const SdfPath& path) const { return _Map(path, true); }

    /// The mapping that first applies inner, then this one.
    Usd_PathMapping Compose(const Usd_PathMapping& inner) const;
    Usd_PathMapping GetInverse() const;
    /// The mapping that also leaves paths as they are which it would not translate.
    Usd_PathMapping AddRootIdentity() const;

    /// Source time to target time.
    const SdfLayerOffset& GetTimeOffset() const { return _offset; }
    const std::vector<Pair>& GetPairs() const { return _pairs; }

    bool operator==(const Usd_PathMapping& other) const
    {
        return _pairs == other._pairs && _offset == other._offset;
    }
    bool operator!=(const Usd_PathMapping& other) const { return !(*this == other); }

private:
    static const SdfPath& _Root() { return SdfPath::AbsoluteRootPath(); }
    SdfPath _Map(const SdfPath& path, bool inverse) const;
    void _Simplify();

    std::vector<Pair> _pairs; // shorter source paths first, without pairs that others imply
    SdfLayerOffset _offset;
};

PXR_NAMESPACE_CLOSE_SCOPE
