#include <vesk/usd/model/selector.h>

#include <type_traits>
#include <unordered_set>

#include <gtest/gtest.h>

using vesk::usd::model::Selector;
using vesk::usd::model::SelectorHash;
PXR_NAMESPACE_USING_DIRECTIVE

TEST(Selector, IsBuiltFromAPathAlone)
{
    const Selector selector(SdfPath("/World/Box"));
    EXPECT_EQ(selector.path(), SdfPath("/World/Box"));
    EXPECT_FALSE(selector.instanceIndex());
}

TEST(Selector, SelectsNothingByDefault)
{
    EXPECT_TRUE(Selector().path().IsEmpty());
    EXPECT_EQ(Selector(), Selector(SdfPath()));
}

TEST(Selector, EqualsByPathAndInstance)
{
    const SdfPath path("/World/Points");
    EXPECT_EQ(Selector(path), Selector(path));
    EXPECT_EQ(Selector(path, 3), Selector(path, 3));
    EXPECT_NE(Selector(path, 3), Selector(path, 4));
    EXPECT_NE(Selector(path, 0), Selector(path));
    EXPECT_NE(Selector(path), Selector(SdfPath("/World")));
}

TEST(Selector, IsAPlainValue)
{
    static_assert(std::is_copy_constructible_v<Selector> && std::is_copy_assignable_v<Selector>);
    static_assert(std::is_nothrow_move_constructible_v<Selector>);
    Selector a(SdfPath("/A"), 2);
    const Selector b = a;
    a = Selector(SdfPath("/B"));
    EXPECT_EQ(b, Selector(SdfPath("/A"), 2));
}

TEST(SelectorHash, IsEqualForEqualSelectors)
{
    const SelectorHash hash;
    EXPECT_EQ(hash(Selector(SdfPath("/A"), 7)), hash(Selector(SdfPath("/A"), 7)));
    EXPECT_EQ(hash(Selector(SdfPath("/A"))), hash(Selector(SdfPath("/A"))));
}

TEST(SelectorHash, SpreadsTheInstancesOfOneInstancer)
{
    const SelectorHash hash;
    std::unordered_set<std::size_t> hashes;
    for (int i = 0; i < 1000; ++i)
        hashes.insert(hash(Selector(SdfPath("/World/Points"), i)));
    EXPECT_EQ(hashes.size(), 1000u);
}

TEST(SelectorHash, ServesUnorderedSets)
{
    const std::unordered_set<Selector, SelectorHash> set{SdfPath("/A"), SdfPath("/B"), SdfPath("/A"),
                                                         Selector(SdfPath("/A"), 0)};
    EXPECT_EQ(set.size(), 3u);
    EXPECT_EQ(set.count(SdfPath("/B")), 1u);
    EXPECT_EQ(set.count(Selector(SdfPath("/B"), 0)), 0u);
}
