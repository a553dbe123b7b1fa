#pragma once

#include <vesk/framework/usd_viewport/viewport_model.h>

#include <condition_variable>
#include <cstdint>
#include <mutex>
#include <unordered_map>
#include <vector>

namespace vesk::framework::usd_viewport::tests {

/// What tests look at inside a model.
struct PrivateMembers
{
    std::mutex& cameraMutex;
    std::mutex& boundsMutex;
    std::mutex& waitMutex;
    std::unordered_map<std::uint32_t, bool>& waiters;
    std::condition_variable& frameCondition;
};

PrivateMembers membersOf(ViewportModel& model);

/// The addresses of the model's members in the order in which they have to be declared: they are destroyed in
/// the reverse one.
std::vector<const void*> addressesInOrder(ViewportModel& model);

} // namespace vesk::framework::usd_viewport::tests
