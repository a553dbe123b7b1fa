#pragma once

#include "pxr/usd/usd/primGraph.h"

#include <pxr/pxr.h>
#include <pxr/usd/sdf/layerOffset.h>
#include <pxr/usd/sdf/path.h>

#include <string>
#include <vector>

PXR_NAMESPACE_OPEN_SCOPE

/// A reference or payload as the layers of a site have it together.
struct Usd_AssetArc
{
    SdfLayer* source = nullptr; ///< the layer that says so
    std::string asset;          ///< as it is written; empty for the site's own layer stack
    std::string fullAsset;      ///< where it leads, seen from that layer
    SdfPath primPath;           ///< empty for the default prim
    SdfLayerOffset offset;      ///< from the asset's time to the site's layer stack's
    SdfLayerOffset written;     ///< the part of it that is written with the arc
};

/// The composition arcs that are written at one site.
struct Usd_SiteArcs
{
    explicit Usd_SiteArcs(const Usd_GraphNode& site);

    std::vector<Usd_AssetArc> references;
    std::vector<Usd_AssetArc> payloads;
    std::vector<SdfPath> inherits;
    std::vector<SdfPath> specializes;
    std::vector<std::string> variantSets;
};

/// Whether a spec has any composition arc.
bool Usd_HasArcs(const SdfLayer& layer, const SdfPath& path);

PXR_NAMESPACE_CLOSE_SCOPE
