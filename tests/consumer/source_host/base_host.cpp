#include <vesk/base/event_bus.h>
#include <vesk/base/future.h>

#include <any>
#include <iostream>

int main()
{
    int heard = 0;
    vesk::base::EventBus bus;
    bus.subscribeListener([&heard](const std::any& event) { heard = std::any_cast<int>(event); });
    bus.sendEvent(std::any(6));

    vesk::base::Promise<int> promise;
    const vesk::base::Future<int> answer =
        promise.getFuture().then([&heard](int value) { return heard * value; });
    promise.setValue(7);
    std::cout << answer.get() << "\n";
    return 0;
}
