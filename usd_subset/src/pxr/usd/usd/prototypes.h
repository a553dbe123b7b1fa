#pragma once

#include "pxr/usd/usd/primIndex.h"

#include <pxr/pxr.h>
#include <pxr/usd/sdf/path.h>
#include <pxr/usd/usd/primData.h>

#include <deque>
#include <map>
#include <memory>
#include <set>
#include <string>
#include <vector>

PXR_NAMESPACE_OPEN_SCOPE

/// One prim tree that several instances share.
struct Usd_Prototype
{
    std::string key;
    SdfPath path;
    SdfPath source;              ///< the instance that it is composed from
    std::set<SdfPath> instances; ///< all that share it
    bool isStale = true;         ///< whether it must be composed (anew)
};

/// Which instances of a stage share which prototypes: those whose arcs lead to the same places.
class Usd_Prototypes
{
public:
    /// Gives an instance its prototype.
    void Register(const SdfPath& instance, const Usd_PrimIndex& index);
    /// Takes the prototypes from instances at a path and below; those that were composed from one become
    /// stale.
    void UnregisterBelow(const SdfPath& path);

    bool HasInstances() const { return !_byInstance.empty(); }
    /// Null for prims that are no instances.
    const Usd_Prototype* FindForInstance(const SdfPath& instance) const;
    const Usd_Prototype* FindByPath(const SdfPath& prototype) const;
    std::vector<const Usd_Prototype*> GetAll() const;

    /// Removes the prototypes that nothing uses any more, and returns their paths.
    SdfPathVector TakeUnused();
    /// The next prototype to compose; it counts as composed from then on. Null when there is none.
    const Usd_Prototype* TakeStale();

    /// What of an index the instances that share it have in common: all but the opinions of the place itself.
    static Usd_PrimIndexPtr MakeSharedIndex(const Usd_PrimIndex& index);

private:
    void _MakeStale(Usd_Prototype* prototype);
    static std::string _MakeKey(const Usd_PrimIndex& index);

    std::map<std::string, std::unique_ptr<Usd_Prototype>> _prototypes; // by key
    std::map<SdfPath, Usd_Prototype*> _byInstance;
    std::map<SdfPath, Usd_Prototype*> _byPath;
    std::deque<std::string> _stale; // keys, each at least as often as its prototype is stale
    std::size_t _lastNumber = 0;
};

PXR_NAMESPACE_CLOSE_SCOPE
