#include "jitter.h"

PXR_NAMESPACE_USING_DIRECTIVE

namespace vesk::renderers::hydra {
namespace {

double radicalInverse(int index, int base)
{
    double result = 0.0;
    double part = 1.0 / base;
    for (int rest = index; rest > 0; rest /= base, part /= base)
        result += part * (rest % base);
    return result;
}

constexpr double kReach = 0.25; // pixels

} // namespace

GfVec2d jitterOf(int index, int count)
{
    if (index <= 0 || count <= 1) return GfVec2d(0.0);
    return GfVec2d(radicalInverse(index, 2) - 0.5, radicalInverse(index, 3) - 0.5) * kReach;
}

} // namespace vesk::renderers::hydra
