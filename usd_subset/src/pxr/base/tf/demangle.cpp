#include "pxr/base/tf/demangle.h"

#include <pxr/base/tf/diagnosticHelper.h>
#include <pxr/base/tf/preprocessorUtilsLite.h>

#include <cstdlib>
#include <cxxabi.h>
#include <memory>

PXR_NAMESPACE_OPEN_SCOPE

namespace {

void ReplaceAll(std::string& text, const std::string& from, const std::string& to)
{
    for (size_t at = text.find(from); at != std::string::npos; at = text.find(from, at + to.size())) {
        text.replace(at, from.size(), to);
    }
}

void StripNamespace(std::string& text) { ReplaceAll(text, TF_PP_STRINGIZE(PXR_INTERNAL_NS) "::", ""); }

} // namespace

std::string Tf_Demangle(const char* mangled)
{
    int status = 0;
    const std::unique_ptr<char, void (*)(void*)> text(abi::__cxa_demangle(mangled, nullptr, nullptr, &status),
                                                      std::free);
    std::string name = status == 0 && text ? text.get() : mangled;
    StripNamespace(name);
    ReplaceAll(name, "std::__cxx11::basic_string<char, std::char_traits<char>, std::allocator<char> >",
               "string");
    ReplaceAll(name, "string ", "string");
    ReplaceAll(name, "std::", "");
    return name;
}

std::string Tf_PrettierFunctionName(const char* function, const char* prettyFunction)
{
    if (!function || !*function) {
        return std::string();
    }
    std::string pretty = prettyFunction ? prettyFunction : "";
    const std::string name = function;
    // The pretty form is "type Class::name(arguments) [with T = ...]": keep "Class::name".
    const size_t open = pretty.find(name + "(");
    if (open == std::string::npos) {
        return name;
    }
    const size_t space = pretty.rfind(' ', open);
    const size_t first = space == std::string::npos ? 0 : space + 1;
    pretty = pretty.substr(first, open - first) + name;
    StripNamespace(pretty);
    const size_t letter = pretty.find_first_not_of("*&");
    return letter == std::string::npos ? name : pretty.substr(letter);
}

PXR_NAMESPACE_CLOSE_SCOPE
