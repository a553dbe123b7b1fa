#include "material.h"

namespace vesk::renderers::embree {

std::vector<const Texture*> Material::textures() const
{
    std::vector<const Texture*> found;
    for (const MaterialInput* input : {&diffuse, &emission, &specular, &roughness, &metallic, &opacity,
                                       &clearcoat, &clearcoatRoughness, &normal}) {
        if (input->texture && input->texture->texture) found.push_back(input->texture->texture.get());
    }
    return found;
}

} // namespace vesk::renderers::embree
