#pragma once

#include <cstddef>
#include <optional>
#include <utility>

#include <pxr/pxr.h>
#include <pxr/usd/sdf/path.h>

namespace vesk::usd::model {

/// Names what a person has selected: a prim, or one instance of an instancer. A plain value.
class Selector
{
public:
    /// Selects nothing: an empty path.
    Selector() = default;

    /// Selects a prim with everything beneath it.
    Selector(PXR_NS::SdfPath path) : m_path(std::move(path)) {}

    /// Selects one instance of the instancer at the path. instanceIndex counts from 0.
    Selector(PXR_NS::SdfPath path, int instanceIndex)
        : m_path(std::move(path)), m_instanceIndex(instanceIndex)
    {}

    /// The prim or instancer, empty when nothing is selected.
    const PXR_NS::SdfPath& path() const { return m_path; }

    /// The instance, nothing when the whole prim is selected.
    const std::optional<int>& instanceIndex() const { return m_instanceIndex; }

    friend bool operator==(const Selector& a, const Selector& b)
    {
        return a.m_path == b.m_path && a.m_instanceIndex == b.m_instanceIndex;
    }
    friend bool operator!=(const Selector& a, const Selector& b) { return !(a == b); }

private:
    PXR_NS::SdfPath m_path;
    std::optional<int> m_instanceIndex;
};

/// Hashes a Selector for the unordered containers; equal selectors hash equally.
struct SelectorHash
{
    /// Returns the hash of a selector.
    std::size_t operator()(const Selector& selector) const
    {
        const std::size_t path = PXR_NS::SdfPath::Hash()(selector.path());
        if (!selector.instanceIndex()) return path;
        // An odd 64-bit constant spreads neighbouring indices over all bits.
        const auto index = static_cast<std::size_t>(static_cast<unsigned>(*selector.instanceIndex())) + 1;
        return path ^ (index * static_cast<std::size_t>(0x9E3779B97F4A7C15ull));
    }
};

} // namespace vesk::usd::model
