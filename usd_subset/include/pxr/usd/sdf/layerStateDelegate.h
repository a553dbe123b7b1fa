#pragma once

/// Sees every edit of a layer before it is made.

#include <pxr/base/tf/declarePtrs.h>
#include <pxr/base/tf/refBase.h>
#include <pxr/base/tf/weakBase.h>
#include <pxr/pxr.h>
#include <pxr/usd/sdf/abstractData.h>
#include <pxr/usd/sdf/api.h>
#include <pxr/usd/sdf/declareHandles.h>

PXR_NAMESPACE_OPEN_SCOPE

TF_DECLARE_WEAK_AND_REF_PTRS(SdfLayerStateDelegateBase);
TF_DECLARE_WEAK_AND_REF_PTRS(SdfSimpleLayerStateDelegate);

/// Keeps track of whether a layer is dirty, and is told of each primitive edit while the old state can still
/// be read: what undo is built on. The public operations make an edit; the virtual ones are told of it.
class SDF_API SdfLayerStateDelegateBase : public TfRefBase, public TfWeakBase
{
public:
    ~SdfLayerStateDelegateBase() override;

    bool IsDirty();

    void SetField(const SdfPath& path, const TfToken& field, const VtValue& value,
                  VtValue* oldValue = nullptr);
    void SetField(const SdfPath& path, const TfToken& field, const SdfAbstractDataConstValue& value,
                  VtValue* oldValue = nullptr);
    void SetFieldDictValueByKey(const SdfPath& path, const TfToken& field, const TfToken& keyPath,
                                const VtValue& value, VtValue* oldValue = nullptr);
    void SetFieldDictValueByKey(const SdfPath& path, const TfToken& field, const TfToken& keyPath,
                                const SdfAbstractDataConstValue& value, VtValue* oldValue = nullptr);
    void SetTimeSample(const SdfPath& path, double time, const VtValue& value);
    void SetTimeSample(const SdfPath& path, double time, const SdfAbstractDataConstValue& value);
    void CreateSpec(const SdfPath& path, SdfSpecType specType, bool inert);
    void DeleteSpec(const SdfPath& path, bool inert);
    void MoveSpec(const SdfPath& oldPath, const SdfPath& newPath);
    void PushChild(const SdfPath& parentPath, const TfToken& field, const TfToken& value);
    void PushChild(const SdfPath& parentPath, const TfToken& field, const SdfPath& value);
    void PopChild(const SdfPath& parentPath, const TfToken& field, const TfToken& oldValue);
    void PopChild(const SdfPath& parentPath, const TfToken& field, const SdfPath& oldValue);

protected:
    SdfLayerStateDelegateBase();

    SdfLayerHandle _GetLayer() const;
    SdfAbstractDataPtr _GetLayerData() const;

    virtual bool _IsDirty() = 0;
    virtual void _MarkCurrentStateAsClean() = 0;
    virtual void _MarkCurrentStateAsDirty() = 0;

    virtual void _OnSetLayer(const SdfLayerHandle& layer) = 0;
    virtual void _OnSetField(const SdfPath& path, const TfToken& fieldName, const VtValue& value) = 0;
    virtual void _OnSetField(const SdfPath& path, const TfToken& fieldName,
                             const SdfAbstractDataConstValue& value) = 0;
    virtual void _OnSetFieldDictValueByKey(const SdfPath& path, const TfToken& fieldName,
                                           const TfToken& keyPath, const VtValue& value) = 0;
    virtual void _OnSetFieldDictValueByKey(const SdfPath& path, const TfToken& fieldName,
                                           const TfToken& keyPath,
                                           const SdfAbstractDataConstValue& value) = 0;
    virtual void _OnSetTimeSample(const SdfPath& path, double time, const VtValue& value) = 0;
    virtual void _OnSetTimeSample(const SdfPath& path, double time,
                                  const SdfAbstractDataConstValue& value) = 0;
    virtual void _OnCreateSpec(const SdfPath& path, SdfSpecType specType, bool inert) = 0;
    virtual void _OnDeleteSpec(const SdfPath& path, bool inert) = 0;
    virtual void _OnMoveSpec(const SdfPath& oldPath, const SdfPath& newPath) = 0;
    virtual void _OnPushChild(const SdfPath& parentPath, const TfToken& fieldName, const TfToken& value) = 0;
    virtual void _OnPushChild(const SdfPath& parentPath, const TfToken& fieldName, const SdfPath& value) = 0;
    virtual void _OnPopChild(const SdfPath& parentPath, const TfToken& fieldName,
                             const TfToken& oldValue) = 0;
    virtual void _OnPopChild(const SdfPath& parentPath, const TfToken& fieldName,
                             const SdfPath& oldValue) = 0;

private:
    friend class SdfLayer;
    void _SetLayer(const SdfLayerHandle& layer);

    SdfLayerHandle _layer;
};

/// The delegate of a new layer: dirty after the first edit, clean after a save.
class SDF_API SdfSimpleLayerStateDelegate : public SdfLayerStateDelegateBase
{
public:
    static SdfSimpleLayerStateDelegateRefPtr New();

protected:
    SdfSimpleLayerStateDelegate();

    bool _IsDirty() override;
    void _MarkCurrentStateAsClean() override;
    void _MarkCurrentStateAsDirty() override;
    void _OnSetLayer(const SdfLayerHandle& layer) override;
    void _OnSetField(const SdfPath& path, const TfToken& fieldName, const VtValue& value) override;
    void _OnSetField(const SdfPath& path, const TfToken& fieldName,
                     const SdfAbstractDataConstValue& value) override;
    void _OnSetFieldDictValueByKey(const SdfPath& path, const TfToken& fieldName, const TfToken& keyPath,
                                   const VtValue& value) override;
    void _OnSetFieldDictValueByKey(const SdfPath& path, const TfToken& fieldName, const TfToken& keyPath,
                                   const SdfAbstractDataConstValue& value) override;
    void _OnSetTimeSample(const SdfPath& path, double time, const VtValue& value) override;
    void _OnSetTimeSample(const SdfPath& path, double time, const SdfAbstractDataConstValue& value) override;
    void _OnCreateSpec(const SdfPath& path, SdfSpecType specType, bool inert) override;
    void _OnDeleteSpec(const SdfPath& path, bool inert) override;
    void _OnMoveSpec(const SdfPath& oldPath, const SdfPath& newPath) override;
    void _OnPushChild(const SdfPath& parentPath, const TfToken& fieldName, const TfToken& value) override;
    void _OnPushChild(const SdfPath& parentPath, const TfToken& fieldName, const SdfPath& value) override;
    void _OnPopChild(const SdfPath& parentPath, const TfToken& fieldName, const TfToken& oldValue) override;
    void _OnPopChild(const SdfPath& parentPath, const TfToken& fieldName, const SdfPath& oldValue) override;

private:
    bool _dirty = false;
};

PXR_NAMESPACE_CLOSE_SCOPE
