#pragma once

#include "pxr/usd/usd/primIndex.h"

#include <pxr/pxr.h>

PXR_NAMESPACE_OPEN_SCOPE

class Usd_StageImpl;

/// Computes where prims get their opinions from.
class Usd_PrimIndexer
{
public:
    explicit Usd_PrimIndexer(Usd_StageImpl& stage) : _stage(stage) {}

    Usd_PrimIndexPtr ComputePseudoRoot() const;
    Usd_PrimIndexPtr ComputeChild(const Usd_PrimIndex& parent, const TfToken& name) const;

private:
    void _WarnOfArcs(const Usd_PrimIndex& index) const;

    Usd_StageImpl& _stage;
};

PXR_NAMESPACE_CLOSE_SCOPE
