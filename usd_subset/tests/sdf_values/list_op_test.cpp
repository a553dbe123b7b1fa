#include "../tf/recording_delegate.h"

#include <pxr/base/vt/value.h>
#include <pxr/usd/sdf/listOp.h>
#include <pxr/usd/sdf/path.h>
#include <pxr/usd/sdf/payload.h>
#include <pxr/usd/sdf/reference.h>
#include <pxr/usd/sdf/types.h>

#include <gtest/gtest.h>

#include <random>
#include <sstream>

PXR_NAMESPACE_USING_DIRECTIVE

namespace {

using Op = SdfStringListOp;
using Items = std::vector<std::string>;

Items items(const std::string& letters)
{
    Items result;
    for (char letter : letters) {
        result.emplace_back(1, letter);
    }
    return result;
}

/// Applies the op to a list of one-letter items.
std::string applied(const Op& op, const std::string& letters)
{
    Items list = items(letters);
    op.ApplyOperations(&list);
    std::string result;
    for (const std::string& item : list) {
        result += item;
    }
    return result;
}

Op with(const std::string& letters, SdfListOpType type)
{
    Op op;
    op.SetItems(items(letters), type);
    return op;
}

} // namespace

TEST(ListOp, StartsAsNoEdit)
{
    EXPECT_FALSE(Op().HasKeys());
    EXPECT_FALSE(Op().IsExplicit());
    EXPECT_EQ(applied(Op(), "abc"), "abc");
}

TEST(ListOp, ThatIsExplicitReplaces)
{
    EXPECT_EQ(applied(Op::CreateExplicit(items("xy")), "abc"), "xy");
    EXPECT_EQ(applied(Op::CreateExplicit(), "abc"), "");
    EXPECT_TRUE(Op::CreateExplicit().HasKeys());
    EXPECT_EQ(applied(Op::CreateExplicit(items("xyx")), ""), "xy");
}

TEST(ListOp, PrependsAndMovesToTheFront)
{
    EXPECT_EQ(applied(with("xy", SdfListOpTypePrepended), "abc"), "xyabc");
    EXPECT_EQ(applied(with("cb", SdfListOpTypePrepended), "abc"), "cba");
}

TEST(ListOp, AppendsAndMovesToTheEnd)
{
    EXPECT_EQ(applied(with("xy", SdfListOpTypeAppended), "abc"), "abcxy");
    EXPECT_EQ(applied(with("ba", SdfListOpTypeAppended), "abc"), "cba");
}

TEST(ListOp, AddsWhatIsMissing) { EXPECT_EQ(applied(with("bxb", SdfListOpTypeAdded), "abc"), "abcx"); }

TEST(ListOp, Deletes) { EXPECT_EQ(applied(with("bx", SdfListOpTypeDeleted), "abc"), "ac"); }

TEST(ListOp, OrdersWithWhatFollowsEachItem)
{
    // "cx" and "b" are the runs that begin with a named item; "a" comes before the first of them.
    EXPECT_EQ(applied(with("cb", SdfListOpTypeOrdered), "abcx"), "acxb");
    EXPECT_EQ(applied(with("zc", SdfListOpTypeOrdered), "abc"), "abc");
    EXPECT_EQ(applied(with("cba", SdfListOpTypeOrdered), "abc"), "cba");
}

TEST(ListOp, EditsInAFixedOrder)
{
    Op op = Op::Create(items("pd"), items("q"), items("ad"));
    op.SetAddedItems(items("n"));
    op.SetOrderedItems(items("qp"));
    // Delete a, d: b c; add n: b c n; prepend p, d: p d b c n; append q; order: q, then p and what follows
    // it.
    EXPECT_EQ(applied(op, "abcd"), "qpdbcn");
}

TEST(ListOp, KeepsTheLastModesItemsOnly)
{
    Op op = Op::CreateExplicit(items("a"));
    op.SetPrependedItems(items("b"));
    EXPECT_FALSE(op.IsExplicit());
    EXPECT_TRUE(op.GetExplicitItems().empty());
    op.SetExplicitItems(op.GetPrependedItems());
    EXPECT_EQ(op.GetExplicitItems(), items("b"));
    EXPECT_TRUE(op.GetPrependedItems().empty());
    op.Clear();
    EXPECT_EQ(op, Op());
    op.ClearAndMakeExplicit();
    EXPECT_EQ(op, Op::CreateExplicit());
}

TEST(ListOp, MapsItemsWhileApplying)
{
    Op op = with("ab", SdfListOpTypeAppended);
    Items list;
    op.ApplyOperations(&list, [](SdfListOpType type, const std::string& item) -> std::optional<std::string> {
        EXPECT_EQ(type, SdfListOpTypeAppended);
        return item == "a" ? std::nullopt : std::optional<std::string>("B");
    });
    EXPECT_EQ(list, items("B"));
}

TEST(ListOp, ComposedWithAWeakerOneDoesWhatBothDo)
{
    // Random ops without added and ordered items: composing first or applying in turn is the same.
    std::mt19937 random(3);
    const auto letters = [&] {
        std::string text;
        for (char c = 'a'; c <= 'f'; ++c) {
            text += random() % 3 == 0 ? std::string(1, c) : "";
        }
        std::shuffle(text.begin(), text.end(), random);
        return text;
    };
    const auto randomOp = [&] {
        return random() % 5 == 0 ? Op::CreateExplicit(items(letters()))
                                 : Op::Create(items(letters()), items(letters()), items(letters()));
    };
    for (int round = 0; round != 500; ++round) {
        const Op inner = randomOp(), outer = randomOp();
        const std::string list = letters();
        const std::optional<Op> both = outer.ApplyOperations(inner);
        ASSERT_TRUE(both);
        EXPECT_EQ(applied(*both, list), applied(outer, applied(inner, list)))
            << outer << " over " << inner << " on " << list;
    }
}

TEST(ListOp, WithAddedOrOrderedItemsHasNoComposition)
{
    EXPECT_FALSE(with("a", SdfListOpTypeAdded).ApplyOperations(Op()));
    EXPECT_FALSE(Op().ApplyOperations(with("a", SdfListOpTypeOrdered)));
    EXPECT_EQ(Op::CreateExplicit(items("x")).ApplyOperations(with("a", SdfListOpTypeOrdered)),
              Op::CreateExplicit(items("x")));
}

TEST(ListOp, ModifiesItsItems)
{
    Op op = Op::Create(items("ab"), items("bc"), items("d"));
    EXPECT_TRUE(op.ModifyOperations([](const std::string& item) -> std::optional<std::string> {
        return item == "b" ? std::nullopt : std::optional<std::string>(item + item);
    }));
    EXPECT_EQ(op, Op::Create({"aa"}, {"cc"}, {"dd"}));
    EXPECT_FALSE(
        op.ModifyOperations([](const std::string& item) { return std::optional<std::string>(item); }));
}

TEST(ListOp, DropsItemsThatBecomeEqual)
{
    Op op = with("abc", SdfListOpTypeAppended);
    op.ModifyOperations(
        [](const std::string& item) { return std::optional<std::string>(item == "c" ? "a" : item); }, true);
    EXPECT_EQ(op.GetAppendedItems(), items("ab"));
}

TEST(ListOp, ReplacesARange)
{
    Op op = with("abcd", SdfListOpTypePrepended);
    EXPECT_TRUE(op.ReplaceOperations(SdfListOpTypePrepended, 1, 2, items("xyz")));
    EXPECT_EQ(op.GetPrependedItems(), items("axyzd"));
    EXPECT_TRUE(op.ReplaceOperations(SdfListOpTypePrepended, 0, 5, {}));
    EXPECT_TRUE(op.GetPrependedItems().empty());
}

TEST(ListOp, RefusesARangeOutsideOfTheList)
{
    RecordingDelegate diagnostics;
    Op op = with("ab", SdfListOpTypePrepended);
    EXPECT_FALSE(op.ReplaceOperations(SdfListOpTypePrepended, 3, 0, items("x")));
    EXPECT_FALSE(op.ReplaceOperations(SdfListOpTypePrepended, 1, size_t(-1), items("x")));
    EXPECT_EQ(diagnostics.texts.size(), 2u);
    EXPECT_EQ(op.GetPrependedItems(), items("ab"));
}

TEST(ListOp, SwitchesModeOnlyToInsert)
{
    Op op = with("ab", SdfListOpTypePrepended);
    EXPECT_FALSE(op.ReplaceOperations(SdfListOpTypeExplicit, 0, 0, {}));
    EXPECT_TRUE(op.ReplaceOperations(SdfListOpTypeExplicit, 0, 0, items("x")));
    EXPECT_EQ(op, Op::CreateExplicit(items("x")));
}

TEST(ListOp, ComposesOneList)
{
    Op op = with("abc", SdfListOpTypePrepended);
    op.ComposeOperations(with("cx", SdfListOpTypePrepended), SdfListOpTypePrepended);
    EXPECT_EQ(op.GetPrependedItems(), items("cxab"));
    op = with("abc", SdfListOpTypeDeleted);
    op.ComposeOperations(with("cx", SdfListOpTypeDeleted), SdfListOpTypeDeleted);
    EXPECT_EQ(op.GetDeletedItems(), items("abcx"));
    op = with("abc", SdfListOpTypeOrdered);
    op.ComposeOperations(with("ca", SdfListOpTypeOrdered), SdfListOpTypeOrdered);
    EXPECT_EQ(op.GetOrderedItems(), items("cab"));
}

TEST(ListOp, FindsItems)
{
    const Op op = Op::Create(items("a"), items("b"), items("c"));
    EXPECT_TRUE(op.HasItem("c"));
    EXPECT_FALSE(op.HasItem("d"));
}

TEST(ListOp, StreamsWhatItSays)
{
    std::ostringstream out;
    out << Op::Create(items("ab"), {}, items("c")) << Op::CreateExplicit() << SdfTokenListOp();
    EXPECT_EQ(out.str(), "SdfStringListOp(Deleted Items: [c], Prepended Items: [a, b])"
                         "SdfStringListOp(Explicit Items: [])SdfTokenListOp()");
}

TEST(ListOp, WorksForEveryItemType)
{
    const SdfPathListOp paths = SdfPathListOp::Create({SdfPath("/A")});
    EXPECT_EQ(paths.GetAppliedItems(), SdfPathVector{SdfPath("/A")});
    const SdfReferenceListOp references =
        SdfReferenceListOp::Create({SdfReference("a.usda"), SdfReference("a.usda")});
    EXPECT_EQ(references.GetAppliedItems().size(), 1u);
    EXPECT_EQ(SdfPayloadListOp::CreateExplicit({SdfPayload("b.usda")}).GetAppliedItems().size(), 1u);
    EXPECT_EQ(SdfInt64ListOp::CreateExplicit({1, 2, 1}).GetAppliedItems(), (std::vector<int64_t>{1, 2}));
    const SdfUnregisteredValueListOp values =
        SdfUnregisteredValueListOp::CreateExplicit({SdfUnregisteredValue("x"), SdfUnregisteredValue("x")});
    EXPECT_EQ(values.GetAppliedItems().size(), 1u);
}

TEST(ListOp, IsAValue)
{
    const VtValue a(Op::Create(items("a"))), b(Op::Create(items("a")));
    EXPECT_EQ(a, b);
    EXPECT_EQ(a.GetHash(), b.GetHash());
    EXPECT_NE(a, VtValue(Op::CreateExplicit(items("a"))));
}

TEST(ListOrdering, OrdersPlainLists)
{
    TfTokenVector list{TfToken("a"), TfToken("b"), TfToken("c")};
    SdfApplyListOrdering(&list, {TfToken("c"), TfToken("a"), TfToken("c")});
    EXPECT_EQ(list, (TfTokenVector{TfToken("c"), TfToken("a"), TfToken("b")}));
}
