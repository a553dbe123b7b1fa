#include <pxr/usd/usd/primData.h>

#include "pxr/usd/usd/primFields.h"
#include "pxr/usd/usd/primIndex.h"
#include "pxr/usd/usd/stageImpl.h"

#include <pxr/base/tf/stringUtils.h>
#include <pxr/usd/kind/registry.h>
#include <pxr/usd/usd/errors.h>

PXR_NAMESPACE_OPEN_SCOPE

UsdExpiredPrimAccessError::~UsdExpiredPrimAccessError() = default;

void Usd_RetainPrimData(const Usd_PrimData* data) noexcept
{
    data->_refCount.fetch_add(1, std::memory_order_relaxed);
}

void Usd_ReleasePrimData(const Usd_PrimData* data) noexcept
{
    if (data->_refCount.fetch_sub(1, std::memory_order_acq_rel) == 1) {
        delete data;
    }
}

bool Usd_IsDead(const Usd_PrimData* data) noexcept { return data->_flags[Usd_PrimDeadFlag]; }

void Usd_ThrowExpiredPrimAccessError(const Usd_PrimData* data)
{
    throw UsdExpiredPrimAccessError(data
                                        ? TfStringPrintf("Used expired prim <%s>.", data->GetPath().GetText())
                                        : std::string("Used null prim."));
}

Usd_PrimData::Usd_PrimData(UsdStage* stage, const SdfPath& path)
    : _stage(stage), _path(path), _typeInfo(&UsdPrimTypeInfo::GetEmptyPrimType())
{}

Usd_PrimData::~Usd_PrimData() = default;

const Usd_PrimIndex& Usd_PrimData::GetPrimIndex() const
{
    static const Usd_PrimIndex* const none = new Usd_PrimIndex;
    return IsPrototype() ? *none : *_index;
}

SdfSpecifier Usd_PrimData::GetSpecifier() const
{
    return IsPseudoRoot() || IsPrototype() ? SdfSpecifierDef : Usd_PrimFields::GetSpecifier(*_index);
}

bool Usd_PrimData::IsSubComponent() const
{
    return KindRegistry::IsSubComponent(Usd_PrimFields::GetKind(GetPrimIndex()));
}

Usd_PrimDataConstPtr Usd_PrimData::GetPrototype() const
{
    return IsInstance() ? Usd_StageImpl::Of(*_stage).FindPrototype(_path) : nullptr;
}

PXR_NAMESPACE_CLOSE_SCOPE
