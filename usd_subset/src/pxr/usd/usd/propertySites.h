#pragma once

#include "pxr/usd/usd/primIndex.h"

#include <pxr/pxr.h>
#include <pxr/usd/sdf/abstractData.h>
#include <pxr/usd/sdf/schema.h>
#include <pxr/usd/usd/primData.h>

#include <algorithm>

PXR_NAMESPACE_OPEN_SCOPE

/// Says whether a field that is read into it is a list of names with a certain one among them; copies
/// nothing.
class Usd_NameLookup : public SdfAbstractDataValue
{
public:
    explicit Usd_NameLookup(const TfToken& name)
        : SdfAbstractDataValue(nullptr, typeid(TfTokenVector)), _name(name)
    {}

private:
    bool _StoreVtValue(const VtValue& v) override
    {
        if (!v.IsHolding<TfTokenVector>()) {
            return false;
        }
        const TfTokenVector& names = v.UncheckedGet<TfTokenVector>();
        return std::find(names.begin(), names.end(), _name) != names.end();
    }

    const TfToken& _name;
};

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
    /// From the layer's time to the stage's.
    const SdfLayerOffset& GetOffset() const { return _site->offset; }
    const Usd_PrimIndexNode& GetNode() const { return _index.GetNode(*_site); }

private:
    void _FindNext()
    {
        if (_name.IsEmpty()) {
            return;
        }
        Usd_NameLookup lookup(_name);
        SdfAbstractDataValue* const found = &lookup;
        while (_site != _end &&
               !_site->layer->HasField(_site->path, SdfChildrenKeys->PropertyChildren, found)) {
            ++_site;
        }
        if (_site != _end && (!_primPath || *_primPath != _site->path)) {
            _primPath = &_site->path;
            _path = _primPath->AppendProperty(_name);
        }
    }

    const Usd_PrimIndex& _index;
    std::vector<Usd_SpecSite>::const_iterator _site;
    std::vector<Usd_SpecSite>::const_iterator _end;
    const TfToken _name; // by value: callers pass temporaries
    SdfPath _path;
    const SdfPath* _primPath = nullptr; // of which the path was made
};

PXR_NAMESPACE_CLOSE_SCOPE
