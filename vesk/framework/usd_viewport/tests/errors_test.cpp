#include <vesk/base/result.h>
#include <vesk/framework/usd_viewport/errors.h>

#include <gtest/gtest.h>

#include <climits>
#include <thread>
#include <vector>

namespace vesk::framework::usd_viewport {
namespace {

using vesk::base::error_handling::ErrEnum_ErrorCategory;
using vesk::base::error_handling::Exception;
using vesk::base::error_handling::getErrorCategory;

static_assert(std::is_same_v<std::underlying_type_t<ErrEnum>, int>);
static_assert(std::is_base_of_v<std::error_category, ErrEnum_ErrorCategory>);

const std::error_category& category() { return getErrorCategory<ErrEnum>(); }

TEST(ErrEnumCategory, IsOneObjectForAllThreads)
{
    std::vector<const std::error_category*> seen(8);
    std::vector<std::thread> threads;
    for (const std::error_category*& entry : seen)
        threads.emplace_back([&entry] { entry = &getErrorCategory<ErrEnum>(); });
    for (std::thread& thread : threads)
        thread.join();
    for (const std::error_category* entry : seen)
        EXPECT_EQ(entry, &category());
    EXPECT_STREQ(category().name(), "ErrEnum");
}

TEST(ErrEnumCategory, HasAMessageForEachCode)
{
    EXPECT_EQ(static_cast<int>(ErrEnum::InvalidDocument), 1);
    EXPECT_EQ(static_cast<int>(ErrEnum::EmptyFrame), 2);
    EXPECT_EQ(static_cast<int>(ErrEnum::InvalidCamera), 3);
    EXPECT_EQ(static_cast<int>(ErrEnum::FileSystemError), 4);
    EXPECT_EQ(category().message(1), "Invalid document");
    EXPECT_EQ(category().message(2), "Empty frame");
    EXPECT_EQ(category().message(3), "Invalid camera");
    EXPECT_EQ(category().message(4), "File system error");
}

TEST(ErrEnumCategory, SaysThatOtherCodesAreUnknown)
{
    for (const int code : {0, 5, -1, INT_MAX, INT_MIN})
        EXPECT_EQ(category().message(code), "Unknown ErrEnum error");
}

TEST(ErrEnumCategory, ComparesCodesByValueAndCategory)
{
    const std::error_code code(static_cast<int>(ErrEnum::InvalidCamera), category());
    EXPECT_EQ(code, std::error_condition(3, category()));
    EXPECT_NE(code, std::error_code(3, std::generic_category()));
    EXPECT_EQ(category().default_error_condition(3), std::error_condition(3, category()));
    EXPECT_TRUE(category().equivalent(code, 3));
    EXPECT_FALSE(category().equivalent(std::error_code(3, std::generic_category()), 3));
    EXPECT_TRUE(category().equivalent(3, std::error_condition(3, category())));
    EXPECT_FALSE(category().equivalent(3, std::error_condition(4, category())));
    EXPECT_FALSE(std::error_code(0, category()));
}

TEST(ErrEnumException, IsASystemErrorWithTheDetail)
{
    const std::error_code code(4, category());
    try {
        throw Exception(code, "disk full");
    } catch (const std::runtime_error& error) {
        EXPECT_NE(std::string(error.what()).find("disk full"), std::string::npos);
    }
    EXPECT_EQ(Exception(code).code(), code);
}

} // namespace
} // namespace vesk::framework::usd_viewport
