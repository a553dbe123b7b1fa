#include <pxr/base/tf/diagnostic.h>
#include <pxr/base/tf/registryManager.h>
#include <pxr/base/tf/stringUtils.h>
#include <pxr/base/vt/dictionary.h>

#include <ostream>

PXR_NAMESPACE_OPEN_SCOPE

TF_REGISTRY_FUNCTION(TfType) { TfType::Define<VtDictionary>(); }

namespace {

/// Returns the dictionary that the value holds, for writing; it becomes an empty one if it holds another
/// type.
VtDictionary* MutableDictionary(VtValue* value)
{
    if (!value->IsHolding<VtDictionary>()) {
        *value = VtDictionary();
    }
    VtDictionary* inner = nullptr;
    value->UncheckedMutate<VtDictionary>([&inner](VtDictionary& dictionary) { inner = &dictionary; });
    return inner;
}

bool CheckTarget(const VtDictionary* dictionary)
{
    if (!dictionary) {
        TF_CODING_ERROR("VtDictionaryOver: NULL dictionary pointer.");
    }
    return dictionary != nullptr;
}

} // namespace

VtValue const* VtDictionary::GetValueAtPath(std::string const& keyPath, char const* delimiters) const
{
    return GetValueAtPath(TfStringSplit(keyPath, delimiters));
}

VtValue const* VtDictionary::GetValueAtPath(std::vector<std::string> const& keyPath) const
{
    VtDictionary const* current = this;
    VtValue const* value = nullptr;
    for (std::string const& key : keyPath) {
        if (value) {
            if (!value->IsHolding<VtDictionary>()) {
                return nullptr;
            }
            current = &value->UncheckedGet<VtDictionary>();
        }
        const auto found = current->find(key);
        if (found == current->end()) {
            return nullptr;
        }
        value = &found->second;
    }
    return value;
}

void VtDictionary::SetValueAtPath(std::string const& keyPath, VtValue const& value, char const* delimiters)
{
    SetValueAtPath(TfStringSplit(keyPath, delimiters), value);
}

void VtDictionary::SetValueAtPath(std::vector<std::string> const& keyPath, VtValue const& value)
{
    if (keyPath.empty()) {
        return;
    }
    // The value may be part of this dictionary.
    const VtValue kept = value;
    VtDictionary* current = this;
    for (size_t i = 0; i + 1 < keyPath.size(); ++i) {
        current = MutableDictionary(&(*current)[keyPath[i]]);
    }
    (*current)[keyPath.back()] = kept;
}

void VtDictionary::EraseValueAtPath(std::string const& keyPath, char const* delimiters)
{
    EraseValueAtPath(TfStringSplit(keyPath, delimiters));
}

void VtDictionary::EraseValueAtPath(std::vector<std::string> const& keyPath)
{
    if (keyPath.empty()) {
        return;
    }
    std::vector<VtDictionary*> levels{this};
    for (size_t i = 0; i + 1 < keyPath.size(); ++i) {
        const auto found = levels.back()->find(keyPath[i]);
        if (found == levels.back()->end() || !found->second.IsHolding<VtDictionary>()) {
            return;
        }
        levels.push_back(MutableDictionary(&found->second));
    }
    for (size_t i = levels.size(); i-- > 0;) {
        levels[i]->erase(keyPath[i]);
        if (!levels[i]->empty()) {
            break;
        }
    }
}

std::ostream& operator<<(std::ostream& out, VtDictionary const& dictionary)
{
    out << '{';
    const char* separator = "";
    for (auto const& [key, value] : dictionary) {
        out << separator << '\'' << key << "': " << value;
        separator = ", ";
    }
    return out << '}';
}

VtDictionary const& VtGetEmptyDictionary()
{
    static const VtDictionary* const empty = new VtDictionary;
    return *empty;
}

VtDictionary VtDictionaryOver(const VtDictionary& strong, const VtDictionary& weak,
                              bool coerceToWeakerOpinionType)
{
    VtDictionary result = strong;
    VtDictionaryOver(&result, weak, coerceToWeakerOpinionType);
    return result;
}

void VtDictionaryOver(VtDictionary* strong, const VtDictionary& weak, bool coerceToWeakerOpinionType)
{
    if (!CheckTarget(strong)) {
        return;
    }
    for (auto const& entry : weak) {
        const auto [at, inserted] = strong->insert(entry);
        if (!inserted && coerceToWeakerOpinionType) {
            at->second.CastToTypeOf(entry.second);
        }
    }
}

void VtDictionaryOver(const VtDictionary& strong, VtDictionary* weak, bool coerceToWeakerOpinionType)
{
    if (CheckTarget(weak)) {
        *weak = VtDictionaryOver(strong, *weak, coerceToWeakerOpinionType);
    }
}

VtDictionary VtDictionaryOverRecursive(const VtDictionary& strong, const VtDictionary& weak,
                                       bool coerceToWeakerOpinionType)
{
    VtDictionary result = strong;
    VtDictionaryOverRecursive(&result, weak, coerceToWeakerOpinionType);
    return result;
}

void VtDictionaryOverRecursive(VtDictionary* strong, const VtDictionary& weak, bool coerceToWeakerOpinionType)
{
    if (!CheckTarget(strong)) {
        return;
    }
    for (auto const& entry : weak) {
        const auto [at, inserted] = strong->insert(entry);
        if (inserted) {
            continue;
        }
        if (at->second.IsHolding<VtDictionary>() && entry.second.IsHolding<VtDictionary>()) {
            // OpenUSD coerces at the outermost level alone.
            VtDictionaryOverRecursive(MutableDictionary(&at->second),
                                      entry.second.UncheckedGet<VtDictionary>());
        } else if (coerceToWeakerOpinionType) {
            at->second.CastToTypeOf(entry.second);
        }
    }
}

void VtDictionaryOverRecursive(const VtDictionary& strong, VtDictionary* weak, bool coerceToWeakerOpinionType)
{
    if (CheckTarget(weak)) {
        *weak = VtDictionaryOverRecursive(strong, *weak, coerceToWeakerOpinionType);
    }
}

PXR_NAMESPACE_CLOSE_SCOPE
