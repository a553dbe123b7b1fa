#pragma once

/// Forward declarations of the types of this library.

#include <pxr/pxr.h>

PXR_NAMESPACE_OPEN_SCOPE

class GfBBox3d;
class GfCamera;
class GfFrustum;
class GfInterval;
class GfLine;
class GfLineSeg;
class GfMatrix2d;
class GfMatrix2f;
class GfMatrix3d;
class GfMatrix3f;
class GfMatrix4d;
class GfMatrix4f;
class GfPlane;
class GfQuatd;
class GfQuaternion;
class GfQuatf;
class GfQuath;
class GfRange1d;
class GfRange1f;
class GfRange2d;
class GfRange2f;
class GfRange3d;
class GfRange3f;
class GfRay;
class GfRect2i;
class GfRotation;
class GfSize2;
class GfSize3;
class GfTransform;
class GfVec2d;
class GfVec2f;
class GfVec2h;
class GfVec2i;
class GfVec3d;
class GfVec3f;
class GfVec3h;
class GfVec3i;
class GfVec4d;
class GfVec4f;
class GfVec4h;
class GfVec4i;

PXR_NAMESPACE_CLOSE_SCOPE
