#include "../tf/gate.h"

#include <pxr/usd/sdf/path.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <random>
#include <sstream>
#include <unordered_set>

PXR_NAMESPACE_USING_DIRECTIVE

namespace {

SdfPathVector paths(std::initializer_list<const char*> texts)
{
    return SdfPathVector(texts.begin(), texts.end());
}

} // namespace

TEST(PathOrder, IsDepthFirstWithPropertiesBeforeChildren)
{
    const SdfPathVector sorted = {SdfPath(),
                                  SdfPath("/"),
                                  SdfPath("/A"),
                                  SdfPath("/A.a"),
                                  SdfPath("/A.b"),
                                  SdfPath("/A.b[/S]"),
                                  SdfPath("/A.b[/T]"),
                                  SdfPath("/A.b.mapper[/T]"),
                                  SdfPath("/A.b.expression"),
                                  SdfPath("/A/B"),
                                  SdfPath("/A/B/C"),
                                  SdfPath("/A/Bb"),
                                  SdfPath("/A{s=v}"),
                                  SdfPath("/A{s=v}B"),
                                  SdfPath("/A{s=w}"),
                                  SdfPath("/AB"),
                                  SdfPath("/B"),
                                  SdfPath("."),
                                  SdfPath(".a"),
                                  SdfPath(".."),
                                  SdfPath("../.."),
                                  SdfPath("A"),
                                  SdfPath("A/B")};
    SdfPathVector shuffled = sorted;
    std::shuffle(shuffled.begin(), shuffled.end(), std::mt19937(1));
    std::sort(shuffled.begin(), shuffled.end());
    EXPECT_EQ(shuffled, sorted);
}

TEST(PathOrder, IsStrictAndTotal)
{
    const SdfPathVector all = paths({"/", "/A", "/A.b", "/A/B", "/A{s=v}", ".", "A", ".."});
    for (const SdfPath& a : all) {
        for (const SdfPath& b : all) {
            EXPECT_EQ((a < b) + (b < a) + (a == b), 1) << a << " " << b;
        }
    }
}

TEST(PathHandles, OfOnePathAreOne)
{
    EXPECT_EQ(SdfPath("/A/B"), SdfPath("/A").AppendChild(TfToken("B")));
    EXPECT_EQ(SdfPath("/A/B").GetHash(), SdfPath("/A/B").GetHash());
    EXPECT_EQ(sizeof(SdfPath), sizeof(void*));
}

TEST(PathHandles, WorkAsKeys)
{
    const SdfPathVector all = paths({"/A", "/A/B", "/A", "/C"});
    EXPECT_EQ((std::unordered_set<SdfPath, SdfPath::Hash>(all.begin(), all.end())).size(), 3u);
    EXPECT_EQ((std::set<SdfPath, SdfPath::FastLessThan>(all.begin(), all.end())).size(), 3u);
    EXPECT_EQ(SdfPathSet(all.begin(), all.end()).size(), 3u);
}

TEST(PathHandles, MoveAndSwap)
{
    SdfPath a("/A"), b("/B");
    swap(a, b);
    EXPECT_EQ(a, SdfPath("/B"));
    const SdfPath moved = std::move(a);
    EXPECT_TRUE(a.IsEmpty()); // NOLINT: the moved-from state is what is tested
    EXPECT_EQ(moved, SdfPath("/B"));
    const SdfPath& same = b;
    b = same;
    EXPECT_EQ(b, SdfPath("/A"));
}

TEST(PathStream, IsItsText)
{
    std::ostringstream out;
    out << SdfPath("/A.b") << SdfPath();
    EXPECT_EQ(out.str(), "/A.b");
}

TEST(PathSearch, FindsTheLongestPrefixInSortedPaths)
{
    const SdfPathVector sorted = paths({"/", "/A", "/A/B", "/A/B/C", "/A/D", "/B"});
    const auto find = [&](const char* text) {
        const auto found = SdfPathFindLongestPrefix(sorted.begin(), sorted.end(), SdfPath(text));
        return found == sorted.end() ? std::string("none") : found->GetAsString();
    };
    EXPECT_EQ(find("/A/B/C/D"), "/A/B/C");
    EXPECT_EQ(find("/A/B/X/Y"), "/A/B");
    EXPECT_EQ(find("/A/C"), "/A");
    EXPECT_EQ(find("/Q"), "/");
    EXPECT_EQ(find("/A"), "/A");
    EXPECT_EQ(find("A"), "none");
}

TEST(PathSearch, AgreesWithTryingEveryPath)
{
    std::mt19937 random(7);
    const auto randomPath = [&] {
        SdfPath path("/");
        for (int depth = int(random() % 5); depth > 0; --depth) {
            path = path.AppendChild(TfToken(std::string(1, char('a' + random() % 3))));
        }
        return path;
    };
    for (int round = 0; round != 300; ++round) {
        SdfPathSet set;
        std::map<SdfPath, int> map;
        for (int i = 0; i != 6; ++i) {
            const SdfPath path = randomPath();
            set.insert(path);
            map[path] = 1;
        }
        const SdfPath wanted = randomPath();
        SdfPath best, bestStrict;
        for (const SdfPath& path : set) {
            if (wanted.HasPrefix(path)) {
                best = path;
                bestStrict = path == wanted ? bestStrict : path;
            }
        }
        const auto found = SdfPathFindLongestPrefix(set, wanted);
        EXPECT_EQ(found == set.end() ? SdfPath() : *found, best);
        const auto strict = SdfPathFindLongestStrictPrefix(map, wanted);
        EXPECT_EQ(strict == map.end() ? SdfPath() : strict->first, bestStrict);
    }
}

TEST(PathSearch, FindsTheRangeBelowAPrefix)
{
    const SdfPathVector sorted = paths({"/A", "/A.b", "/A/B", "/A/B/C", "/AB", "/B"});
    const auto [first, last] = SdfPathFindPrefixedRange(sorted.begin(), sorted.end(), SdfPath("/A"));
    EXPECT_EQ(SdfPathVector(first, last), paths({"/A", "/A.b", "/A/B", "/A/B/C"}));
}

TEST(PathSets, LoseDescendantsOrAncestors)
{
    SdfPathVector all = paths({"/A/B", "/A", "/C/D", "/A.b", "/C/E", "/AB"});
    SdfPath::RemoveDescendentPaths(&all);
    EXPECT_EQ(all, paths({"/A", "/AB", "/C/D", "/C/E"}));
    all = paths({"/A", "/A/B", "/A/B/C", "/D", "/A"});
    SdfPath::RemoveAncestorPaths(&all);
    EXPECT_EQ(all, paths({"/A/B/C", "/D"}));
}

TEST(PathSets, GetConciseNamesThatDiffer)
{
    EXPECT_EQ(SdfPath::GetConciseRelativePaths(paths({"/World/Left/Arm", "/World/Right/Arm", "/World/Head"})),
              paths({"Left/Arm", "Right/Arm", "Head"}));
}

TEST(PathHandles, AreInternedOnceWhateverTheThread)
{
    constexpr int kThreads = 4, kPaths = 300;
    std::vector<SdfPathVector> made(kThreads);
    runTogether(kThreads, [&](int thread) {
        for (int i = 0; i != kPaths; ++i) {
            made[thread].push_back(SdfPath("/Threads/p" + std::to_string(i) + ".value"));
        }
    });
    for (int thread = 1; thread != kThreads; ++thread) {
        EXPECT_EQ(made[thread], made[0]);
    }
}

TEST(PathHandles, SurviveThreadsThatMakeAndForgetTheSamePath)
{
    std::vector<int> wrong(4, 0);
    runTogether(4, [&](int thread) {
        for (int i = 0; i != 5000; ++i) {
            const SdfPath path("/Made/and/forgotten.rel[/Elsewhere/too]");
            wrong[thread] += path.GetParentPath().GetAsString() != "/Made/and/forgotten.rel";
            wrong[thread] += std::string(path.GetText()) != "/Made/and/forgotten.rel[/Elsewhere/too]";
        }
    });
    EXPECT_EQ(wrong, std::vector<int>(4, 0));
}
