#include "pxr/usd/usd/errorText.h"
#include "pxr/usd/usd/stageImpl.h"

#include <pxr/base/tf/diagnostic.h>
#include <pxr/base/tf/stringUtils.h>
#include <pxr/usd/sdf/fileFormat.h>
#include <pxr/usd/usd/stage.h>
#include <pxr/usd/usd/stageCacheContext.h>

PXR_NAMESPACE_OPEN_SCOPE

/// Finds stages in the caches that are in use, or opens them and puts them there.
class Usd_StageOpener
{
public:
    static UsdStageRefPtr Open(const SdfLayerRefPtr& root, const SdfLayerRefPtr* session,
                               UsdStage::InitialLoadSet load)
    {
        for (const UsdStageCache* cache : UsdStageCacheContext::_GetReadableCaches()) {
            const UsdStageRefPtr found =
                session ? cache->FindOneMatching(root, *session) : cache->FindOneMatching(root);
            if (found) {
                return found;
            }
        }
        const UsdStageRefPtr stage =
            Usd_StageImpl::Open(root, session ? *session : MakeSessionLayer(root), load);
        for (UsdStageCache* cache : UsdStageCacheContext::_GetWritableCaches()) {
            cache->Insert(stage);
        }
        return stage;
    }

    static SdfLayerRefPtr MakeSessionLayer(const SdfLayerRefPtr& root)
    {
        const std::string name = SdfLayer::GetDisplayNameFromIdentifier(root->GetIdentifier());
        return SdfLayer::CreateAnonymous(TfStringGetBeforeSuffix(name) + "-session.usda");
    }
};

UsdStageRefPtr UsdStage::CreateNew(const std::string& identifier, InitialLoadSet load)
{
    const SdfLayerRefPtr layer = SdfLayer::CreateNew(identifier);
    return layer ? Open(SdfLayerHandle(layer), load) : UsdStageRefPtr();
}

UsdStageRefPtr UsdStage::CreateNew(const std::string& identifier, const SdfLayerHandle& sessionLayer,
                                   InitialLoadSet load)
{
    const SdfLayerRefPtr layer = SdfLayer::CreateNew(identifier);
    return layer ? Open(SdfLayerHandle(layer), sessionLayer, load) : UsdStageRefPtr();
}

UsdStageRefPtr UsdStage::CreateInMemory(InitialLoadSet load) { return CreateInMemory("tmp.usda", load); }

UsdStageRefPtr UsdStage::CreateInMemory(const std::string& identifier, InitialLoadSet load)
{
    const SdfLayerRefPtr layer = SdfLayer::CreateAnonymous(identifier);
    return layer ? Open(SdfLayerHandle(layer), load) : UsdStageRefPtr();
}

UsdStageRefPtr UsdStage::CreateInMemory(const std::string& identifier, const SdfLayerHandle& sessionLayer,
                                        InitialLoadSet load)
{
    const SdfLayerRefPtr layer = SdfLayer::CreateAnonymous(identifier);
    return layer ? Open(SdfLayerHandle(layer), sessionLayer, load) : UsdStageRefPtr();
}

UsdStageRefPtr UsdStage::Open(const std::string& filePath, InitialLoadSet load)
{
    std::string why;
    const SdfLayerRefPtr layer = Usd_OpenLayer(filePath, &why);
    if (!layer) {
        TF_RUNTIME_ERROR("Failed to open layer @%s@: %s", filePath.c_str(), why.c_str());
        return UsdStageRefPtr();
    }
    return Open(SdfLayerHandle(layer), load);
}

UsdStageRefPtr UsdStage::Open(const SdfLayerHandle& rootLayer, InitialLoadSet load)
{
    if (!rootLayer) {
        TF_CODING_ERROR("Invalid root layer");
        return UsdStageRefPtr();
    }
    return Usd_StageOpener::Open(SdfLayerRefPtr(rootLayer), nullptr, load);
}

UsdStageRefPtr UsdStage::Open(const SdfLayerHandle& rootLayer, const SdfLayerHandle& sessionLayer,
                              InitialLoadSet load)
{
    if (!rootLayer) {
        TF_CODING_ERROR("Invalid root layer");
        return UsdStageRefPtr();
    }
    const SdfLayerRefPtr session(sessionLayer);
    return Usd_StageOpener::Open(SdfLayerRefPtr(rootLayer), &session, load);
}

bool UsdStage::IsSupportedFile(const std::string& filePath)
{
    if (filePath.empty()) {
        TF_CODING_ERROR("Empty file path given");
        return false;
    }
    return static_cast<bool>(SdfFileFormat::FindByExtension(filePath));
}

PXR_NAMESPACE_CLOSE_SCOPE
