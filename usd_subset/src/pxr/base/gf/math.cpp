#include <pxr/base/gf/math.h>

PXR_NAMESPACE_OPEN_SCOPE

namespace {

// The remainder c of a / b as GfMod() defines it.
double ModResult(double a, double b, double c) { return a < 0 && c != 0 ? b + c : (a < 0 ? 0 : c); }

} // namespace

double GfMod(double a, double b) { return ModResult(a, b, std::fmod(a, b)); }

float GfMod(float a, float b) { return static_cast<float>(ModResult(a, b, std::fmod(a, b))); }

double GfSmoothStep(double min, double max, double val, double slope0, double slope1)
{
    if (val >= max) {
        return 1.0;
    }
    if (val < min) {
        return 0.0;
    }
    const double width = max - min;
    const double h = (val - min) / width;
    const double h2 = h * h;
    const double h3 = h2 * h;
    double v = -2.0 * h3 + 3.0 * h2;
    if (slope0 != 0.0) {
        v += (h3 - 2 * h2 + h) * (slope0 / width);
    }
    if (slope1 != 0.0) {
        v += (h3 - h2) * (slope1 / width);
    }
    return v;
}

double GfSmoothRamp(double tmin, double tmax, double t, double w0, double w1)
{
    if (t <= tmin) {
        return 0.0;
    }
    if (t >= tmax) {
        return 1.0;
    }
    const double x = (t - tmin) / (tmax - tmin);
    const double xr = 2.0 - w0 - w1;
    if (x < w0) {
        return (x * x) / (w0 * xr);
    }
    if (x > 1.0 - w1) {
        return 1.0 - ((1.0 - x) * (1.0 - x)) / (w1 * xr);
    }
    return (2.0 * x - w0) / xr;
}

PXR_NAMESPACE_CLOSE_SCOPE
