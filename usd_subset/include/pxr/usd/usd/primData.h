#pragma once

#include <pxr/base/tf/declarePtrs.h>
#include <pxr/export.h>
#include <pxr/pxr.h>
#include <pxr/usd/sdf/path.h>
#include <pxr/usd/sdf/types.h>
#include <pxr/usd/usd/common.h>
#include <pxr/usd/usd/primDataHandle.h>
#include <pxr/usd/usd/primFlags.h>
#include <pxr/usd/usd/primTypeInfo.h>

#include <cstddef>
#include <memory>

PXR_NAMESPACE_OPEN_SCOPE

class Usd_PrimIndex;

/// A composed prim of a stage. Prim handles count it; the stage marks it dead when the prim goes.
class Usd_PrimData : private Usd_PrimDataLife
{
public:
    const SdfPath& GetPath() const { return _path; }
    const TfToken& GetName() const { return _path.GetNameToken(); }
    UsdStage* GetStage() const { return _stage; }

    const UsdPrimTypeInfo& GetPrimTypeInfo() const { return *_typeInfo; }
    const TfToken& GetTypeName() const { return _typeInfo->GetTypeName(); }
    const UsdPrimDefinition& GetPrimDefinition() const { return _typeInfo->GetPrimDefinition(); }

    /// Where the prim's opinions come from; of a prototype's root, none.
    VESK_USD_API const Usd_PrimIndex& GetPrimIndex() const;
    /// The same, but of a prototype's root the index of the instance that it was made from.
    const Usd_PrimIndex& GetSourcePrimIndex() const { return *_index; }
    VESK_USD_API SdfSpecifier GetSpecifier() const;

    bool IsPseudoRoot() const { return _flags[Usd_PrimPseudoRootFlag]; }
    bool IsActive() const { return _flags[Usd_PrimActiveFlag]; }
    bool IsLoaded() const { return _flags[Usd_PrimLoadedFlag]; }
    bool IsModel() const { return _flags[Usd_PrimModelFlag]; }
    bool IsGroup() const { return _flags[Usd_PrimGroupFlag]; }
    bool IsComponent() const { return _flags[Usd_PrimComponentFlag]; }
    VESK_USD_API bool IsSubComponent() const;
    bool IsAbstract() const { return _flags[Usd_PrimAbstractFlag]; }
    bool IsDefined() const { return _flags[Usd_PrimDefinedFlag]; }
    bool HasDefiningSpecifier() const { return _flags[Usd_PrimHasDefiningSpecifierFlag]; }
    bool HasPayload() const { return _flags[Usd_PrimHasPayloadFlag]; }
    bool MayHaveOpinionsInClips() const { return _flags[Usd_PrimClipsFlag]; }
    bool IsInstance() const { return _flags[Usd_PrimInstanceFlag]; }
    bool IsInPrototype() const { return _flags[Usd_PrimPrototypeFlag]; }
    bool IsPrototype() const { return IsInPrototype() && _path.IsRootPrimPath(); }
    const Usd_PrimFlagBits& GetFlags() const { return _flags; }

    Usd_PrimDataConstPtr GetParent() const { return _parent; }
    Usd_PrimDataConstPtr GetFirstChild() const { return _firstChild; }
    Usd_PrimDataConstPtr GetNextSibling() const { return _nextSibling; }
    /// The prototype of an instance; null otherwise.
    VESK_USD_API Usd_PrimDataConstPtr GetPrototype() const;

private:
    Usd_PrimData(UsdStage* stage, const SdfPath& path);
    ~Usd_PrimData();
    Usd_PrimData(const Usd_PrimData&) = delete;
    Usd_PrimData& operator=(const Usd_PrimData&) = delete;
    // Prims lie in memory in the order in which they are composed, which is about that of traversals.
    static void* operator new(std::size_t size);
    static void operator delete(void* memory) noexcept;

    friend void Usd_DeletePrimData(const Usd_PrimData* data) noexcept;
    friend class Usd_PrimComposer;
    friend class Usd_PrimTable;

    Usd_PrimFlagBits _flags;
    UsdStage* _stage;
    SdfPath _path;
    std::shared_ptr<const Usd_PrimIndex> _index;
    const UsdPrimTypeInfo* _typeInfo;
    Usd_PrimDataPtr _parent = nullptr;
    Usd_PrimDataPtr _firstChild = nullptr;
    Usd_PrimDataPtr _nextSibling = nullptr;
};

PXR_NAMESPACE_CLOSE_SCOPE
