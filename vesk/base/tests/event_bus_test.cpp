#include <vesk/base/event_bus.h>

#include <atomic>
#include <stdexcept>
#include <thread>

#include <gtest/gtest.h>

#include <tests/support/gate.h>
#include <tests/support/log_capture.h>

using vesk::base::EventBus;
using vesk::tests::Gate;
using vesk::tests::LogCapture;

namespace {
struct Ping
{
    int value = 0;
};
} // namespace

TEST(EventBus, DeliversOnTheSendersThreadInTheOrderOfSubscription)
{
    EventBus bus;
    std::vector<int> order;
    std::thread::id where;
    bus.subscribeListener([&](const std::any&) { order.push_back(1); });
    bus.subscribeListener([&](const std::any&) {
        order.push_back(2);
        where = std::this_thread::get_id();
    });
    EXPECT_TRUE(bus.sendEvent(Ping{}));
    EXPECT_EQ(order, (std::vector<int>{1, 2}));
    EXPECT_EQ(where, std::this_thread::get_id());
}

TEST(EventBus, HandsTheEventItselfToEveryListener)
{
    EventBus bus;
    const std::any event = Ping{41};
    const std::any* seen = nullptr;
    int value = 0;
    bus.subscribeListener([&](const std::any& received) {
        seen = &received;
        value = std::any_cast<const Ping&>(received).value;
    });
    bus.sendEvent(event);
    EXPECT_EQ(seen, &event);
    EXPECT_EQ(value, 41);
}

TEST(EventBus, SendsToNobodySuccessfully)
{
    EventBus bus;
    EXPECT_TRUE(bus.sendEvent(Ping{}));
    EXPECT_EQ(bus.listenerCount(), 0u);
}

TEST(EventBus, GivesIdsThatAreNeverZeroAndUniqueAmongBuses)
{
    EventBus a, b;
    const auto first = a.subscribeListener([](const std::any&) {});
    const auto second = b.subscribeListener([](const std::any&) {});
    EXPECT_NE(first, 0u);
    EXPECT_NE(second, 0u);
    EXPECT_NE(first, second);
}

TEST(EventBus, IgnoresIdsThatItDoesNotKnow)
{
    EventBus bus, other;
    int calls = 0;
    bus.subscribeListener([&](const std::any&) { ++calls; });
    bus.unsubscribeListener(0);
    bus.unsubscribeListener(other.subscribeListener([](const std::any&) {}));
    bus.sendEvent(Ping{});
    EXPECT_EQ(calls, 1);
}

TEST(EventBus, DoesNotCallAListenerThatWasUnsubscribed)
{
    EventBus bus;
    int calls = 0;
    const auto id = bus.subscribeListener([&](const std::any&) { ++calls; });
    bus.unsubscribeListener(id);
    bus.unsubscribeListener(id);
    bus.sendEvent(Ping{});
    EXPECT_EQ(calls, 0);
}

TEST(EventBus, AcceptsAListenerThatIsNoFunction)
{
    EventBus bus;
    bus.subscribeListener(nullptr);
    EXPECT_TRUE(bus.sendEvent(Ping{}));
}

TEST(EventBus, LogsAListenerThatThrowsAndServesTheOthers)
{
    LogCapture log;
    EventBus bus;
    int calls = 0;
    bus.subscribeListener([](const std::any&) { throw std::runtime_error("{} broke"); });
    bus.subscribeListener([](const std::any&) { throw 42; });
    bus.subscribeListener([&](const std::any&) { ++calls; });
    EXPECT_FALSE(bus.sendEvent(Ping{}));
    EXPECT_EQ(calls, 1);
    const auto records = log.take();
    ASSERT_EQ(records.size(), 2u);
    EXPECT_EQ(records[0].text, "EventBus: a listener threw: {} broke");
    EXPECT_EQ(records[1].text, "EventBus: a listener threw: something that is no std::exception");
    EXPECT_EQ(records[0].level, spdlog::level::err);
    EXPECT_EQ(records[0].file, "vesk/base/src/event_bus.cpp");
    EXPECT_EQ(records[0].function, "vesk_base");
}

TEST(EventBus, LetsAListenerUnsubscribeItselfAndNeverCallsItAgain)
{
    EventBus bus;
    int calls = 0;
    std::uint32_t id = 0;
    id = bus.subscribeListener([&](const std::any&) {
        ++calls;
        bus.unsubscribeListener(id);
    });
    bus.sendEvent(Ping{});
    bus.sendEvent(Ping{});
    EXPECT_EQ(calls, 1);
}

TEST(EventBus, LetsAListenerUnsubscribeALaterOneOfTheSameDelivery)
{
    EventBus bus;
    int calls = 0;
    std::uint32_t later = 0;
    bus.subscribeListener([&](const std::any&) { bus.unsubscribeListener(later); });
    later = bus.subscribeListener([&](const std::any&) { ++calls; });
    bus.sendEvent(Ping{});
    EXPECT_EQ(calls, 0);
}

TEST(EventBus, DeliversToASubscriberOfTheSameMomentOnlyLater)
{
    EventBus bus;
    int calls = 0;
    bool subscribed = false;
    bus.subscribeListener([&](const std::any&) {
        if (!std::exchange(subscribed, true)) bus.subscribeListener([&](const std::any&) { ++calls; });
    });
    bus.sendEvent(Ping{});
    EXPECT_EQ(calls, 0);
    bus.sendEvent(Ping{});
    EXPECT_EQ(calls, 1);
}

TEST(EventBus, LetsListenersSendAThousandDeep)
{
    EventBus bus;
    int depth = 0;
    bus.subscribeListener([&](const std::any& event) {
        ++depth;
        const int left = std::any_cast<const Ping&>(event).value;
        if (left > 0) bus.sendEvent(Ping{left - 1});
    });
    bus.sendEvent(Ping{999});
    EXPECT_EQ(depth, 1000);
}

TEST(EventBus, WaitsInUnsubscribeForACallOnAnotherThread)
{
    EventBus bus;
    Gate inside, leave;
    std::atomic<bool> left{false};
    const auto id = bus.subscribeListener([&](const std::any&) {
        inside.open();
        leave.wait();
        left = true;
    });
    std::thread sender([&] { bus.sendEvent(Ping{}); });
    inside.wait();
    std::atomic<bool> leftWhenUnsubscribed{false};
    std::thread remover([&] {
        bus.unsubscribeListener(id);
        leftWhenUnsubscribed = left.load();
    });
    leave.open();
    remover.join();
    sender.join();
    EXPECT_TRUE(leftWhenUnsubscribed);
}

TEST(EventBus, DoesNotWaitForOtherListenersWhenOneIsUnsubscribed)
{
    EventBus bus;
    Gate inside, leave;
    bus.subscribeListener([&](const std::any&) {
        inside.open();
        leave.wait();
    });
    const auto idle = bus.subscribeListener([](const std::any&) {});
    std::thread sender([&] { bus.sendEvent(Ping{}); });
    inside.wait();
    bus.unsubscribeListener(idle);
    leave.open();
    sender.join();
}

TEST(EventBus, ReleasesWhatAListenerCapturedWhenItIsUnsubscribed)
{
    EventBus bus;
    auto captured = std::make_shared<int>(0);
    const auto id = bus.subscribeListener([captured](const std::any&) {});
    EXPECT_EQ(captured.use_count(), 2);
    bus.unsubscribeListener(id);
    EXPECT_EQ(captured.use_count(), 1);
}

TEST(EventBus, ReleasesWhatAListenerCapturedThatUnsubscribedItself)
{
    EventBus bus;
    auto captured = std::make_shared<int>(0);
    auto id = std::make_shared<std::uint32_t>(0);
    *id = bus.subscribeListener([captured, id, &bus](const std::any&) { bus.unsubscribeListener(*id); });
    bus.sendEvent(Ping{});
    EXPECT_EQ(captured.use_count(), 1);
}

TEST(EventBus, UnsubscribesEverybodyAtOnce)
{
    EventBus bus;
    int calls = 0;
    bus.subscribeListener([&](const std::any&) { ++calls; });
    bus.subscribeListener([&](const std::any&) { ++calls; });
    bus.unsubscribeAll();
    bus.unsubscribeAll();
    bus.sendEvent(Ping{});
    EXPECT_EQ(calls, 0);
    bus.subscribeListener([&](const std::any&) { ++calls; });
    bus.sendEvent(Ping{});
    EXPECT_EQ(calls, 1);
}

TEST(EventBus, CanBeDestroyedByItsOwnListener)
{
    auto bus = std::make_unique<EventBus>();
    int later = 0;
    bus->subscribeListener([&](const std::any&) { bus.reset(); });
    bus->subscribeListener([&](const std::any&) { ++later; });
    EventBus* raw = bus.get();
    EXPECT_TRUE(raw->sendEvent(Ping{}));
    EXPECT_EQ(bus, nullptr);
    EXPECT_EQ(later, 0);
}

TEST(EventBus, NeverCallsAListenerAfterUnsubscribeReturnedUnderARainOfEvents)
{
    EventBus bus;
    std::atomic<bool> stop{false};
    std::vector<std::thread> senders;
    for (int i = 0; i < 3; ++i)
        senders.emplace_back([&] {
            while (!stop)
                bus.sendEvent(Ping{});
        });
    std::atomic<int> callsOfDead{0};
    for (int round = 0; round < 2000; ++round) {
        auto alive = std::make_shared<std::atomic<bool>>(true);
        const auto id = bus.subscribeListener([alive, &callsOfDead](const std::any&) {
            if (!alive->load()) ++callsOfDead;
        });
        bus.unsubscribeListener(id);
        alive->store(false);
    }
    stop = true;
    for (std::thread& sender : senders)
        sender.join();
    EXPECT_EQ(callsOfDead, 0);
    EXPECT_EQ(bus.listenerCount(), 0u);
}
