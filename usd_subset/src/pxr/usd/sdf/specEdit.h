#pragma once

/// Makes, removes and renames the specs of a layer.

#include <pxr/pxr.h>
#include <pxr/usd/sdf/declareHandles.h>
#include <pxr/usd/sdf/path.h>
#include <pxr/usd/sdf/proxyTypes.h>
#include <pxr/usd/sdf/types.h>

#include <string>
#include <vector>

PXR_NAMESPACE_OPEN_SCOPE

/// The way from the spec classes to the private edits of a layer.
class Sdf_LayerEdit
{
public:
    static bool CreateSpec(const SdfLayerHandle& layer, const SdfPath& path, SdfSpecType type, bool inert);
    static bool DeleteSpec(const SdfLayerHandle& layer, const SdfPath& path);
    static bool MoveSpec(const SdfLayerHandle& layer, const SdfPath& oldPath, const SdfPath& newPath);
    static bool IsInert(const SdfLayerHandle& layer, const SdfPath& path, bool ignoreChildren,
                        bool requiredFieldOnlyPropertiesAreInert);
};

/// Says whether a spec may be renamed; fills `whyNot` where not.
bool Sdf_CanRename(const SdfSpec& spec, const TfToken& newName, std::string* whyNot);
/// Renames a prim or property in its place among its siblings.
bool Sdf_Rename(const SdfSpec& spec, const TfToken& newName, bool validate);

/// Makes the spec of a prim or of a variant's body and every missing ancestor; says whether it is there.
bool Sdf_JustCreatePrim(const SdfLayerHandle& layer, const SdfPath& path);

/// Return proxies of a spec's list-valued fields.
SdfNameEditorProxy Sdf_GetNameEditorProxy(const SdfSpecHandle& spec, const TfToken& field);

/// Orders names the way a list of names asks for.
void Sdf_ApplyNameOrder(const std::vector<TfToken>& order, std::vector<TfToken>* names);

PXR_NAMESPACE_CLOSE_SCOPE
