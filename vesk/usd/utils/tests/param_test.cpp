#include <pxr/base/vt/value.h>
#include <vesk/usd/utils/param.h>
#include <vesk/usd/utils/projection_type.h>

#include <gtest/gtest.h>

using namespace vesk::usd::utils;
PXR_NAMESPACE_USING_DIRECTIVE

namespace {

TEST(Param, IsAPlainValue)
{
    const Param<VtValue> samples{"samples", VtValue(16)};
    Param<VtValue> copy = samples;
    EXPECT_EQ(copy, samples);
    copy.value = VtValue(17);
    EXPECT_NE(copy, samples);
    EXPECT_NE((Param<VtValue>{"other", VtValue(16)}), samples);
}

TEST(ProjectionTypes, KeepTheirNumbers)
{
    EXPECT_EQ(static_cast<int>(ProjectionType::Perspective), 0);
    EXPECT_EQ(static_cast<int>(ProjectionType::Orthographic), 1);
    EXPECT_EQ(static_cast<int>(ProjectionType::Keep), 2);
}

} // namespace
