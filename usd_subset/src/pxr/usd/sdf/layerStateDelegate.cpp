#include <pxr/usd/sdf/layer.h>
#include <pxr/usd/sdf/layerStateDelegate.h>

PXR_NAMESPACE_OPEN_SCOPE

namespace {

VtValue toValue(const SdfAbstractDataConstValue& value)
{
    VtValue result;
    value.GetValue(&result);
    return result;
}

} // namespace

SdfLayerStateDelegateBase::SdfLayerStateDelegateBase() = default;
SdfLayerStateDelegateBase::~SdfLayerStateDelegateBase() = default;

bool SdfLayerStateDelegateBase::IsDirty() { return _IsDirty(); }

void SdfLayerStateDelegateBase::SetField(const SdfPath& path, const TfToken& field, const VtValue& value,
                                         VtValue* oldValue)
{
    if (!_layer) {
        return;
    }
    _OnSetField(path, field, value);
    _layer->_PrimSetField(path, field, value, oldValue, false);
}

void SdfLayerStateDelegateBase::SetField(const SdfPath& path, const TfToken& field,
                                         const SdfAbstractDataConstValue& value, VtValue* oldValue)
{
    if (!_layer) {
        return;
    }
    _OnSetField(path, field, value);
    _layer->_PrimSetField(path, field, toValue(value), oldValue, false);
}

void SdfLayerStateDelegateBase::SetFieldDictValueByKey(const SdfPath& path, const TfToken& field,
                                                       const TfToken& keyPath, const VtValue& value, VtValue*)
{
    if (!_layer) {
        return;
    }
    _OnSetFieldDictValueByKey(path, field, keyPath, value);
    _layer->_PrimSetFieldDictValueByKey(path, field, keyPath, value, false);
}

void SdfLayerStateDelegateBase::SetFieldDictValueByKey(const SdfPath& path, const TfToken& field,
                                                       const TfToken& keyPath,
                                                       const SdfAbstractDataConstValue& value, VtValue*)
{
    if (!_layer) {
        return;
    }
    _OnSetFieldDictValueByKey(path, field, keyPath, value);
    _layer->_PrimSetFieldDictValueByKey(path, field, keyPath, toValue(value), false);
}

void SdfLayerStateDelegateBase::SetTimeSample(const SdfPath& path, double time, const VtValue& value)
{
    if (!_layer) {
        return;
    }
    _OnSetTimeSample(path, time, value);
    _layer->_PrimSetTimeSample(path, time, value, false);
}

void SdfLayerStateDelegateBase::SetTimeSample(const SdfPath& path, double time,
                                              const SdfAbstractDataConstValue& value)
{
    if (!_layer) {
        return;
    }
    _OnSetTimeSample(path, time, value);
    _layer->_PrimSetTimeSample(path, time, toValue(value), false);
}

void SdfLayerStateDelegateBase::CreateSpec(const SdfPath& path, SdfSpecType specType, bool inert)
{
    if (!_layer) {
        return;
    }
    _OnCreateSpec(path, specType, inert);
    _layer->_PrimCreateSpec(path, specType, inert, false);
}

void SdfLayerStateDelegateBase::DeleteSpec(const SdfPath& path, bool inert)
{
    if (!_layer) {
        return;
    }
    _OnDeleteSpec(path, inert);
    _layer->_PrimDeleteSpec(path, inert, false);
}

void SdfLayerStateDelegateBase::MoveSpec(const SdfPath& oldPath, const SdfPath& newPath)
{
    if (!_layer) {
        return;
    }
    _OnMoveSpec(oldPath, newPath);
    _layer->_PrimMoveSpec(oldPath, newPath, false);
}

void SdfLayerStateDelegateBase::PushChild(const SdfPath& parentPath, const TfToken& field,
                                          const TfToken& value)
{
    if (!_layer) {
        return;
    }
    _OnPushChild(parentPath, field, value);
    _layer->_PrimPushChild(parentPath, field, value, false);
}

void SdfLayerStateDelegateBase::PushChild(const SdfPath& parentPath, const TfToken& field,
                                          const SdfPath& value)
{
    if (!_layer) {
        return;
    }
    _OnPushChild(parentPath, field, value);
    _layer->_PrimPushChild(parentPath, field, value, false);
}

void SdfLayerStateDelegateBase::PopChild(const SdfPath& parentPath, const TfToken& field,
                                         const TfToken& oldValue)
{
    if (!_layer) {
        return;
    }
    _OnPopChild(parentPath, field, oldValue);
    _layer->_PrimPopChild<TfToken>(parentPath, field, false);
}

void SdfLayerStateDelegateBase::PopChild(const SdfPath& parentPath, const TfToken& field,
                                         const SdfPath& oldValue)
{
    if (!_layer) {
        return;
    }
    _OnPopChild(parentPath, field, oldValue);
    _layer->_PrimPopChild<SdfPath>(parentPath, field, false);
}

SdfLayerHandle SdfLayerStateDelegateBase::_GetLayer() const { return _layer; }

SdfAbstractDataPtr SdfLayerStateDelegateBase::_GetLayerData() const
{
    return _layer ? SdfAbstractDataPtr(_layer->_data) : SdfAbstractDataPtr();
}

void SdfLayerStateDelegateBase::_SetLayer(const SdfLayerHandle& layer)
{
    _layer = layer;
    _OnSetLayer(layer);
}

SdfSimpleLayerStateDelegate::SdfSimpleLayerStateDelegate() = default;

SdfSimpleLayerStateDelegateRefPtr SdfSimpleLayerStateDelegate::New()
{
    return TfCreateRefPtr(new SdfSimpleLayerStateDelegate);
}

bool SdfSimpleLayerStateDelegate::_IsDirty() { return _dirty; }
void SdfSimpleLayerStateDelegate::_MarkCurrentStateAsClean() { _dirty = false; }
void SdfSimpleLayerStateDelegate::_MarkCurrentStateAsDirty() { _dirty = true; }
void SdfSimpleLayerStateDelegate::_OnSetLayer(const SdfLayerHandle&) {}
void SdfSimpleLayerStateDelegate::_OnSetField(const SdfPath&, const TfToken&, const VtValue&)
{
    _dirty = true;
}
void SdfSimpleLayerStateDelegate::_OnSetField(const SdfPath&, const TfToken&,
                                              const SdfAbstractDataConstValue&)
{
    _dirty = true;
}
void SdfSimpleLayerStateDelegate::_OnSetFieldDictValueByKey(const SdfPath&, const TfToken&, const TfToken&,
                                                            const VtValue&)
{
    _dirty = true;
}
void SdfSimpleLayerStateDelegate::_OnSetFieldDictValueByKey(const SdfPath&, const TfToken&, const TfToken&,
                                                            const SdfAbstractDataConstValue&)
{
    _dirty = true;
}
void SdfSimpleLayerStateDelegate::_OnSetTimeSample(const SdfPath&, double, const VtValue&) { _dirty = true; }
void SdfSimpleLayerStateDelegate::_OnSetTimeSample(const SdfPath&, double, const SdfAbstractDataConstValue&)
{
    _dirty = true;
}
void SdfSimpleLayerStateDelegate::_OnCreateSpec(const SdfPath&, SdfSpecType, bool) { _dirty = true; }
void SdfSimpleLayerStateDelegate::_OnDeleteSpec(const SdfPath&, bool) { _dirty = true; }
void SdfSimpleLayerStateDelegate::_OnMoveSpec(const SdfPath&, const SdfPath&) { _dirty = true; }
void SdfSimpleLayerStateDelegate::_OnPushChild(const SdfPath&, const TfToken&, const TfToken&)
{
    _dirty = true;
}
void SdfSimpleLayerStateDelegate::_OnPushChild(const SdfPath&, const TfToken&, const SdfPath&)
{
    _dirty = true;
}
void SdfSimpleLayerStateDelegate::_OnPopChild(const SdfPath&, const TfToken&, const TfToken&)
{
    _dirty = true;
}
void SdfSimpleLayerStateDelegate::_OnPopChild(const SdfPath&, const TfToken&, const SdfPath&)
{
    _dirty = true;
}

PXR_NAMESPACE_CLOSE_SCOPE
