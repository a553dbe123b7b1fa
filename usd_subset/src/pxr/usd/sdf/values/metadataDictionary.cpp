#include <pxr/usd/sdf/types.h>

#include <pxr/base/gf/half.h>
#include <pxr/base/gf/matrix2d.h>
#include <pxr/base/gf/matrix3d.h>
#include <pxr/base/gf/matrix4d.h>
#include <pxr/base/gf/quatd.h>
#include <pxr/base/gf/quatf.h>
#include <pxr/base/gf/quath.h>
#include <pxr/base/gf/vec2d.h>
#include <pxr/base/gf/vec2f.h>
#include <pxr/base/gf/vec2h.h>
#include <pxr/base/gf/vec2i.h>
#include <pxr/base/gf/vec3d.h>
#include <pxr/base/gf/vec3f.h>
#include <pxr/base/gf/vec3h.h>
#include <pxr/base/gf/vec3i.h>
#include <pxr/base/gf/vec4d.h>
#include <pxr/base/gf/vec4f.h>
#include <pxr/base/gf/vec4h.h>
#include <pxr/base/gf/vec4i.h>
#include <pxr/base/tf/stringUtils.h>

#include <typeindex>
#include <unordered_map>

PXR_NAMESPACE_OPEN_SCOPE

namespace {

using Errors = std::vector<std::string>;

/// Where in the dictionary the conversion is, and what went wrong.
struct Context
{
    std::vector<std::string> keys;
    Errors errors;

    std::string where() const
    {
        return keys.empty() ? std::string() : " under key '" + TfStringJoin(keys, ":") + "'";
    }
};

std::string Describe(const VtValue& value)
{
    constexpr size_t kLongest = 32;
    std::string text = TfStringify(value);
    if (text.size() > kLongest) {
        text = text.substr(0, kLongest) + "...";
    }
    return "<" + value.GetTypeName() + "> '" + text + "'";
}

template <class T>
VtValue ToArray(const std::vector<VtValue>& elements, Context* context)
{
    VtArray<T> array;
    array.reserve(elements.size());
    for (size_t i = 0; i != elements.size(); ++i) {
        const VtValue element = VtValue::Cast<T>(elements[i]);
        if (element.IsEmpty()) {
            context->errors.push_back(TfStringPrintf("failed to cast array element %zu: %s%s to <%s>", i,
                                                     Describe(elements[i]).c_str(), context->where().c_str(),
                                                     TfType::GetCanonicalTypeName(typeid(T)).c_str()));
        } else {
            array.push_back(element.UncheckedGet<T>());
        }
    }
    return array.size() == elements.size() ? VtValue::Take(array) : VtValue();
}

using ToArrayFunction = VtValue (*)(const std::vector<VtValue>&, Context*);

ToArrayFunction FunctionFor(const std::type_info& type)
{
#define SDF_ADD_TO_ARRAY(Name, name, T) {typeid(T), &ToArray<T>},
    static const auto* const functions =
        new std::unordered_map<std::type_index, ToArrayFunction>{SDF_FOR_EACH_VALUE_TYPE(SDF_ADD_TO_ARRAY)};
#undef SDF_ADD_TO_ARRAY
    const auto found = functions->find(type);
    return found == functions->end() ? nullptr : found->second;
}

VtValue ConvertVector(const std::vector<VtValue>& elements, Context* context)
{
    if (elements.empty()) {
        context->errors.push_back("cannot infer type from empty vector/list" + context->where() +
                                  " -- use an empty typed array like VtIntArray/VtStringArray instead");
        return VtValue();
    }
    const ToArrayFunction convert = FunctionFor(elements.front().GetTypeid());
    if (!convert) {
        context->errors.push_back("first vector/list element " + Describe(elements.front()) +
                                  context->where() + " is not a valid scene description datatype");
        return VtValue();
    }
    return convert(elements, context);
}

bool ConvertDictionary(VtDictionary* dictionary, Context* context);

bool ConvertValue(VtValue* value, Context* context)
{
    if (value->IsHolding<VtDictionary>()) {
        bool valid = true;
        value->UncheckedMutate<VtDictionary>(
            [&](VtDictionary& inner) { valid = ConvertDictionary(&inner, context); });
        return valid;
    }
    if (value->IsHolding<std::vector<VtValue>>()) {
        *value = ConvertVector(value->UncheckedGet<std::vector<VtValue>>(), context);
    } else if (!SdfValueHasValidType(*value)) {
        context->errors.push_back(Describe(*value) + context->where() +
                                  " is not a valid scene description datatype");
        *value = VtValue();
    }
    return !value->IsEmpty();
}

bool ConvertDictionary(VtDictionary* dictionary, Context* context)
{
    bool valid = true;
    for (auto& [key, value] : *dictionary) {
        context->keys.push_back(key);
        valid = ConvertValue(&value, context) && valid;
        context->keys.pop_back();
    }
    return valid;
}

} // namespace

bool SdfConvertToValidMetadataDictionary(VtDictionary* dictionary, std::string* errMsg)
{
    Context context;
    const bool valid = ConvertDictionary(dictionary, &context);
    *errMsg = TfStringJoin(context.errors, "; ");
    return valid;
}

PXR_NAMESPACE_CLOSE_SCOPE
