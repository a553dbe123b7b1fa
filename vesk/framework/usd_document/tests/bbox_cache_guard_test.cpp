#include <atomic>
#include <thread>

#include <pxr/base/gf/range3d.h>
#include <pxr/usd/usdGeom/tokens.h>

#include <tests/support/gate.h>

#include "document_fixture.h"

using namespace vesk::framework::usd_document::tests;
using namespace vesk::framework::usd_document;
using vesk::tests::Gate;

TEST(BBoxCacheGuard, GivesTheSameCacheToEveryGuardOfAWrapper)
{
    const UsdGeomBBoxCacheGuardWrapper wrapper;
    const UsdGeomBBoxCacheGuardWrapper copy = wrapper;
    const UsdGeomBBoxCacheGuardWrapper other;
    const UsdGeomBBoxCache* first = &UsdGeomBBoxCacheLockGuard(wrapper).getBboxCache();
    EXPECT_EQ(&UsdGeomBBoxCacheLockGuard(copy).getBboxCache(), first);
    EXPECT_NE(&UsdGeomBBoxCacheLockGuard(other).getBboxCache(), first);
}

TEST(BBoxCacheGuard, StartsWithThePurposesDefaultAndRenderAndWithoutExtentsHints)
{
    const UsdGeomBBoxCacheGuardWrapper wrapper;
    const UsdGeomBBoxCacheLockGuard guard(wrapper);
    EXPECT_EQ(guard.getBboxCache().GetIncludedPurposes(),
              (TfTokenVector{UsdGeomTokens->default_, UsdGeomTokens->render}));
    EXPECT_FALSE(guard.getBboxCache().GetUseExtentsHint());
}

TEST(BBoxCacheGuard, ExcludesOtherThreadsWhileItLives)
{
    const UsdGeomBBoxCacheGuardWrapper wrapper;
    Gate taken;
    std::atomic<bool> released{false};
    std::atomic<bool> releasedWhenTaken{false};
    std::thread other([&] {
        taken.wait();
        const UsdGeomBBoxCacheLockGuard guard(wrapper);
        releasedWhenTaken = released.load();
    });
    {
        const UsdGeomBBoxCacheLockGuard guard(wrapper);
        taken.open();
        released = true;
    }
    other.join();
    EXPECT_TRUE(releasedWhenTaken);
}

TEST(BBoxCacheGuard, RefusesAThreadThatHoldsItAlready)
{
    const UsdGeomBBoxCacheGuardWrapper wrapper;
    const UsdGeomBBoxCacheLockGuard guard(wrapper);
    try {
        const UsdGeomBBoxCacheLockGuard again(wrapper);
        ADD_FAILURE() << "nothing was thrown";
    } catch (const std::system_error& error) {
        EXPECT_EQ(error.code(), std::errc::resource_deadlock_would_occur);
    }
}

TEST(BBoxCacheGuard, IsReleasedWhenItsScopeThrows)
{
    const UsdGeomBBoxCacheGuardWrapper wrapper;
    try {
        const UsdGeomBBoxCacheLockGuard guard(wrapper);
        throw 42;
    } catch (int) {
    }
    const UsdGeomBBoxCacheLockGuard again(wrapper);
}

namespace {

class BBoxCache : public DocumentTest
{
protected:
    static GfRange3d boundsOf(const Context& context)
    {
        const UsdGeomBBoxCacheLockGuard guard(context.bboxCacheGuard());
        return guard.getBboxCache().ComputeWorldBound(context.stage()->GetPseudoRoot()).ComputeAlignedRange();
    }
};

} // namespace

TEST_F(BBoxCache, IsEmptiedWhenTheStageChanges)
{
    use(stageFromText("def Cube \"Box\"\n{\n    double size = 2\n}\n"));
    std::vector<GfRange3d> bounds;
    document->read("before", [&](const Context& context) { bounds.push_back(boundsOf(context)); });
    document->edit("grow", [&](const Context& context) {
        context.stage()->GetAttributeAtPath(SdfPath("/Box.size")).Set(4.0);
        context.stage()->GetPrimAtPath(SdfPath("/Box")).RemoveProperty(TfToken("extent"));
        bounds.push_back(boundsOf(context));
    });
    document->runPendingTasks();
    ASSERT_EQ(bounds.size(), 2u);
    // A cube of size s spans s/2 to either side of the origin.
    EXPECT_EQ(bounds[0], GfRange3d(GfVec3d(-1), GfVec3d(1)));
    EXPECT_EQ(bounds[1], GfRange3d(GfVec3d(-2), GfVec3d(2)));
}
