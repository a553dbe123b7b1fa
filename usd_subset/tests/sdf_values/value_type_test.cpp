#include <pxr/base/gf/matrix4d.h>
#include <pxr/base/gf/quatf.h>
#include <pxr/base/gf/vec3d.h>
#include <pxr/base/gf/vec3f.h>
#include <pxr/base/gf/vec4f.h>
#include <pxr/base/vt/array.h>
#include <pxr/base/vt/types.h>
#include <pxr/usd/sdf/assetPath.h>
#include <pxr/usd/sdf/schema.h>
#include <pxr/usd/sdf/types.h>

#include <gtest/gtest.h>

#include <sstream>

PXR_NAMESPACE_USING_DIRECTIVE

namespace {

SdfValueTypeName find(const char* name) { return SdfSchema::GetInstance().FindType(name); }

} // namespace

TEST(ValueTypeName, KnowsItsTypeRoleAndDefault)
{
    const SdfValueTypeName point = SdfValueTypeNames->Point3f;
    EXPECT_EQ(point.GetAsToken(), "point3f");
    EXPECT_EQ(point.GetType(), TfType::Find<GfVec3f>());
    EXPECT_EQ(point.GetRole(), SdfValueRoleNames->Point);
    EXPECT_EQ(point.GetDefaultValue(), VtValue(GfVec3f(0)));
    EXPECT_EQ(point.GetDimensions(), SdfTupleDimensions(3));
    EXPECT_EQ(point.GetDefaultUnit(), TfEnum(SdfLengthUnitMeter));
    EXPECT_EQ(point.GetCPPTypeName(), "GfVec3f");
}

TEST(ValueTypeName, HasScalarAndArray)
{
    const SdfValueTypeName array = SdfValueTypeNames->Color3fArray;
    EXPECT_EQ(array.GetAsToken(), "color3f[]");
    EXPECT_TRUE(array.IsArray());
    EXPECT_FALSE(array.IsScalar());
    EXPECT_EQ(array.GetScalarType(), SdfValueTypeNames->Color3f);
    EXPECT_EQ(array.GetScalarType().GetArrayType(), array);
    EXPECT_EQ(array.GetType(), TfType::Find<VtVec3fArray>());
    EXPECT_EQ(array.GetDefaultValue(), VtValue(VtVec3fArray()));
    EXPECT_EQ(array.GetCPPTypeName(), "VtArray<GfVec3f>");
}

TEST(ValueTypeName, OfIdentityTypesDefaultsToIdentity)
{
    EXPECT_EQ(SdfValueTypeNames->Matrix4d.GetDefaultValue(), VtValue(GfMatrix4d(1.0)));
    EXPECT_EQ(SdfValueTypeNames->Quatf.GetDefaultValue(), VtValue(GfQuatf(1.0f)));
    EXPECT_EQ(SdfValueTypeNames->Matrix4d.GetDimensions(), SdfTupleDimensions(4, 4));
}

TEST(ValueTypeName, IsEqualWhenTypeAndRoleAre)
{
    EXPECT_NE(SdfValueTypeNames->Point3f, SdfValueTypeNames->Float3);
    EXPECT_NE(SdfValueTypeNames->Point3f, SdfValueTypeNames->Point3d);
    EXPECT_EQ(find("PointFloat"), SdfValueTypeNames->Point3f);
    EXPECT_EQ(find("PointFloat").GetHash(), SdfValueTypeNames->Point3f.GetHash());
    EXPECT_EQ(find("Vec3f"), SdfValueTypeNames->Float3);
    EXPECT_TRUE(SdfValueTypeNames->Point3f == TfToken("PointFloat"));
    EXPECT_TRUE(std::string("point3f") == SdfValueTypeNames->Point3f);
    EXPECT_FALSE(SdfValueTypeNames->Point3f == std::string("float3"));
}

TEST(ValueTypeName, OfAnAliasIsWrittenAsThePreferredOne)
{
    EXPECT_EQ(find("Vec3f[]").GetAsToken(), "Vec3f[]");
    EXPECT_EQ(SdfValueTypeNames->GetSerializationName(find("Vec3f[]")), "float3[]");
    EXPECT_EQ(SdfValueTypeNames->GetSerializationName(TfToken("Matrix4d")), "matrix4d");
    EXPECT_EQ(SdfValueTypeNames->GetSerializationName(TfToken("unheard")), "unheard");
    EXPECT_EQ(find("point3f").GetAliasesAsTokens(),
              (std::vector<TfToken>{TfToken("point3f"), TfToken("PointFloat")}));
}

TEST(ValueTypeName, ThatIsEmptyHasNothing)
{
    const SdfValueTypeName none = find("no such type");
    EXPECT_FALSE(none);
    EXPECT_EQ(none, SdfValueTypeName());
    EXPECT_FALSE(none.IsScalar());
    EXPECT_TRUE(none.GetType().IsUnknown());
    EXPECT_TRUE(none.GetDefaultValue().IsEmpty());
    EXPECT_TRUE(none.GetAsToken().IsEmpty());
    EXPECT_FALSE(none.GetArrayType());
}

TEST(ValueTypeName, ThatNobodyRegisteredCanBeMade)
{
    const SdfValueTypeName made = SdfSchema::GetInstance().FindOrCreateType(TfToken("madeUp"));
    EXPECT_TRUE(made);
    EXPECT_EQ(made.GetAsToken(), "madeUp");
    EXPECT_TRUE(made.GetType().IsUnknown());
    EXPECT_FALSE(find("madeUp"));
    EXPECT_EQ(SdfSchema::GetInstance().FindOrCreateType(TfToken("float")), SdfValueTypeNames->Float);
}

TEST(ValueTypeName, IsFoundByTypeAndRole)
{
    const SdfSchema& schema = SdfSchema::GetInstance();
    EXPECT_EQ(schema.FindType(TfType::Find<GfVec3f>()), SdfValueTypeNames->Float3);
    EXPECT_EQ(schema.FindType(TfType::Find<GfVec3f>(), SdfValueRoleNames->Normal),
              SdfValueTypeNames->Normal3f);
    EXPECT_EQ(schema.FindType(VtValue(GfMatrix4d(1)), SdfValueRoleNames->Frame), SdfValueTypeNames->Frame4d);
    EXPECT_FALSE(schema.FindType(TfType::Find<GfVec3f>(), SdfValueRoleNames->Frame));
}

TEST(ValueTypeName, IsFoundByAValue)
{
    EXPECT_EQ(SdfGetValueTypeNameForValue(VtValue(1.0)), SdfValueTypeNames->Double);
    EXPECT_EQ(SdfGetValueTypeNameForValue(VtValue("x")), SdfValueTypeNames->String);
    EXPECT_EQ(SdfGetValueTypeNameForValue(VtValue(SdfAssetPath("a"))), SdfValueTypeNames->Asset);
    EXPECT_EQ(SdfGetValueTypeNameForValue(VtValue(VtTokenArray())), SdfValueTypeNames->TokenArray);
    EXPECT_FALSE(SdfGetValueTypeNameForValue(VtValue()));
    EXPECT_TRUE(SdfValueHasValidType(VtValue(GfVec4f())));
    EXPECT_FALSE(SdfValueHasValidType(VtValue(VtDictionary())));
}

TEST(ValueTypeName, OfOpaqueAndGroupHasNoArray)
{
    EXPECT_FALSE(SdfValueTypeNames->Opaque.GetArrayType());
    EXPECT_FALSE(find("opaque[]"));
    EXPECT_EQ(SdfValueTypeNames->Group.GetRole(), SdfValueRoleNames->Group);
    EXPECT_NE(SdfValueTypeNames->Group, SdfValueTypeNames->Opaque);
}

TEST(ValueTypeNames, AreAllThereWithTheirArrays)
{
    const std::vector<SdfValueTypeName> all = SdfSchema::GetInstance().GetAllTypes();
    // 15 simple types, 12 vectors, 15 roles of vectors, 3 quaternions, 4 matrices, 6 texture coordinates and
    // 31 old names, each with its array, except opaque and group.
    EXPECT_EQ(all.size(), 2u * (15 + 12 + 15 + 3 + 4 + 6 + 31) - 2);
    for (const SdfValueTypeName& name : all) {
        EXPECT_FALSE(name.GetType().IsUnknown()) << name;
        EXPECT_EQ(TfType::Find(name.GetDefaultValue().GetTypeid()), name.GetType()) << name;
        EXPECT_EQ(SdfSchema::GetInstance().FindType(name.GetAsToken()), name);
    }
}

TEST(ValueTypeNames, StandForThemselvesInTheTable)
{
    EXPECT_EQ(SdfValueTypeNames->TexCoord2f.GetAsToken(), "texCoord2f");
    EXPECT_EQ(SdfValueTypeNames->UInt64Array.GetAsToken(), "uint64[]");
    EXPECT_EQ(SdfValueTypeNames->TimeCode.GetAsToken(), "timecode");
    EXPECT_EQ(SdfValueTypeNames->UChar.GetCPPTypeName(), "unsigned char");
    EXPECT_EQ(SdfValueTypeNames->String.GetCPPTypeName(), "std::string");
    EXPECT_EQ(SdfValueTypeNames->Half.GetCPPTypeName(), "GfHalf");
}

TEST(ValueTypeTraits, SayWhatAttributesMayHave)
{
    EXPECT_TRUE(SdfValueTypeTraits<GfVec3f>::IsValueType);
    EXPECT_TRUE(SdfValueTypeTraits<VtTokenArray>::IsValueType);
    EXPECT_FALSE(SdfValueTypeTraits<VtDictionary>::IsValueType);
}

TEST(Specifier, DefinesUnlessItIsAnOver)
{
    EXPECT_TRUE(SdfIsDefiningSpecifier(SdfSpecifierDef));
    EXPECT_TRUE(SdfIsDefiningSpecifier(SdfSpecifierClass));
    EXPECT_FALSE(SdfIsDefiningSpecifier(SdfSpecifierOver));
    EXPECT_EQ(TfEnum::GetDisplayName(SdfVariabilityUniform), "Uniform");
}

TEST(Specifier, ConvertsToIntAndBack)
{
    EXPECT_EQ(VtValue::Cast<int>(VtValue(SdfSpecifierClass)), VtValue(2));
    EXPECT_EQ(VtValue::Cast<SdfSpecifier>(VtValue(1)), VtValue(SdfSpecifierOver));
    EXPECT_EQ(VtValue::Cast<TfEnum>(VtValue(SdfVariabilityUniform)), VtValue(TfEnum(SdfVariabilityUniform)));
}

TEST(FieldKeys, HaveTheNamesThatFilesHave)
{
    EXPECT_EQ(SdfFieldKeys->TimeSamples, "timeSamples");
    EXPECT_EQ(SdfFieldKeys->SubLayerOffsets, "subLayerOffsets");
    EXPECT_EQ(SdfChildrenKeys->PropertyChildren, "properties");
    EXPECT_EQ(SdfFieldKeys->allTokens.size(), 60u);
    EXPECT_EQ(SdfChildrenKeys->allTokens.size(), 9u);
}
