#include <pxr/usd/kind/registry.h>

#include <utility>

PXR_NAMESPACE_OPEN_SCOPE

TF_DEFINE_PUBLIC_TOKENS(KindTokens, KIND_TOKENS);

namespace {

/// Each kind with the kind that it derives from.
const std::vector<std::pair<TfToken, TfToken>>& _Kinds()
{
    static const std::vector<std::pair<TfToken, TfToken>> kinds = {
        {KindTokens->model, TfToken()},         {KindTokens->component, KindTokens->model},
        {KindTokens->group, KindTokens->model}, {KindTokens->assembly, KindTokens->group},
        {KindTokens->subcomponent, TfToken()},
    };
    return kinds;
}

} // namespace

KindRegistry& KindRegistry::GetInstance()
{
    static KindRegistry registry;
    return registry;
}

bool KindRegistry::HasKind(const TfToken& kind)
{
    for (const auto& known : _Kinds()) {
        if (known.first == kind) {
            return true;
        }
    }
    return false;
}

TfToken KindRegistry::GetBaseKind(const TfToken& kind)
{
    for (const auto& [known, base] : _Kinds()) {
        if (known == kind) {
            return base;
        }
    }
    return TfToken();
}

std::vector<TfToken> KindRegistry::GetAllKinds()
{
    std::vector<TfToken> all;
    for (const auto& known : _Kinds()) {
        all.push_back(known.first);
    }
    return all;
}

bool KindRegistry::IsA(const TfToken& derivedKind, const TfToken& baseKind)
{
    for (TfToken kind = derivedKind; !kind.IsEmpty(); kind = GetBaseKind(kind)) {
        if (kind == baseKind) {
            return true;
        }
    }
    return derivedKind == baseKind;
}

PXR_NAMESPACE_CLOSE_SCOPE
