#include "../tf/recording_delegate.h"

#include <pxr/usd/sdf/assetPath.h>
#include <pxr/usd/sdf/layerOffset.h>
#include <pxr/usd/sdf/payload.h>
#include <pxr/usd/sdf/reference.h>
#include <pxr/usd/sdf/timeCode.h>
#include <pxr/usd/sdf/types.h>

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <sstream>

PXR_NAMESPACE_USING_DIRECTIVE

namespace {

template <class T>
std::string text(const T& value)
{
    std::ostringstream out;
    out << value;
    return out.str();
}

constexpr double kInfinity = std::numeric_limits<double>::infinity();

} // namespace

TEST(AssetPath, KeepsAuthoredAndResolvedPath)
{
    const SdfAssetPath path("./a.png", "/tmp/a.png");
    EXPECT_EQ(path.GetAssetPath(), "./a.png");
    EXPECT_EQ(path.GetResolvedPath(), "/tmp/a.png");
    EXPECT_NE(path, SdfAssetPath("./a.png"));
    EXPECT_LT(SdfAssetPath("./a.png"), path);
    EXPECT_EQ(text(path), "@./a.png@");
}

TEST(AssetPath, RefusesControlCharactersAndBadUtf8)
{
    RecordingDelegate diagnostics;
    EXPECT_EQ(SdfAssetPath("a\nb"), SdfAssetPath());
    EXPECT_EQ(SdfAssetPath("a\xff"), SdfAssetPath());
    EXPECT_EQ(SdfAssetPath("a", "b\x7f"), SdfAssetPath());
    EXPECT_EQ(diagnostics.texts,
              (std::vector<std::string>{
                  "error: Invalid asset path string -- character 2 is control character 0xa",
                  "error: Invalid asset path string -- character 2 is no valid UTF-8",
                  "error: Invalid asset path string -- character 2 is control character 0x7f"}));
}

TEST(AssetPath, MayHoldAnyOtherCharacter)
{
    RecordingDelegate diagnostics;
    EXPECT_EQ(SdfAssetPath("\xe7\x8c\xab \xef\xbf\xbd.png").GetAssetPath(), "\xe7\x8c\xab \xef\xbf\xbd.png");
    EXPECT_TRUE(diagnostics.texts.empty());
}

TEST(TimeCode, CalculatesAsItsNumber)
{
    EXPECT_EQ(SdfTimeCode(2) * SdfTimeCode(3) + SdfTimeCode(1), SdfTimeCode(7));
    EXPECT_EQ(2.0 * SdfTimeCode(3), SdfTimeCode(6));
    EXPECT_LT(SdfTimeCode(1), SdfTimeCode(2));
    EXPECT_EQ(double(SdfTimeCode(1.5)), 1.5);
    EXPECT_EQ(text(SdfTimeCode(1.5)), "1.5");
}

TEST(LayerOffset, ScalesThenShifts)
{
    const SdfLayerOffset offset(10, 2);
    EXPECT_EQ(offset * 3.0, 16.0);
    EXPECT_EQ(offset * SdfTimeCode(3), SdfTimeCode(16));
}

TEST(LayerOffset, ComposesInnerFirst)
{
    const SdfLayerOffset outer(10, 2), inner(1, 3);
    EXPECT_EQ((outer * inner) * 5.0, outer * (inner * 5.0));
}

TEST(LayerOffset, UndoneByItsInverse)
{
    const SdfLayerOffset offset(10, 4);
    EXPECT_EQ(offset.GetInverse() * (offset * 7.0), 7.0);
    EXPECT_TRUE((offset * offset.GetInverse()).IsIdentity());
    EXPECT_FALSE(SdfLayerOffset(1, 0).GetInverse().IsValid());
}

TEST(LayerOffset, IsEqualWithinAMillionth)
{
    EXPECT_EQ(SdfLayerOffset(0, 1), SdfLayerOffset(1e-7, 1));
    EXPECT_NE(SdfLayerOffset(0, 1), SdfLayerOffset(1e-5, 1));
    EXPECT_TRUE(SdfLayerOffset(-0.0, 1).IsIdentity());
}

TEST(LayerOffset, ThatIsNotFiniteIsInvalidAndLast)
{
    const SdfLayerOffset invalid(kInfinity, 1), nan(std::nan(""), 1);
    EXPECT_FALSE(invalid.IsValid());
    EXPECT_EQ(invalid, nan);
    EXPECT_LT(SdfLayerOffset(1e300, 1e300), invalid);
    EXPECT_FALSE(invalid < nan);
    EXPECT_LT(SdfLayerOffset(5, 1), SdfLayerOffset(0, 2));
}

TEST(LayerOffset, StreamsItsNumbers) { EXPECT_EQ(text(SdfLayerOffset(10, 0.5)), "SdfLayerOffset(10, 0.5)"); }

TEST(Reference, ComparesAllOfItsParts)
{
    const SdfReference reference("a.usda", SdfPath("/A"), SdfLayerOffset(1));
    EXPECT_EQ(reference, SdfReference("a.usda", SdfPath("/A"), SdfLayerOffset(1)));
    EXPECT_NE(reference, SdfReference("a.usda", SdfPath("/A")));
    EXPECT_LT(SdfReference("a.usda", SdfPath("/A")), reference);
    EXPECT_EQ(hash_value(reference), hash_value(SdfReference("a.usda", SdfPath("/A"), SdfLayerOffset(1))));
    EXPECT_FALSE(reference.IsInternal());
    EXPECT_TRUE(SdfReference(std::string(), SdfPath("/A")).IsInternal());
}

TEST(Reference, IsFoundByAssetAndPrim)
{
    const SdfReferenceVector references{SdfReference("a.usda"), SdfReference("b.usda", SdfPath("/B"))};
    EXPECT_EQ(
        SdfFindReferenceByIdentity(references, SdfReference("b.usda", SdfPath("/B"), SdfLayerOffset(5))), 1);
    EXPECT_EQ(SdfFindReferenceByIdentity(references, SdfReference("b.usda")), -1);
}

TEST(Reference, SetsAndRemovesCustomData)
{
    SdfReference reference("a.usda");
    reference.SetCustomData("key", VtValue(1));
    EXPECT_EQ(reference.GetCustomData().size(), 1u);
    EXPECT_EQ(text(reference), "SdfReference(a.usda, , SdfLayerOffset(0, 1), {'key': 1})");
    reference.SetCustomData("key", VtValue());
    EXPECT_TRUE(reference.GetCustomData().empty());
}

TEST(Payload, ComparesAllOfItsParts)
{
    const SdfPayload payload("a.usda", SdfPath("/A"));
    EXPECT_EQ(payload, SdfPayload("a.usda", SdfPath("/A")));
    EXPECT_NE(payload, SdfPayload("a.usda", SdfPath("/A"), SdfLayerOffset(1)));
    EXPECT_LT(SdfPayload("a.usda"), payload);
    EXPECT_EQ(text(payload), "SdfPayload(a.usda, /A, SdfLayerOffset(0, 1))");
}

TEST(ValueBlock, IsAValueOfItsOwn)
{
    EXPECT_EQ(VtValue(SdfValueBlock()), VtValue(SdfValueBlock()));
    EXPECT_EQ(text(VtValue(SdfValueBlock())), "None");
}

TEST(UnregisteredValue, KeepsTextDictionaryOrListOp)
{
    EXPECT_EQ(SdfUnregisteredValue("x").GetValue(), VtValue("x"));
    EXPECT_TRUE(SdfUnregisteredValue(VtDictionary()).GetValue().IsHolding<VtDictionary>());
    EXPECT_NE(SdfUnregisteredValue("x"), SdfUnregisteredValue("y"));
}

TEST(MetadataDictionary, TurnsVectorsIntoTypedArrays)
{
    VtDictionary dictionary;
    dictionary["numbers"] = std::vector<VtValue>{VtValue(1.5), VtValue(2)};
    dictionary.SetValueAtPath("a:names", VtValue(std::vector<VtValue>{VtValue("x")}));
    std::string error;
    EXPECT_TRUE(SdfConvertToValidMetadataDictionary(&dictionary, &error)) << error;
    EXPECT_EQ(dictionary["numbers"], VtValue(VtArray<double>{1.5, 2.0}));
    EXPECT_EQ(*dictionary.GetValueAtPath("a:names"), VtValue(VtArray<std::string>{"x"}));
}

TEST(MetadataDictionary, SaysWhatDoesNotFit)
{
    VtDictionary dictionary;
    dictionary["good"] = 1;
    dictionary["mixed"] = std::vector<VtValue>{VtValue(1), VtValue("x")};
    dictionary["none"] = std::vector<VtValue>{};
    std::string error;
    EXPECT_FALSE(SdfConvertToValidMetadataDictionary(&dictionary, &error));
    EXPECT_EQ(
        error,
        "failed to cast array element 1: <string> 'x' under key 'mixed' to <int>; cannot infer type from "
        "empty vector/list under key 'none' -- use an empty typed array like VtIntArray/VtStringArray "
        "instead");
    EXPECT_EQ(dictionary["good"], 1);
    EXPECT_TRUE(dictionary["mixed"].IsEmpty());
}
