#pragma once

#include "pxr/usd/usd/primIndex.h"

#include <pxr/pxr.h>
#include <pxr/usd/usd/primData.h>

PXR_NAMESPACE_OPEN_SCOPE

/// Walks over the places where opinions about a property, or with an empty name about the prim, may stand;
/// strongest first.
class Usd_PropertySites
{
public:
    Usd_PropertySites(const Usd_PrimData& prim, const TfToken& propertyName)
        : Usd_PropertySites(prim.GetPrimIndex(), propertyName)
    {}
    Usd_PropertySites(const Usd_PrimIndex& index, const TfToken& propertyName)
        : _index(index), _site(index.GetSites().begin()), _end(index.GetSites().end()), _name(propertyName)
    {
        if (_site != _end) {
            _UpdatePath();
        }
    }

    explicit operator bool() const { return _site != _end; }
    Usd_PropertySites& operator++()
    {
        const SdfPath before = _site->path;
        if (++_site != _end && _site->path != before) {
            _UpdatePath();
        }
        return *this;
    }

    SdfLayer& GetLayer() const { return *_site->layer; }
    const SdfPath& GetPath() const { return _path; }
    /// From the layer's time to the stage's.
    const SdfLayerOffset& GetOffset() const { return _site->offset; }
    const Usd_PrimIndexNode& GetNode() const { return _index.GetNode(*_site); }

private:
    void _UpdatePath() { _path = _name.IsEmpty() ? _site->path : _site->path.AppendProperty(_name); }

    const Usd_PrimIndex& _index;
    std::vector<Usd_SpecSite>::const_iterator _site;
    std::vector<Usd_SpecSite>::const_iterator _end;
    const TfToken _name; // by value: callers pass temporaries
    SdfPath _path;
};

PXR_NAMESPACE_CLOSE_SCOPE
