#include <pxr/usd/sdf/specTable.h>

#include <gtest/gtest.h>

#include <map>
#include <random>
#include <string>

PXR_NAMESPACE_USING_DIRECTIVE

namespace {

SdfPath PathOf(unsigned number) { return SdfPath("/P" + std::to_string(number)); }

TEST(SpecTable, HoldsWhatAnOrderedMapHoldsAfterAnyMixOfAddingAndErasing)
{
    Sdf_SpecTable table;
    std::map<SdfPath, SdfSpecType> expected;
    std::mt19937 random(7);
    for (int step = 0; step != 20000; ++step) {
        const SdfPath path = PathOf(random() % 700);
        if (random() % 3 == 0) {
            EXPECT_EQ(expected.erase(path) != 0, table.Erase(path));
        } else {
            const auto type = random() % 2 ? SdfSpecTypePrim : SdfSpecTypeAttribute;
            table.FindOrAdd(path).type = type;
            expected[path] = type;
        }
    }
    EXPECT_EQ(expected.size(), table.GetSize());
    for (unsigned i = 0; i != 700; ++i) {
        const auto wanted = expected.find(PathOf(i));
        const Sdf_SpecTable::Spec* const found = table.Find(PathOf(i));
        ASSERT_EQ(wanted != expected.end(), found != nullptr);
        if (found) {
            EXPECT_EQ(wanted->second, found->type);
        }
    }
}

TEST(SpecTable, KeepsSpecsAtTheirAddressWhileItGrows)
{
    Sdf_SpecTable table;
    const Sdf_SpecTable::Spec* const first = &table.FindOrAdd(PathOf(0));
    for (unsigned i = 1; i != 5000; ++i) {
        table.FindOrAdd(PathOf(i));
    }
    EXPECT_EQ(first, table.Find(PathOf(0)));
}

TEST(SpecTable, VisitsEachSpecOnceUntilTold)
{
    Sdf_SpecTable table;
    for (unsigned i = 0; i != 10; ++i) {
        table.FindOrAdd(PathOf(i));
    }
    table.Erase(PathOf(3));
    std::map<SdfPath, int> visits;
    table.ForEach([&visits](const Sdf_SpecTable::Spec& spec) { return ++visits[spec.path] > 0; });
    EXPECT_EQ(9u, visits.size());
    EXPECT_EQ(0u, visits.count(PathOf(3)));
    int count = 0;
    table.ForEach([&count](const Sdf_SpecTable::Spec&) { return ++count < 4; });
    EXPECT_EQ(4, count);
}

TEST(SpecTable, FindsThePropertiesOfAPrimByTheirNames)
{
    Sdf_SpecTable table;
    const TfToken size("size");
    table.FindOrAdd(SdfPath("/A"));
    table.FindOrAdd(SdfPath("/A/size"));
    const Sdf_SpecTable::Spec* const property = &table.FindOrAdd(SdfPath("/A.size"));
    EXPECT_EQ(property, table.FindProperty(SdfPath("/A"), size));
    EXPECT_EQ(nullptr, table.FindProperty(SdfPath("/A/size"), size));
    EXPECT_EQ(nullptr, table.FindProperty(SdfPath("/A"), TfToken("radius")));
    EXPECT_EQ(nullptr, table.FindProperty(SdfPath("/"), TfToken("A")));
}

TEST(SpecTable, IsEmptyAtFirst)
{
    Sdf_SpecTable table;
    EXPECT_EQ(nullptr, table.Find(PathOf(1)));
    EXPECT_EQ(nullptr, table.FindProperty(PathOf(1), TfToken("size")));
    EXPECT_FALSE(table.Erase(PathOf(1)));
    EXPECT_EQ(0u, table.GetSize());
}

} // namespace
