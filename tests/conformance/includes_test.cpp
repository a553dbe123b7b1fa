// What one header brings along: sources that rely on it compile with either OpenUSD.
#include <pxr/usd/usdGeom/xformable.h>

#include <gtest/gtest.h>

PXR_NAMESPACE_USING_DIRECTIVE

namespace conformance {
namespace {

TEST(Includes, OfASchemaAreTheStageItsLayersValuesAndDiagnostics)
{
    const UsdStageRefPtr stage = UsdStage::CreateInMemory();
    const SdfLayerHandle layer = stage->GetRootLayer();
    const SdfPrimSpecHandle spec = layer->GetPseudoRoot();
    TfErrorMark mark;
    const UsdPrim prim = stage->DefinePrim(SdfPath("/A"), TfToken("Xform"));
    const UsdAttribute list = prim.CreateAttribute(TfToken("list"), SdfValueTypeNames->FloatArray);
    list.Set(VtArray<float>{1.0f, 2.0f});
    VtValue value;
    EXPECT_TRUE(list.Get(&value));
    EXPECT_TRUE(value.IsHolding<VtArray<float>>());
    VtDictionary data;
    data["rotation"] = GfQuatd(1.0);
    data["place"] = GfMatrix4d(1.0) * GfMatrix4d(2.0);
    data["point"] = GfVec3f(1.0f) + GfVec3f(2.0f);
    prim.SetCustomData(data);
    TF_FOR_ALL(entry, data)
    EXPECT_FALSE(entry->first.empty());
    TfHashMap<std::string, int, TfHash> counts;
    counts[TfStringPrintf("%d", 3)] = 3;
    EXPECT_TRUE(mark.IsClean());
    EXPECT_EQ(1u, spec->GetNameChildren().size());
}

} // namespace
} // namespace conformance
