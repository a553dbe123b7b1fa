#pragma once

#include <pxr/base/vt/types.h>
#include <pxr/pxr.h>

#include <cstddef>
#include <optional>
#include <set>
#include <utility>
#include <vector>

PXR_NAMESPACE_OPEN_SCOPE

/// Translates between the stage's times and those in clips, piecewise linearly between knots. Two knots at
/// the same time of the stage are a jump. Without knots both times are the same.
class Usd_ClipTimes
{
public:
    struct Knot
    {
        double stageTime;
        double clipTime;
        bool isJump; ///< whether what follows is a jump: nothing lies between this knot and the next
    };

    Usd_ClipTimes() = default;
    /// @param authored pairs of stage time and clip time in any order
    explicit Usd_ClipTimes(const VtVec2dArray& authored);

    bool IsEmpty() const { return _knots.empty(); }
    /// Sorted by the stage's time; the first and the last one are there twice.
    const std::vector<Knot>& GetKnots() const { return _knots; }

    double ToClip(double stageTime) const;
    /// Translates two neighbouring times in a clip to those times of the stage that lie around one; none when
    /// no knots lead there.
    std::optional<std::pair<double, double>> FindStageTimes(double stageTime, double lowerInClip,
                                                            double upperInClip) const;
    /// Adds all times of the stage, from begin and before end, at which a clip's time is shown.
    void AddStageTimes(double clipTime, double begin, double end, std::set<double>* stageTimes) const;

private:
    std::size_t _FindSegment(double stageTime) const;
    Knot _GetEnd(std::size_t segment) const;
    double _ToStage(double clipTime, std::size_t segment) const;
    /// The time of the stage at which a segment shows a clip's time, if it does.
    std::optional<double> _FindInSegment(double clipTime, std::size_t segment, bool isLower, bool isSingle,
                                         double stageTime) const;
    std::optional<double> _Clamp(double clipTime) const;

    std::vector<Knot> _knots;
};

PXR_NAMESPACE_CLOSE_SCOPE
