#include "../tf/recording_delegate.h"

#include <pxr/base/gf/half.h>
#include <pxr/base/gf/range1d.h>
#include <pxr/base/gf/range1f.h>
#include <pxr/base/gf/vec3d.h>
#include <pxr/base/gf/vec3f.h>
#include <pxr/base/gf/vec3i.h>
#include <pxr/base/tf/token.h>
#include <pxr/base/vt/array.h>
#include <pxr/base/vt/types.h>
#include <pxr/base/vt/value.h>

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

PXR_NAMESPACE_USING_DIRECTIVE

namespace {

struct Meters
{
    double value = 0;
    bool operator==(Meters const& o) const { return value == o.value; }
};

} // namespace

TEST(Cast, ConvertsBetweenAllNumbers)
{
    EXPECT_EQ(VtValue::Cast<double>(VtValue(3)), VtValue(3.0));
    EXPECT_EQ(VtValue::Cast<int>(VtValue(3.9)), VtValue(3));
    EXPECT_EQ(VtValue::Cast<int>(VtValue(-3.9)), VtValue(-3));
    EXPECT_EQ(VtValue::Cast<float>(VtValue(GfHalf(0.5f))), VtValue(0.5f));
    EXPECT_EQ(VtValue::Cast<GfHalf>(VtValue(0.5)), VtValue(GfHalf(0.5f)));
    EXPECT_EQ(VtValue::Cast<unsigned char>(VtValue(uint64_t(255))), VtValue(static_cast<unsigned char>(255)));
    EXPECT_EQ(VtValue::Cast<int64_t>(VtValue(true)), VtValue(int64_t(1)));
}

TEST(Cast, RefusesNumbersOutOfRange)
{
    EXPECT_TRUE(VtValue::Cast<unsigned char>(VtValue(256)).IsEmpty());
    EXPECT_TRUE(VtValue::Cast<unsigned int>(VtValue(-1)).IsEmpty());
    EXPECT_TRUE(VtValue::Cast<int>(VtValue(int64_t(1) << 31)).IsEmpty());
    EXPECT_EQ(VtValue::Cast<int>(VtValue(-(int64_t(1) << 31))), VtValue(std::numeric_limits<int>::min()));
    EXPECT_TRUE(VtValue::Cast<int>(VtValue(2147483648.0)).IsEmpty());
    EXPECT_EQ(VtValue::Cast<int>(VtValue(2147483647.5)), VtValue(2147483647));
    EXPECT_TRUE(VtValue::Cast<bool>(VtValue(2)).IsEmpty());
    EXPECT_TRUE(VtValue::Cast<int64_t>(VtValue(std::numeric_limits<uint64_t>::max())).IsEmpty());
}

TEST(Cast, RefusesNanAndInfinityForIntegers)
{
    EXPECT_TRUE(VtValue::Cast<int>(VtValue(std::nan(""))).IsEmpty());
    EXPECT_TRUE(VtValue::Cast<int64_t>(VtValue(std::numeric_limits<float>::infinity())).IsEmpty());
    EXPECT_TRUE(
        std::isinf(VtValue::Cast<float>(VtValue(std::numeric_limits<double>::infinity())).Get<float>()));
}

TEST(Cast, ConvertsBetweenStringsAndTokens)
{
    EXPECT_EQ(VtValue::Cast<TfToken>(VtValue("a")), VtValue(TfToken("a")));
    EXPECT_EQ(VtValue::Cast<std::string>(VtValue(TfToken("a"))), VtValue("a"));
}

TEST(Cast, ConvertsVectorsOfOtherPrecision)
{
    EXPECT_EQ(VtValue::Cast<GfVec3d>(VtValue(GfVec3f(1, 2, 3))), VtValue(GfVec3d(1, 2, 3)));
    EXPECT_EQ(VtValue::Cast<GfVec3f>(VtValue(GfVec3d(1, 2, 3))), VtValue(GfVec3f(1, 2, 3)));
    EXPECT_EQ(VtValue::Cast<GfVec3f>(VtValue(GfVec3i(1, 2, 3))), VtValue(GfVec3f(1, 2, 3)));
    EXPECT_TRUE(VtValue::Cast<GfVec3i>(VtValue(GfVec3f(1, 2, 3))).IsEmpty());
}

TEST(Cast, ConvertsArraysOfOtherPrecision)
{
    EXPECT_EQ(VtValue::Cast<VtDoubleArray>(VtValue(VtFloatArray{0.5f, 2})), VtValue(VtDoubleArray{0.5, 2}));
    EXPECT_EQ(VtValue::Cast<VtHalfArray>(VtValue(VtFloatArray{0.5f})), VtValue(VtHalfArray{GfHalf(0.5f)}));
    EXPECT_EQ(VtValue::Cast<VtVec3dArray>(VtValue(VtVec3fArray{GfVec3f(1, 2, 3)})),
              VtValue(VtVec3dArray{GfVec3d(1, 2, 3)}));
    EXPECT_EQ(VtValue::Cast<VtRange1fArray>(VtValue(VtRange1dArray{GfRange1d(1, 2)})),
              VtValue(VtRange1fArray{GfRange1f(1, 2)}));
    EXPECT_TRUE(VtValue::Cast<VtDoubleArray>(VtValue(VtIntArray{1})).IsEmpty());
}

TEST(Cast, ToTheSameTypeIsTheValueItself)
{
    const VtValue value(VtIntArray{1});
    EXPECT_EQ(VtValue::Cast<VtIntArray>(value).UncheckedGet<VtIntArray>().cdata(),
              value.UncheckedGet<VtIntArray>().cdata());
}

TEST(Cast, SaysWhatItCan)
{
    EXPECT_TRUE(VtValue(1).CanCast<double>());
    EXPECT_TRUE(VtValue(1).CanCast<int>());
    EXPECT_FALSE(VtValue(1).CanCast<std::string>());
    EXPECT_FALSE(VtValue().CanCast<int>());
    EXPECT_TRUE(VtValue(1).CanCastToTypeOf(VtValue(1.0)));
    EXPECT_TRUE(VtValue::CanCastFromTypeidToTypeid(typeid(int), typeid(float)));
}

TEST(Cast, CanChangeTheValueItself)
{
    VtValue value(3);
    value.Cast<double>();
    EXPECT_EQ(value, 3.0);
    value.CastToTypeOf(VtValue(1.0f));
    EXPECT_EQ(value, 3.0f);
    value.Cast<std::string>();
    EXPECT_TRUE(value.IsEmpty());
}

TEST(Cast, TakesRegisteredOnes)
{
    EXPECT_FALSE(VtValue(Meters{2}).CanCast<double>());
    VtValue::RegisterCast<Meters, double>(
        [](VtValue const& v) { return VtValue(v.UncheckedGet<Meters>().value); });
    EXPECT_EQ(VtValue::Cast<double>(VtValue(Meters{2})), 2.0);
    RecordingDelegate diagnostics;
    VtValue::RegisterCast<Meters, double>([](VtValue const&) { return VtValue(0.0); });
    ASSERT_EQ(diagnostics.texts.size(), 1u);
    EXPECT_EQ(VtValue::Cast<double>(VtValue(Meters{2})), 2.0);
}
