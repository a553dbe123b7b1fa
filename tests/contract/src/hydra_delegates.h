#pragma once

#include <string>
#include <vector>

namespace vesk::tests::contract {

/// Registers a renderer for each of Hydra's render delegates and returns their ids; none where this build
/// stands on the embedded OpenUSD, which has no Hydra.
std::vector<std::string> registerHydraDelegates();

} // namespace vesk::tests::contract
