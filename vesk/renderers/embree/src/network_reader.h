#pragma once

#include "material.h"

#include <pxr/base/tf/token.h>
#include <pxr/usd/usd/attribute.h>
#include <pxr/usd/usd/prim.h>
#include <pxr/usd/usd/timeCode.h>

#include <string>

namespace vesk::renderers::embree {

/// Follows connections from an attribute to the one that holds the value, invalid where they lead in a
/// circle. Of an output that is declared nowhere it is the node's id.
PXR_NS::UsdAttribute sourceOf(PXR_NS::UsdAttribute attribute);

/// Reads the inputs of shading nodes: values, through the interface of materials and node graphs too, and the
/// nodes of textures and primvars that feed them, UsdPreviewSurface's and MaterialX's.
class NetworkReader
{
public:
    NetworkReader(PXR_NS::UsdTimeCode time, TextureStore& textures) : m_time(time), m_textures(textures) {}

    /// One input of a surface. \param name without its namespace
    MaterialInput input(const PXR_NS::UsdPrim& shader, const char* name, MaterialInput fallback);

    /// The constant value of an input of one number.
    float number(const PXR_NS::UsdPrim& shader, const char* name, float fallback);

    /// Whether an input is fed by a node rather than a value.
    bool isFed(const PXR_NS::UsdPrim& shader, const char* name) const;

    /// The kind of a shading node.
    PXR_NS::TfToken idOf(const PXR_NS::UsdPrim& node) const;

private:
    bool _number(const PXR_NS::UsdPrim& node, const char* name, Vec4& value) const;
    template <class T>
    T _value(const PXR_NS::UsdPrim& node, const char* name, const T& fallback) const;
    std::string _text(const PXR_NS::UsdPrim& node, const char* name) const;

    void _readTexture(const PXR_NS::UsdPrim& node, TextureReader& reader);
    std::shared_ptr<const TextureReader> _previewTexture(const PXR_NS::UsdPrim& node);
    std::shared_ptr<const TextureReader> _imageTexture(const PXR_NS::UsdPrim& node, bool isColor);
    void _readCoordinates(const PXR_NS::UsdPrim& node, const char* name, TextureReader& reader);
    void _applyTransform(const PXR_NS::UsdPrim& node, TextureReader& reader) const;

    PXR_NS::UsdTimeCode m_time;
    TextureStore& m_textures;
};

} // namespace vesk::renderers::embree
