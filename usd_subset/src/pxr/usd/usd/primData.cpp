#include <pxr/usd/usd/primData.h>

#include "pxr/base/tf/slabPool.h"
#include "pxr/usd/usd/primFields.h"
#include "pxr/usd/usd/primIndex.h"
#include "pxr/usd/usd/stageImpl.h"

#include <pxr/base/tf/stringUtils.h>
#include <pxr/usd/kind/registry.h>
#include <pxr/usd/usd/errors.h>

#include <mutex>

PXR_NAMESPACE_OPEN_SCOPE

UsdExpiredPrimAccessError::~UsdExpiredPrimAccessError() = default;

namespace {

struct PrimPool
{
    std::mutex mutex;
    Tf_SlabPool pool{sizeof(Usd_PrimData)};

    static PrimPool& Get()
    {
        // Handles may outlive whatever is destroyed when the process ends.
        static PrimPool* const pool = new PrimPool;
        return *pool;
    }
};

} // namespace

void* Usd_PrimData::operator new(std::size_t)
{
    PrimPool& prims = PrimPool::Get();
    const std::lock_guard<std::mutex> lock(prims.mutex);
    return prims.pool.Allocate();
}

void Usd_PrimData::operator delete(void* memory) noexcept
{
    PrimPool& prims = PrimPool::Get();
    const std::lock_guard<std::mutex> lock(prims.mutex);
    prims.pool.Free(memory);
}

void Usd_DeletePrimData(const Usd_PrimData* data) noexcept { delete data; }

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
