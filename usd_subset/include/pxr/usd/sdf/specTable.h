#pragma once

#include <pxr/base/tf/chunkedTable.h>
#include <pxr/base/tf/token.h>
#include <pxr/base/vt/value.h>
#include <pxr/pxr.h>
#include <pxr/usd/sdf/path.h>
#include <pxr/usd/sdf/types.h>

#include <cstdint>
#include <utility>
#include <vector>

PXR_NAMESPACE_OPEN_SCOPE

/// What a spec is in memory: its path, its fields in the order in which they were set, and its type.
struct Sdf_MemorySpec
{
    using Field = std::pair<TfToken, VtValue>;

    SdfPath path;
    std::vector<Field> fields;
    SdfSpecType type = SdfSpecTypeUnknown;
};

struct Sdf_PathKeyHash
{
    std::uint32_t operator()(const SdfPath& path) const { return Sdf_PathKey::GetHash(path); }
};

/// Things by path, which is their member `path`.
template <class Spec>
class Sdf_SpecTableOf : public Tf_ChunkedTable<Spec, &Spec::path, Sdf_PathKeyHash>
{
public:
    /// The spec of a prim's property; null when there is none.
    const Spec* FindProperty(const SdfPath& prim, const TfToken& name) const
    {
        return this->FindHashed(
            Sdf_PathKey::GetHashOfProperty(prim, name),
            [&prim, &name](const SdfPath& path) { return Sdf_PathKey::IsProperty(path, prim, name); });
    }
};

class Sdf_SpecTable : public Sdf_SpecTableOf<Sdf_MemorySpec>
{
public:
    using Spec = Sdf_MemorySpec;
    using Field = Sdf_MemorySpec::Field;
};

PXR_NAMESPACE_CLOSE_SCOPE
