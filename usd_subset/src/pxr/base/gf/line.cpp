#include <pxr/base/gf/line.h>
#include <pxr/base/gf/lineSeg.h>
#include <pxr/base/gf/math.h>

#include <ostream>

PXR_NAMESPACE_OPEN_SCOPE

namespace {

template <class T>
void SetUnlessNull(T* result, const T& value)
{
    if (result) {
        *result = value;
    }
}

} // namespace

GfVec3d GfLine::FindClosestPoint(const GfVec3d& point, double* t) const
{
    const double parameter = GfDot(point - _p0, _dir);
    SetUnlessNull(t, parameter);
    return GetPoint(parameter);
}

bool GfFindClosestPoints(const GfLine& l1, const GfLine& l2, GfVec3d* p1, GfVec3d* p2, double* t1, double* t2)
{
    // The connection of the points is orthogonal to both directions, which gives two linear equations:
    //   t2 * (d1.d2) - t1 * (d1.d1) = d1.(p1 - p2)
    //   t2 * (d2.d2) - t1 * (d1.d2) = d2.(p1 - p2)
    const GfVec3d& d1 = l1.GetDirection();
    const GfVec3d& d2 = l2.GetDirection();
    const GfVec3d o1 = l1.GetPoint(0.0);
    const GfVec3d o2 = l2.GetPoint(0.0);
    const double a = GfDot(d1, d2);
    const double b = GfDot(d1, d1);
    const double c = GfDot(d1, o1) - GfDot(d1, o2);
    const double d = GfDot(d2, d2);
    const double f = GfDot(d2, o1) - GfDot(d2, o2);
    const double denominator = a * a - b * d;
    if (GfIsClose(denominator, 0, 1e-6)) {
        return false;
    }
    const double parameter1 = (c * d - a * f) / denominator;
    const double parameter2 = (c * a - b * f) / denominator;
    SetUnlessNull(p1, l1.GetPoint(parameter1));
    SetUnlessNull(p2, l2.GetPoint(parameter2));
    SetUnlessNull(t1, parameter1);
    SetUnlessNull(t2, parameter2);
    return true;
}

std::ostream& operator<<(std::ostream& out, const GfLine& line)
{
    return out << "(point:" << line.GetPoint(0.0) << " direction:" << line.GetDirection() << ')';
}

GfVec3d GfLineSeg::FindClosestPoint(const GfVec3d& point, double* t) const
{
    double parameter = 0.0;
    if (_length != 0.0) {
        _line.FindClosestPoint(point, &parameter);
        parameter = GfClamp(parameter / _length, 0.0, 1.0);
    }
    SetUnlessNull(t, parameter);
    return GetPoint(parameter);
}

bool GfFindClosestPoints(const GfLine& line, const GfLineSeg& seg, GfVec3d* p1, GfVec3d* p2, double* t1,
                         double* t2)
{
    GfVec3d onLine;
    double lineParameter, segParameter;
    if (!GfFindClosestPoints(line, seg._line, &onLine, nullptr, &lineParameter, &segParameter)) {
        return false;
    }
    segParameter = GfClamp(segParameter / seg._length, 0.0, 1.0);
    const GfVec3d onSeg = seg.GetPoint(segParameter);
    if (segParameter <= 0 || segParameter >= 1) {
        onLine = line.FindClosestPoint(onSeg, &lineParameter);
    }
    SetUnlessNull(p1, onLine);
    SetUnlessNull(p2, onSeg);
    SetUnlessNull(t1, lineParameter);
    SetUnlessNull(t2, segParameter);
    return true;
}

bool GfFindClosestPoints(const GfLineSeg& seg1, const GfLineSeg& seg2, GfVec3d* p1, GfVec3d* p2, double* t1,
                         double* t2)
{
    double parameter1, parameter2;
    if (!GfFindClosestPoints(seg1._line, seg2._line, nullptr, nullptr, &parameter1, &parameter2)) {
        return false;
    }
    parameter1 = GfClamp(parameter1 / seg1._length, 0.0, 1.0);
    parameter2 = GfClamp(parameter2 / seg2._length, 0.0, 1.0);
    SetUnlessNull(p1, seg1.GetPoint(parameter1));
    SetUnlessNull(p2, seg2.GetPoint(parameter2));
    SetUnlessNull(t1, parameter1);
    SetUnlessNull(t2, parameter2);
    return true;
}

std::ostream& operator<<(std::ostream& out, const GfLineSeg& seg)
{
    return out << "(point 1:" << seg.GetPoint(0.0) << " point 2:" << seg.GetPoint(1.0) << ')';
}

PXR_NAMESPACE_CLOSE_SCOPE
