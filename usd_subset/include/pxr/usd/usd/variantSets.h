#pragma once

#include <pxr/export.h>
#include <pxr/pxr.h>
#include <pxr/usd/sdf/declareHandles.h>
#include <pxr/usd/sdf/types.h>
#include <pxr/usd/usd/common.h>
#include <pxr/usd/usd/editTarget.h>
#include <pxr/usd/usd/prim.h>
#include <pxr/usd/usd/stage.h>

#include <string>
#include <utility>
#include <vector>

PXR_NAMESPACE_OPEN_SCOPE

/// One variant set of a prim: its variants, and which of them is selected.
class VESK_USD_API UsdVariantSet
{
public:
    /// Writes the set and an empty variant at the edit target.
    bool AddVariant(const std::string& variantName,
                    UsdListPosition position = UsdListPositionBackOfPrependList);
    /// The names of the variants, in order of their names.
    std::vector<std::string> GetVariantNames() const;
    bool HasAuthoredVariant(const std::string& variantName) const;

    std::string GetVariantSelection() const;
    bool HasAuthoredVariantSelection(std::string* value = nullptr) const;
    bool SetVariantSelection(const std::string& variantName);
    bool ClearVariantSelection();
    bool BlockVariantSelection();

    /// A target for edits inside the selected variant; invalid, with an error, where there is none.
    UsdEditTarget GetVariantEditTarget(const SdfLayerHandle& layer = SdfLayerHandle()) const;
    std::pair<UsdStagePtr, UsdEditTarget>
    GetVariantEditContext(const SdfLayerHandle& layer = SdfLayerHandle()) const;

    const UsdPrim& GetPrim() const { return _prim; }
    const std::string& GetName() const { return _variantSetName; }
    bool IsValid() const { return static_cast<bool>(_prim); }
    explicit operator bool() const { return IsValid(); }

private:
    friend class UsdPrim;
    friend class UsdVariantSets;
    UsdVariantSet(const UsdPrim& prim, const std::string& variantSetName)
        : _prim(prim), _variantSetName(variantSetName)
    {}
    SdfPrimSpecHandle _CreatePrimSpecForEditing();

    UsdPrim _prim;
    std::string _variantSetName;
};

/// The variant sets of a prim.
class VESK_USD_API UsdVariantSets
{
public:
    UsdVariantSet AddVariantSet(const std::string& variantSetName,
                                UsdListPosition position = UsdListPositionBackOfPrependList);
    bool GetNames(std::vector<std::string>* names) const;
    std::vector<std::string> GetNames() const;
    UsdVariantSet operator[](const std::string& variantSetName) const
    {
        return GetVariantSet(variantSetName);
    }
    UsdVariantSet GetVariantSet(const std::string& variantSetName) const;
    bool HasVariantSet(const std::string& variantSetName) const;
    std::string GetVariantSelection(const std::string& variantSetName) const;
    bool SetSelection(const std::string& variantSetName, const std::string& variantName);
    SdfVariantSelectionMap GetAllVariantSelections() const;

private:
    friend class UsdPrim;
    explicit UsdVariantSets(const UsdPrim& prim) : _prim(prim) {}

    UsdPrim _prim;
};

PXR_NAMESPACE_CLOSE_SCOPE
