#include <pxr/base/tf/type.h>

#include "pxr/base/tf/demangle.h"

#include <pxr/base/tf/diagnostic.h>
#include <pxr/base/tf/registryManager.h>

#include <algorithm>
#include <atomic>
#include <map>
#include <mutex>
#include <ostream>
#include <shared_mutex>
#include <typeindex>
#include <unordered_map>

PXR_NAMESPACE_OPEN_SCOPE

struct TfType::_TypeInfo
{
    explicit _TypeInfo(std::string const& name_) : name(name_), self(this) {}

    const std::string name;
    const TfType self;
    std::type_info const* type = nullptr;
    size_t size = 0;
    bool isPod = false;
    bool isEnum = false;
    std::vector<TfType> bases;
    std::vector<TfType> derived;
    std::map<std::string, TfType> derivedByAlias;
    std::unique_ptr<FactoryBase> factory;
};

/// All types. They are never removed, hence a pointer to one stays good without the lock.
class Tf_TypeRegistry
{
public:
    using Info = TfType::_TypeInfo;

    /// Returns the registry once every registry function that waited has run.
    static Tf_TypeRegistry& GetInstance()
    {
        // Registry functions look up types, too; only the outermost call knows that all have run.
        static std::atomic<bool> ready{false};
        thread_local bool entered = false;
        if (!ready.load(std::memory_order_acquire) && !entered) {
            entered = true;
            TfRegistryManager::GetInstance().SubscribeTo<TfType>();
            entered = false;
            ready.store(true, std::memory_order_release);
        }
        return _Get();
    }

    Info* FindByName(std::string const& name) const
    {
        const std::shared_lock<std::shared_mutex> lock(mutex);
        const auto found = _byName.find(name);
        return found == _byName.end() ? nullptr : found->second.get();
    }

    Info* FindByTypeid(std::type_info const& type) const
    {
        // What a thread once found stays so, since types are never forgotten.
        struct Known
        {
            std::type_info const* type = nullptr;
            Info* info = nullptr;
        };
        static constexpr size_t kKnown = 64;
        thread_local Known t_known[kKnown];
        Known& known = t_known[reinterpret_cast<uintptr_t>(&type) / alignof(std::type_info) % kKnown];
        if (known.type != &type) {
            const std::shared_lock<std::shared_mutex> lock(mutex);
            const auto found = _byTypeid.find(type);
            if (found == _byTypeid.end()) {
                return nullptr;
            }
            known = {&type, found->second};
        }
        return known.info;
    }

    Info* Declare(std::string const& name, std::vector<TfType> bases)
    {
        const std::unique_lock<std::shared_mutex> lock(mutex);
        Info* info = _MakeUnlocked(name);
        _AddBasesUnlocked(info, std::move(bases));
        return info;
    }

    void Define(Info* info, std::type_info const& type, size_t size, bool isPod, bool isEnum)
    {
        const std::unique_lock<std::shared_mutex> lock(mutex);
        info->type = &type;
        info->size = size;
        info->isPod = isPod;
        info->isEnum = isEnum;
        _byTypeid.emplace(type, info);
    }

    /// Whether the type derives from the other, itself included. The caller holds the mutex.
    static bool DerivesUnlocked(Info const* info, Info const* other)
    {
        return info == other || std::any_of(info->bases.begin(), info->bases.end(), [other](TfType base) {
                   return DerivesUnlocked(base._info, other);
               });
    }

    mutable std::shared_mutex mutex;
    Info* const root;

private:
    Tf_TypeRegistry() : root(new Info("TfType::_Root")) { _byName[root->name].reset(root); }

    static Tf_TypeRegistry& _Get()
    {
        static Tf_TypeRegistry* const registry = new Tf_TypeRegistry;
        return *registry;
    }

    Info* _MakeUnlocked(std::string const& name)
    {
        std::unique_ptr<Info>& info = _byName[name];
        if (!info) {
            info = std::make_unique<Info>(name);
        }
        return info.get();
    }

    void _AddBasesUnlocked(Info* info, std::vector<TfType> bases)
    {
        if (info == root) {
            return;
        }
        if (bases.empty() && info->bases.empty()) {
            bases.push_back(root->self);
        }
        // The root stands in for bases that are not known yet.
        if (!bases.empty() && info->bases.size() == 1 && info->bases.front() == root->self &&
            bases.front() != root->self) {
            info->bases.clear();
            std::vector<TfType>& ofRoot = root->derived;
            ofRoot.erase(std::remove(ofRoot.begin(), ofRoot.end(), info->self), ofRoot.end());
        }
        for (TfType base : bases) {
            if (std::find(info->bases.begin(), info->bases.end(), base) == info->bases.end()) {
                info->bases.push_back(base);
                base._info->derived.push_back(info->self);
            }
        }
    }

    std::map<std::string, std::unique_ptr<Info>> _byName;
    std::unordered_map<std::type_index, Info*> _byTypeid;
};

namespace {

using SharedLock = std::shared_lock<std::shared_mutex>;
using UniqueLock = std::unique_lock<std::shared_mutex>;

/// Merges sequences of ancestors so that the order of each is kept; false when they contradict each other.
bool MergeAncestors(std::vector<std::vector<TfType>> sequences, std::vector<TfType>* result)
{
    for (;;) {
        sequences.erase(std::remove_if(sequences.begin(), sequences.end(),
                                       [](std::vector<TfType> const& s) { return s.empty(); }),
                        sequences.end());
        if (sequences.empty()) {
            return true;
        }
        TfType next;
        for (std::vector<TfType> const& candidate : sequences) {
            const TfType head = candidate.front();
            const bool inTail = std::any_of(sequences.begin(), sequences.end(), [&](auto const& s) {
                return std::find(s.begin() + 1, s.end(), head) != s.end();
            });
            if (!inTail) {
                next = head;
                break;
            }
        }
        if (!next) {
            return false;
        }
        result->push_back(next);
        for (std::vector<TfType>& s : sequences) {
            if (s.front() == next) {
                s.erase(s.begin());
            }
        }
    }
}

} // namespace

TfType const& TfType::GetUnknownType()
{
    static const TfType* const unknown = new TfType;
    return *unknown;
}

TfType const& TfType::GetRoot() { return Tf_TypeRegistry::GetInstance().root->self; }

TfType const& TfType::FindByTypeid(std::type_info const& type)
{
    _TypeInfo* info = Tf_TypeRegistry::GetInstance().FindByTypeid(type);
    return info ? info->self : GetUnknownType();
}

TfType const& TfType::FindByName(std::string const& name)
{
    _TypeInfo* info = Tf_TypeRegistry::GetInstance().FindByName(name);
    return info ? info->self : GetRoot().FindDerivedByName(name);
}

TfType const& TfType::FindDerivedByName(std::string const& name) const
{
    if (IsUnknown()) {
        return GetUnknownType();
    }
    Tf_TypeRegistry& registry = Tf_TypeRegistry::GetInstance();
    {
        const SharedLock lock(registry.mutex);
        const auto found = _info->derivedByAlias.find(name);
        if (found != _info->derivedByAlias.end()) {
            return found->second._info->self;
        }
    }
    _TypeInfo* info = registry.FindByName(name);
    return info && info->self.IsA(*this) ? info->self : GetUnknownType();
}

std::string const& TfType::GetTypeName() const
{
    static const std::string* const unknown = new std::string("TfType::_Unknown");
    return _info ? _info->name : *unknown;
}

std::type_info const& TfType::GetTypeid() const
{
    if (!_info) {
        return typeid(void);
    }
    const SharedLock lock(Tf_TypeRegistry::GetInstance().mutex);
    return _info->type ? *_info->type : typeid(void);
}

std::string TfType::GetCanonicalTypeName(std::type_info const& type) { return Tf_Demangle(type); }

std::vector<TfType> TfType::GetBaseTypes() const
{
    if (!_info) {
        return {};
    }
    const SharedLock lock(Tf_TypeRegistry::GetInstance().mutex);
    return _info->bases;
}

std::vector<TfType> TfType::GetDirectlyDerivedTypes() const
{
    if (!_info) {
        return {};
    }
    const SharedLock lock(Tf_TypeRegistry::GetInstance().mutex);
    return _info->derived;
}

void TfType::GetAllDerivedTypes(std::set<TfType>* result) const
{
    for (TfType type : GetDirectlyDerivedTypes()) {
        result->insert(type);
        type.GetAllDerivedTypes(result);
    }
}

void TfType::GetAllAncestorTypes(std::vector<TfType>* result) const
{
    if (IsUnknown()) {
        TF_CODING_ERROR("Cannot ask for ancestor types of Unknown type");
        return;
    }
    std::vector<std::vector<TfType>> sequences{{*this}};
    std::vector<TfType> const bases = GetBaseTypes();
    sequences.push_back(bases);
    for (TfType base : bases) {
        sequences.emplace_back();
        base.GetAllAncestorTypes(&sequences.back());
    }
    if (!MergeAncestors(std::move(sequences), result)) {
        TF_CODING_ERROR("The bases of '%s' come in contradictory orders; give them the same order in every "
                        "derived type.",
                        GetTypeName().c_str());
    }
}

bool TfType::IsA(TfType queryType) const
{
    if (IsUnknown() || queryType.IsUnknown()) {
        return false;
    }
    if (*this == queryType || queryType.IsRoot()) {
        return true;
    }
    const SharedLock lock(Tf_TypeRegistry::GetInstance().mutex);
    return Tf_TypeRegistry::DerivesUnlocked(_info, queryType._info);
}

bool TfType::IsEnumType() const { return _info && _info->isEnum; }
bool TfType::IsPlainOldDataType() const { return _info && _info->isPod; }
size_t TfType::GetSizeof() const { return _info ? _info->size : 0; }

TfType const& TfType::Declare(std::string const& typeName) { return Declare(typeName, {}); }

TfType const& TfType::Declare(std::string const& typeName, std::vector<TfType> const& bases)
{
    if (std::find(bases.begin(), bases.end(), TfType()) != bases.end()) {
        TF_CODING_ERROR("Specified base type is unknown, skipping it for '%s'", typeName.c_str());
        std::vector<TfType> known = bases;
        known.erase(std::remove(known.begin(), known.end(), TfType()), known.end());
        return Declare(typeName, known);
    }
    return Tf_TypeRegistry::GetInstance().Declare(typeName, bases)->self;
}

TfType const& TfType::_Define(std::type_info const& type, std::vector<std::type_info const*> const& bases,
                              size_t size, bool isPod, bool isEnum)
{
    std::vector<TfType> baseTypes;
    baseTypes.reserve(bases.size());
    for (std::type_info const* base : bases) {
        baseTypes.push_back(Declare(GetCanonicalTypeName(*base)));
    }
    TfType const& defined = Declare(GetCanonicalTypeName(type), baseTypes);
    Tf_TypeRegistry::GetInstance().Define(defined._info, type, size, isPod, isEnum);
    return defined;
}

void TfType::AddAlias(TfType base, std::string const& alias) const
{
    if (IsUnknown() || base.IsUnknown()) {
        TF_CODING_ERROR("Cannot add the alias '%s' to or under an unknown type.", alias.c_str());
        return;
    }
    const UniqueLock lock(Tf_TypeRegistry::GetInstance().mutex);
    base._info->derivedByAlias[alias] = *this;
}

std::vector<std::string> TfType::GetAliases(TfType derivedType) const
{
    std::vector<std::string> aliases;
    if (_info) {
        const SharedLock lock(Tf_TypeRegistry::GetInstance().mutex);
        for (auto const& [alias, type] : _info->derivedByAlias) {
            if (type == derivedType) {
                aliases.push_back(alias);
            }
        }
    }
    return aliases;
}

void TfType::SetFactory(std::unique_ptr<FactoryBase> factory) const
{
    if (IsUnknown() || IsRoot()) {
        TF_CODING_ERROR("Cannot set factory of the type '%s'", GetTypeName().c_str());
        return;
    }
    const UniqueLock lock(Tf_TypeRegistry::GetInstance().mutex);
    _info->factory = std::move(factory);
}

TfType::FactoryBase* TfType::_GetFactory() const
{
    if (IsUnknown()) {
        return nullptr;
    }
    const SharedLock lock(Tf_TypeRegistry::GetInstance().mutex);
    return _info->factory.get();
}

std::ostream& operator<<(std::ostream& out, TfType const& type) { return out << type.GetTypeName(); }

TF_REGISTRY_FUNCTION(TfType)
{
    TfType::Define<void>();
    TfType::Define<bool>();
    TfType::Define<char>();
    TfType::Define<signed char>();
    TfType::Define<unsigned char>();
    TfType::Define<short>();
    TfType::Define<unsigned short>();
    TfType::Define<int>();
    TfType::Define<unsigned int>();
    TfType::Define<long>();
    TfType::Define<unsigned long>().Alias(TfType::GetRoot(), "size_t");
    TfType::Define<long long>();
    TfType::Define<unsigned long long>();
    TfType::Define<float>();
    TfType::Define<double>();
    TfType::Define<std::string>();
    TfType::Define<std::vector<bool>>().Alias(TfType::GetRoot(), "vector<bool>");
    TfType::Define<std::vector<int>>().Alias(TfType::GetRoot(), "vector<int>");
    TfType::Define<std::vector<float>>().Alias(TfType::GetRoot(), "vector<float>");
    TfType::Define<std::vector<double>>().Alias(TfType::GetRoot(), "vector<double>");
    TfType::Define<std::vector<std::string>>().Alias(TfType::GetRoot(), "vector<string>");
}

PXR_NAMESPACE_CLOSE_SCOPE
