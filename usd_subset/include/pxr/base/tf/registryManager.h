#pragma once

/// Functions that run when the registry that they fill is first used.

#include <pxr/base/tf/preprocessorUtilsLite.h>
#include <pxr/export.h>
#include <pxr/pxr.h>

#include <typeinfo>

PXR_NAMESPACE_OPEN_SCOPE

/// Runs the functions that TF_REGISTRY_FUNCTION() left for a key type. Thread: any.
class TfRegistryManager
{
public:
    typedef void (*Function)();

    VESK_USD_API static TfRegistryManager& GetInstance();

    /// Runs what is registered for T now, and from now on what is added at once. When it returns, every
    /// function that was there has finished, whichever thread ran it.
    template <class T>
    void SubscribeTo()
    {
        _Subscribe(typeid(T*));
    }
    template <class T>
    void UnsubscribeFrom()
    {
        _Unsubscribe(typeid(T*));
    }

    VESK_USD_API static void _Add(std::type_info const& key, Function function);

private:
    TfRegistryManager() = default;
    VESK_USD_API void _Subscribe(std::type_info const& key);
    VESK_USD_API void _Unsubscribe(std::type_info const& key);
};

struct Tf_RegistryAdder
{
    Tf_RegistryAdder(std::type_info const& key, TfRegistryManager::Function function)
    {
        TfRegistryManager::_Add(key, function);
    }
};

/// Opens the body of a function that fills the registry of a key type, for example TfType. Use at namespace
/// scope inside the pxr namespace.
#define TF_REGISTRY_FUNCTION(KEY) TF_REGISTRY_FUNCTION_NUMBERED(KEY, __COUNTER__)
#define TF_REGISTRY_FUNCTION_WITH_TAG(KEY, TAG) TF_REGISTRY_FUNCTION_NUMBERED(KEY, __COUNTER__)
#define TF_REGISTRY_FUNCTION_NUMBERED(KEY, N)                                                                \
    static void TF_PP_CAT(Tf_RegistryFunction, N)();                                                         \
    static const Tf_RegistryAdder TF_PP_CAT(Tf_registryAdder, N)(typeid(KEY*),                               \
                                                                 &TF_PP_CAT(Tf_RegistryFunction, N));        \
    static void TF_PP_CAT(Tf_RegistryFunction, N)()

PXR_NAMESPACE_CLOSE_SCOPE
