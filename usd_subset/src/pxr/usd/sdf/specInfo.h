#pragma once

/// The plain accessors of spec fields, written once.

#include <pxr/usd/sdf/schema.h>

// Get and Set of a field whose value is returned as it is held.
#define SDF_SPEC_INFO(Class, type, argument, Name)                                                           \
    type Class::Get##Name() const                                                                            \
    {                                                                                                        \
        return GetFieldAs<type>(SdfFieldKeys->Name, GetFallbackForInfo(SdfFieldKeys->Name).Get<type>());     \
    }                                                                                                        \
    void Class::Set##Name(argument value) { SetField(SdfFieldKeys->Name, VtValue(type(value))); }
// With Has and Clear.
#define SDF_SPEC_OPTIONAL_INFO(Class, type, argument, Name)                                                  \
    SDF_SPEC_INFO(Class, type, argument, Name)                                                               \
    bool Class::Has##Name() const { return HasField(SdfFieldKeys->Name); }                                   \
    void Class::Clear##Name() { ClearField(SdfFieldKeys->Name); }
// A dictionary, edited through a proxy or entry by entry.
#define SDF_SPEC_DICTIONARY(Class, Name, SetName)                                                            \
    SdfDictionaryProxy Class::Get##Name() const                                                              \
    {                                                                                                        \
        return SdfDictionaryProxy(SdfSpecHandle(*this), SdfFieldKeys->Name);                                 \
    }                                                                                                        \
    void Class::SetName(const std::string& name, const VtValue& value)                                       \
    {                                                                                                        \
        SetInfoDictionaryValue(SdfFieldKeys->Name, TfToken(name), value);                                    \
    }
