#include "scene.h"

#include <pxr/base/vt/dictionary.h>
#include <pxr/usd/usd/tokens.h>

#include <gmock/gmock.h>

using namespace usd_tests;

namespace {

const char* const kBallStandsForOrb =
    "(\n fallbackPrimTypes = { token[] Orb = [\"Globe\", \"Sphere\"] }\n)\n";

} // namespace

TEST(FallbackTypes, StandInForTypesThatNobodyKnows)
{
    const UsdStageRefPtr scene =
        stage(std::string(kBallStandsForOrb) + "def Orb \"A\" {}\ndef Blob \"B\" {}");
    const UsdPrim orb = prim(scene, "/A");
    EXPECT_EQ(orb.GetTypeName(), TfToken("Orb"));
    EXPECT_TRUE(orb.IsA(TfToken("Sphere")));
    EXPECT_EQ(valueOf<double>(orb.GetAttribute(TfToken("radius"))), 1);
    EXPECT_FALSE(prim(scene, "/B").IsA(TfToken("Sphere")));
}

TEST(FallbackTypes, DoNotReplaceTypesThatAreKnown)
{
    const UsdStageRefPtr scene =
        stage("(\n fallbackPrimTypes = { token[] Cube = [\"Sphere\"] }\n)\ndef Cube \"A\" {}");
    EXPECT_TRUE(prim(scene, "/A").IsA(TfToken("Cube")));
}

TEST(FallbackTypes, TakeEffectWhenTheyAreAuthored)
{
    const UsdStageRefPtr scene = stage("def Orb \"A\" {}");
    EXPECT_FALSE(prim(scene, "/A").IsA(TfToken("Sphere")));
    VtDictionary types;
    types["Orb"] = VtTokenArray{TfToken("Sphere")};
    scene->SetMetadata(UsdTokens->fallbackPrimTypes, types);
    EXPECT_TRUE(prim(scene, "/A").IsA(TfToken("Sphere")));
}

TEST(AttributeType, IsEmptyWhereNobodyKnowsTheName)
{
    const UsdStageRefPtr scene = stage("def \"A\" { unknown a\n int b }");
    EXPECT_FALSE(attribute(scene, "/A.a").GetTypeName());
    EXPECT_TRUE(attribute(scene, "/A.b").GetTypeName());
}
