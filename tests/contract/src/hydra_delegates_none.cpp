#include "hydra_delegates.h"

namespace vesk::tests::contract {

std::vector<std::string> registerHydraDelegates() { return {}; }

} // namespace vesk::tests::contract
