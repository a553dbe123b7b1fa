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
    float cost = 0.0f;    ///< rays that were traced
    float samples = 0.0f; ///< in the sums; pixels of a pass that was left differ
};

/// Which prim lies at the centre of one pixel.
struct IdPixel
{
    int prim = -1;               ///< number of the prim, -1 for none
    std::uint32_t placement = 0; ///< number of the placement that was hit
    std::uint32_t item = 0;      ///< number of the item in its group
    int element = -1;            ///< face, curve or point of the prim
    int instance = -1;
};

/// How far away the surface at the centre of one pixel is.
struct DepthPixel
{
    float viewDistance = std::numeric_limits<float>::infinity(); ///< along the view axis
    float windowDepth = 1.0f;                                    ///< 0 at the near plane, 1 at the far plane
};

/// How the surface at the centre of one pixel is turned.
struct NormalPixel
{
    Vec3 world;
    Vec3 eye; ///< camera space
};

/// What a film holds of each pixel: what nobody asked for is neither traced nor stored.
struct FilmParts
{
    bool colors = true;
    bool ids = false;
    bool depths = false;
    bool normals = false;

    bool anyGeometry() const { return ids || depths || normals; }
};

/// The picture while it is made. Tiles write disjoint pixels, so no lock is needed.
class Film
{
public:
    Film() = default;
    /// \param size width and height in pixels
    /// \param origin the picture's pixel that is the film's first one
    explicit Film(const PXR_NS::GfVec2i& size, const FilmParts& parts = FilmParts(),
                  const PXR_NS::GfVec2i& origin = PXR_NS::GfVec2i(0, 0))
        : m_size(size), m_origin(origin), m_parts(parts)
    {
        if (parts.colors) m_pixels.resize(pixelCount());
        if (parts.ids) m_ids.resize(pixelCount());
        if (parts.depths) m_depths.resize(pixelCount());
        if (parts.normals) m_normals.resize(pixelCount());
    }

    const PXR_NS::GfVec2i& size() const { return m_size; }
    int width() const { return m_size[0]; }
    int height() const { return m_size[1]; }
    std::size_t pixelCount() const
    {
        return static_cast<std::size_t>(m_size[0]) * static_cast<std::size_t>(m_size[1]);
    }
    const FilmParts& parts() const { return m_parts; }

    /// The number of a pixel by its place in the picture.
    std::size_t index(int x, int y) const
    {
        return static_cast<std::size_t>(y - m_origin[1]) * static_cast<std::size_t>(m_size[0]) +
               static_cast<std::size_t>(x - m_origin[0]);
    }

    FilmPixel& pixel(std::size_t i) { return m_pixels[i]; }
    const FilmPixel& pixel(std::size_t i) const { return m_pixels[i]; }
    IdPixel& ids(std::size_t i) { return m_ids[i]; }
    const IdPixel& ids(std::size_t i) const { return m_ids[i]; }
    DepthPixel& depths(std::size_t i) { return m_depths[i]; }
    const DepthPixel& depths(std::size_t i) const { return m_depths[i]; }
    NormalPixel& normals(std::size_t i) { return m_normals[i]; }
    const NormalPixel& normals(std::size_t i) const { return m_normals[i]; }

private:
    PXR_NS::GfVec2i m_size{0, 0};
    PXR_NS::GfVec2i m_origin{0, 0};
    FilmParts m_parts;
    std::vector<FilmPixel> m_pixels;
    std::vector<IdPixel> m_ids;
    std::vector<DepthPixel> m_depths;
    std::vector<NormalPixel> m_normals;
};

} // namespace vesk::renderers::picture
