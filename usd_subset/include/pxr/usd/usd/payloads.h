#pragma once

#include <pxr/export.h>
#include <pxr/pxr.h>
#include <pxr/usd/sdf/path.h>
#include <pxr/usd/sdf/payload.h>
#include <pxr/usd/usd/common.h>
#include <pxr/usd/usd/prim.h>
#include <pxr/usd/usd/stage.h>

#include <string>
#include <vector>

PXR_NAMESPACE_OPEN_SCOPE

/// Edits the payloads of a prim at the stage's edit target.
class VESK_USD_API UsdPayloads
{
public:
    bool AddPayload(const SdfPayload& item, UsdListPosition position = UsdListPositionBackOfPrependList);
    bool AddPayload(const std::string& identifier, const SdfPath& primPath,
                    const SdfLayerOffset& layerOffset = SdfLayerOffset(),
                    UsdListPosition position = UsdListPositionBackOfPrependList);
    /// The default prim of another layer.
    bool AddPayload(const std::string& identifier, const SdfLayerOffset& layerOffset = SdfLayerOffset(),
                    UsdListPosition position = UsdListPositionBackOfPrependList);
    bool AddInternalPayload(const SdfPath& primPath, const SdfLayerOffset& layerOffset = SdfLayerOffset(),
                            UsdListPosition position = UsdListPositionBackOfPrependList);
    bool RemovePayload(const SdfPayload& item);
    bool ClearPayloads();
    bool SetPayloads(const SdfPayloadVector& items);
    const UsdPrim& GetPrim() const { return _prim; }
    UsdPrim GetPrim() { return _prim; }
    explicit operator bool() { return static_cast<bool>(_prim); }

private:
    friend class UsdPrim;
    explicit UsdPayloads(const UsdPrim& prim) : _prim(prim) {}

    UsdPrim _prim;
};

PXR_NAMESPACE_CLOSE_SCOPE
