#pragma once

#include <vesk/base/executor.h>

namespace vesk::renderers::hydra {

/// A lane of the one thread on which this process draws with Hydra: every engine is made, used and destroyed
/// there, and every graphics context is current there. Nothing that runs on it waits for anybody.
/// Thread: any.
const base::ExecutorPtr& drawThread(base::Priority priority);

} // namespace vesk::renderers::hydra
