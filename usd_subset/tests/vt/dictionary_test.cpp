#include "../tf/recording_delegate.h"

#include <pxr/base/tf/token.h>
#include <pxr/base/vt/dictionary.h>

#include <gtest/gtest.h>

#include <sstream>

PXR_NAMESPACE_USING_DIRECTIVE

namespace {

VtDictionary nested()
{
    VtDictionary dictionary;
    dictionary.SetValueAtPath("a:b:c", VtValue(1));
    dictionary["z"] = "last";
    return dictionary;
}

} // namespace

TEST(Dictionary, IsIteratedInTheOrderOfItsKeys)
{
    const VtDictionary dictionary{{"b", VtValue(2)}, {"a", VtValue(1)}, {"c", VtValue(3)}};
    std::string keys;
    for (const auto& [key, value] : dictionary) {
        keys += key;
    }
    EXPECT_EQ(keys, "abc");
}

TEST(Dictionary, FindsNestedValues)
{
    const VtDictionary dictionary = nested();
    ASSERT_NE(dictionary.GetValueAtPath("a:b:c"), nullptr);
    EXPECT_EQ(*dictionary.GetValueAtPath("a:b:c"), 1);
    EXPECT_TRUE(dictionary.GetValueAtPath("a:b")->IsHolding<VtDictionary>());
    EXPECT_EQ(dictionary.GetValueAtPath("a:x"), nullptr);
    EXPECT_EQ(dictionary.GetValueAtPath("z:x"), nullptr);
    EXPECT_EQ(dictionary.GetValueAtPath(""), nullptr);
    EXPECT_EQ(*dictionary.GetValueAtPath("a.b.c", "."), 1);
}

TEST(Dictionary, ReplacesWhatIsInTheWayOfANestedValue)
{
    VtDictionary dictionary = nested();
    dictionary.SetValueAtPath("z:x", VtValue(2));
    EXPECT_EQ(*dictionary.GetValueAtPath("z:x"), 2);
    dictionary.SetValueAtPath("", VtValue(3));
    EXPECT_EQ(dictionary.size(), 2u);
}

TEST(Dictionary, ChangedInDepthLeavesItsCopiesAlone)
{
    const VtDictionary original = nested();
    VtDictionary copy = original;
    copy.SetValueAtPath("a:b:c", VtValue(9));
    EXPECT_EQ(*original.GetValueAtPath("a:b:c"), 1);
    EXPECT_EQ(*copy.GetValueAtPath("a:b:c"), 9);
}

TEST(Dictionary, CanHoldAPartOfItself)
{
    VtDictionary dictionary = nested();
    dictionary.SetValueAtPath("a:copy", dictionary["a"]);
    EXPECT_EQ(*dictionary.GetValueAtPath("a:copy:b:c"), 1);
}

TEST(Dictionary, ErasesNestedValuesAndWhatBecomesEmpty)
{
    VtDictionary dictionary = nested();
    dictionary.EraseValueAtPath("a:b:c");
    EXPECT_EQ(dictionary.count("a"), 0u);
    EXPECT_EQ(dictionary.size(), 1u);
    dictionary.EraseValueAtPath("z:x");
    EXPECT_EQ(dictionary.count("z"), 1u);
}

TEST(Dictionary, IsReadByType)
{
    const VtDictionary dictionary{{"n", VtValue(2)}};
    EXPECT_TRUE(VtDictionaryIsHolding<int>(dictionary, "n"));
    EXPECT_FALSE(VtDictionaryIsHolding<double>(dictionary, "n"));
    EXPECT_EQ(VtDictionaryGet<int>(dictionary, "n"), 2);
    EXPECT_EQ(VtDictionaryGet<int>(dictionary, "m", VtDefault = 7), 7);
    EXPECT_EQ(VtDictionaryGet<double>(dictionary, "n", VtDefault = 0.5), 0.5);
}

TEST(Dictionary, ComparesAndHashesItsEntries)
{
    EXPECT_EQ(nested(), nested());
    EXPECT_EQ(hash_value(nested()), hash_value(nested()));
    EXPECT_NE(nested(), VtDictionary());
}

TEST(Dictionary, StreamsItsEntries)
{
    std::ostringstream out;
    out << nested();
    EXPECT_EQ(out.str(), "{'a': {'b': {'c': 1}}, 'z': last}");
}

TEST(DictionaryOver, PrefersTheStrongEntries)
{
    const VtDictionary strong{{"a", VtValue(1)}}, weak{{"a", VtValue(2)}, {"b", VtValue(3)}};
    const VtDictionary over = VtDictionaryOver(strong, weak);
    EXPECT_EQ(over, (VtDictionary{{"a", VtValue(1)}, {"b", VtValue(3)}}));
    VtDictionary target = weak;
    VtDictionaryOver(strong, &target);
    EXPECT_EQ(target, over);
}

TEST(DictionaryOver, DoesNotLookIntoNestedOnes)
{
    const VtDictionary strong{{"a", VtValue(VtDictionary{{"x", VtValue(1)}})}};
    const VtDictionary weak{{"a", VtValue(VtDictionary{{"y", VtValue(2)}})}};
    EXPECT_EQ(VtDictionaryOver(strong, weak), strong);
}

TEST(DictionaryOver, ComposesNestedOnesWhenRecursive)
{
    const VtDictionary strong{{"a", VtValue(VtDictionary{{"x", VtValue(1)}})}};
    const VtDictionary weak{{"a", VtValue(VtDictionary{{"x", VtValue(5)}, {"y", VtValue(2)}})},
                            {"b", VtValue(3)}};
    const VtDictionary over = VtDictionaryOverRecursive(strong, weak);
    EXPECT_EQ(*over.GetValueAtPath("a:x"), 1);
    EXPECT_EQ(*over.GetValueAtPath("a:y"), 2);
    EXPECT_EQ(*over.GetValueAtPath("b"), 3);
}

TEST(DictionaryOver, CoercesToTheWeakType)
{
    const VtDictionary strong{{"a", VtValue(1)}, {"t", VtValue("text")}};
    const VtDictionary weak{{"a", VtValue(2.0)}, {"t", VtValue(1)}};
    const VtDictionary over = VtDictionaryOver(strong, weak, true);
    EXPECT_EQ(*over.GetValueAtPath("a"), 1.0);
    EXPECT_TRUE(over.GetValueAtPath("t")->IsEmpty());
}

TEST(DictionaryOver, WithoutATargetIsAnError)
{
    RecordingDelegate diagnostics;
    VtDictionaryOver(static_cast<VtDictionary*>(nullptr), VtDictionary());
    EXPECT_EQ(diagnostics.texts,
              std::vector<std::string>{"error: VtDictionaryOver: NULL dictionary pointer."});
}

TEST(DictionaryDeathTest, WithoutTheKeyEndsTheProcess)
{
    EXPECT_DEATH(VtDictionaryGet<int>(VtDictionary(), "absent"),
                 "Attempted to get value for key 'absent', which is not in the dictionary.");
}
