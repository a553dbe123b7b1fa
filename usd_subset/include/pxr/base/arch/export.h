#pragma once

/// The subset has no use for this header, and every library of a real OpenUSD has: who arrives here has
/// included a header of a real OpenUSD, found further down the include path.

#error                                                                                                       \
    "A header of a real OpenUSD was included beside the embedded subset of OpenUSD that this vesk was built on. Build vesk with VESK_USD_PROVIDER=installed on that OpenUSD, or take its headers off the include path."
