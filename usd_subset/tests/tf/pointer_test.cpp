#include "gate.h"

#include <pxr/base/tf/declarePtrs.h>
#include <pxr/base/tf/hashset.h>

#include <gtest/gtest.h>

#include <atomic>

PXR_NAMESPACE_USING_DIRECTIVE

namespace {

TF_DECLARE_WEAK_AND_REF_PTRS(Thing);

class Thing : public TfRefBase, public TfWeakBase
{
public:
    explicit Thing(std::atomic<int>* gone = nullptr) : m_gone(gone) {}
    ~Thing() override
    {
        if (m_gone) {
            ++*m_gone;
        }
    }
    int number = 7;

private:
    std::atomic<int>* m_gone;
};

class Special : public Thing
{};

ThingRefPtr makeThing(std::atomic<int>* gone = nullptr) { return TfCreateRefPtr(new Thing(gone)); }

} // namespace

TEST(RefPtr, TakesOverTheReferenceThatAnObjectIsBornWith)
{
    const ThingRefPtr thing = makeThing();
    EXPECT_EQ(thing->GetCurrentCount(), 1u);
    EXPECT_TRUE(thing->IsUnique());
}

TEST(RefPtr, DestroysTheObjectWithTheLastReference)
{
    std::atomic<int> gone{0};
    ThingRefPtr thing = makeThing(&gone);
    ThingRefPtr other = thing;
    thing.Reset();
    EXPECT_EQ(gone, 0);
    other = TfNullPtr;
    EXPECT_EQ(gone, 1);
}

TEST(RefPtr, AssignsToItself)
{
    std::atomic<int> gone{0};
    ThingRefPtr thing = makeThing(&gone);
    const ThingRefPtr& same = thing;
    thing = same;
    EXPECT_EQ(gone, 0);
    EXPECT_EQ(thing->GetCurrentCount(), 1u);
}

TEST(RefPtr, ComparesByTheObject)
{
    const ThingRefPtr a = makeThing(), b = a, c = makeThing();
    EXPECT_TRUE(a == b);
    EXPECT_TRUE(a != c);
    EXPECT_TRUE(ThingRefPtr() == nullptr);
    EXPECT_TRUE(nullptr != a);
    EXPECT_FALSE(ThingRefPtr());
}

TEST(RefPtr, CastsToADerivedClassWhereTheObjectIsOne)
{
    const ThingRefPtr special = TfCreateRefPtr(new Special);
    EXPECT_TRUE(TfDynamic_cast<TfRefPtr<Special>>(special));
    EXPECT_FALSE(TfDynamic_cast<TfRefPtr<Special>>(makeThing()));
    EXPECT_EQ(TfStatic_cast<TfRefPtr<Special>>(special), special);
}

TEST(WeakPtr, KnowsWhenItsObjectIsGone)
{
    ThingRefPtr thing = makeThing();
    const ThingPtr weak = thing;
    EXPECT_TRUE(weak);
    EXPECT_FALSE(weak.IsExpired());
    EXPECT_EQ(weak->number, 7);
    thing.Reset();
    EXPECT_FALSE(weak);
    EXPECT_TRUE(weak.IsExpired());
    EXPECT_EQ(get_pointer(weak), nullptr);
}

TEST(WeakPtr, ThatIsNullIsNotExpired) { EXPECT_FALSE(ThingPtr().IsExpired()); }

TEST(WeakPtr, KeepsItsIdentityWhenItsObjectIsGone)
{
    ThingRefPtr thing = makeThing();
    const ThingPtr a = thing, b = thing;
    const ThingPtr other = makeThing();
    thing.Reset();
    EXPECT_TRUE(a == b);
    EXPECT_FALSE(a == other);
    EXPECT_EQ(TfHash()(a), TfHash()(b));
}

TEST(WeakPtr, ComparesWithCountedPointers)
{
    ThingRefPtr thing = makeThing();
    const ThingPtr weak = thing;
    EXPECT_TRUE(weak == thing);
    EXPECT_TRUE(thing == weak);
    EXPECT_FALSE(weak != thing);
    thing.Reset();
    EXPECT_FALSE(weak == thing);
    EXPECT_TRUE(ThingPtr() == thing);
}

TEST(WeakPtr, ConvertsToConst)
{
    const ThingRefPtr thing = makeThing();
    const ThingConstPtr weak = ThingPtr(thing);
    EXPECT_EQ(weak->number, 7);
    EXPECT_EQ(TfCreateNonConstWeakPtr(get_pointer(weak)), thing);
}

TEST(WeakPtr, PromotesToASharedReference)
{
    ThingRefPtr thing = makeThing();
    const ThingPtr weak = thing;
    const ThingRefPtr promoted = weak;
    EXPECT_EQ(thing->GetCurrentCount(), 2u);
    EXPECT_EQ(promoted, thing);
}

TEST(WeakPtr, PromotesToNullWhenItsObjectIsGone)
{
    ThingRefPtr thing = makeThing();
    const ThingPtr weak = thing;
    thing.Reset();
    EXPECT_FALSE(ThingRefPtr(weak));
    EXPECT_FALSE(TfCreateRefPtrFromProtectedWeakPtr(weak));
}

TEST(WeakPtr, OfADyingObjectDoesNotPromote)
{
    // Promotion from inside the destructor, where the count is 0 and the object still observed as alive.
    struct Dying : TfRefBase, TfWeakBase
    {
        ~Dying() override { *promoted = static_cast<bool>(TfRefPtr<Dying>(self)); }
        TfWeakPtr<Dying> self;
        bool* promoted = nullptr;
    };
    bool promoted = true;
    TfRefPtr<Dying> dying = TfCreateRefPtr(new Dying);
    dying->self = dying;
    dying->promoted = &promoted;
    dying.Reset();
    EXPECT_FALSE(promoted);
}

TEST(WeakPtr, PromotesOrNotWhileAnotherThreadDropsTheObject)
{
    constexpr int kRounds = 2000;
    std::atomic<int> gone{0};
    int wrong = 0;
    for (int round = 0; round != kRounds; ++round) {
        ThingRefPtr thing = makeThing(&gone);
        const ThingPtr weak = thing;
        std::atomic<int> bad{0};
        runTogether(2, [&](int i) {
            if (i == 0) {
                thing.Reset();
            } else if (const ThingRefPtr promoted = weak) {
                bad += promoted->number != 7;
            }
        });
        wrong += bad;
    }
    EXPECT_EQ(wrong, 0);
    EXPECT_EQ(gone, kRounds);
}

TEST(WeakPtr, WorksAsAKey)
{
    const ThingRefPtr a = makeThing(), b = makeThing();
    TfHashSet<ThingPtr, TfHash> set{ThingPtr(a), ThingPtr(b), ThingPtr(a)};
    EXPECT_EQ(set.size(), 2u);
}

TEST(WeakPtrDeathTest, ThatExpiredEndsTheProcessWhenUsed)
{
    const ThingPtr weak;
    EXPECT_DEATH(EXPECT_EQ(weak->number, 7), "attempted member lookup on NULL TfWeakPtr");
}
