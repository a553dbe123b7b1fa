#pragma once

/// Gathers the edits of layers and sends them as notices.

#include <pxr/base/tf/token.h>
#include <pxr/base/vt/value.h>
#include <pxr/pxr.h>
#include <pxr/usd/sdf/changeList.h>
#include <pxr/usd/sdf/declareHandles.h>
#include <pxr/usd/sdf/path.h>

#include <string>

PXR_NAMESPACE_OPEN_SCOPE

class SdfSpec;

/// What layers tell of their edits. Thread: any; each thread gathers its own edits and sends them itself.
class Sdf_ChangeManager
{
public:
    static Sdf_ChangeManager& Get();

    static void DidReplaceLayerContent(const SdfLayerHandle& layer);
    static void DidReloadLayerContent(const SdfLayerHandle& layer);
    static void DidChangeLayerIdentifier(const SdfLayerHandle& layer, const std::string& oldIdentifier);
    static void DidChangeLayerResolvedPath(const SdfLayerHandle& layer);
    static void DidChangeField(const SdfLayerHandle& layer, const SdfPath& path, const TfToken& field,
                               VtValue&& oldValue, const VtValue& newValue);
    static void DidChangeAttributeTimeSamples(const SdfLayerHandle& layer, const SdfPath& attrPath);
    static void DidMoveSpec(const SdfLayerHandle& layer, const SdfPath& oldPath, const SdfPath& newPath);
    static void DidAddSpec(const SdfLayerHandle& layer, const SdfPath& path, bool inert);
    static void DidRemoveSpec(const SdfLayerHandle& layer, const SdfPath& path, bool inert);

    /// Removes the spec, if it then has no effect, when the outermost block closes.
    static void RemoveSpecIfInert(const SdfSpec& spec);

    /// Opens a block; the outermost of a thread gets a key that is not null.
    static void const* OpenChangeBlock(void const* block);
    static void CloseChangeBlock(void const* key);
};

PXR_NAMESPACE_CLOSE_SCOPE
