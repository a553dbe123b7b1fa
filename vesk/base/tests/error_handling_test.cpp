#include <vesk/base/error_handling.h>

#include <array>
#include <stdexcept>
#include <type_traits>

#include <gtest/gtest.h>

using namespace vesk::base::error_handling;

using Row = std::pair<int, std::string_view>;

TEST(Exception, CarriesItsCodeAndTheMessageOfTheCode)
{
    const Exception exception(makeErrorCode(GenericError::InvalidArgument));
    EXPECT_EQ(exception.code().value(), 2);
    EXPECT_EQ(&exception.code().category(), &getErrorCategory<GenericError>());
    EXPECT_STREQ(exception.what(), "Invalid argument");
}

TEST(Exception, PutsTheDetailBeforeTheMessage)
{
    const Exception exception(makeErrorCode(GenericError::InvalidArgument), "width is negative");
    EXPECT_STREQ(exception.what(), "width is negative: Invalid argument");
}

TEST(Exception, CanBeCaughtAsEachOfItsBases)
{
    static_assert(std::is_base_of_v<std::system_error, Exception>);
    EXPECT_THROW(throw Exception(makeErrorCode(GenericError::Unknown)), std::system_error);
    EXPECT_THROW(throw Exception(makeErrorCode(GenericError::Unknown)), std::runtime_error);
    EXPECT_THROW(throw Exception(makeErrorCode(GenericError::Unknown)), std::exception);
}

TEST(Exception, TakesAMissingDetailForAnEmptyOne)
{
    const Exception exception(makeErrorCode(GenericError::Unknown), nullptr);
    EXPECT_EQ(exception.code().value(), 1);
}

TEST(GenericErrorCategory, NamesItselfAndItsCodes)
{
    const std::error_category& category = getErrorCategory<GenericError>();
    EXPECT_STREQ(category.name(), "GenericError");
    EXPECT_EQ(category.message(1), "Unknown error");
    EXPECT_EQ(category.message(2), "Invalid argument");
    EXPECT_EQ(category.message(3), "Result already consumed");
    EXPECT_EQ(category.message(0), "Unknown GenericError error");
    EXPECT_EQ(category.message(4), "Unknown GenericError error");
    EXPECT_EQ(category.message(-1), "Unknown GenericError error");
}

TEST(GenericErrorCategory, ComparesCodesByCategoryAndValue)
{
    const std::error_code code = makeErrorCode(GenericError::ConsumedResult);
    EXPECT_EQ(code, std::error_condition(3, getErrorCategory<GenericError>()));
    EXPECT_NE(code, std::error_condition(3, std::generic_category()));
    EXPECT_EQ(code.default_error_condition(), std::error_condition(3, getErrorCategory<GenericError>()));
}

TEST(VerifyErrorEnumMapping, AcceptsUniqueCodesBetweenOneAndTheEndValue)
{
    const std::array<Row, 3> rows{Row{1, "a"}, Row{3, "c"}, Row{2, "b"}};
    EXPECT_TRUE(_verifyErrorEnumMapping("E", rows.data(), rows.size(), 4));
}

TEST(VerifyErrorEnumMapping, RefusesACodeThatOccursTwice)
{
    const std::array<Row, 2> rows{Row{1, "a"}, Row{1, "b"}};
    EXPECT_FALSE(_verifyErrorEnumMapping("E", rows.data(), rows.size(), 3));
}

TEST(VerifyErrorEnumMapping, RefusesCodesOutsideTheEnumeration)
{
    const Row zero{0, "success"}, end{3, "end"}, negative{-1, "below"};
    EXPECT_FALSE(_verifyErrorEnumMapping("E", &zero, 1, 3));
    EXPECT_FALSE(_verifyErrorEnumMapping("E", &end, 1, 3));
    EXPECT_FALSE(_verifyErrorEnumMapping("E", &negative, 1, 3));
}

TEST(VerifyErrorEnumMapping, RefusesAMissingNameOrTable)
{
    const Row row{1, "a"};
    EXPECT_FALSE(_verifyErrorEnumMapping(nullptr, &row, 1, 2));
    EXPECT_FALSE(_verifyErrorEnumMapping("E", nullptr, 1, 2));
    EXPECT_TRUE(_verifyErrorEnumMapping("E", nullptr, 0, 1));
}
