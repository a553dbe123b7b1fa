// When the table of messages is checked. The check of this program stands in for the library's: it is seen at
// the first message of the process, so this program has one test.
#include <vesk/framework/usd_viewport/errors.h>

#include <gtest/gtest.h>

#include <atomic>
#include <string>
#include <thread>
#include <vector>

namespace {

struct MappingCheck
{
    std::string enumName;
    std::vector<std::pair<int, std::string>> mapping;
    int endValue = 0;
};

MappingCheck& lastCheck()
{
    static MappingCheck check;
    return check;
}

std::atomic<int> g_checks{0};

} // namespace

namespace vesk::base::error_handling {

bool _verifyErrorEnumMapping(const char* enumName, const std::pair<int, std::string_view>* mapping,
                             std::size_t count, int endValue)
{
    if (std::string(enumName) != "ErrEnum") return true;
    ++g_checks;
    lastCheck().enumName = enumName;
    for (std::size_t i = 0; i < count; ++i)
        lastCheck().mapping.emplace_back(mapping[i].first, mapping[i].second);
    lastCheck().endValue = endValue;
    return false;
}

} // namespace vesk::base::error_handling

namespace vesk::framework::usd_viewport {
namespace {

TEST(ErrEnumMapping, IsCheckedOnceAtTheFirstMessageAndUsedWhateverTheCheckSays)
{
    const std::error_category& category = base::error_handling::getErrorCategory<ErrEnum>();
    EXPECT_STREQ(category.name(), "ErrEnum");
    EXPECT_EQ(g_checks, 0) << "the category alone needs no messages";

    std::vector<std::thread> threads;
    std::atomic<bool> go{false};
    std::vector<std::string> messages(8);
    for (std::size_t i = 0; i < messages.size(); ++i) {
        threads.emplace_back([&, i] {
            while (!go)
                std::this_thread::yield();
            messages[i] = category.message(3);
        });
    }
    go = true;
    for (std::thread& thread : threads)
        thread.join();
    EXPECT_EQ(messages, std::vector<std::string>(8, "Invalid camera"));
    EXPECT_EQ(category.message(1), "Invalid document");
    EXPECT_EQ(category.message(5), "Unknown ErrEnum error");

    EXPECT_EQ(g_checks, 1);
    EXPECT_EQ(lastCheck().enumName, "ErrEnum");
    const std::vector<std::pair<int, std::string>> table{
        {1, "Invalid document"}, {2, "Empty frame"}, {3, "Invalid camera"}, {4, "File system error"}};
    EXPECT_EQ(lastCheck().mapping, table);
    EXPECT_EQ(lastCheck().endValue, 5);
}

} // namespace
} // namespace vesk::framework::usd_viewport
