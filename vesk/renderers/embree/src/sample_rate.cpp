#include "sample_rate.h"

#include <algorithm>
#include <cmath>

PXR_NAMESPACE_USING_DIRECTIVE

namespace vesk::renderers::embree {

void SampleRate::note(double seconds, std::int64_t samples)
{
    const double cost = seconds / static_cast<double>(samples);
    if (samples <= 0 || !std::isfinite(cost) || cost <= 0.0) return;
    const std::lock_guard lock(m_mutex);
    // A pass that was held up once must not coarsen all that follow.
    m_secondsPerSample = 0.5 * (m_secondsPerSample + std::min(cost, 8.0 * m_secondsPerSample));
}

int SampleRate::blockFor(const GfVec2i& size) const
{
    const std::int64_t pixels = static_cast<std::int64_t>(size[0]) * size[1];
    if (pixels <= kMostSamples) return 1;
    const auto samplesAt = [&size](int block) {
        const auto parts = [block](int length) {
            return (static_cast<std::int64_t>(length) + block - 1) / block;
        };
        return parts(size[0]) * parts(size[1]);
    };
    const std::lock_guard lock(m_mutex);
    const double affordable = kFirstImageSeconds / m_secondsPerSample;
    int block = 2;
    while (block < kLargestBlock && samplesAt(block) > kMostSamples)
        block *= 2;
    while (block<kLargestBlock&& static_cast<double>(samplesAt(block))> affordable &&
           samplesAt(2 * block) >= kFewestSamples) {
        block *= 2;
    }
    return block;
}

} // namespace vesk::renderers::embree
