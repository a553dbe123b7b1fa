#pragma once

#include <string>

namespace vesk::apps {

/// Three lines: the version of vesk, the OpenUSD that it stands on, and the registered renderers, the default
/// first.
std::string versionText();

} // namespace vesk::apps
