#pragma once

#include "pxr/usd/usd/primIndex.h"

#include <pxr/pxr.h>

#include <set>
#include <string>
#include <vector>

PXR_NAMESPACE_OPEN_SCOPE

/// What the opinions on a prim say of its variant sets.
class Usd_VariantOpinions
{
public:
    explicit Usd_VariantOpinions(const Usd_PrimIndex& index) : _index(index) {}

    std::vector<std::string> GetSetNames() const;
    std::set<std::string> GetVariantNames(const std::string& setName) const;
    /// The strongest authored selection; false when there is none.
    bool GetAuthoredSelection(const std::string& setName, std::string* selection) const;
    /// The variant that is composed; empty when none is.
    std::string GetSelection(const std::string& setName) const;

private:
    const Usd_PrimIndex& _index;
};

PXR_NAMESPACE_CLOSE_SCOPE
