#include <vesk/base/logging.h>

#include <atomic>
#include <thread>

#include <gtest/gtest.h>

#include <tests/support/log_capture.h>

using vesk::tests::LogCapture;

namespace {

/// Takes the default logger away and puts it back.
class WithoutLogger
{
public:
    WithoutLogger() : m_former(spdlog::default_logger()) { spdlog::set_default_logger(nullptr); }
    ~WithoutLogger() { spdlog::set_default_logger(m_former); }

private:
    std::shared_ptr<spdlog::logger> m_former;
};

} // namespace

TEST(Logging, WritesLevelTextFileLineAndTag)
{
    LogCapture log;
    const int line = __LINE__ + 1;
    VESK_LOG_WARN("{} of {}", 1, "two");
    const auto records = log.take();
    ASSERT_EQ(records.size(), 1u);
    EXPECT_EQ(records[0].level, spdlog::level::warn);
    EXPECT_EQ(records[0].text, "1 of two");
    EXPECT_EQ(records[0].file, "vesk/base/tests/logging_test.cpp");
    EXPECT_EQ(records[0].line, line);
    EXPECT_EQ(records[0].function, VESK_LOG_TAG);
}

TEST(Logging, TakesTextOfUsersForWhatItIs)
{
    LogCapture log;
    const std::string label = "{} {0} {missing} \xff\xfe %s";
    VESK_LOG_ERROR("({})", label);
    EXPECT_EQ(log.takeTexts(), std::vector<std::string>{"(" + label + ")"});
}

TEST(Logging, SaysNothingWithoutADefaultLogger)
{
    const WithoutLogger without;
    EXPECT_EQ(vesk::base::logging::defaultLogger(), nullptr);
    VESK_LOG_ERROR("nobody hears {}", "this");
}

TEST(Logging, FollowsALoggerThatIsReplacedWhileOthersLog)
{
    const LogCapture log;
    std::atomic<bool> stop{false};
    std::atomic<int> written{0};
    std::thread writer([&] {
        while (!stop) {
            VESK_LOG_DEBUG("still here");
            ++written;
        }
    });
    const auto former = spdlog::default_logger();
    const auto silent = std::make_shared<spdlog::logger>("silent");
    while (written < 1000) {
        spdlog::set_default_logger(silent);
        spdlog::set_default_logger(nullptr);
    }
    stop = true;
    writer.join();
    spdlog::set_default_logger(former);
    const_cast<LogCapture&>(log).allowUntaken();
}
