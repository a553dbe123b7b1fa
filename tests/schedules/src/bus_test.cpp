#include "schedule.h"

#include <vesk/base/event_bus.h>

#include <gtest/gtest.h>

#include <memory>

// A bus whose listeners come and go while others send.
namespace vesk::tests {
namespace {

using vesk::base::EventBus;

/// A listener that notes when it is called, and that must be left alone once `left` is true.
struct Guest
{
    explicit Guest(Schedule& current) : schedule(current) {}

    std::uint32_t subscribe(EventBus& bus)
    {
        return bus.subscribeListener([this, kept = kept](const std::any&) {
            EXPECT_FALSE(left) << "called after unsubscribeListener() returned";
            ++calls;
            schedule.step("inside");
            EXPECT_FALSE(left) << "still inside when unsubscribeListener() returned";
        });
    }

    Schedule& schedule;
    std::shared_ptr<int> kept = std::make_shared<int>(0);
    int calls = 0;
    bool left = false;
};

TEST(BusSchedules, UnsubscribeMeetsDelivery)
{
    const std::size_t count = everySchedule({"bus.", "inside", "left"}, [](Schedule& schedule) {
        EventBus bus;
        Guest guest(schedule);
        const std::uint32_t id = guest.subscribe(bus);
        schedule.run({[&] { EXPECT_TRUE(bus.sendEvent(1)); },
                      [&] {
                          bus.unsubscribeListener(id);
                          guest.left = true;
                          schedule.step("left");
                          EXPECT_EQ(guest.kept.use_count(), 1) << "what it captured is released";
                      }});
        EXPECT_EQ(bus.listenerCount(), 0u);
        EXPECT_LE(guest.calls, 1);
    });
    EXPECT_GT(count, 50u);
}

TEST(BusSchedules, SubscribeMeetsDelivery)
{
    const std::size_t count = everySchedule({"bus.", "inside"}, [](Schedule& schedule) {
        EventBus bus;
        Guest old(schedule), fresh(schedule);
        old.subscribe(bus);
        schedule.run({[&] {
                          bus.sendEvent(1);
                          bus.sendEvent(2);
                      },
                      [&] { fresh.subscribe(bus); }});
        EXPECT_EQ(old.calls, 2);
        EXPECT_LE(fresh.calls, 2);
        bus.sendEvent(3);
        EXPECT_EQ(old.calls, 3);
        EXPECT_GE(fresh.calls, 1);
    });
    EXPECT_GT(count, 50u);
}

TEST(BusSchedules, TheEndOfTheBusMeetsDelivery)
{
    const std::size_t count = everySchedule({"bus.", "inside", "left"}, [](Schedule& schedule) {
        const auto bus = std::make_shared<EventBus>();
        Guest first(schedule), second(schedule);
        first.subscribe(*bus);
        second.subscribe(*bus);
        schedule.run({[&] { bus->sendEvent(1); },
                      [&] {
                          bus->unsubscribeAll();
                          first.left = second.left = true;
                          schedule.step("left");
                      }});
        EXPECT_EQ(first.kept.use_count(), 1);
        EXPECT_EQ(second.kept.use_count(), 1);
    });
    EXPECT_GT(count, 100u);
}

TEST(BusSchedules, UnsubscribeMeetsTwoDeliveries)
{
    const std::size_t count =
        everySchedule({"bus.send", "bus.enter", "bus.call", "bus.leave", "bus.removed", "inside", "left"},
                      [](Schedule& schedule) {
                          EventBus bus;
                          Guest guest(schedule);
                          const std::uint32_t id = guest.subscribe(bus);
                          const auto send = [&] { bus.sendEvent(1); };
                          const auto leave = [&] {
                              bus.unsubscribeListener(id);
                              guest.left = true;
                              schedule.step("left");
                          };
                          schedule.run({send, send, leave});
                          EXPECT_LE(guest.calls, 2);
                          EXPECT_EQ(guest.kept.use_count(), 1);
                      });
    EXPECT_GT(count, 5'000u);
}

TEST(BusSchedules, AListenerThatLeavesMeetsAnotherDelivery)
{
    const std::size_t count = everySchedule({"bus.enter", "bus.call", "bus.leave", "bus.removed", "inside"},
                                            [](Schedule& schedule) {
                                                EventBus bus;
                                                const auto kept = std::make_shared<int>(0);
                                                std::uint32_t id = 0;
                                                int calls = 0;
                                                id = bus.subscribeListener([&, kept](const std::any&) {
                                                    ++calls;
                                                    schedule.step("inside");
                                                    bus.unsubscribeListener(id);
                                                });
                                                const auto send = [&] { bus.sendEvent(1); };
                                                schedule.run({send, send});
                                                EXPECT_GE(calls, 1);
                                                EXPECT_LE(calls, 2);
                                                EXPECT_EQ(kept.use_count(), 1);
                                                EXPECT_EQ(bus.listenerCount(), 0u);
                                            });
    EXPECT_GT(count, 100u);
}

TEST(BusSchedules, TwoListenersThatLeaveMeetOneDelivery)
{
    const std::size_t count = everySchedule({"bus.enter", "inside", "left"}, [](Schedule& schedule) {
        EventBus bus;
        Guest first(schedule), second(schedule);
        const std::uint32_t firstId = first.subscribe(bus);
        const std::uint32_t secondId = second.subscribe(bus);
        const auto leave = [&](Guest& guest, std::uint32_t id) {
            bus.unsubscribeListener(id);
            guest.left = true;
            schedule.step("left");
        };
        schedule.run(
            {[&] { bus.sendEvent(1); }, [&] { leave(first, firstId); }, [&] { leave(second, secondId); }});
        EXPECT_EQ(bus.listenerCount(), 0u);
    });
    EXPECT_GT(count, 50u);
}

} // namespace
} // namespace vesk::tests
