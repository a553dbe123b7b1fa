#pragma once

/// Handles to specs: they know when the spec that they stand for is gone.

#include <pxr/base/tf/declarePtrs.h>
#include <pxr/base/tf/diagnostic.h>
#include <pxr/base/tf/nullPtr.h>
#include <pxr/base/tf/weakPtr.h>
#include <pxr/pxr.h>
#include <pxr/usd/sdf/api.h>

#include <cstddef>
#include <memory>
#include <set>
#include <type_traits>
#include <typeinfo>
#include <vector>

PXR_NAMESPACE_OPEN_SCOPE

class SdfLayer;
class SdfSpec;
template <class T>
class TfRefPtr;
class Sdf_Identity;
using Sdf_IdentityRefPtr = std::shared_ptr<Sdf_Identity>;

/// Posts the error of a handle whose spec is gone.
SDF_API void Sdf_PostInvalidHandleError(const std::type_info& specType);

/// A handle to a spec of type T; it converts to false once the spec or its layer is gone.
template <class T>
class SdfHandle
{
public:
    typedef SdfHandle<T> This;
    typedef T SpecType;
    typedef typename std::remove_const<SpecType>::type NonConstSpecType;
    typedef SdfHandle<NonConstSpecType> NonConstThis;

    SdfHandle() {}
    SdfHandle(TfNullPtrType) {}
    explicit SdfHandle(const Sdf_IdentityRefPtr& id) : _spec(id) {}
    SdfHandle(const SpecType& spec) : _spec(spec) {}
    SdfHandle(const SdfHandle&) = default;
    template <class U>
    SdfHandle(const SdfHandle<U>& x) : _spec(x._spec)
    {}

    This& operator=(const This& x)
    {
        const_cast<NonConstSpecType&>(_spec) = x._spec;
        return *this;
    }
    template <class U>
    This& operator=(const SdfHandle<U>& x)
    {
        const_cast<NonConstSpecType&>(_spec) = x._spec;
        return *this;
    }

    /// Gives access to the spec; on a handle whose spec is gone it posts an error, and every operation of the
    /// spec that it returns answers with nothing.
    SpecType* operator->() const
    {
        if (_spec.IsDormant()) {
            Sdf_PostInvalidHandleError(typeid(SpecType));
        }
        return const_cast<SpecType*>(&_spec);
    }
    const SpecType& GetSpec() const { return _spec; }
    void Reset() { const_cast<NonConstSpecType&>(_spec) = SpecType(); }

    typedef SpecType This::*UnspecifiedBoolType;
    operator UnspecifiedBoolType() const { return _spec.IsDormant() ? 0 : &This::_spec; }
    bool operator!() const { return _spec.IsDormant(); }

    template <class U>
    bool operator==(const SdfHandle<U>& other) const
    {
        return _spec == other._spec;
    }
    friend bool operator!=(const SdfHandle& lhs, const SdfHandle& rhs) { return !(lhs == rhs); }
    template <class U>
    bool operator<(const SdfHandle<U>& other) const
    {
        return _spec < other._spec;
    }
    friend bool operator>(const SdfHandle& lhs, const SdfHandle& rhs) { return rhs < lhs; }
    friend bool operator<=(const SdfHandle& lhs, const SdfHandle& rhs) { return !(rhs < lhs); }
    friend bool operator>=(const SdfHandle& lhs, const SdfHandle& rhs) { return !(lhs < rhs); }
    friend size_t hash_value(const This& x) { return hash_value(x._spec); }

private:
    friend SpecType* get_pointer(const SdfHandle& x)
    {
        return x._spec.IsDormant() ? nullptr : const_cast<SpecType*>(&x._spec);
    }

    SpecType _spec;
    template <class U>
    friend class SdfHandle;
};

/// The handle types of a spec type; a layer's handle is a weak pointer.
template <class T>
struct SdfHandleTo
{
    typedef SdfHandle<T> Handle;
    typedef SdfHandle<const T> ConstHandle;
    typedef std::vector<Handle> Vector;
    typedef std::vector<ConstHandle> ConstVector;
};
template <>
struct SdfHandleTo<SdfLayer>
{
    typedef TfWeakPtr<SdfLayer> Handle;
    typedef TfWeakPtr<const SdfLayer> ConstHandle;
    typedef std::vector<Handle> Vector;
    typedef std::vector<ConstHandle> ConstVector;
};

template <typename T>
typename SdfHandleTo<T>::Handle SdfCreateHandle(T* p)
{
    return typename SdfHandleTo<T>::Handle(p ? *p : T());
}
template <>
SDF_API SdfHandleTo<SdfLayer>::Handle SdfCreateHandle(SdfLayer* p);
template <typename T>
typename SdfHandleTo<T>::Handle SdfCreateNonConstHandle(T const* p)
{
    return SdfCreateHandle(const_cast<T*>(p));
}

struct Sdf_CastAccess
{
    template <class DST, class SRC>
    static DST CastSpec(const SRC& spec)
    {
        return DST(spec);
    }
};

/// Says whether a spec may be seen as the type, by the kind of spec that its layer holds.
SDF_API bool Sdf_CanCastToType(const SdfSpec& srcSpec, const std::type_info& destType);

template <typename DST, typename SRC>
inline SdfHandle<typename DST::SpecType> TfDynamic_cast(const SdfHandle<SRC>& x)
{
    typedef typename DST::SpecType Spec;
    if (Sdf_CanCastToType(x.GetSpec(), typeid(Spec))) {
        return SdfHandle<Spec>(Sdf_CastAccess::CastSpec<Spec, SdfSpec>(x.GetSpec()));
    }
    return SdfHandle<Spec>();
}
template <typename DST, typename SRC>
inline SdfHandle<typename DST::SpecType> TfSafeDynamic_cast(const SdfHandle<SRC>& x)
{
    return TfDynamic_cast<DST>(x);
}
template <typename DST, typename SRC>
inline SdfHandle<typename DST::SpecType> TfStatic_cast(const SdfHandle<SRC>& x)
{
    typedef typename DST::SpecType Spec;
    static_assert(std::is_base_of<Spec, SRC>::value || std::is_base_of<SRC, Spec>::value,
                  "The two spec types must be directly related.");
    return SdfHandle<Spec>(Sdf_CastAccess::CastSpec<Spec, SdfSpec>(x.GetSpec()));
}
template <typename DST, typename SRC>
inline SdfHandle<typename DST::SpecType> SdfSpecDynamic_cast(const SdfHandle<SRC>& x)
{
    return TfDynamic_cast<DST>(x);
}
template <typename DST, typename SRC>
inline DST SdfSpecDynamic_cast(const SRC& x, typename std::enable_if_t<std::is_base_of_v<SdfSpec, SRC>>* = 0)
{
    return Sdf_CanCastToType(x, typeid(DST)) ? Sdf_CastAccess::CastSpec<DST, SdfSpec>(x) : DST();
}
template <typename DST, typename SRC>
inline SdfHandle<typename DST::SpecType> SdfSpecStatic_cast(const SdfHandle<SRC>& x)
{
    return TfStatic_cast<DST>(x);
}

// clang-format off
#define SDF_DECLARE_HANDLES(cls)                                   \
    typedef SdfHandleTo<class cls>::Handle cls##Handle;            \
    typedef SdfHandleTo<class cls>::ConstHandle cls##ConstHandle;  \
    typedef SdfHandleTo<class cls>::Vector cls##HandleVector;      \
    typedef SdfHandleTo<class cls>::ConstVector cls##ConstHandleVector
// clang-format on

SDF_DECLARE_HANDLES(SdfLayer);
SDF_DECLARE_HANDLES(SdfSpec);
SDF_DECLARE_HANDLES(SdfPrimSpec);
SDF_DECLARE_HANDLES(SdfPropertySpec);
SDF_DECLARE_HANDLES(SdfAttributeSpec);
SDF_DECLARE_HANDLES(SdfRelationshipSpec);
SDF_DECLARE_HANDLES(SdfPseudoRootSpec);
SDF_DECLARE_HANDLES(SdfVariantSetSpec);
SDF_DECLARE_HANDLES(SdfVariantSpec);

typedef TfRefPtr<SdfLayer> SdfLayerRefPtr;
typedef std::vector<SdfLayerRefPtr> SdfLayerRefPtrVector;
typedef std::set<SdfLayerHandle> SdfLayerHandleSet;

PXR_NAMESPACE_CLOSE_SCOPE
