#include "pxr/usd/usd/clipManifest.h"

#include <pxr/base/tf/diagnostic.h>
#include <pxr/usd/sdf/attributeSpec.h>
#include <pxr/usd/sdf/changeBlock.h>
#include <pxr/usd/sdf/schema.h>

#include <algorithm>

PXR_NAMESPACE_OPEN_SCOPE

namespace {

void declareAttribute(const SdfLayer& clip, const SdfPath& path, const SdfLayerHandle& manifest)
{
    TfToken type;
    SdfVariability variability = SdfVariabilityVarying;
    if (path.IsPropertyPath() && !manifest->HasSpec(path) && clip.GetSpecType(path) == SdfSpecTypeAttribute &&
        clip.HasField(path, SdfFieldKeys->TypeName, &type) &&
        clip.HasField(path, SdfFieldKeys->Variability, &variability) &&
        clip.GetNumTimeSamplesForPath(path) > 0) {
        SdfJustCreatePrimAttributeInLayer(manifest, path, SdfSchema::GetInstance().FindType(type),
                                          variability);
    }
}

} // namespace

SdfLayerRefPtr Usd_GenerateClipManifest(const SdfLayerHandleVector& clips, const SdfPath& clipPath,
                                        const std::string& tag, const std::vector<double>* activeTimes)
{
    if (!clipPath.IsPrimPath()) {
        TF_CODING_ERROR("<%s> must be a prim path", clipPath.GetText());
        return SdfLayerRefPtr();
    }
    if (std::any_of(clips.begin(), clips.end(), [](const SdfLayerHandle& clip) { return !clip; })) {
        TF_CODING_ERROR("Invalid clip layer");
        return SdfLayerRefPtr();
    }
    const SdfLayerRefPtr manifest = SdfLayer::CreateAnonymous(tag + ".usda");
    SdfChangeBlock block;
    for (const SdfLayerHandle& clip : clips) {
        clip->Traverse(clipPath,
                       [&](const SdfPath& path) { declareAttribute(*clip, path, SdfLayerHandle(manifest)); });
    }
    if (activeTimes) {
        manifest->Traverse(clipPath, [&](const SdfPath& path) {
            for (size_t i = 0; path.IsPropertyPath() && i != clips.size(); ++i) {
                if (clips[i]->GetNumTimeSamplesForPath(path) == 0) {
                    manifest->SetTimeSample(path, (*activeTimes)[i], VtValue(SdfValueBlock()));
                }
            }
        });
    }
    return manifest;
}

PXR_NAMESPACE_CLOSE_SCOPE
