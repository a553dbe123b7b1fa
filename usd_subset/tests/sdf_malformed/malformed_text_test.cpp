#include "../sdf/support.h"
#include "counting_allocator.h"
#include "malformed_text.h"

#include <set>

using namespace sdf_tests;

TEST(MalformedText, IsOneErrorThatSaysWhatWasFoundAndWhatWasExpected)
{
    for (const MalformedFile& file : malformedCorpus()) {
        SCOPED_TRACE(file.text.substr(0, 200));
        EXPECT_EQ(ErrorsOf(file.text), std::vector<std::string>{file.error});
    }
}

TEST(MalformedText, IsOfManyKinds)
{
    std::set<std::string> texts;
    for (const MalformedFile& file : malformedCorpus()) {
        texts.insert(file.text);
    }
    EXPECT_GE(texts.size(), 600u);
}

TEST(MalformedText, TakesLittleMemory)
{
    if (!AllocationCount::IsCounting()) {
        GTEST_SKIP() << "this build's allocator is not ours to count";
    }
    for (const MalformedFile& file : malformedCorpus()) {
        const AllocationCount count;
        ErrorsOf(file.text);
        ASSERT_LT(count.PeakBytes(), 64u << 20) << file.text.substr(0, 200);
        ASSERT_LT(count.Allocations(), 50000u) << file.text.substr(0, 200);
    }
}

TEST(MalformedText, LeavesTheLayerAsItWas)
{
    const auto layer = Parse("def \"Kept\" {}\n");
    for (const MalformedFile& file : malformedCorpus()) {
        Errors errors;
        EXPECT_FALSE(layer->ImportFromString(file.text));
        EXPECT_EQ(layer->GetRootPrims().keys(), std::vector<std::string>{"Kept"});
    }
}

TEST(MalformedText, IsReportedWithTheNameOfItsFile)
{
    const TemporaryDirectory directory;
    for (const MalformedFile& file : malformedFromIssues()) {
        const std::string path = directory.Write("bad.usda", file.text);
        Errors errors;
        EXPECT_FALSE(SdfLayer::FindOrOpen(path));
        EXPECT_EQ(errors.Take(),
                  std::vector<std::string>{path + file.error.substr(std::string("<string>").size())});
    }
}

TEST(MalformedText, WithADamagedFirstLineIsTakenForText)
{
    const TemporaryDirectory directory;
    for (const char* line : {"#usda\x01 1.0\n", "#usda_1.0\n", "#usda", "#usd\n", ""}) {
        const std::string path = directory.Write("bad.usda", line);
        Errors errors;
        EXPECT_FALSE(SdfLayer::FindOrOpen(path));
        const std::vector<std::string> texts = errors.Take();
        ASSERT_EQ(texts.size(), 1u) << line;
        EXPECT_EQ(texts[0].substr(0, path.size() + 6), path + ":1:1: ") << line;
    }
}

TEST(MalformedText, OfBytesThatAreNoTextSaysWhereTheyAre)
{
    EXPECT_EQ(ErrorsOf("#usda 1.0\n\n# \xC3("),
              std::vector<std::string>{"<string>:3:3: found bytes that are not UTF-8, expected UTF-8 text"});
    EXPECT_EQ(ErrorsOf("#usda 1.0\ndef \"\xED\xA0\x80\" {}\n"),
              std::vector<std::string>{"<string>:2:6: found bytes that are not UTF-8, expected UTF-8 text"});
    EXPECT_EQ(
        ErrorsOf(std::string("#usda 1.0\n\0", 11)),
        std::vector<std::string>{"<string>:2:1: found a control character, expected def, over, class or "
                                 "reorder rootPrims"});
}
