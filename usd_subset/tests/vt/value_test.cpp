#include "../tf/gate.h"
#include "../tf/recording_delegate.h"

#include <pxr/base/gf/vec3f.h>
#include <pxr/base/tf/token.h>
#include <pxr/base/vt/array.h>
#include <pxr/base/vt/types.h>
#include <pxr/base/vt/value.h>

#include <gtest/gtest.h>

#include <array>
#include <atomic>
#include <sstream>

PXR_NAMESPACE_USING_DIRECTIVE

namespace {

/// Larger than a value's own storage; counts its copies.
struct Large
{
    explicit Large(int number_ = 0) : number(number_) {}
    Large(Large const& other) : number(other.number) { ++copies; }
    Large& operator=(Large const& other) = default;
    bool operator==(Large const& other) const { return number == other.number; }

    int number;
    std::array<char, 64> padding{};
    static inline std::atomic<int> copies{0};
};

std::string text(VtValue const& value)
{
    std::ostringstream out;
    out << value;
    return out.str();
}

} // namespace

TEST(Value, StartsEmpty)
{
    const VtValue value;
    EXPECT_TRUE(value.IsEmpty());
    EXPECT_EQ(value.GetTypeid(), typeid(void));
    EXPECT_EQ(value.GetTypeName(), "void");
    EXPECT_EQ(value.GetHash(), 0u);
    EXPECT_EQ(text(value), "");
    EXPECT_EQ(value, VtValue());
}

TEST(Value, HoldsWhatItWasGiven)
{
    const VtValue value(1.5);
    EXPECT_TRUE(value.IsHolding<double>());
    EXPECT_FALSE(value.IsHolding<float>());
    EXPECT_EQ(value.Get<double>(), 1.5);
    EXPECT_EQ(value.UncheckedGet<double>(), 1.5);
    EXPECT_EQ(value.GetTypeName(), "double");
}

TEST(Value, KeepsCStringsAsStrings)
{
    VtValue value("text");
    EXPECT_TRUE(value.IsHolding<std::string>());
    value = "other";
    EXPECT_EQ(value.Get<std::string>(), "other");
    EXPECT_TRUE(value == "other");
}

TEST(Value, OfAnotherTypeGivesADefaultAndAnError)
{
    RecordingDelegate diagnostics;
    EXPECT_EQ(VtValue(1).Get<double>(), 0.0);
    const VtValue empty;
    EXPECT_EQ(empty.Get<std::string>(), "");
    EXPECT_EQ(
        diagnostics.texts,
        (std::vector<std::string>{"error: Attempted to get value of type 'double' from VtValue holding 'int'",
                                  "error: Attempted to get value of type 'string' from empty VtValue."}));
}

TEST(Value, GivesTheFallbackForAnotherType)
{
    EXPECT_EQ(VtValue(1).GetWithDefault<int>(5), 1);
    EXPECT_EQ(VtValue("x").GetWithDefault<int>(5), 5);
}

TEST(Value, SharesLargeValuesUntilOneChanges)
{
    Large::copies = 0;
    VtValue a{Large(1)};
    const int made = Large::copies;
    VtValue b = a;
    EXPECT_EQ(Large::copies, made);
    EXPECT_EQ(&a.UncheckedGet<Large>(), &b.UncheckedGet<Large>());
    EXPECT_TRUE(b.Mutate<Large>([](Large& large) { large.number = 2; }));
    EXPECT_EQ(Large::copies, made + 1);
    EXPECT_EQ(a.Get<Large>().number, 1);
    EXPECT_EQ(b.Get<Large>().number, 2);
}

TEST(Value, ChangesAloneInPlace)
{
    VtValue value{Large(1)};
    Large::copies = 0;
    value.UncheckedMutate<Large>([](Large& large) { large.number = 3; });
    EXPECT_EQ(Large::copies, 0);
    EXPECT_FALSE(value.Mutate<int>([](int&) {}));
}

TEST(Value, SwapsWithAnObject)
{
    VtValue value(std::string("held"));
    std::string object = "given";
    value.Swap(object);
    EXPECT_EQ(object, "held");
    EXPECT_EQ(value, "given");
    int number = 7;
    value.Swap(number);
    EXPECT_EQ(number, 0);
    EXPECT_EQ(value, 7);
}

TEST(Value, TakesAndRemovesWithoutCopies)
{
    VtIntArray array{1, 2, 3};
    const int* data = array.cdata();
    VtValue value = VtValue::Take(array);
    EXPECT_TRUE(array.empty());
    EXPECT_EQ(value.UncheckedGet<VtIntArray>().cdata(), data);
    const VtIntArray removed = value.Remove<VtIntArray>();
    EXPECT_EQ(removed.cdata(), data);
    EXPECT_TRUE(value.IsEmpty());
}

TEST(Value, IsEqualWhenTypeAndValueAre)
{
    EXPECT_EQ(VtValue(1), VtValue(1));
    EXPECT_NE(VtValue(1), VtValue(2));
    EXPECT_NE(VtValue(1), VtValue(1.0));
    EXPECT_NE(VtValue(0), VtValue());
    EXPECT_TRUE(VtValue(1) == 1);
    EXPECT_TRUE(1 == VtValue(1));
    EXPECT_TRUE(VtValue(1) != 1.0);
}

TEST(Value, OfEqualValueHasEqualHash)
{
    EXPECT_EQ(VtValue(TfToken("a")).GetHash(), VtValue(TfToken("a")).GetHash());
    EXPECT_EQ(VtValue(VtIntArray{1, 2}).GetHash(), VtValue(VtIntArray{1, 2}).GetHash());
    EXPECT_TRUE(VtValue(1).CanHash());
}

TEST(Value, WithoutAHashSaysSo)
{
    RecordingDelegate diagnostics;
    const VtValue value{Large(1)};
    EXPECT_FALSE(value.CanHash());
    EXPECT_EQ(value.GetHash(), 0u);
    ASSERT_EQ(diagnostics.texts.size(), 1u);
    EXPECT_NE(diagnostics.texts[0].find("which has no hash"), std::string::npos);
}

TEST(Value, StreamsAsItsTypeDoes)
{
    EXPECT_EQ(text(VtValue(0.1f)), "0.1");
    EXPECT_EQ(text(VtValue(true)), "1");
    EXPECT_EQ(text(VtValue('A')), "65");
    EXPECT_EQ(text(VtValue(static_cast<unsigned char>(200))), "200");
    EXPECT_EQ(text(VtValue(TfToken("t"))), "t");
    EXPECT_EQ(text(VtValue(std::vector<VtValue>{VtValue(1), VtValue("x")})), "[1, x]");
    EXPECT_EQ(text(VtValue(GfVec3f(1, 2, 3))), "(1, 2, 3)");
}

TEST(Value, WithoutATextStreamsItsTypeAndAddress)
{
    EXPECT_EQ(text(VtValue(Large(1))).rfind("<'(anonymous namespace)::Large' @ 0x", 0), 0u);
}

TEST(Value, KnowsArrays)
{
    const VtValue value(VtIntArray{1, 2, 3});
    EXPECT_TRUE(value.IsArrayValued());
    EXPECT_EQ(value.GetArraySize(), 3u);
    EXPECT_EQ(value.GetElementTypeid(), typeid(int));
    EXPECT_FALSE(VtValue(1).IsArrayValued());
    EXPECT_EQ(VtValue(1).GetArraySize(), 0u);
    EXPECT_EQ(VtValue(1).GetElementTypeid(), typeid(void));
}

TEST(Value, FindsItsRegisteredType)
{
    EXPECT_EQ(VtValue(GfVec3f()).GetType(), TfType::Find<GfVec3f>());
    EXPECT_EQ(VtValue(VtVec3fArray()).GetType().GetTypeName(), "VtArray<GfVec3f>");
    EXPECT_EQ(VtValue().GetType(), TfType::Find<void>());
}

TEST(Value, OfAnUnregisteredTypeWarns)
{
    RecordingDelegate diagnostics;
    EXPECT_TRUE(VtValue(Large()).GetType().IsUnknown());
    ASSERT_EQ(diagnostics.texts.size(), 1u);
    EXPECT_EQ(diagnostics.texts[0].rfind(
                  "warning: Returning unknown type for VtValue with unregistered C++ type", 0),
              0u);
}

TEST(Value, SurvivesAssignmentToItselfAndFromInside)
{
    VtValue value(std::vector<VtValue>{VtValue(Large(4))});
    const VtValue& same = value;
    value = same;
    value = VtValue(value.UncheckedGet<std::vector<VtValue>>()[0]);
    EXPECT_EQ(value.Get<Large>().number, 4);
}

TEST(Value, IsCopiedAndChangedOnSeveralThreads)
{
    const VtValue shared{Large(5)};
    std::vector<int> wrong(4, 0);
    runTogether(4, [&](int thread) {
        for (int i = 0; i != 2000; ++i) {
            VtValue mine = shared;
            mine.Mutate<Large>([&](Large& large) { large.number = thread; });
            wrong[thread] += mine.UncheckedGet<Large>().number != thread;
        }
    });
    EXPECT_EQ(wrong, std::vector<int>(4, 0));
    EXPECT_EQ(shared.UncheckedGet<Large>().number, 5);
}
