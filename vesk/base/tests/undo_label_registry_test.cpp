#include <vesk/base/undo_label_registry.h>

#include <thread>

#include <gtest/gtest.h>

using vesk::base::UndoLabelRegistry;

namespace {
UndoLabelRegistry& registry() { return UndoLabelRegistry::getInstance(); }

// Registered while the program is loaded, as libraries do.
const std::string s_early = registry().registerUndoLabel("registryTest.early", "early label");
} // namespace

TEST(UndoLabelRegistry, IsOneObject)
{
    EXPECT_EQ(&UndoLabelRegistry::getInstance(), &UndoLabelRegistry::getInstance());
}

TEST(UndoLabelRegistry, ReturnsTheDisplayTextAsTheLabel)
{
    EXPECT_EQ(s_early, "early label");
    EXPECT_EQ(registry().registerUndoLabel("registryTest.plain", "plain label"), "plain label");
}

TEST(UndoLabelRegistry, FindsTextsByKeyAndKeysByText)
{
    registry().registerUndoLabel("registryTest.find", "find me");
    EXPECT_EQ(registry().findDisplayText("registryTest.find"), "find me");
    EXPECT_EQ(registry().findKey("find me"), "registryTest.find");
    EXPECT_EQ(registry().findDisplayText("registryTest.absent"), std::nullopt);
    EXPECT_EQ(registry().findKey("absent"), std::nullopt);
}

TEST(UndoLabelRegistry, KeepsTheFirstRegistrationOfAKey)
{
    registry().registerUndoLabel("registryTest.twice", "first");
    const std::size_t before = registry().labels().size();
    EXPECT_EQ(registry().registerUndoLabel("registryTest.twice", "second"), "first");
    EXPECT_EQ(registry().labels().size(), before);
    EXPECT_EQ(registry().findKey("second"), std::nullopt);
}

TEST(UndoLabelRegistry, NamesTheFirstKeyOfASharedText)
{
    registry().registerUndoLabel("registryTest.shareA", "shared");
    registry().registerUndoLabel("registryTest.shareB", "shared");
    EXPECT_EQ(registry().findKey("shared"), "registryTest.shareA");
    EXPECT_EQ(registry().findDisplayText("registryTest.shareB"), "shared");
}

TEST(UndoLabelRegistry, ListsLabelsInTheOrderOfTheirRegistration)
{
    registry().registerUndoLabel("registryTest.orderA", "order a");
    registry().registerUndoLabel("registryTest.orderB", "order b");
    const auto labels = registry().labels();
    ASSERT_GE(labels.size(), 2u);
    EXPECT_EQ(labels[labels.size() - 2],
              (std::pair<std::string, std::string>{"registryTest.orderA", "order a"}));
    EXPECT_EQ(labels[labels.size() - 1],
              (std::pair<std::string, std::string>{"registryTest.orderB", "order b"}));
}

TEST(UndoLabelRegistry, TakesRegistrationsFromManyThreads)
{
    std::vector<std::thread> threads;
    for (int thread = 0; thread < 8; ++thread)
        threads.emplace_back([thread] {
            for (int i = 0; i < 100; ++i) {
                const std::string key = "registryTest.thread" + std::to_string(i);
                registry().registerUndoLabel(key, "from " + std::to_string(thread));
            }
        });
    for (std::thread& thread : threads)
        thread.join();
    std::size_t found = 0;
    for (const auto& [key, text] : registry().labels())
        if (key.rfind("registryTest.thread", 0) == 0) ++found;
    EXPECT_EQ(found, 100u);
}
