#pragma once

#include <pxr/base/gf/vec2i.h>

#include <cstdint>
#include <mutex>

namespace vesk::renderers::embree {

/// How long a sample takes on this machine in the scene that is shown, and how coarse a first image has to be
/// so that it comes fast. Thread: any.
class SampleRate
{
public:
    static constexpr double kFirstImageSeconds = 0.02;  ///< what a first image may take
    static constexpr std::int64_t kMostSamples = 60000; ///< of a first image, however fast they are
    static constexpr std::int64_t kFewestSamples = 3600;
    static constexpr int kLargestBlock = 64;

    /// Takes up how long a pass took. \param seconds wall time, as it includes what other programs take
    void note(double seconds, std::int64_t samples);

    /// The width of the squares of pixels that share a sample in the first image of a picture: a power of
    /// two, 1 for pictures of up to `kMostSamples` pixels.
    int blockFor(const PXR_NS::GfVec2i& size) const;

private:
    mutable std::mutex m_mutex;
    double m_secondsPerSample = 1e-6; // of a machine nothing is known of
};

} // namespace vesk::renderers::embree
