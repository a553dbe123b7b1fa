#include <vesk/base/result.h>

#include <memory>
#include <string>

#include <gtest/gtest.h>

#include <tests/support/log_capture.h>

using namespace vesk::base::result;
using vesk::base::error_handling::Exception;
using vesk::base::error_handling::GenericError;
using vesk::base::error_handling::makeErrorCode;
using vesk::tests::LogCapture;

namespace {

struct MoveCounter
{
    MoveCounter() = default;
    MoveCounter(const MoveCounter& other) : copies(other.copies + 1), moves(other.moves) {}
    MoveCounter(MoveCounter&& other) noexcept : copies(other.copies), moves(other.moves + 1) {}
    MoveCounter& operator=(const MoveCounter&) = delete;
    int copies = 0;
    int moves = 0;
};

std::string whatOf(const std::function<void()>& call)
{
    try {
        call();
    } catch (const std::runtime_error& error) {
        return error.what();
    }
    return "nothing was thrown";
}

} // namespace

TEST(Result, GivesItsValueOnce)
{
    Result<std::string> result(std::string("value"));
    EXPECT_TRUE(result.hasValue());
    EXPECT_EQ(result.code().value(), 0);
    EXPECT_EQ(result.takeValue(), "value");
    EXPECT_FALSE(result.hasValue());
    EXPECT_EQ(result.code().value(), static_cast<int>(0xFFFFBEEFu));
}

TEST(Result, HoldsValuesThatCanOnlyMove)
{
    Result<std::unique_ptr<int>> result(std::make_unique<int>(7));
    EXPECT_EQ(*checkResult(std::move(result)), 7);
}

TEST(Result, OfAConsumedResultTheErrorIsGenericErrorThree)
{
    LogCapture log;
    Result<bool> result(true);
    EXPECT_TRUE(checkResult(std::move(result)));
    EXPECT_EQ(result.takeError(), makeErrorCode(GenericError::ConsumedResult));
    EXPECT_EQ(result.takeError().value(), 3);
}

TEST(Result, ThrowsResultWithoutErrorWhileThereIsAValue)
{
    LogCapture log;
    const Result<int> result(1);
    EXPECT_EQ(whatOf([&] { result.takeError(); }), "Result without error");
}

TEST(Result, ThrowsResultWithoutValueForAFailureAndForAConsumedResult)
{
    LogCapture log;
    Result<int> failed(std::make_error_code(std::errc::io_error));
    EXPECT_EQ(whatOf([&] { failed.takeValue(); }), "Result without value");
    Result<int> consumed(1);
    consumed.takeValue();
    EXPECT_EQ(whatOf([&] { consumed.takeValue(); }), "Result without value");
}

TEST(Result, MadeOfACodeThatIsNoErrorIsAFailureAllTheSame)
{
    const Result<int> result{std::error_code()};
    EXPECT_FALSE(result.hasValue());
    EXPECT_EQ(result.takeError(), makeErrorCode(GenericError::Unknown));
}

TEST(CheckResult, MovesTheValueOut)
{
    Result<MoveCounter> result{MoveCounter()};
    const MoveCounter value = checkResult(std::move(result));
    EXPECT_EQ(value.copies, 0);
    EXPECT_EQ(result.code().value(), kConsumedResultCode);
}

TEST(CheckResult, LogsTheErrorOnceAndThrowsItsCode)
{
    LogCapture log;
    const std::error_code code = makeErrorCode(GenericError::InvalidArgument);
    Result<std::vector<int>> result(code);
    try {
        checkResult(std::move(result));
        ADD_FAILURE() << "nothing was thrown";
    } catch (const Exception& exception) {
        EXPECT_EQ(exception.code(), code);
    }
    const auto records = log.take();
    ASSERT_EQ(records.size(), 1u);
    EXPECT_EQ(records[0].text,
              std::string("CheckResult: error Invalid argument (category: GenericError, code: 2) in "
                          "result of type ") +
                  typeid(std::vector<int>).name());
    EXPECT_EQ(records[0].level, spdlog::level::err);
    EXPECT_EQ(records[0].file, "vesk/base/include/vesk/base/result.h");
    EXPECT_GT(records[0].line, 0);
    EXPECT_EQ(records[0].function, VESK_LOG_TAG);
}

TEST(CheckResult, LeavesAFailedResultAsItWas)
{
    LogCapture log;
    const std::error_code code = std::make_error_code(std::errc::io_error);
    Result<int> result(code);
    EXPECT_THROW(checkResult(std::move(result)), Exception);
    EXPECT_EQ(result.code(), code);
    EXPECT_EQ(result.takeError(), code);
    EXPECT_EQ(log.take().size(), 1u);
}

TEST(CheckResult, ThrowsTheStoredCodeOfAConsumedResult)
{
    LogCapture log;
    Result<int> result(1);
    result.takeValue();
    try {
        checkResult(std::move(result));
        ADD_FAILURE() << "nothing was thrown";
    } catch (const Exception& exception) {
        EXPECT_EQ(exception.code().value(), -16657);
    }
    EXPECT_EQ(log.take().size(), 1u);
}
