#include <vesk/base/event_bus.h>

#include <algorithm>
#include <atomic>
#include <condition_variable>
#include <exception>
#include <iterator>
#include <new>
#include <utility>

#include <vesk/base/logging.h>
#include <vesk/base/sync_point.h>

namespace vesk::base {

namespace {

std::uint32_t nextListenerId()
{
    static std::atomic<std::uint32_t> counter{0};
    std::uint32_t id = ++counter;
    while (id == 0)
        id = ++counter;
    return id;
}

} // namespace

/// One listener. `activity` counts the deliveries that are inside the listener, twice, with the retired mark
/// in its lowest bit: a delivery enters by adding 2 and only calls a listener that was not retired by then.
struct EventBus::Entry
{
    static constexpr std::uint32_t kRetired = 1;
    static constexpr std::uint32_t kOneDelivery = 2;

    Entry(std::uint32_t listenerId, Listener callable) : id(listenerId), listener(std::move(callable)) {}

    bool enter() noexcept
    {
        return !(activity.fetch_add(kOneDelivery, std::memory_order_acquire) & kRetired);
    }

    void leave() noexcept
    {
        const std::uint32_t before = activity.fetch_sub(kOneDelivery, std::memory_order_acq_rel);
        if (before == (kOneDelivery | kRetired)) onLastLeft();
    }

    /// Waits until nobody is inside; at once when this thread is.
    void retire(bool fromInside)
    {
        const std::uint32_t before = activity.fetch_or(kRetired, std::memory_order_acq_rel);
        if (before < kOneDelivery) {
            releaseListener();
        } else if (!fromInside) {
            std::unique_lock lock(mutex);
            VESK_SYNC_WAIT("bus.retire", lock, activity.load(std::memory_order_acquire) < kOneDelivery);
            left.wait(lock, [this] { return activity.load(std::memory_order_acquire) < kOneDelivery; });
        }
    }

    const std::uint32_t id;
    Listener listener;

private:
    void onLastLeft() noexcept
    {
        releaseListener();
        std::lock_guard lock(mutex);
        left.notify_all();
    }

    /// What the listener captured goes with its last call, outside the lock.
    void releaseListener() noexcept
    {
        Listener released;
        std::lock_guard lock(mutex);
        released.swap(listener);
    }

    std::atomic<std::uint32_t> activity{0};
    std::mutex mutex;
    std::condition_variable left;
};

/// The deliveries that this thread is inside, innermost first.
struct EventBus::Delivery
{
    const Entry* current = nullptr;
    Delivery* outer = nullptr;

    static Delivery*& innermost() noexcept
    {
        static thread_local Delivery* delivery = nullptr;
        return delivery;
    }
    static bool isInside(const Entry& entry) noexcept
    {
        for (const Delivery* delivery = innermost(); delivery; delivery = delivery->outer)
            if (delivery->current == &entry) return true;
        return false;
    }
};

EventBus::EventBus() = default;

EventBus::~EventBus() { unsubscribeAll(); }

std::uint32_t EventBus::subscribeListener(Listener listener)
{
    auto entry = std::make_shared<Entry>(nextListenerId(), std::move(listener));
    const std::uint32_t id = entry->id;
    VESK_SYNC_POINT("bus.subscribe");
    std::lock_guard lock(m_mutex);
    auto entries = std::make_shared<Entries>();
    if (m_entries) {
        entries->reserve(m_entries->size() + 1);
        *entries = *m_entries;
    }
    entries->push_back(std::move(entry));
    m_entries = std::move(entries);
    return id;
}

void EventBus::unsubscribeListener(std::uint32_t id)
{
    std::shared_ptr<Entry> removed;
    std::shared_ptr<const Entries> previous;
    VESK_SYNC_POINT("bus.unsubscribe");
    {
        std::lock_guard lock(m_mutex);
        if (!m_entries) return;
        const auto hasId = [id](const std::shared_ptr<Entry>& entry) { return entry->id == id; };
        const auto found = std::find_if(m_entries->begin(), m_entries->end(), hasId);
        if (found == m_entries->end()) return;
        removed = *found;
        try {
            auto entries = std::make_shared<Entries>();
            entries->reserve(m_entries->size());
            std::remove_copy_if(m_entries->begin(), m_entries->end(), std::back_inserter(*entries), hasId);
            previous = std::exchange(m_entries, std::move(entries));
        } catch (const std::bad_alloc&) {
            // The entry stays in the list; retired, it is never called again.
        }
    }
    VESK_SYNC_POINT("bus.removed");
    _retire(removed);
}

void EventBus::unsubscribeAll()
{
    std::shared_ptr<const Entries> previous;
    {
        std::lock_guard lock(m_mutex);
        previous = std::exchange(m_entries, nullptr);
    }
    if (!previous) return;
    VESK_SYNC_POINT("bus.removed");
    for (const std::shared_ptr<Entry>& entry : *previous)
        _retire(entry);
}

void EventBus::_retire(const std::shared_ptr<Entry>& entry) { entry->retire(Delivery::isInside(*entry)); }

bool EventBus::sendEvent(const std::any& event)
{
    // From here on the bus itself is not touched: a listener may destroy it.
    VESK_SYNC_POINT("bus.send");
    const std::shared_ptr<const Entries> entries = _entries();
    if (!entries) return true;
    Delivery*& innermost = Delivery::innermost();
    Delivery delivery;
    delivery.outer = std::exchange(innermost, &delivery);
    bool delivered = true;
    for (const std::shared_ptr<Entry>& entry : *entries) {
        delivery.current = entry.get();
        VESK_SYNC_POINT("bus.enter");
        try {
            if (entry->enter() && entry->listener) {
                VESK_SYNC_POINT("bus.call");
                entry->listener(event);
            }
        } catch (const std::exception& exception) {
            delivered = false;
            VESK_LOG_ERROR("EventBus: a listener threw: {}", exception.what());
        } catch (...) {
            delivered = false;
            VESK_LOG_ERROR("EventBus: a listener threw: {}", "something that is no std::exception");
        }
        VESK_SYNC_POINT("bus.leave");
        entry->leave();
    }
    innermost = delivery.outer;
    return delivered;
}

std::size_t EventBus::listenerCount() const
{
    const std::shared_ptr<const Entries> entries = _entries();
    return entries ? entries->size() : 0;
}

std::shared_ptr<const EventBus::Entries> EventBus::_entries() const
{
    std::lock_guard lock(m_mutex);
    return m_entries;
}

} // namespace vesk::base
