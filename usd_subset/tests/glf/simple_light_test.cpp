#include <pxr/base/gf/matrix4d.h>
#include <pxr/base/gf/rotation.h>
#include <pxr/base/vt/value.h>
#include <pxr/imaging/glf/simpleLight.h>
#include <pxr/imaging/glf/simpleMaterial.h>

#include <gtest/gtest.h>

#include <functional>
#include <sstream>
#include <vector>

PXR_NAMESPACE_USING_DIRECTIVE

namespace {

TEST(SimpleLight, StartsAsAWhitePointLightWithoutShadow)
{
    const GlfSimpleLight light;
    EXPECT_EQ(light.GetPosition(), GfVec4f(0, 0, 0, 1));
    EXPECT_EQ(light.GetAmbient(), GfVec4f(0.2f, 0.2f, 0.2f, 1));
    EXPECT_EQ(light.GetDiffuse(), GfVec4f(1));
    EXPECT_EQ(light.GetSpecular(), GfVec4f(1));
    EXPECT_EQ(light.GetSpotDirection(), GfVec3f(0, 0, -1));
    EXPECT_EQ(light.GetSpotCutoff(), 180);
    EXPECT_EQ(light.GetSpotFalloff(), 0);
    EXPECT_EQ(light.GetAttenuation(), GfVec3f(1, 0, 0));
    EXPECT_EQ(light.GetTransform(), GfMatrix4d(1));
    EXPECT_EQ(light.GetShadowMatrices(), std::vector<GfMatrix4d>(1, GfMatrix4d(1)));
    EXPECT_EQ(light.GetShadowResolution(), 512);
    EXPECT_FALSE(light.HasShadow());
    EXPECT_FALSE(light.IsCameraSpaceLight());
    EXPECT_FALSE(light.IsDomeLight());
    EXPECT_TRUE(light.HasIntensity());
    EXPECT_TRUE(light.GetID().IsEmpty());
    EXPECT_TRUE(light.GetDomeLightTextureFile().GetAssetPath().empty());
}

TEST(SimpleLight, IsMadeAsAPointEvenFromADirection)
{
    GlfSimpleLight light(GfVec4f(1, 2, 3, 0));
    EXPECT_EQ(light.GetPosition(), GfVec4f(1, 2, 3, 1));
    light.SetPosition(GfVec4f(1, 2, 3, 0));
    EXPECT_EQ(light.GetPosition(), GfVec4f(1, 2, 3, 0));
}

// Every setter, each with a value that is not the default.
const std::vector<std::function<void(GlfSimpleLight&)>> kChanges = {
    [](GlfSimpleLight& l) { l.SetTransform(GfMatrix4d(2)); },
    [](GlfSimpleLight& l) { l.SetAmbient(GfVec4f(0.5f)); },
    [](GlfSimpleLight& l) { l.SetDiffuse(GfVec4f(0.5f)); },
    [](GlfSimpleLight& l) { l.SetSpecular(GfVec4f(0.5f)); },
    [](GlfSimpleLight& l) { l.SetPosition(GfVec4f(0.5f)); },
    [](GlfSimpleLight& l) { l.SetSpotDirection(GfVec3f(0.5f)); },
    [](GlfSimpleLight& l) { l.SetSpotCutoff(30); },
    [](GlfSimpleLight& l) { l.SetSpotFalloff(2); },
    [](GlfSimpleLight& l) { l.SetAttenuation(GfVec3f(0, 0, 1)); },
    [](GlfSimpleLight& l) { l.SetHasIntensity(false); },
    [](GlfSimpleLight& l) { l.SetIsCameraSpaceLight(true); },
    [](GlfSimpleLight& l) { l.SetShadowMatrices({}); },
    [](GlfSimpleLight& l) { l.SetShadowResolution(64); },
    [](GlfSimpleLight& l) { l.SetShadowBias(0.5f); },
    [](GlfSimpleLight& l) { l.SetShadowBlur(0.5f); },
    [](GlfSimpleLight& l) { l.SetShadowIndexStart(1); },
    [](GlfSimpleLight& l) { l.SetShadowIndexEnd(1); },
    [](GlfSimpleLight& l) { l.SetHasShadow(true); },
    [](GlfSimpleLight& l) { l.SetID(SdfPath("/Light")); },
    [](GlfSimpleLight& l) { l.SetIsDomeLight(true); },
    [](GlfSimpleLight& l) { l.SetDomeLightTextureFile(SdfAssetPath("sky.hdr")); },
    [](GlfSimpleLight& l) { l.SetPostSurfaceParams(TfToken("fog"), std::string(), VtUCharArray()); },
    [](GlfSimpleLight& l) { l.SetPostSurfaceParams(TfToken(), "code", VtUCharArray()); },
    [](GlfSimpleLight& l) { l.SetPostSurfaceParams(TfToken(), std::string(), VtUCharArray(2, 7)); },
};

TEST(SimpleLight, DiffersInEachProperty)
{
    for (size_t i = 0; i != kChanges.size(); ++i) {
        GlfSimpleLight changed, same;
        kChanges[i](changed);
        EXPECT_NE(changed, GlfSimpleLight()) << "change " << i;
        kChanges[i](same);
        EXPECT_EQ(changed, same) << "change " << i;
    }
}

TEST(SimpleLight, GivesBackWhatWasSet)
{
    GlfSimpleLight light;
    light.SetDomeLightTextureFile(SdfAssetPath("sky.hdr", "/textures/sky.hdr"));
    light.SetID(SdfPath("/World/Sky"));
    light.SetPostSurfaceParams(TfToken("fog"), "code", VtUCharArray(3, 9));
    light.SetShadowMatrices({GfMatrix4d(1), GfMatrix4d(2)});
    EXPECT_EQ(light.GetDomeLightTextureFile().GetResolvedPath(), "/textures/sky.hdr");
    EXPECT_EQ(light.GetID(), SdfPath("/World/Sky"));
    EXPECT_EQ(light.GetPostSurfaceIdentifier(), TfToken("fog"));
    EXPECT_EQ(light.GetPostSurfaceShaderSource(), "code");
    EXPECT_EQ(light.GetPostSurfaceShaderParams().size(), 3u);
    EXPECT_EQ(light.GetShadowMatrices()[1], GfMatrix4d(2));
}

TEST(SimpleLight, LivesInAValueAndWritesItsColours)
{
    GlfSimpleLight light;
    light.SetID(SdfPath("/Light"));
    const VtValue value(light);
    EXPECT_EQ(value.Get<GlfSimpleLight>(), light);
    EXPECT_NE(value, VtValue(GlfSimpleLight()));
    std::ostringstream out;
    out << GlfSimpleLight();
    EXPECT_EQ(out.str().find("(0.2, 0.2, 0.2, 1)(1, 1, 1, 1)(1, 1, 1, 1)(0, 0, 0, 1)(0, 0, -1)180"), 0u)
        << out.str();
}

TEST(SimpleMaterial, StartsGreyAndGivesBackWhatWasSet)
{
    GlfSimpleMaterial material;
    EXPECT_EQ(material.GetAmbient(), GfVec4f(0.2f, 0.2f, 0.2f, 1));
    EXPECT_EQ(material.GetDiffuse(), GfVec4f(0.8f, 0.8f, 0.8f, 1));
    EXPECT_EQ(material.GetSpecular(), GfVec4f(0.5f, 0.5f, 0.5f, 1));
    EXPECT_EQ(material.GetEmission(), GfVec4f(0, 0, 0, 1));
    EXPECT_EQ(material.GetShininess(), 32);
    const GlfSimpleMaterial original;
    material.SetEmission(GfVec4f(1));
    EXPECT_EQ(material.GetEmission(), GfVec4f(1));
    EXPECT_NE(material, original);
    material.SetEmission(original.GetEmission());
    EXPECT_EQ(material, original);
    material.SetShininess(1);
    EXPECT_NE(material, original);
}

} // namespace
