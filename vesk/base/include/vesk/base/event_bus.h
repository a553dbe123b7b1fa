#pragma once

#include <any>
#include <cstdint>
#include <functional>
#include <memory>
#include <mutex>
#include <vector>

#include <vesk/base/export.h>

namespace vesk::base {

/// Delivers events to listeners on the thread that sends them. A listener recognises the events it knows by
/// the type that the std::any holds.
///
/// Delivery works on a snapshot of the listeners and holds no lock: a listener may send, subscribe and
/// unsubscribe, itself included. Event types must be exported from the library that defines them, or they are
/// not recognised elsewhere. Thread: any, for every operation. Two listeners that unsubscribe each other at
/// the same moment on two threads would wait for each other; let one owner unsubscribe both.
///
///     const std::uint32_t id = bus.subscribeListener([](const std::any& event) {
///         if (const auto* change = std::any_cast<StageChangesEvent>(&event)) react(*change);
///     });
class VESK_BASE_EXPORT EventBus
{
public:
    /// What is called with each event; it knows an event by the type that the std::any holds.
    using Listener = std::function<void(const std::any&)>;

    EventBus();

    /// Unsubscribes every listener, and so waits for deliveries that run on other threads.
    ~EventBus();

    EventBus(const EventBus&) = delete;
    EventBus& operator=(const EventBus&) = delete;

    /// Adds a listener and returns its id: never 0, and unique among all buses of the process, so that an id
    /// given to the wrong bus removes nothing. An empty function is a listener that does nothing.
    std::uint32_t subscribeListener(Listener listener);

    /// Removes a listener; an unknown id (0 included) is ignored. On return the listener is not running on
    /// another thread and will not run again. Called from inside that listener it returns at once.
    void unsubscribeListener(std::uint32_t id);

    /// Removes every listener, under the same guarantee.
    void unsubscribeAll();

    /// Calls the listeners in the order of their subscription. Returns false when one of them threw; the
    /// others get the event all the same. Logs: error "EventBus: a listener threw: {}".
    bool sendEvent(const std::any& event);

    /// How many listeners are subscribed.
    std::size_t listenerCount() const;

private:
    struct Entry;
    struct Delivery;
    using Entries = std::vector<std::shared_ptr<Entry>>;

    std::shared_ptr<const Entries> _entries() const;
    void _retire(const std::shared_ptr<Entry>& entry);

    mutable std::mutex m_mutex;
    std::shared_ptr<const Entries> m_entries;
};

} // namespace vesk::base
