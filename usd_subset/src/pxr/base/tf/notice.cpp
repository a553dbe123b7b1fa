#include <pxr/base/tf/notice.h>

#include "pxr/base/tf/demangle.h"

#include <pxr/base/tf/diagnosticLite.h>
#include <pxr/base/tf/registryManager.h>

#include <algorithm>
#include <map>
#include <mutex>

PXR_NAMESPACE_OPEN_SCOPE

namespace {

using Listener = std::shared_ptr<Tf_NoticeListener>;
using List = std::vector<Listener>;

/// The listeners of one notice type: to every sender, and by sender.
struct Listeners
{
    List global;
    std::map<const void*, List> bySender;
};

struct Registry
{
    std::mutex mutex;
    std::map<TfType, Listeners> byType;
    std::map<TfType, TfType> bases; // of the notice types that were sent

    static Registry& Get()
    {
        static Registry* const registry = new Registry;
        return *registry;
    }
};

thread_local size_t t_blocks = 0;

void RemoveFrom(List& list, const Listener& listener)
{
    list.erase(std::remove(list.begin(), list.end(), listener), list.end());
}

/// Takes the listener out of the registry; the list of a sender goes with its last listener.
void Remove(const Listener& listener)
{
    Registry& registry = Registry::Get();
    const std::lock_guard<std::mutex> lock(registry.mutex);
    const auto type = registry.byType.find(listener->noticeType);
    if (type == registry.byType.end()) {
        return;
    }
    if (!listener->hasSender) {
        RemoveFrom(type->second.global, listener);
        return;
    }
    const auto sender = type->second.bySender.find(listener->sender.GetUniqueIdentifier());
    if (sender != type->second.bySender.end()) {
        RemoveFrom(sender->second, listener);
        if (sender->second.empty()) {
            type->second.bySender.erase(sender);
        }
    }
}

/// Returns who listens to exactly this type, the sender's listeners first.
List Find(const TfType& type, const void* senderId)
{
    Registry& registry = Registry::Get();
    const std::lock_guard<std::mutex> lock(registry.mutex);
    const auto found = registry.byType.find(type);
    if (found == registry.byType.end()) {
        return {};
    }
    List list;
    const auto sender = senderId ? found->second.bySender.find(senderId) : found->second.bySender.end();
    if (sender != found->second.bySender.end()) {
        list = sender->second;
    }
    list.insert(list.end(), found->second.global.begin(), found->second.global.end());
    return list;
}

/// Returns the type that a notice type derives from, the root in the end.
TfType BaseOf(const TfType& type)
{
    Registry& registry = Registry::Get();
    {
        const std::lock_guard<std::mutex> lock(registry.mutex);
        const auto known = registry.bases.find(type);
        if (known != registry.bases.end()) {
            return known->second;
        }
    }
    const std::vector<TfType> bases = type.GetBaseTypes();
    const TfType base = bases.empty() ? TfType::GetRoot() : bases.front();
    const std::lock_guard<std::mutex> lock(registry.mutex);
    registry.bases.emplace(type, base);
    return base;
}

} // namespace

TF_REGISTRY_FUNCTION(TfType) { TfType::Define<TfNotice>(); }

TfNotice::~TfNotice() = default;

TfType TfNotice::_TypeOf(const std::type_info& type)
{
    const TfType found = TfType::Find(type);
    if (found.IsUnknown()) {
        TF_FATAL_ERROR("notice type " + Tf_Demangle(type) + " undefined in the TfType system");
    }
    return found;
}

TfNotice::Key TfNotice::_Register(const TfType& noticeType, const TfAnyWeakPtr* sender,
                                  Tf_NoticeListener::Invoke invoke)
{
    auto listener = std::make_shared<Tf_NoticeListener>();
    listener->noticeType = noticeType;
    listener->invoke = std::move(invoke);
    Key key;
    key._listener = listener;

    Registry& registry = Registry::Get();
    const std::lock_guard<std::mutex> lock(registry.mutex);
    Listeners& listeners = registry.byType[noticeType];
    // The last to register hears first. A null sender stands for every sender.
    if (sender && *sender) {
        listener->hasSender = true;
        listener->sender = *sender;
        List& list = listeners.bySender[sender->GetUniqueIdentifier()];
        list.insert(list.begin(), listener);
    } else {
        listeners.global.insert(listeners.global.begin(), listener);
    }
    return key;
}

bool TfNotice::Revoke(Key& key)
{
    const Listener listener = key._listener.lock();
    key._listener.reset();
    if (!listener || !listener->active.exchange(false, std::memory_order_acq_rel)) {
        return false;
    }
    Remove(listener);
    return true;
}

void TfNotice::Revoke(Keys* keys)
{
    for (Key& key : *keys) {
        Revoke(key);
    }
    keys->clear();
}

size_t TfNotice::Send() const { return SendWithWeakBase(nullptr, nullptr, typeid(void)); }

size_t TfNotice::SendWithWeakBase(const TfWeakBase* sender, const void* senderUniqueId,
                                  const std::type_info& senderType) const
{
    if (t_blocks > 0) {
        return 0;
    }
    const TfType noticeType = _TypeOf(typeid(*this));
    auto* const base = const_cast<TfWeakBase*>(sender);
    size_t delivered = 0;
    for (TfType type = noticeType; !type.IsRoot(); type = BaseOf(type)) {
        for (const Listener& listener : Find(type, senderUniqueId)) {
            if (!listener->active.load(std::memory_order_acquire)) {
                continue;
            }
            if (listener->invoke(*this, noticeType, base, senderUniqueId, senderType)) {
                ++delivered;
            } else if (listener->active.exchange(false, std::memory_order_acq_rel)) {
                Remove(listener);
            }
        }
    }
    return delivered;
}

TfNotice::Block::Block() { ++t_blocks; }
TfNotice::Block::~Block() { --t_blocks; }

PXR_NAMESPACE_CLOSE_SCOPE
