#include <pxr/base/gf/vec3f.h>
#include <pxr/base/tf/token.h>
#include <pxr/base/vt/array.h>
#include <pxr/usd/usd/primDefinition.h>
#include <pxr/usd/usd/schemaRegistry.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

PXR_NAMESPACE_USING_DIRECTIVE

namespace {

bool IsA(const char* identifier, const char* base)
{
    const TfType type = UsdSchemaRegistry::GetTypeFromName(TfToken(identifier));
    return !type.IsUnknown() && type.IsA(UsdSchemaRegistry::GetTypeFromName(TfToken(base)));
}

const UsdPrimDefinition* Definition(const char* identifier)
{
    return UsdSchemaRegistry::GetInstance().FindConcretePrimDefinition(TfToken(identifier));
}

template <class T>
T Fallback(const UsdPrimDefinition* definition, const char* name)
{
    T value{};
    EXPECT_TRUE(definition && definition->GetAttributeFallbackValue(TfToken(name), &value)) << name;
    return value;
}

TEST(SchemaRegistry, KnowsWhatDerivesFromWhat)
{
    for (const auto& [type, base] : {std::pair("SkelRoot", "Boundable"),
                                     {"Volume", "Gprim"},
                                     {"Mesh", "PointBased"},
                                     {"RectLight", "Boundable"},
                                     {"DomeLight", "Xformable"},
                                     {"Scope", "Imageable"},
                                     {"Camera", "Xformable"},
                                     {"PhysicsRevoluteJoint", "Imageable"},
                                     {"Material", "Typed"},
                                     {"RenderSettings", "Typed"},
                                     {"PhysicsScene", "Typed"}}) {
        EXPECT_TRUE(IsA(type, base)) << type << " is a " << base;
    }
    for (const auto& [type, base] : {std::pair("Scope", "Xformable"),
                                     {"Camera", "Boundable"},
                                     {"DomeLight", "Boundable"},
                                     {"Material", "Imageable"},
                                     {"Shader", "Imageable"},
                                     {"GeomSubset", "Imageable"},
                                     {"RenderSettings", "Imageable"},
                                     {"PhysicsScene", "Imageable"}}) {
        EXPECT_FALSE(IsA(type, base)) << type << " is no " << base;
    }
}

TEST(SchemaRegistry, FindsTypesByIdentifierAndByClassName)
{
    const TfType mesh = UsdSchemaRegistry::GetTypeFromName(TfToken("Mesh"));
    EXPECT_EQ(mesh, UsdSchemaRegistry::GetTypeFromName(TfToken("UsdGeomMesh")));
    EXPECT_EQ(TfToken("Mesh"), UsdSchemaRegistry::GetConcreteSchemaTypeName(mesh));
    EXPECT_TRUE(UsdSchemaRegistry::GetTypeFromName(TfToken("NoSuchSchema")).IsUnknown());
    EXPECT_EQ(nullptr, Definition("Imageable")) << "an abstract schema is no prim's type";
}

TEST(SchemaRegistry, TellsKinds)
{
    EXPECT_EQ(UsdSchemaKind::ConcreteTyped, UsdSchemaRegistry::GetSchemaKind(TfToken("Cube")));
    EXPECT_EQ(UsdSchemaKind::AbstractTyped, UsdSchemaRegistry::GetSchemaKind(TfToken("Gprim")));
    EXPECT_EQ(UsdSchemaKind::SingleApplyAPI, UsdSchemaRegistry::GetSchemaKind(TfToken("GeomModelAPI")));
    EXPECT_EQ(UsdSchemaKind::MultipleApplyAPI, UsdSchemaRegistry::GetSchemaKind(TfToken("CollectionAPI")));
    EXPECT_EQ(UsdSchemaKind::NonAppliedAPI, UsdSchemaRegistry::GetSchemaKind(TfToken("ModelAPI")));
    EXPECT_EQ(UsdSchemaKind::Invalid, UsdSchemaRegistry::GetSchemaKind(TfToken("Nothing")));
}

TEST(SchemaRegistry, SplitsVersionedIdentifiers)
{
    using Parts = std::pair<TfToken, UsdSchemaVersion>;
    const auto parse = [](const char* text) {
        return UsdSchemaRegistry::ParseSchemaFamilyAndVersionFromIdentifier(TfToken(text));
    };
    EXPECT_EQ(Parts(TfToken("Capsule"), 1u), parse("Capsule_1"));
    EXPECT_EQ(Parts(TfToken("Capsule"), 0u), parse("Capsule"));
    EXPECT_EQ(Parts(TfToken("Capsule_01"), 0u), parse("Capsule_01")) << "leading zeros are no version";
    const auto& family = UsdSchemaRegistry::FindSchemaInfosInFamily(TfToken("Capsule"));
    ASSERT_EQ(2u, family.size());
    EXPECT_EQ(TfToken("Capsule_1"), family[0]->identifier) << "the newest comes first";
}

TEST(PrimDefinition, HoldsInheritedAndOverriddenFallbacks)
{
    const UsdPrimDefinition* const sphere = Definition("Sphere");
    EXPECT_EQ(1.0, Fallback<double>(sphere, "radius"));
    EXPECT_EQ(TfToken("default"), Fallback<TfToken>(sphere, "purpose"));
    EXPECT_EQ((VtArray<GfVec3f>{GfVec3f(-1), GfVec3f(1)}), Fallback<VtArray<GfVec3f>>(sphere, "extent"));
    EXPECT_TRUE(Fallback<bool>(Definition("Plane"), "doubleSided"));
    EXPECT_FALSE(Fallback<bool>(Definition("Cube"), "doubleSided"));
    VtArray<GfVec3f> points;
    EXPECT_FALSE(Definition("Mesh")->GetAttributeFallbackValue(TfToken("points"), &points));
}

TEST(PrimDefinition, DescribesProperties)
{
    const UsdPrimDefinition* const mesh = Definition("Mesh");
    const UsdPrimDefinition::Attribute scheme = mesh->GetAttributeDefinition(TfToken("subdivisionScheme"));
    ASSERT_TRUE(scheme);
    EXPECT_EQ(SdfVariabilityUniform, scheme.GetVariability());
    EXPECT_EQ(TfToken("token"), scheme.GetTypeNameToken());
    VtArray<TfToken> allowed;
    ASSERT_TRUE(scheme.GetMetadata(TfToken("allowedTokens"), &allowed));
    EXPECT_THAT(allowed, testing::ElementsAre(TfToken("catmullClark"), TfToken("loop"), TfToken("bilinear"),
                                              TfToken("none")));
    EXPECT_TRUE(mesh->GetRelationshipDefinition(TfToken("proxyPrim")));
    EXPECT_FALSE(mesh->GetPropertyDefinition(TfToken("radius")));
    EXPECT_EQ(TfToken("token"),
              Definition("Shader")->GetAttributeDefinition(TfToken("info:id")).GetTypeNameToken());
}

TEST(PrimDefinition, BringsBuiltInApisWithTheTypesOwnFallbacks)
{
    EXPECT_EQ(1.0f, Fallback<float>(Definition("SphereLight"), "inputs:intensity"));
    EXPECT_EQ(50000.0f, Fallback<float>(Definition("DistantLight"), "inputs:intensity"));
    EXPECT_EQ(TfToken("SphereLight"), Fallback<TfToken>(Definition("SphereLight"), "light:shaderId"));
    EXPECT_TRUE(Fallback<bool>(Definition("SphereLight"), "collection:lightLink:includeRoot"));
    EXPECT_THAT(Definition("SphereLight")->GetAppliedAPISchemas(),
                testing::ElementsAre(TfToken("LightAPI"), TfToken("CollectionAPI:lightLink"),
                                     TfToken("CollectionAPI:shadowLink")));
}

TEST(PrimDefinition, ComposesAppliedApisBelowTheType)
{
    const auto definition = UsdSchemaRegistry::GetInstance().BuildComposedPrimDefinition(
        TfToken("Cube"), {TfToken("GeomModelAPI"), TfToken("CollectionAPI:set"), TfToken("UnknownAPI")});
    ASSERT_TRUE(definition);
    EXPECT_EQ(2.0, Fallback<double>(definition.get(), "size"));
    EXPECT_EQ(TfToken("inherited"), Fallback<TfToken>(definition.get(), "model:drawMode"));
    EXPECT_EQ(SdfSpecTypeRelationship, definition->GetSpecType(TfToken("collection:set:includes")));
    EXPECT_THAT(definition->GetAppliedAPISchemas(),
                testing::ElementsAre(TfToken("GeomModelAPI"), TfToken("CollectionAPI:set")));
}

TEST(SchemaRegistry, MakesNamesOfMultipleApplySchemas)
{
    const TfToken name = UsdSchemaRegistry::MakeMultipleApplyNameTemplate("collection", "includes");
    EXPECT_TRUE(UsdSchemaRegistry::IsMultipleApplyNameTemplate(name.GetString()));
    EXPECT_EQ(TfToken("collection:red:includes"),
              UsdSchemaRegistry::MakeMultipleApplyNameInstance(name.GetString(), "red"));
    EXPECT_EQ(TfToken("includes"), UsdSchemaRegistry::GetMultipleApplyNameTemplateBaseName(name.GetString()));
    EXPECT_FALSE(
        UsdSchemaRegistry::IsAllowedAPISchemaInstanceName(TfToken("CollectionAPI"), TfToken("includes")));
    EXPECT_TRUE(UsdSchemaRegistry::IsAllowedAPISchemaInstanceName(TfToken("CollectionAPI"), TfToken("red")));
}

} // namespace
