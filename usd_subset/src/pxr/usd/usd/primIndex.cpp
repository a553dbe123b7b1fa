#include "pxr/usd/usd/primIndex.h"

#include <pxr/usd/sdf/listOp.h>
#include <pxr/usd/sdf/schema.h>

#include <unordered_set>

PXR_NAMESPACE_OPEN_SCOPE

TfTokenVector Usd_PrimIndex::ComputeChildNames() const
{
    TfTokenVector names;
    std::unordered_set<TfToken, TfToken::HashFunctor> known;
    TfTokenVector found;
    for (auto site = _sites.rbegin(); site != _sites.rend(); ++site) {
        if (site->layer->HasField(site->path, SdfChildrenKeys->PrimChildren, &found)) {
            for (const TfToken& name : found) {
                if (known.insert(name).second) {
                    names.push_back(name);
                }
            }
        }
        if (site->layer->HasField(site->path, SdfFieldKeys->PrimOrder, &found)) {
            SdfApplyListOrdering(&names, found);
        }
    }
    return names;
}

PXR_NAMESPACE_CLOSE_SCOPE
