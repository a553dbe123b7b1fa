#pragma once

#include "pxr/usd/usd/clipCache.h"
#include "pxr/usd/usd/dependencies.h"
#include "pxr/usd/usd/layerStack.h"
#include "pxr/usd/usd/primTable.h"
#include "pxr/usd/usd/prototypes.h"

#include <pxr/base/tf/notice.h>
#include <pxr/base/tf/weakBase.h>
#include <pxr/pxr.h>
#include <pxr/usd/ar/resolverContext.h>
#include <pxr/usd/sdf/layer.h>
#include <pxr/usd/sdf/notice.h>
#include <pxr/usd/usd/object.h>
#include <pxr/usd/usd/prim.h>
#include <pxr/usd/usd/stage.h>

#include <atomic>
#include <map>
#include <memory>
#include <set>
#include <string>
#include <vector>

PXR_NAMESPACE_OPEN_SCOPE

/// Everything that a stage keeps. The classes that compose, resolve, edit and follow changes work on it.
class Usd_StageImpl : public TfWeakBase
{
public:
    Usd_StageImpl(UsdStage* owner, const SdfLayerRefPtr& root, const SdfLayerRefPtr& session,
                  UsdStage::InitialLoadSet load);
    ~Usd_StageImpl();

    /// Opens a stage and composes all of it.
    static UsdStageRefPtr Open(const SdfLayerRefPtr& root, const SdfLayerRefPtr& session,
                               UsdStage::InitialLoadSet load);
    static Usd_StageImpl& Of(const UsdStage& stage) { return *stage._impl; }

    UsdStageWeakPtr GetStage() const { return UsdStageWeakPtr(stage); }

    /// Makes the layer stack anew, and forgets those of assets.
    void RebuildLayerStacks();
    /// The layers of an asset. Null, with the reason in words, when it cannot be read; without one when it is
    /// muted.
    Usd_LayerStackPtr FindLayerStack(const std::string& asset, const Usd_LayerStack& referrer,
                                     std::string* why);
    /// Listens to the layers that the stage is composed of now.
    void FollowLayers();
    std::set<SdfLayerRefPtr> GetUsedLayers() const;

    /// Reads which types stand in for those that the schema registry does not know.
    void ReadFallbackTypes();
    /// The type that stands in for one that the schema registry does not know; mostly empty.
    TfToken FindFallbackType(const TfToken& type) const;

    /// How a layer is named where layers are muted.
    std::string GetCanonicalIdentifier(const std::string& identifier) const;

    /// Posts a warning about composition, each text once in the stage's life.
    void WarnOnce(const std::string& text) { WarnOnceOf(text, text); }
    /// Posts only the first warning of a kind.
    void WarnOnceOf(const std::string& kind, const std::string& text);
    /// The prototype prim of an instance; null for other prims.
    Usd_PrimDataPtr FindPrototype(const SdfPath& instance) const;
    /// Where targets lead that a prim in a prototype has: seen from the instance that it is looked at
    /// through, or from the prototype itself.
    Usd_PathMapping GetInstanceMapping(const UsdPrim& prim) const;
    /// The path with what lies below an instance replaced by what lies in its prototype.
    SdfPath GetPathInPrototype(const SdfPath& path) const;

    /// The prim at a path, or the proxy of a prim inside an instance; invalid when there is none.
    UsdPrim GetPrimOrProxy(const SdfPath& path) const;

    UsdStage* const stage;
    const SdfLayerRefPtr rootLayer;
    const SdfLayerRefPtr sessionLayer;
    const ArResolverContext resolverContext; // bound while asset paths are resolved
    Usd_LayerStackPtr layerStack;
    Usd_PrimTable prims;
    /// How many nodes the indexes of prims have.
    const std::shared_ptr<std::atomic<size_t>> placeCount = std::make_shared<std::atomic<size_t>>(0);
    Usd_Prototypes prototypes;
    Usd_Dependencies dependencies;
    Usd_ClipCache clips;
    UsdEditTarget editTarget;
    UsdStageLoadRules loadRules;
    UsdInterpolationType interpolation = UsdInterpolationTypeLinear;
    std::vector<std::string> mutedLayers; // sorted

private:
    void _OnLayersChanged(const SdfNotice::LayersDidChangeSentPerLayer& notice);

    std::map<SdfLayerRefPtr, TfNotice::Key> _followed;
    std::set<std::string> _warnings; // their kinds
    // By the root layer's identifier and the source of the expression variables.
    std::map<std::pair<std::string, const Usd_LayerStack*>, Usd_LayerStackPtr> _assetStacks;
    std::map<TfToken, TfToken> _fallbackTypes;
    size_t _lastSerialNumber = 0;
};

/// Makes objects from prim data and looks into them, for the classes of this library.
class Usd_ObjectAccess
{
public:
    static UsdPrim MakePrim(Usd_PrimDataConstPtr data) { return data ? UsdPrim(data, SdfPath()) : UsdPrim(); }
    static UsdPrim MakePrim(Usd_PrimDataConstPtr data, const SdfPath& proxyPath)
    {
        return UsdPrim(data, proxyPath);
    }
    template <class PropertyType>
    static PropertyType MakeProperty(const UsdPrim& prim, const TfToken& name)
    {
        return PropertyType(static_cast<UsdObjType>(Usd_ObjTypeOf<PropertyType>::value), prim._prim,
                            prim._proxyPrimPath, name);
    }
    static UsdProperty MakeProperty(UsdObjType type, const UsdPrim& prim, const TfToken& name);
    static const SdfPath& GetProxyPath(const UsdObject& object) { return object._proxyPrimPath; }
    /// Throws: UsdExpiredPrimAccessError when the object's prim is not there.
    static Usd_PrimDataConstPtr GetData(const UsdObject& object) { return object._prim.operator->(); }
    /// The same for prims that may have gone; null for those that never were.
    static Usd_PrimDataConstPtr GetDataOrNull(const UsdObject& object) { return get_pointer(object._prim); }
    static UsdObjType GetType(const UsdObject& object) { return object._type; }
    static const TfToken& GetPropertyName(const UsdObject& object) { return object._propName; }
    static Usd_StageImpl& GetImpl(const UsdObject& object) { return object._Impl(); }
};

PXR_NAMESPACE_CLOSE_SCOPE
