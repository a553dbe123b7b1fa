#pragma once

#include <pxr/base/tf/staticTokens.h>
#include <pxr/base/tf/token.h>
#include <pxr/export.h>
#include <pxr/pxr.h>

#include <vector>

PXR_NAMESPACE_OPEN_SCOPE

#define KIND_TOKENS (model)(component)(group)(assembly)(subcomponent)
TF_DECLARE_PUBLIC_TOKENS(KindTokens, VESK_USD_API, KIND_TOKENS);

/// The kinds that prims of a model hierarchy can have, and how they derive from each other.
class VESK_USD_API KindRegistry
{
public:
    static KindRegistry& GetInstance();

    static bool HasKind(const TfToken& kind);
    /// The kind that a kind derives from; empty for a root or unknown kind.
    static TfToken GetBaseKind(const TfToken& kind);
    static std::vector<TfToken> GetAllKinds();
    /// Whether a kind is, or derives from, another.
    static bool IsA(const TfToken& derivedKind, const TfToken& baseKind);
    static bool IsModel(const TfToken& kind) { return IsA(kind, KindTokens->model); }
    static bool IsGroup(const TfToken& kind) { return IsA(kind, KindTokens->group); }
    static bool IsAssembly(const TfToken& kind) { return IsA(kind, KindTokens->assembly); }
    static bool IsComponent(const TfToken& kind) { return IsA(kind, KindTokens->component); }
    static bool IsSubComponent(const TfToken& kind) { return IsA(kind, KindTokens->subcomponent); }

private:
    KindRegistry() = default;
};

PXR_NAMESPACE_CLOSE_SCOPE
