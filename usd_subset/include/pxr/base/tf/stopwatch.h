#pragma once

/// Measuring how long things take.

#include <pxr/pxr.h>

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <ostream>

PXR_NAMESPACE_OPEN_SCOPE

/// Adds up the time between starts and stops.
class TfStopwatch
{
public:
    void Start() { _start = _Clock::now(); }
    void Stop()
    {
        _total += _Clock::now() - _start;
        ++_samples;
    }
    void Reset() { *this = TfStopwatch(); }
    /// Adds what the other one measured.
    void AddFrom(const TfStopwatch& other)
    {
        _total += other._total;
        _samples += other._samples;
    }

    int64_t GetNanoseconds() const
    {
        return std::chrono::duration_cast<std::chrono::nanoseconds>(_total).count();
    }
    int64_t GetMicroseconds() const { return GetNanoseconds() / 1000; }
    int64_t GetMilliseconds() const { return GetNanoseconds() / 1000000; }
    double GetSeconds() const { return std::chrono::duration<double>(_total).count(); }
    /// How often it was stopped.
    size_t GetSampleCount() const { return _samples; }

private:
    using _Clock = std::chrono::steady_clock;

    _Clock::time_point _start;
    _Clock::duration _total{0};
    size_t _samples = 0;
};

inline std::ostream& operator<<(std::ostream& out, const TfStopwatch& watch)
{
    return out << watch.GetSeconds() << " seconds";
}

PXR_NAMESPACE_CLOSE_SCOPE
