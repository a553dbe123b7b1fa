#include "pxr/usd/sdf/specEdit.h"

#include <pxr/base/tf/diagnostic.h>
#include <pxr/usd/sdf/layer.h>
#include <pxr/usd/sdf/listOp.h>
#include <pxr/usd/sdf/primSpec.h>
#include <pxr/usd/sdf/proxyTypes.h>
#include <pxr/usd/sdf/schema.h>

#include <algorithm>

PXR_NAMESPACE_OPEN_SCOPE

namespace {

SdfPath canonical(const SdfPath& path, const SdfSpecHandle& owner)
{
    return path.IsEmpty() ? path
                          : path.MakeAbsolutePath(owner->GetPath().StripAllVariantSelections().GetPrimPath());
}
template <class T>
const T& canonical(const T& item, const SdfSpecHandle&)
{
    return item;
}

// A field that holds a list op.
template <class TypePolicy>
class ListOpEditor : public Sdf_ListEditor<TypePolicy>
{
    typedef Sdf_ListEditor<TypePolicy> Base;

public:
    typedef typename Base::value_type value_type;
    typedef typename Base::value_vector_type value_vector_type;
    typedef SdfListOp<value_type> Op;
    using Base::Base;

    bool HasKeys() const override { return _Op().HasKeys(); }
    bool IsExplicit() const override { return _Op().IsExplicit(); }
    bool IsOrderedOnly() const override { return false; }
    value_vector_type Get(SdfListOpType type) const override { return _Op().GetItems(type); }
    bool Set(SdfListOpType type, const value_vector_type& items) override
    {
        value_vector_type stored;
        for (const value_type& item : items) {
            const value_type absolute = canonical(item, this->_owner);
            if (std::find(stored.begin(), stored.end(), absolute) != stored.end()) {
                TF_CODING_ERROR("Duplicate item not allowed for field '%s' on <%s>", this->_field.GetText(),
                                this->_owner->GetPath().GetText());
                return false;
            }
            stored.push_back(absolute);
        }
        Op op = _Op();
        if (stored.empty() && op.GetItems(type).empty()) {
            return true;
        }
        op.SetItems(stored, type);
        return _Store(op);
    }
    bool ClearEdits() override { return _Store(Op()); }
    bool ClearEditsAndMakeExplicit() override
    {
        Op op;
        op.ClearAndMakeExplicit();
        return _Store(op);
    }
    bool CopyEdits(const Base& other) override
    {
        return _Store(static_cast<const ListOpEditor&>(other)._Op());
    }
    void ApplyEditsToList(value_vector_type* items,
                          const typename Base::ApplyCallback& callback) const override
    {
        _Op().ApplyOperations(items, callback);
    }
    void ModifyItemEdits(const typename Base::ModifyCallback& callback) override
    {
        Op op = _Op();
        if (op.ModifyOperations(callback)) {
            _Store(op);
        }
    }

private:
    Op _Op() const { return this->_owner ? this->_owner->template GetFieldAs<Op>(this->_field) : Op(); }
    bool _Store(const Op& op)
    {
        return this->_owner && this->_owner->SetField(this->_field, op.HasKeys() ? VtValue(op) : VtValue());
    }
};

// A field that holds a plain vector: one list, of the given type.
template <class TypePolicy, SdfListOpType Type>
class VectorEditor : public Sdf_ListEditor<TypePolicy>
{
    typedef Sdf_ListEditor<TypePolicy> Base;

public:
    typedef typename Base::value_type value_type;
    typedef typename Base::value_vector_type value_vector_type;
    using Base::Base;

    bool HasKeys() const override { return !Get(Type).empty(); }
    bool IsExplicit() const override { return Type == SdfListOpTypeExplicit; }
    bool IsOrderedOnly() const override { return Type == SdfListOpTypeOrdered; }
    value_vector_type Get(SdfListOpType type) const override
    {
        return type == Type ? this->_owner->template GetFieldAs<value_vector_type>(this->_field)
                            : value_vector_type();
    }
    bool Set(SdfListOpType type, const value_vector_type& items) override
    {
        return type == Type && _Store(items);
    }
    bool ClearEdits() override { return _Store(value_vector_type()); }
    bool ClearEditsAndMakeExplicit() override { return _Store(value_vector_type()); }
    bool CopyEdits(const Base& other) override { return _Store(other.Get(Type)); }
    void ApplyEditsToList(value_vector_type* items, const typename Base::ApplyCallback&) const override
    {
        if (Type == SdfListOpTypeOrdered) {
            SdfApplyListOrdering(items, Get(Type));
        } else {
            *items = Get(Type);
        }
    }
    void ModifyItemEdits(const typename Base::ModifyCallback& callback) override
    {
        value_vector_type items;
        for (const value_type& item : Get(Type)) {
            if (const std::optional<value_type> changed = callback(item)) {
                items.push_back(*changed);
            }
        }
        _Store(items);
    }

protected:
    virtual bool _Store(const value_vector_type& items)
    {
        return this->_owner &&
               this->_owner->SetField(this->_field, items.empty() ? VtValue() : VtValue(items));
    }
};

// The sublayer paths, which are kept together with their offsets.
class SubLayerEditor : public VectorEditor<SdfSubLayerTypePolicy, SdfListOpTypeExplicit>
{
public:
    using VectorEditor::VectorEditor;

protected:
    bool _Store(const value_vector_type& items) override
    {
        _owner->GetLayer()->SetSubLayerPaths(items);
        return true;
    }
};

} // namespace

SdfPathEditorProxy SdfGetPathEditorProxy(const SdfSpecHandle& spec, const TfToken& pathField)
{
    return SdfPathEditorProxy(std::make_shared<ListOpEditor<SdfPathKeyPolicy>>(spec, pathField));
}

SdfReferenceEditorProxy SdfGetReferenceEditorProxy(const SdfSpecHandle& spec, const TfToken& referenceField)
{
    return SdfReferenceEditorProxy(
        std::make_shared<ListOpEditor<SdfReferenceTypePolicy>>(spec, referenceField));
}

SdfPayloadEditorProxy SdfGetPayloadEditorProxy(const SdfSpecHandle& spec, const TfToken& payloadField)
{
    return SdfPayloadEditorProxy(std::make_shared<ListOpEditor<SdfPayloadTypePolicy>>(spec, payloadField));
}

SdfNameEditorProxy Sdf_GetNameEditorProxy(const SdfSpecHandle& spec, const TfToken& field)
{
    return SdfNameEditorProxy(std::make_shared<ListOpEditor<SdfNameKeyPolicy>>(spec, field));
}

SdfNameOrderProxy SdfGetNameOrderProxy(const SdfSpecHandle& spec, const TfToken& orderField)
{
    typedef VectorEditor<SdfNameTokenKeyPolicy, SdfListOpTypeOrdered> Editor;
    return SdfNameOrderProxy(std::make_shared<Editor>(spec, orderField), SdfListOpTypeOrdered);
}

SdfSubLayerProxy SdfLayer::GetSubLayerPaths() const
{
    return SdfSubLayerProxy(std::make_shared<SubLayerEditor>(GetPseudoRoot(), SdfFieldKeys->SubLayers),
                            SdfListOpTypeExplicit);
}

PXR_NAMESPACE_CLOSE_SCOPE
