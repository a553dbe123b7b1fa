#pragma once

#include "geometry.h"

#include <pxr/usd/sdf/path.h>

#include <algorithm>
#include <map>
#include <memory>
#include <string>
#include <vector>

namespace vesk::renderers::embree {

/// The shapes that were read from a stage, by the path of their prim, so that an edit or a new time reads
/// only what changed. Thread: the document's task thread, one extraction at a time.
class GeometryCache
{
public:
    /// What was read from one prim.
    struct Entry
    {
        std::shared_ptr<const Geometry> geometry; ///< null where there is nothing to draw
        bool mayVary = false;                     ///< whether it holds for `time` alone
        double time = 0.0;
        std::vector<std::string> primvars; ///< the names that were read with it, sorted
    };

    /// The entry of a prim that holds at a time and has some primvars, null where it has to be read.
    const Entry* find(const PXR_NS::SdfPath& path, double time,
                      const std::vector<std::string>& primvars) const
    {
        const auto at = m_entries.find(path);
        if (at == m_entries.end()) return nullptr;
        const Entry& entry = at->second;
        const bool holds = !entry.mayVary || entry.time == time;
        return holds && std::includes(entry.primvars.begin(), entry.primvars.end(), primvars.begin(),
                                      primvars.end())
                   ? &entry
                   : nullptr;
    }

    void store(const PXR_NS::SdfPath& path, Entry entry) { m_entries[path] = std::move(entry); }

    /// Forgets a prim and all below it.
    void forgetSubtree(const PXR_NS::SdfPath& path)
    {
        auto at = m_entries.lower_bound(path);
        while (at != m_entries.end() && at->first.HasPrefix(path)) {
            at = m_entries.erase(at);
        }
    }

    void forget(const PXR_NS::SdfPath& path) { m_entries.erase(path); }

    void clear()
    {
        m_entries.clear();
        m_holdsInstances = false;
    }

    /// Whether shapes of instances are among the entries.
    bool holdsInstances() const { return m_holdsInstances; }
    void noteInstance() { m_holdsInstances = true; }

private:
    std::map<PXR_NS::SdfPath, Entry> m_entries; // SdfPath orders a prim directly before what lies below it
    bool m_holdsInstances = false;
};

} // namespace vesk::renderers::embree
