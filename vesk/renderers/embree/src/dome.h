#pragma once

#include "drawing.h"
#include "sampling.h"
#include "texture.h"

#include <memory>
#include <vector>

namespace vesk::renderers::embree {

/// Light from all around: one colour, or a picture in latitude and longitude whose pole is the dome's +y and
/// whose middle its +z.
class Dome
{
public:
    /// \param texture null for one colour
    /// \param toDome turns directions of the world into the dome's
    Dome(Vec3 color, std::shared_ptr<const Texture> texture, const Mat3& toDome);

    /// Whether a picture makes it differ from place to place.
    bool isTextured() const { return m_texture != nullptr; }
    Vec3 color() const { return m_color; }

    /// What comes from a direction of the world, unit length.
    Vec3 radiance(Vec3 direction) const;

    /// A direction that is likelier where the picture is brighter, with its density over the solid angle.
    Vec3 sample(Sample2 s, float& density) const;

    /// The density with which `sample` gives a direction.
    float density(Vec3 direction) const;

private:
    void _placeOf(Vec3 local, float& u, float& v) const;

    Vec3 m_color;
    std::shared_ptr<const Texture> m_texture;
    Mat3 m_toDome;
    std::shared_ptr<const std::vector<float>> m_cells; ///< sums of the brightness of all cells up to each
};

} // namespace vesk::renderers::embree
