#include <algorithm>
#include <thread>

#include <pxr/base/gf/vec3d.h>
#include <pxr/usd/usdGeom/camera.h>
#include <pxr/usd/usdGeom/xform.h>

#include "document_fixture.h"

using namespace vesk::framework::usd_document::tests;
using namespace vesk::framework::usd_document;
using vesk::base::Future;

namespace {

class StageChanges : public DocumentTest
{
protected:
    StageChanges()
    {
        use(stageFromText(R"(
def Xform "World"
{
    double3 xformOp:translate = (0, 0, 0)
    uniform token[] xformOpOrder = ["xformOp:translate"]

    def Xform "Arm"
    {
        def Camera "Cam"
        {
            float focalLength = 50
        }
    }
    def Camera "Cam"
    {
    }
    def Cube "Box"
    {
        double size = 2
    }
}

def Camera "Free"
{
}
)"));
    }

    const StageChangesEvent& onlyEvent()
    {
        EXPECT_EQ(events.size(), 1u);
        if (events.empty()) events.emplace_back();
        return events.back();
    }
};

bool contains(const StageChangesEvent::PathList& list, const char* path)
{
    return std::count(list.begin(), list.end(), SdfPath(path)) == 1;
}

bool contains(const StageChangesEvent::PathSet& set, const char* path)
{
    return set.count(SdfPath(path)) == 1;
}

} // namespace

TEST_F(StageChanges, OfOneTaskAreOneEvent)
{
    edit("many", [](const Context& context) {
        const UsdPrim box = context.stage()->GetPrimAtPath(SdfPath("/World/Box"));
        for (int i = 0; i < 20; ++i)
            box.GetAttribute(TfToken("size")).Set(double(i + 10));
        context.stage()->DefinePrim(SdfPath("/New"));
    });
    const StageChangesEvent& event = onlyEvent();
    EXPECT_TRUE(contains(event.changedPropertyPaths, "/World/Box.size"));
    EXPECT_TRUE(contains(event.resyncedPrimPaths, "/New"));
    EXPECT_TRUE(event.infoChangedPrimPaths.empty());
}

TEST_F(StageChanges, AreNotSentForATaskThatChangedNothing)
{
    edit("nothing", [](const Context&) {});
    edit("the same value", [](const Context& context) {
        context.stage()->GetAttributeAtPath(SdfPath("/World/Box.size")).Set(2.0);
    });
    document->read("look", [](const Context&) {});
    document->runPendingTasks();
    EXPECT_TRUE(events.empty());
}

TEST_F(StageChanges, AreSentAfterTheTaskAndBeforeTheNextOne)
{
    std::vector<std::string> order;
    document->getEventBus()->subscribeListener([&](const std::any&) { order.push_back("event"); });
    document->edit("first", [&](const Context& context) {
        context.stage()->DefinePrim(SdfPath("/A"));
        order.push_back("first");
    });
    document->edit("second", [&](const Context&) { order.push_back("second"); });
    document->runPendingTasks();
    EXPECT_EQ(order, (Labels{"first", "event", "second"}));
}

TEST_F(StageChanges, AreSentAndRecordedBeforeTheFutureOfTheTaskEnds)
{
    std::size_t eventsAtTheEnd = 0;
    Labels labelsAtTheEnd;
    document->edit("make", [](const Context& context) { context.stage()->DefinePrim(SdfPath("/A")); })
        .then(vesk::base::inlineExecutor(), [&] {
            eventsAtTheEnd = events.size();
            labelsAtTheEnd = document->undoLabels();
        });
    document->runPendingTasks();
    EXPECT_EQ(eventsAtTheEnd, 1u);
    EXPECT_EQ(labelsAtTheEnd, Labels{"make"});
    EXPECT_EQ(events.size(), 1u);
}

TEST_F(StageChanges, OfATaskThatThrowsAreSentBeforeItsFutureEnds)
{
    std::size_t eventsAtTheEnd = 0;
    document
        ->edit("make and fail",
               [](const Context& context) {
                   context.stage()->DefinePrim(SdfPath("/A"));
                   throw 42;
               })
        .recover(vesk::base::inlineExecutor(),
                 [&](Future<void> end) { eventsAtTheEnd = end.error() ? events.size() : 99; });
    document->runPendingTasks();
    EXPECT_EQ(eventsAtTheEnd, 1u);
}

TEST_F(StageChanges, ThatAContinuationMakesAreNoneOfTheTasks)
{
    document->edit("make", [](const Context& context) { context.stage()->DefinePrim(SdfPath("/A")); })
        .then(vesk::base::inlineExecutor(), [&] { stage->DefinePrim(SdfPath("/B")); });
    document->runPendingTasks();
    ASSERT_EQ(events.size(), 2u);
    EXPECT_EQ(events[1].resyncedPrimPaths.count(SdfPath("/B")), 1u);
    EXPECT_TRUE(undo());
    EXPECT_FALSE(stage->GetPrimAtPath(SdfPath("/A")));
    EXPECT_TRUE(stage->GetPrimAtPath(SdfPath("/B")));
}

TEST_F(StageChanges, ReachListenersThatPostAndReadUnderNoLock)
{
    std::size_t pending = 0;
    Labels labels;
    document->getEventBus()->subscribeListener([&](const std::any&) {
        labels = document->undoLabels();
        document->read("from the listener", [](const Context&) {});
        pending = document->pendingTaskCount();
    });
    edit("change", [](const Context& context) { context.stage()->DefinePrim(SdfPath("/A")); });
    EXPECT_EQ(labels, Labels{"change"});
    EXPECT_EQ(pending, 1u);
}

TEST_F(StageChanges, SortPropertiesThatAppearFromThoseThatChange)
{
    edit("change", [](const Context& context) {
        const UsdPrim box = context.stage()->GetPrimAtPath(SdfPath("/World/Box"));
        box.CreateAttribute(TfToken("weight"), SdfValueTypeNames->Double).Set(1.0);
        box.GetAttribute(TfToken("size")).Set(3.0);
    });
    const StageChangesEvent& event = onlyEvent();
    EXPECT_TRUE(contains(event.resyncedPropertyPaths, "/World/Box.weight"));
    EXPECT_TRUE(contains(event.changedPropertyPaths, "/World/Box.size"));
    EXPECT_TRUE(event.resyncedPrimPaths.empty());
}

TEST_F(StageChanges, NamePrimsWhoseMetadataChanged)
{
    edit("document", [](const Context& context) {
        context.stage()
            ->GetPrimAtPath(SdfPath("/World/Box"))
            .SetMetadata(TfToken("documentation"), std::string("a box"));
    });
    EXPECT_TRUE(contains(onlyEvent().infoChangedPrimPaths, "/World/Box"));
}

TEST_F(StageChanges, NameCamerasBeneathAPrimThatMoved)
{
    edit("move", [](const Context& context) {
        context.stage()->GetAttributeAtPath(SdfPath("/World.xformOp:translate")).Set(GfVec3d(1, 2, 3));
    });
    const StageChangesEvent& event = onlyEvent();
    EXPECT_TRUE(contains(event.changedPropertyPaths, "/World.xformOp:translate"));
    EXPECT_EQ(event.infoChangedPrimPaths,
              (StageChangesEvent::PathSet{SdfPath("/World/Cam"), SdfPath("/World/Arm/Cam")}));
}

TEST_F(StageChanges, NameCamerasBeneathAPrimThatIsMovedForTheFirstTime)
{
    edit("move", [](const Context& context) {
        UsdGeomXform(context.stage()->GetPrimAtPath(SdfPath("/World/Arm")))
            .AddTranslateOp()
            .Set(GfVec3d(1, 0, 0));
    });
    EXPECT_TRUE(contains(onlyEvent().infoChangedPrimPaths, "/World/Arm/Cam"));
    EXPECT_FALSE(contains(onlyEvent().infoChangedPrimPaths, "/World/Cam"));
}

TEST_F(StageChanges, NameNoCamerasForChangesThatMoveNothing)
{
    edit("other attribute", [](const Context& context) {
        context.stage()
            ->GetPrimAtPath(SdfPath("/World"))
            .CreateAttribute(TfToken("weight"), SdfValueTypeNames->Double)
            .Set(1.0);
    });
    EXPECT_TRUE(onlyEvent().infoChangedPrimPaths.empty());
}

TEST_F(StageChanges, NameCamerasBeneathAPrimThatWasRecomposed)
{
    // A first event makes the cameras known: those that vanish are named, too.
    edit("first", [](const Context& context) { context.stage()->DefinePrim(SdfPath("/A")); });
    events.clear();
    edit("switch off",
         [](const Context& context) { context.stage()->GetPrimAtPath(SdfPath("/World")).SetActive(false); });
    EXPECT_EQ(
        onlyEvent().resyncedPrimPaths,
        (StageChangesEvent::PathSet{SdfPath("/World"), SdfPath("/World/Cam"), SdfPath("/World/Arm/Cam")}));
    events.clear();
    edit("switch on",
         [](const Context& context) { context.stage()->GetPrimAtPath(SdfPath("/World")).SetActive(true); });
    EXPECT_EQ(
        onlyEvent().resyncedPrimPaths,
        (StageChangesEvent::PathSet{SdfPath("/World"), SdfPath("/World/Cam"), SdfPath("/World/Arm/Cam")}));
}

TEST_F(StageChanges, NameCamerasThatWereMadeLater)
{
    edit("first", [](const Context& context) { context.stage()->DefinePrim(SdfPath("/A")); });
    edit("new camera",
         [](const Context& context) { UsdGeomCamera::Define(context.stage(), SdfPath("/World/Arm/New")); });
    events.clear();
    edit("move", [](const Context& context) {
        context.stage()->GetAttributeAtPath(SdfPath("/World.xformOp:translate")).Set(GfVec3d(1, 2, 3));
    });
    EXPECT_TRUE(contains(onlyEvent().infoChangedPrimPaths, "/World/Arm/New"));
}

TEST_F(StageChanges, ThatAHostMakesByItselfAreSentByTheNextRun)
{
    stage->GetAttributeAtPath(SdfPath("/World/Box.size")).Set(9.0);
    EXPECT_TRUE(events.empty());
    EXPECT_EQ(document->pendingTaskCount(), 0u);
    document->runPendingTasks();
    EXPECT_TRUE(contains(onlyEvent().changedPropertyPaths, "/World/Box.size"));
}

TEST_F(StageChanges, AreRecognisedByTheirTypeInAnyLibrary)
{
    const std::any event = StageChangesEvent();
    EXPECT_NE(std::any_cast<StageChangesEvent>(&event), nullptr);
    EXPECT_TRUE(std::any_cast<StageChangesEvent>(event).isEmpty());
}
