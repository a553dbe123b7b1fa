#pragma once

#include "drawing.h"
#include "image_decoding.h"

#include <map>
#include <memory>
#include <mutex>
#include <string>
#include <vector>

namespace vesk::renderers::embree {

enum class TextureWrap : std::uint8_t
{
    Black,
    Clamp,
    Repeat,
    Mirror
};

enum class TextureColorSpace : std::uint8_t
{
    Auto, ///< sRGB for 8-bit colour, raw for the others
    Raw,
    Srgb
};

/// An image that is read when it is first needed. Thread: any.
class Texture
{
public:
    /// \param path resolved; may name a member of a package
    explicit Texture(std::string path) : m_path(std::move(path)) {}

    /// A texture of pixels that are there already.
    explicit Texture(DecodedImage image);

    /// Reads the image unless that was tried before. Logs: warn, when it cannot be read.
    void load() const;

    /// Whether there is an image; reads it first where necessary.
    bool isUsable() const;

    int width() const { return m_image.width; }
    int height() const { return m_image.height; }

    /// The linear value at texture coordinates, (0, 0) at the lower left corner, blended between four pixels.
    /// \param footprint how wide the place that is looked at is, in texture coordinates: what is wider than a
    /// pixel of the picture shows the mean of those that it covers (blended between copies that halve the
    /// picture, Williams 1983); 0 for a point
    Vec4 sample(float s, float t, TextureWrap wrapS, TextureWrap wrapT, TextureColorSpace space,
                float footprint = 0.0f) const;

    const std::string& path() const { return m_path; }

private:
    Vec4 _blend(const DecodedImage& image, float s, float t, TextureWrap wrapS, TextureWrap wrapT,
                bool decode) const;
    const DecodedImage& _level(int level, bool decode) const;

    std::string m_path;
    mutable std::once_flag m_once;
    mutable DecodedImage m_image;
    /// Copies of the image, each half as wide and high as the one before.
    struct Smaller
    {
        std::once_flag once;
        std::vector<DecodedImage> levels;
    };
    mutable Smaller m_smaller[2]; ///< means of the numbers, and of the light that they stand for
};

/// The textures of one renderer by path: an image is read once, whoever uses it. Thread: any.
class TextureStore
{
public:
    /// The texture of a path, the same one while anybody holds it.
    std::shared_ptr<const Texture> at(const std::string& path);

private:
    std::mutex m_mutex;
    std::map<std::string, std::weak_ptr<const Texture>> m_textures;
};

} // namespace vesk::renderers::embree
