#pragma once

/// Names of the pointer types of a class.

#include <pxr/base/tf/nullPtr.h>
#include <pxr/base/tf/refBase.h>
#include <pxr/base/tf/refPtr.h>
#include <pxr/base/tf/weakBase.h>
#include <pxr/base/tf/weakPtr.h>
#include <pxr/pxr.h>

#include <vector>

PXR_NAMESPACE_OPEN_SCOPE

template <typename T>
struct TfDeclarePtrs
{
    typedef TfWeakPtr<T> Ptr;
    typedef TfWeakPtr<const T> ConstPtr;
    typedef std::vector<Ptr> PtrVector;
    typedef std::vector<ConstPtr> ConstPtrVector;
    typedef TfRefPtr<T> RefPtr;
    typedef TfRefPtr<const T> ConstRefPtr;
    typedef std::vector<RefPtr> RefPtrVector;
    typedef std::vector<ConstRefPtr> ConstRefPtrVector;
};

/// Declares ClassPtr, ClassConstPtr and their vectors for a class that is not yet defined.
#define TF_DECLARE_WEAK_PTRS(type)                                                                           \
    typedef TfDeclarePtrs<class type>::Ptr type##Ptr;                                                        \
    typedef TfDeclarePtrs<class type>::ConstPtr type##ConstPtr;                                              \
    typedef TfDeclarePtrs<class type>::PtrVector type##PtrVector;                                            \
    typedef TfDeclarePtrs<class type>::ConstPtrVector type##ConstPtrVector

/// Declares ClassRefPtr, ClassConstRefPtr and their vectors for a class that is not yet defined.
#define TF_DECLARE_REF_PTRS(type)                                                                            \
    typedef TfDeclarePtrs<class type>::RefPtr type##RefPtr;                                                  \
    typedef TfDeclarePtrs<class type>::ConstRefPtr type##ConstRefPtr;                                        \
    typedef TfDeclarePtrs<class type>::RefPtrVector type##RefPtrVector;                                      \
    typedef TfDeclarePtrs<class type>::ConstRefPtrVector type##ConstRefPtrVector

#define TF_DECLARE_WEAK_AND_REF_PTRS(type)                                                                   \
    TF_DECLARE_WEAK_PTRS(type);                                                                              \
    TF_DECLARE_REF_PTRS(type)

PXR_NAMESPACE_CLOSE_SCOPE
