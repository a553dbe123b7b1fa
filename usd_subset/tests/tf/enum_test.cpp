#include <pxr/base/tf/enum.h>
#include <pxr/base/tf/registryManager.h>

#include <gtest/gtest.h>

#include <sstream>

PXR_NAMESPACE_OPEN_SCOPE

enum EnumTestColor
{
    EnumTestRed,
    EnumTestGreen,
    EnumTestBlue
};

TF_REGISTRY_FUNCTION(TfEnum)
{
    TF_ADD_ENUM_NAME(EnumTestRed);
    TF_ADD_ENUM_NAME(EnumTestGreen, "a green");
}

namespace {

TEST(Enum, KnowsItsTypeAndValue)
{
    const TfEnum green = EnumTestGreen;
    EXPECT_TRUE(green.IsA<EnumTestColor>());
    EXPECT_EQ(green.GetValue<EnumTestColor>(), EnumTestGreen);
    EXPECT_TRUE(green == EnumTestGreen);
    EXPECT_TRUE(green != EnumTestRed);
}

TEST(Enum, HasNames)
{
    EXPECT_EQ(TfEnum::GetName(EnumTestGreen), "EnumTestGreen");
    EXPECT_EQ(TfEnum::GetDisplayName(EnumTestGreen), "a green");
    EXPECT_EQ(TfEnum::GetDisplayName(EnumTestRed), "EnumTestRed");
    EXPECT_EQ(TfEnum::GetFullName(EnumTestRed), "EnumTestColor::EnumTestRed");
    EXPECT_EQ(TfEnum::GetName(EnumTestBlue), "");
    EXPECT_EQ(TfEnum::GetAllNames<EnumTestColor>(),
              (std::vector<std::string>{"EnumTestRed", "EnumTestGreen"}));
}

TEST(Enum, StreamsItsFullName)
{
    std::ostringstream out;
    out << TfEnum(EnumTestGreen) << " " << TfEnum(EnumTestBlue);
    EXPECT_EQ(out.str(), "EnumTestColor::EnumTestGreen EnumTestColor::2");
}

TEST(Enum, IsFoundByItsName)
{
    bool found = false;
    EXPECT_EQ(TfEnum::GetValueFromName<EnumTestColor>("EnumTestGreen", &found), EnumTestGreen);
    EXPECT_TRUE(found);
    TfEnum::GetValueFromName<EnumTestColor>("EnumTestPink", &found);
    EXPECT_FALSE(found);
}

} // namespace

PXR_NAMESPACE_CLOSE_SCOPE
