#pragma once

#include <vesk/renderers/picture/vec3.h>

#include <pxr/base/gf/vec2i.h>

#include <cstdint>
#include <limits>
#include <vector>

namespace vesk::renderers::picture {

/// Sums of the samples of one pixel: working colours multiplied by their opacity.
struct FilmPixel
{
    Vec3 color;
    float alpha = 0.0f;
    float cost = 0.0f; ///< rays that were traced
};

/// What lies at the centre of one pixel.
struct GeometryPixel
{
    float viewDistance = std::numeric_limits<float>::infinity(); ///< along the view axis
    float windowDepth = 1.0f;                                    ///< 0 at the near plane, 1 at the far plane
    Vec3 normal;                                                 ///< world space
    Vec3 eyeNormal;                                              ///< camera space
    int prim = -1;                                               ///< number of the prim, -1 for none
    std::uint32_t placement = 0;                                 ///< number of the placement that was hit
    std::uint32_t item = 0;                                      ///< number of the item in its group
    int element = -1;                                            ///< face, curve or point of the prim
    int instance = -1;
};

/// The picture while it is made. Tiles write disjoint pixels, so no lock is needed.
class Film
{
public:
    Film() = default;
    explicit Film(const PXR_NS::GfVec2i& size)
        : m_size(size), m_pixels(static_cast<std::size_t>(size[0]) * static_cast<std::size_t>(size[1]))
    {}

    const PXR_NS::GfVec2i& size() const { return m_size; }
    int width() const { return m_size[0]; }
    int height() const { return m_size[1]; }

    std::size_t index(int x, int y) const
    {
        return static_cast<std::size_t>(y) * static_cast<std::size_t>(m_size[0]) +
               static_cast<std::size_t>(x);
    }

    FilmPixel& pixel(std::size_t i) { return m_pixels[i]; }
    const FilmPixel& pixel(std::size_t i) const { return m_pixels[i]; }
    std::size_t pixelCount() const { return m_pixels.size(); }

    /// Makes room for what lies at the pixels' centres.
    void addGeometry() { m_geometry.resize(m_pixels.size()); }
    bool hasGeometry() const { return !m_geometry.empty(); }
    GeometryPixel& geometry(std::size_t i) { return m_geometry[i]; }
    const GeometryPixel& geometry(std::size_t i) const { return m_geometry[i]; }

    /// Forgets the colours.
    void clearColors() { m_pixels.assign(m_pixels.size(), FilmPixel()); }

    /// Samples per pixel in the sums.
    int samples = 0;

private:
    PXR_NS::GfVec2i m_size{0, 0};
    std::vector<FilmPixel> m_pixels;
    std::vector<GeometryPixel> m_geometry;
};

} // namespace vesk::renderers::picture
