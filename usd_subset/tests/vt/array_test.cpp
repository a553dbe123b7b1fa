#include "../tf/gate.h"

#include <pxr/base/tf/hash.h>
#include <pxr/base/tf/span.h>
#include <pxr/base/vt/array.h>
#include <pxr/base/vt/types.h>

#include <gtest/gtest.h>

#include <list>
#include <new>
#include <sstream>
#include <string>

PXR_NAMESPACE_USING_DIRECTIVE

namespace {

using Strings = VtArray<std::string>;

/// Elements that lie in the test's own memory.
struct Source : Vt_ArrayForeignDataSource
{
    explicit Source(int* detached_) : Vt_ArrayForeignDataSource(&onDetached), detached(detached_) {}
    static void onDetached(Vt_ArrayForeignDataSource* self) { ++*static_cast<Source*>(self)->detached; }
    int* detached;
    int numbers[3] = {1, 2, 3};
};

/// Throws on the copy that brings a count to 0.
struct Throwing
{
    Throwing() = default;
    Throwing(Throwing const&)
    {
        if (--copiesLeft == 0) {
            throw std::bad_alloc();
        }
        ++alive;
    }
    explicit Throwing(int) { ++alive; }
    ~Throwing() { --alive; }
    Throwing& operator=(Throwing const&) = default;
    static inline int copiesLeft = -1;
    static inline int alive = 0;
};

} // namespace

TEST(Array, IsMadeOfSizeValueListOrRange)
{
    EXPECT_EQ(VtIntArray(2), (VtIntArray{0, 0}));
    EXPECT_EQ(VtIntArray(2, 7), (VtIntArray{7, 7}));
    const std::list<int> list{1, 2, 3};
    EXPECT_EQ(VtIntArray(list.begin(), list.end()), (VtIntArray{1, 2, 3}));
    EXPECT_TRUE(VtIntArray().empty());
}

TEST(Array, IsSharedUntilWritten)
{
    Strings a{"a", "b"};
    Strings b = a;
    EXPECT_TRUE(a.IsIdentical(b));
    b[0] = "changed";
    EXPECT_FALSE(a.IsIdentical(b));
    EXPECT_EQ(a, (Strings{"a", "b"}));
    EXPECT_EQ(b, (Strings{"changed", "b"}));
}

TEST(Array, IsNotDetachedByReading)
{
    VtIntArray a{1, 2, 3};
    VtIntArray b = a;
    EXPECT_EQ(b.cdata()[0] + b.AsConst()[1] + b.cfront() + *b.cbegin() + b.cback(), 8);
    EXPECT_TRUE(a.IsIdentical(b));
}

TEST(Array, IsDetachedByMutableAccess)
{
    const VtIntArray a{1, 2, 3};
    VtIntArray b = a, c = a, d = a;
    EXPECT_NE(b.data(), a.cdata());
    EXPECT_NE(&*c.begin(), a.cdata());
    EXPECT_NE(&d.front(), a.cdata());
}

TEST(Array, MovesWithoutCopying)
{
    VtIntArray a{1, 2};
    const int* data = a.cdata();
    const VtIntArray b = std::move(a);
    EXPECT_EQ(b.cdata(), data);
    EXPECT_TRUE(a.empty());
}

TEST(Array, GrowsByPushing)
{
    Strings array;
    for (int i = 0; i != 100; ++i) {
        array.push_back(std::to_string(i));
    }
    ASSERT_EQ(array.size(), 100u);
    EXPECT_EQ(array[63], "63");
    EXPECT_GE(array.capacity(), 100u);
    array.pop_back();
    EXPECT_EQ(array.size(), 99u);
}

TEST(Array, PushesItsOwnElement)
{
    Strings array{"first"};
    for (int i = 0; i != 20; ++i) {
        array.push_back(array.AsConst()[0]);
    }
    EXPECT_EQ(array, Strings(21, "first"));
}

TEST(Array, LeavesSharersAloneWhenItGrows)
{
    const Strings a{"a"};
    Strings b = a;
    b.push_back("b");
    b.emplace_back(2, 'c');
    EXPECT_EQ(a, Strings{"a"});
    EXPECT_EQ(b, (Strings{"a", "b", "cc"}));
}

TEST(Array, Resizes)
{
    VtIntArray array{1, 2, 3};
    array.resize(5);
    EXPECT_EQ(array, (VtIntArray{1, 2, 3, 0, 0}));
    array.resize(2);
    EXPECT_EQ(array, (VtIntArray{1, 2}));
    array.resize(4, 9);
    EXPECT_EQ(array, (VtIntArray{1, 2, 9, 9}));
    array.resize(0);
    EXPECT_TRUE(array.empty());
}

TEST(Array, ResizesToItsOwnElement)
{
    Strings array{"x"};
    array.resize(3, array[0]);
    EXPECT_EQ(array, Strings(3, "x"));
}

TEST(Array, ResizesASharedOneApart)
{
    const VtIntArray a{1, 2, 3};
    VtIntArray b = a;
    b.resize(2);
    EXPECT_EQ(a.size(), 3u);
    EXPECT_EQ(b, (VtIntArray{1, 2}));
}

TEST(Array, ReservesAndKeepsItsElements)
{
    Strings array{"a", "b"};
    array.reserve(50);
    EXPECT_EQ(array.capacity(), 50u);
    const std::string* data = array.cdata();
    array.resize(50);
    EXPECT_EQ(array.cdata(), data);
    EXPECT_EQ(array[1], "b");
}

TEST(Array, ClearsAndKeepsItsMemoryWhenAlone)
{
    VtIntArray array{1, 2, 3};
    const VtIntArray sharer = array;
    array.clear();
    EXPECT_TRUE(array.empty());
    EXPECT_EQ(sharer.size(), 3u);
    VtIntArray alone{1, 2, 3};
    alone.clear();
    EXPECT_EQ(alone.capacity(), 3u);
}

TEST(Array, Erases)
{
    Strings array{"a", "b", "c", "d"};
    EXPECT_EQ(*array.erase(array.cbegin() + 1, array.cbegin() + 3), "d");
    EXPECT_EQ(array, (Strings{"a", "d"}));
    array.erase(array.cbegin());
    EXPECT_EQ(array, Strings{"d"});
    EXPECT_EQ(array.erase(array.cbegin(), array.cbegin()), array.begin());
}

TEST(Array, AssignsFromItself)
{
    Strings array{"a", "b", "c"};
    array.assign(array.cbegin() + 1, array.cend());
    EXPECT_EQ(array, (Strings{"b", "c"}));
    array = {"z"};
    EXPECT_EQ(array, Strings{"z"});
}

TEST(Array, ComparesElements)
{
    EXPECT_EQ((VtIntArray{1, 2}), (VtIntArray{1, 2}));
    EXPECT_NE((VtIntArray{1, 2}), (VtIntArray{1, 3}));
    EXPECT_NE((VtIntArray{1, 2}), (VtIntArray{1}));
    EXPECT_EQ(TfHash()(VtIntArray{1, 2}), TfHash()(VtIntArray{1, 2}));
}

TEST(Array, StreamsInBrackets)
{
    std::ostringstream out;
    out << VtIntArray{1, 2} << VtIntArray() << VtFloatArray{0.1f} << VtBoolArray{true, false};
    EXPECT_EQ(out.str(), "[1, 2][][0.1][1, 0]");
}

TEST(Array, IsSeenThroughSpans)
{
    VtIntArray a{1, 2, 3};
    const VtIntArray b = a;
    const TfSpan<const int> view = TfMakeConstSpan(a);
    EXPECT_EQ(view.data(), b.cdata());
    EXPECT_EQ(view.subspan(1).size(), 2u);
    const TfSpan<int> writing = TfMakeSpan(a);
    EXPECT_NE(writing.data(), b.cdata());
}

TEST(Array, ReadsForeignElementsInPlace)
{
    int detached = 0;
    Source source(&detached);
    {
        const VtIntArray array(&source, source.numbers, 3);
        const VtIntArray copy = array;
        EXPECT_EQ(copy.cdata(), source.numbers);
        EXPECT_EQ(copy, (VtIntArray{1, 2, 3}));
        EXPECT_EQ(detached, 0);
    }
    EXPECT_EQ(detached, 1);
}

TEST(Array, CopiesForeignElementsBeforeItWrites)
{
    int detached = 0;
    Source source(&detached);
    VtIntArray array(&source, source.numbers, 3);
    array[0] = 9;
    EXPECT_EQ(source.numbers[0], 1);
    EXPECT_EQ(array, (VtIntArray{9, 2, 3}));
    EXPECT_EQ(detached, 1);
}

TEST(Array, GrowsForeignElementsApart)
{
    int detached = 0;
    Source source(&detached);
    VtIntArray array(&source, source.numbers, 3);
    array.push_back(4);
    EXPECT_EQ(array, (VtIntArray{1, 2, 3, 4}));
    EXPECT_EQ(detached, 1);
}

TEST(Array, ThatIsTooLargeIsRefused)
{
    VtArray<double> array;
    EXPECT_THROW(array.reserve(size_t(-1) / 8), std::bad_alloc);
    EXPECT_TRUE(array.empty());
}

TEST(Array, StaysAsItWasWhenACopyFails)
{
    Throwing::alive = 0;
    {
        VtArray<Throwing> array;
        array.emplace_back(1);
        array.emplace_back(1);
        const VtArray<Throwing> sharer = array;
        const int before = Throwing::alive;
        Throwing::copiesLeft = 2;
        EXPECT_THROW(array.emplace_back(1), std::bad_alloc);
        Throwing::copiesLeft = -1;
        EXPECT_EQ(Throwing::alive, before);
        EXPECT_TRUE(array.IsIdentical(sharer));
    }
    EXPECT_EQ(Throwing::alive, 0);
}

TEST(Array, IsCopiedAndDetachedOnSeveralThreads)
{
    const VtIntArray shared(100, 1);
    std::vector<int> wrong(4, 0);
    runTogether(4, [&](int thread) {
        for (int i = 0; i != 2000; ++i) {
            VtIntArray mine = shared;
            mine[i % 100] = thread + 2;
            wrong[thread] += mine[i % 100] != thread + 2;
        }
    });
    EXPECT_EQ(wrong, std::vector<int>(4, 0));
    EXPECT_EQ(shared, VtIntArray(100, 1));
}
