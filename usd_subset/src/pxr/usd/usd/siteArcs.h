#pragma once

#include "pxr/usd/usd/primGraph.h"

#include <pxr/pxr.h>
#include <pxr/usd/sdf/layerOffset.h>
#include <pxr/usd/sdf/path.h>

#include <string>
#include <vector>

PXR_NAMESPACE_OPEN_SCOPE

class Usd_PrimIndexer;

/// A reference or payload as the layers of a site have it together.
struct Usd_AssetArc
{
    SdfLayer* source = nullptr; ///< the layer that says so
    std::string asset;      ///< as it is written, expressions evaluated; empty for the site's own layer stack
    std::string fullAsset;  ///< where it leads, seen from that layer
    SdfPath primPath;       ///< empty for the default prim
    SdfLayerOffset offset;  ///< from the asset's time to the site's layer stack's
    SdfLayerOffset written; ///< the part of it that is written with the arc
};

/// Which composition arcs are written at a site.
struct Usd_WrittenArcs
{
    bool relocates = false; ///< whether the layer stack has any
    bool references = false;
    bool payloads = false;
    bool inherits = false;
    bool specializes = false;
    bool variants = false;
};

/// None where the node's opinions do not count.
Usd_WrittenArcs Usd_FindWrittenArcs(const Usd_GraphNode& node);
/// Whether variant sets are written above a site, as far up as the node's opinions count.
bool Usd_HasVariantsAbove(const Usd_GraphNode& node);

/// What the layers of a site together say of an arc.
/// @param indexer gets one warning for each arc whose expression cannot be evaluated
std::vector<Usd_AssetArc> Usd_FindReferences(const Usd_GraphNode& node, Usd_PrimIndexer& indexer);
std::vector<Usd_AssetArc> Usd_FindPayloads(const Usd_GraphNode& node, Usd_PrimIndexer& indexer);
std::vector<SdfPath> Usd_FindInherits(const Usd_GraphNode& node);
std::vector<SdfPath> Usd_FindSpecializes(const Usd_GraphNode& node);
std::vector<std::string> Usd_FindVariantSets(const Usd_LayerStack& layerStack, const SdfPath& path);
/// Whether a variant, or with an empty name explicitly none, is selected at a site.
bool Usd_FindVariantSelection(const Usd_LayerStack& layerStack, const SdfPath& path, const std::string& set,
                              Usd_PrimIndexer& indexer, std::string* selection);

/// What the specs of a prim hold that few have.
struct Usd_SiteKinds
{
    bool hasArcs = false;
    bool hasClips = false;
};

/// Adds what a spec holds.
void Usd_AddSiteKinds(const SdfLayer& layer, const SdfPath& path, Usd_SiteKinds* kinds);

PXR_NAMESPACE_CLOSE_SCOPE
