#pragma once

#include <pxr/base/gf/camera.h>
#include <pxr/base/gf/matrix4d.h>
#include <pxr/base/gf/range3f.h>
#include <pxr/base/gf/vec3d.h>

#include <nlohmann/json.hpp>

#include <string>

namespace vesk::apps {

/// JSON whose keys keep the order in which they were written.
using Json = nlohmann::ordered_json;

/// A number in full precision; NaN and the infinities are the texts "nan", "inf" and "-inf".
/// A float is widened to double first.
Json jsonNumber(double value);

/// [x, y, z]
Json jsonVector(const PXR_NS::GfVec3d& vector);

/// Four rows of four.
Json jsonMatrix(const PXR_NS::GfMatrix4d& matrix);

/// {"empty", "min", "max"}; min and max are null when the range is empty.
Json jsonBounds(const PXR_NS::GfRange3f& bounds);

/// Every field of a camera with full precision: transform (row vectors, world space), projection, apertures
/// and offsets and focal length (tenths of a scene unit), fStop, focusDistance and clippingRange (scene
/// units).
Json jsonCamera(const PXR_NS::GfCamera& camera);

/// The JSON on one line, as a session's line is printed. A decimal is the shortest text that reads back
/// equal, always with a point or an exponent, so that it stays a decimal (and -0.0 keeps its sign). Bytes
/// that are no UTF-8 are replaced.
std::string jsonLine(const Json& json);

} // namespace vesk::apps
