#include <pxr/base/tf/functionRef.h>
#include <pxr/base/tf/iterator.h>
#include <pxr/base/tf/scoped.h>
#include <pxr/base/tf/stopwatch.h>

#include <gtest/gtest.h>

#include <map>
#include <string>
#include <vector>

PXR_NAMESPACE_USING_DIRECTIVE

TEST(Iterator, VisitsAllElementsToAndFro)
{
    std::vector<int> numbers{1, 2, 3};
    std::vector<int> seen;
    TF_FOR_ALL(it, numbers)
    seen.push_back(*it);
    TF_REVERSE_FOR_ALL(it, numbers)
    seen.push_back(*it);
    EXPECT_EQ(seen, (std::vector<int>{1, 2, 3, 3, 2, 1}));
}

TEST(Iterator, ChangesElementsAndReachesTheirMembers)
{
    std::map<std::string, int> ages{{"a", 1}, {"b", 2}};
    TF_FOR_ALL(it, ages)
    it->second += 10;
    EXPECT_EQ(ages, (std::map<std::string, int>{{"a", 11}, {"b", 12}}));
}

TEST(Iterator, KnowsItsEndAndTheNextElement)
{
    const std::vector<int> numbers{1, 2};
    TfIterator<const std::vector<int>> it(numbers);
    EXPECT_EQ(*it.GetNext(), 2);
    EXPECT_EQ(*it++, 1);
    EXPECT_TRUE(it);
    ++it;
    EXPECT_FALSE(it);
    const std::vector<int> none;
    EXPECT_FALSE(TfMakeIterator(none));
}

TEST(Scoped, CallsItsFunctionAtTheEndOfTheScope)
{
    int calls = 0;
    {
        const TfScoped<> scope([&calls] { ++calls; });
        EXPECT_EQ(calls, 0);
    }
    EXPECT_EQ(calls, 1);
}

TEST(Scoped, SetsAVariableBack)
{
    std::string name = "before";
    {
        const TfScopedVar<std::string> scope(name, "within");
        EXPECT_EQ(name, "within");
    }
    EXPECT_EQ(name, "before");
}

TEST(Stopwatch, AddsUpItsSamples)
{
    TfStopwatch first, second;
    first.Start();
    first.Stop();
    second.Start();
    second.Stop();
    const int64_t own = first.GetNanoseconds();
    first.AddFrom(second);
    EXPECT_EQ(first.GetSampleCount(), 2u);
    EXPECT_EQ(first.GetNanoseconds(), own + second.GetNanoseconds());
    first.Reset();
    EXPECT_EQ(first.GetNanoseconds(), 0);
}

TEST(FunctionRef, ChangesPlacesWithAnother)
{
    const auto one = [] { return 1; };
    const auto two = [] { return 2; };
    TfFunctionRef<int()> a(one), b(two);
    swap(a, b);
    EXPECT_EQ(a(), 2);
    EXPECT_EQ(b(), 1);
    a = b;
    EXPECT_EQ(a(), 1);
}
