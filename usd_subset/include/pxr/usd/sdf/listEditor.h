#pragma once

/// The list-valued fields of specs, whatever they are stored as.

#include <pxr/base/tf/notice.h>
#include <pxr/base/tf/token.h>
#include <pxr/pxr.h>
#include <pxr/usd/sdf/allowed.h>
#include <pxr/usd/sdf/api.h>
#include <pxr/usd/sdf/declareHandles.h>
#include <pxr/usd/sdf/layerOffset.h>
#include <pxr/usd/sdf/listOp.h>
#include <pxr/usd/sdf/path.h>
#include <pxr/usd/sdf/payload.h>
#include <pxr/usd/sdf/reference.h>
#include <pxr/usd/sdf/schema.h>
#include <pxr/usd/sdf/spec.h>

#include <functional>
#include <optional>
#include <string>
#include <vector>

PXR_NAMESPACE_OPEN_SCOPE

/// The kinds of list items: what they are, and how the text of a field turns into one.
struct SdfNameKeyPolicy
{
    typedef std::string value_type;
};
struct SdfNameTokenKeyPolicy
{
    typedef TfToken value_type;
};
struct SdfPathKeyPolicy
{
    typedef SdfPath value_type;
};
struct SdfPayloadTypePolicy
{
    typedef SdfPayload value_type;
};
struct SdfReferenceTypePolicy
{
    typedef SdfReference value_type;
};
struct SdfSubLayerTypePolicy
{
    typedef std::string value_type;
};

/// One list-valued field of one spec. It keeps no items of its own: each call reads or writes the layer.
template <class TypePolicy>
class Sdf_ListEditor
{
public:
    typedef typename TypePolicy::value_type value_type;
    typedef std::vector<value_type> value_vector_type;
    typedef std::function<std::optional<value_type>(SdfListOpType, const value_type&)> ApplyCallback;
    typedef std::function<std::optional<value_type>(const value_type&)> ModifyCallback;

    Sdf_ListEditor(const SdfSpecHandle& owner, const TfToken& field) : _owner(owner), _field(field) {}
    virtual ~Sdf_ListEditor() = default;

    const SdfSpecHandle& GetOwner() const { return _owner; }
    bool IsExpired() const { return !_owner; }
    bool IsValid() const { return static_cast<bool>(_owner); }

    virtual bool HasKeys() const = 0;
    virtual bool IsExplicit() const = 0;
    virtual bool IsOrderedOnly() const = 0;
    virtual value_vector_type Get(SdfListOpType op) const = 0;
    virtual bool Set(SdfListOpType op, const value_vector_type& items) = 0;
    virtual bool ClearEdits() = 0;
    virtual bool ClearEditsAndMakeExplicit() = 0;
    virtual bool CopyEdits(const Sdf_ListEditor& other) = 0;
    virtual void ApplyEditsToList(value_vector_type* items, const ApplyCallback& callback) const = 0;
    virtual void ModifyItemEdits(const ModifyCallback& callback) = 0;

protected:
    SdfSpecHandle _owner;
    TfToken _field;
};

PXR_NAMESPACE_CLOSE_SCOPE
