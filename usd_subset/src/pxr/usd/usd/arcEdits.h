#pragma once

#include "pxr/usd/usd/listEdits.h"
#include "pxr/usd/usd/specEditor.h"
#include "pxr/usd/usd/stageImpl.h"

#include <pxr/base/tf/diagnostic.h>
#include <pxr/base/tf/errorMark.h>
#include <pxr/pxr.h>
#include <pxr/usd/sdf/changeBlock.h>
#include <pxr/usd/sdf/path.h>
#include <pxr/usd/usd/prim.h>
#include <pxr/usd/usd/stage.h>

#include <vector>

PXR_NAMESPACE_OPEN_SCOPE

/// Edits one list of composition arcs of a prim at the stage's edit target. Arcs names the list on a prim
/// spec and the path of an item that lies in the stage's own layers.
template <class Arcs>
class Usd_ArcEdits
{
public:
    using Item = typename Arcs::Item;

    explicit Usd_ArcEdits(const UsdPrim& prim) : _prim(prim) {}

    bool Add(Item item, UsdListPosition position) const
    {
        return _Edit(&item, [&](auto list) { Usd_InsertListItem(list, item, position); });
    }
    bool Remove(Item item) const
    {
        return _Edit(&item, [&](auto list) { list.Remove(item); });
    }
    bool Clear() const
    {
        return _Edit(nullptr, [](auto list) { list.ClearEdits(); });
    }
    bool Set(const std::vector<Item>& items) const
    {
        std::vector<Item> mapped = items;
        for (Item& item : mapped) {
            if (!_IsValid() || !_Map(&item)) {
                return false;
            }
        }
        return _Edit(nullptr, [&](auto list) {
            list.ClearEditsAndMakeExplicit();
            if (!mapped.empty()) {
                list.GetExplicitItems() = mapped;
            }
        });
    }

private:
    bool _IsValid() const
    {
        if (!_prim) {
            TF_CODING_ERROR("Invalid prim");
        }
        return static_cast<bool>(_prim);
    }

    // Paths of the stage become paths of the layer that is edited.
    bool _Map(Item* item) const
    {
        const SdfPath path = Arcs::GetLocalPath(*item);
        if (path.IsEmpty()) {
            return true;
        }
        if (!path.IsAbsoluteRootOrPrimPath() && !path.IsPrimPath()) {
            TF_CODING_ERROR("Invalid prim path <%s>", path.GetText());
            return false;
        }
        const SdfPath absolute = path.MakeAbsolutePath(_prim.GetPath());
        if (absolute.IsRootPrimPath()) {
            return true;
        }
        const SdfPath mapped =
            Usd_ObjectAccess::GetImpl(_prim).editTarget.MapToSpecPath(absolute).StripAllVariantSelections();
        if (mapped.IsEmpty()) {
            TF_CODING_ERROR("Cannot map <%s> to current edit target.", path.GetText());
            return false;
        }
        Arcs::SetLocalPath(item, mapped);
        return true;
    }

    template <class Function>
    bool _Edit(Item* item, const Function& function) const
    {
        if (!_IsValid() || (item && !_Map(item))) {
            return false;
        }
        SdfChangeBlock block; // one round of composition, after the edit
        TfErrorMark mark;
        const SdfPrimSpecHandle spec = Usd_SpecEditor(Usd_ObjectAccess::GetImpl(_prim)).CreatePrimSpec(_prim);
        if (!spec) {
            return false;
        }
        function(Arcs::GetList(spec));
        return mark.IsClean();
    }

    UsdPrim _prim;
};

PXR_NAMESPACE_CLOSE_SCOPE
