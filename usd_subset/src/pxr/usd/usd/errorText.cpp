#include "pxr/usd/usd/errorText.h"

#include <pxr/base/tf/errorMark.h>
#include <pxr/base/tf/stringUtils.h>

#include <cxxabi.h>

#include <cstdlib>
#include <memory>

// Two steps, so that the macro is expanded before it becomes text.
#define USD_STRINGIZE_TEXT(text) #text
#define USD_STRINGIZE(text) USD_STRINGIZE_TEXT(text)

PXR_NAMESPACE_OPEN_SCOPE

SdfLayerRefPtr Usd_OpenLayer(const std::string& path, std::string* why)
{
    TfErrorMark mark;
    const SdfLayerRefPtr layer = SdfLayer::FindOrOpen(path);
    if (!layer) {
        why->clear();
        for (const TfError& error : mark) {
            *why += (why->empty() ? "" : "; ") + error.GetCommentary();
        }
        if (why->empty()) {
            *why = "the file was not found";
        }
        mark.Clear();
    }
    return layer;
}

std::string Usd_TypeName(const std::type_info& type)
{
    int status = 0;
    const std::unique_ptr<char, decltype(&std::free)> text(
        abi::__cxa_demangle(type.name(), nullptr, nullptr, &status), &std::free);
    const std::string name = text ? text.get() : type.name();
    return TfStringReplace(name, USD_STRINGIZE(PXR_INTERNAL_NS) "::", "");
}

PXR_NAMESPACE_CLOSE_SCOPE
