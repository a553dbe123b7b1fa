#pragma once

#include "pxr/usd/usd/primIndex.h"

#include <pxr/pxr.h>
#include <pxr/usd/usd/primData.h>

PXR_NAMESPACE_OPEN_SCOPE

/// Walks over the places that have a spec of a property, or with an empty name all those of the prim;
/// strongest first. Paths are made only of properties that are there.
class Usd_PropertySites
{
public:
    Usd_PropertySites(const Usd_PrimData& prim, const TfToken& propertyName)
        : Usd_PropertySites(prim.GetPrimIndex(), propertyName)
    {}
    Usd_PropertySites(const Usd_PrimIndex& index, const TfToken& propertyName)
        : _index(index), _site(index.GetSites().begin()), _end(index.GetSites().end()), _name(propertyName)
    {
        _FindNext();
    }

    explicit operator bool() const { return _site != _end; }
    Usd_PropertySites& operator++()
    {
        ++_site;
        _FindNext();
        return *this;
    }

    SdfLayer& GetLayer() const { return *_site->layer; }
    const SdfPath& GetPath() const { return _name.IsEmpty() ? _site->path : _path; }
    /// The type of the property's spec.
    SdfSpecType GetSpecType() const { return _specType; }
    /// From the layer's time to the stage's.
    const SdfLayerOffset& GetOffset() const { return _site->offset; }
    const Usd_PrimIndexNode& GetNode() const { return _index.GetNode(*_site); }

private:
    void _FindNext()
    {
        if (_name.IsEmpty()) {
            return;
        }
        for (; _site != _end; ++_site) {
            _path = _site->layer->_FindProperty(_site->path, _name, &_specType);
            if (!_path.IsEmpty()) {
                return;
            }
        }
    }

    const Usd_PrimIndex& _index;
    std::vector<Usd_SpecSite>::const_iterator _site;
    std::vector<Usd_SpecSite>::const_iterator _end;
    const TfToken _name; // by value: callers pass temporaries
    SdfPath _path;
    SdfSpecType _specType = SdfSpecTypeUnknown;
};

PXR_NAMESPACE_CLOSE_SCOPE
