#include "pxr/usd/usd/clipTimes.h"

#include <pxr/base/gf/interval.h>
#include <pxr/base/gf/vec2d.h>
#include <pxr/base/vt/array.h>
#include <pxr/usd/usd/timeCode.h>

#include <algorithm>

PXR_NAMESPACE_OPEN_SCOPE

namespace {

// The point at x of the line through (x0, y0) and (x1, y1). Its ends come out exactly.
double alongLine(double x, double x0, double y0, double x1, double y1)
{
    if (x0 == x1 || x == x0) {
        return y0;
    }
    if (x == x1) {
        return y1;
    }
    return (y1 - y0) / (x1 - x0) * (x - x0) + y0;
}

bool isEarlier(const Usd_ClipTimes::Knot& a, const Usd_ClipTimes::Knot& b)
{
    return a.stageTime < b.stageTime;
}

} // namespace

Usd_ClipTimes::Usd_ClipTimes(const VtVec2dArray& authored)
{
    if (authored.empty()) {
        return;
    }
    for (const GfVec2d& pair : authored) {
        _knots.push_back({pair[0], pair[1], false});
    }
    std::stable_sort(_knots.begin(), _knots.end(), &isEarlier);
    for (size_t i = 0; i + 1 < _knots.size(); ++i) {
        // The last moment before a jump is a knot of its own.
        if (_knots[i].stageTime == _knots[i + 1].stageTime) {
            _knots[i].stageTime -= UsdTimeCode::SafeStep();
            _knots[i].isJump = true;
        }
    }
    const Knot first = _knots.front();
    const Knot last = _knots.back();
    _knots.insert(_knots.begin(), first);
    _knots.push_back(last);
}

std::size_t Usd_ClipTimes::_FindSegment(double stageTime) const
{
    if (stageTime <= _knots.front().stageTime) {
        return 0;
    }
    if (stageTime >= _knots.back().stageTime) {
        return _knots.size() - 2;
    }
    const auto end = std::lower_bound(_knots.begin(), _knots.end(), Knot{stageTime, 0.0, false}, &isEarlier);
    return static_cast<std::size_t>(end - _knots.begin()) - 1;
}

// Where a segment ends at a jump, its line leads on to the moment of the jump as it is written.
Usd_ClipTimes::Knot Usd_ClipTimes::_GetEnd(std::size_t segment) const
{
    Knot end = _knots[segment + 1];
    if (end.isJump) {
        end.stageTime = _knots[segment + 2].stageTime;
    }
    return end;
}

double Usd_ClipTimes::ToClip(double stageTime) const
{
    if (_knots.empty()) {
        return stageTime;
    }
    const std::size_t segment = _FindSegment(stageTime);
    const Knot& begin = _knots[segment];
    const Knot end = _GetEnd(segment);
    return alongLine(stageTime, begin.stageTime, begin.clipTime, end.stageTime, end.clipTime);
}

double Usd_ClipTimes::_ToStage(double clipTime, std::size_t segment) const
{
    const Knot& begin = _knots[segment];
    const Knot end = _GetEnd(segment);
    return alongLine(clipTime, begin.clipTime, begin.stageTime, end.clipTime, end.stageTime);
}

std::optional<double> Usd_ClipTimes::_FindInSegment(double clipTime, std::size_t segment, bool isLower,
                                                    bool isSingle, double stageTime) const
{
    const Knot& begin = _knots[segment];
    const Knot& end = _knots[segment + 1];
    if (begin.isJump || clipTime < std::min(begin.clipTime, end.clipTime) ||
        clipTime > std::max(begin.clipTime, end.clipTime)) {
        return std::nullopt;
    }
    if (begin.clipTime != end.clipTime) {
        return _ToStage(clipTime, segment);
    }
    // The segment shows one time of the clip all along.
    if (isSingle && (stageTime == begin.stageTime || stageTime == end.stageTime)) {
        return stageTime;
    }
    return isLower ? begin.stageTime : end.stageTime;
}

std::optional<double> Usd_ClipTimes::_Clamp(double clipTime) const
{
    if (clipTime < _knots.front().clipTime) {
        return _knots.front().stageTime;
    }
    if (clipTime > _knots.back().clipTime) {
        return _knots.back().stageTime;
    }
    return std::nullopt;
}

std::optional<std::pair<double, double>> Usd_ClipTimes::FindStageTimes(double stageTime, double lowerInClip,
                                                                       double upperInClip) const
{
    if (_knots.empty()) {
        return std::make_pair(lowerInClip, upperInClip);
    }
    const std::size_t segment = _FindSegment(stageTime);
    const bool isSingle = lowerInClip == upperInClip;
    std::optional<double> lower;
    std::optional<double> upper;
    for (std::size_t i = segment + 1; !lower && i-- > 0;) {
        lower = _FindInSegment(lowerInClip, i, true, isSingle, stageTime);
    }
    for (std::size_t i = segment; !upper && i + 1 < _knots.size(); ++i) {
        upper = _FindInSegment(upperInClip, i, false, isSingle, stageTime);
    }
    if (!lower && !upper) {
        lower = _Clamp(lowerInClip);
        upper = _Clamp(upperInClip);
    }
    if (!lower && !upper) {
        return std::nullopt;
    }
    return std::make_pair(lower ? *lower : *upper, upper ? *upper : *lower);
}

void Usd_ClipTimes::AddStageTimes(double clipTime, double begin, double end,
                                  std::set<double>* stageTimes) const
{
    const GfInterval active(begin, end, /*minClosed=*/true, /*maxClosed=*/false);
    const auto add = [&](double time) {
        if (active.Contains(time)) {
            stageTimes->insert(time);
        }
    };
    if (_knots.empty()) {
        add(clipTime);
        return;
    }
    for (std::size_t i = 0; i + 1 < _knots.size(); ++i) {
        const Knot& from = _knots[i];
        const Knot& to = _knots[i + 1];
        if (from.isJump || !GfInterval(from.stageTime, to.stageTime).Intersects(active) ||
            clipTime < std::min(from.clipTime, to.clipTime) ||
            clipTime > std::max(from.clipTime, to.clipTime)) {
            continue;
        }
        if (from.clipTime == to.clipTime) {
            add(from.stageTime);
            add(to.stageTime);
        } else {
            add(_ToStage(clipTime, i));
        }
    }
}

PXR_NAMESPACE_CLOSE_SCOPE
