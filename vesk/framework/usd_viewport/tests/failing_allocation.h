#pragma once

namespace vesk::framework::usd_viewport::tests {

/// Lets the next allocation of the calling thread fail with `std::bad_alloc`, and that one only.
void failNextAllocation();

} // namespace vesk::framework::usd_viewport::tests
