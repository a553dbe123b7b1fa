#include <thread>
#include <type_traits>

#include <tests/support/gate.h>

#include "document_fixture.h"

using namespace vesk::framework::usd_document::tests;
using namespace vesk::framework::usd_document;
using vesk::base::Future;
using vesk::tests::Gate;
using vesk::tests::LogCapture;

namespace {
using Tasks = DocumentTest;
} // namespace

TEST_F(Tasks, AreQueuedAndRunWhenAManualDocumentIsTold)
{
    bool ran = false;
    const Future<int> future = document->read("look", [&](const Context&) {
        ran = true;
        return 7;
    });
    EXPECT_FALSE(ran);
    EXPECT_EQ(document->pendingTaskCount(), 1u);
    EXPECT_FALSE(future.isReady());
    EXPECT_EQ(document->runPendingTasks(), 1u);
    EXPECT_TRUE(ran);
    EXPECT_EQ(future.get(), 7);
}

TEST_F(Tasks, RunInTheOrderInWhichTheyWerePosted)
{
    std::vector<int> order;
    for (int i = 0; i < 100; ++i)
        document->read("look", [&order, i](const Context&) { order.push_back(i); });
    EXPECT_EQ(document->runPendingTasks(), 100u);
    ASSERT_EQ(order.size(), 100u);
    for (int i = 0; i < 100; ++i)
        EXPECT_EQ(order[i], i);
}

TEST_F(Tasks, RunOneAtATimeWhenAskedFor)
{
    int ran = 0;
    document->read("first", [&](const Context&) { ++ran; });
    document->read("second", [&](const Context&) { ++ran; });
    EXPECT_TRUE(document->runNextTask());
    EXPECT_EQ(ran, 1);
    EXPECT_TRUE(document->runNextTask());
    EXPECT_FALSE(document->runNextTask());
    EXPECT_EQ(ran, 2);
}

TEST_F(Tasks, AreQueuedAlsoWhenATaskPostsThem)
{
    std::vector<std::string> order;
    document->read("outer", [&](const Context&) {
        document->read("inner", [&](const Context&) { order.push_back("inner"); });
        order.push_back("outer ends");
    });
    EXPECT_EQ(document->runPendingTasks(), 2u);
    EXPECT_EQ(order, (std::vector<std::string>{"outer ends", "inner"}));
}

TEST_F(Tasks, DoNotRunOthersFromInside)
{
    std::size_t nested = 99;
    document->read("outer", [&](const Context&) { nested = document->runPendingTasks(); });
    document->read("next", [](const Context&) {});
    EXPECT_EQ(document->runPendingTasks(), 2u);
    EXPECT_EQ(nested, 0u);
}

TEST_F(Tasks, ReceiveTheStageAndTheBoundsCacheOfTheDocument)
{
    UsdStageRefPtr seen;
    UsdGeomBBoxCache* first = nullptr;
    UsdGeomBBoxCache* second = nullptr;
    document->read("first", [&](const Context& context) {
        seen = context.stage();
        first = &UsdGeomBBoxCacheLockGuard(context.bboxCacheGuard()).getBboxCache();
    });
    document->read("second", [&](const Context& context) {
        second = &UsdGeomBBoxCacheLockGuard(context.bboxCacheGuard()).getBboxCache();
    });
    document->runPendingTasks();
    EXPECT_EQ(seen, stage);
    EXPECT_EQ(first, second);
}

TEST_F(Tasks, GetTheirContextWhenTheyRunAndOncePerRun)
{
    int contexts = 0;
    DocumentOptions options;
    options.contextFilter = [&](const Context& context) {
        ++contexts;
        return context;
    };
    use(UsdStage::CreateInMemory(), options);
    document->read("look", [](const Context&) {});
    EXPECT_EQ(contexts, 0);
    document->runPendingTasks();
    EXPECT_EQ(contexts, 1);
}

TEST_F(Tasks, CanBeHandedAContextWithoutAStage)
{
    DocumentOptions options;
    options.contextFilter = [](const Context&) { return Context(); };
    use(UsdStage::CreateInMemory(), options);
    bool empty = false;
    document->read("look", [&](const Context& context) { empty = !context.stage(); });
    document->runPendingTasks();
    EXPECT_TRUE(empty);
}

TEST_F(Tasks, WhoseContextFailsEndAsBrokenPromisesAndTheNextOneRuns)
{
    bool fail = true;
    DocumentOptions options;
    options.contextFilter = [&](const Context& context) {
        if (fail) throw std::runtime_error("no context");
        return context;
    };
    use(UsdStage::CreateInMemory(), options);
    const Future<void> first = document->read("look", [](const Context&) {});
    document->runPendingTasks();
    EXPECT_EQ(endOf(first), "1 broken promise");
    EXPECT_EQ(log.takeTexts(), Labels{"UsdDocument: the task 'look' threw: no context"});
    fail = false;
    const Future<void> second = document->read("look", [](const Context&) {});
    document->runPendingTasks();
    EXPECT_EQ(endOf(second), "value");
}

TEST_F(Tasks, CarryWhatTheirWorkThrowsInTheFuture)
{
    const std::exception_ptr thrown = std::make_exception_ptr(std::runtime_error("why"));
    const Future<int> future =
        document->edit("fail", [thrown](const Context&) -> int { std::rethrow_exception(thrown); });
    document->runPendingTasks();
    EXPECT_EQ(future.error(), thrown);
}

TEST_F(Tasks, GiveTheirFuturesTheDefaultPool)
{
    const Future<void> future = document->read("look", [](const Context&) {});
    EXPECT_EQ(future.executor(), vesk::base::defaultExecutor());
    const Future<std::thread::id> where = future.then([] { return std::this_thread::get_id(); });
    document->runPendingTasks();
    EXPECT_NE(where.get(), std::this_thread::get_id());
}

TEST_F(Tasks, RunWhenTheirFutureWasDetachedAndDropped)
{
    bool ran = false;
    document->read("look", [&](const Context&) { ran = true; }).detach();
    document->runPendingTasks();
    EXPECT_TRUE(ran);
}

TEST_F(Tasks, ThatAreDroppedEndAsBrokenPromises)
{
    bool ran = false;
    const Future<void> a = document->read("a", [&](const Context&) { ran = true; });
    const Future<void> b = document->edit("b", [&](const Context&) { ran = true; });
    EXPECT_EQ(document->dropPendingTasks(), 2u);
    EXPECT_EQ(endOf(a), "1 broken promise");
    EXPECT_EQ(endOf(b), "1 broken promise");
    EXPECT_EQ(document->runPendingTasks(), 0u);
    EXPECT_FALSE(ran);
}

TEST_F(Tasks, AreToldToTheObserverWhenTheyAreQueued)
{
    struct Seen
    {
        TaskType type;
        std::string label;
        bool stageIsTheDocuments;
        std::size_t targetIndex;
    };
    std::vector<Seen> seen;
    document->setTaskObserver([&](const UsdDocument::TaskRecord& record) {
        seen.push_back({record.type, record.label, record.stage == stage, record.editTarget.index()});
    });
    document->read("look", [](const Context&) {});
    document->edit(
        "change", [](const Context&) {}, std::string("layer"));
    document->setTaskObserver(nullptr);
    document->read("unseen", [](const Context&) {});
    document->dropPendingTasks();
    ASSERT_EQ(seen.size(), 2u);
    EXPECT_EQ(seen[0].type, TaskType::Read);
    EXPECT_EQ(seen[0].label, "look");
    EXPECT_TRUE(seen[0].stageIsTheDocuments);
    EXPECT_EQ(seen[0].targetIndex, 0u);
    EXPECT_EQ(seen[1].type, TaskType::Edit);
    EXPECT_EQ(seen[1].targetIndex, 1u);
}

TEST_F(Tasks, ThatLeaveAnErrorOfTheStageAreLogged)
{
    document->edit("broken edit", [](const Context& context) { context.stage()->DefinePrim(SdfPath()); });
    document->runPendingTasks();
    const std::vector<std::string> texts = log.takeTexts();
    ASSERT_FALSE(texts.empty());
    EXPECT_EQ(texts[0].rfind("UsdDocument: the task 'broken edit' left an error of the stage: ", 0), 0u)
        << texts[0];
}

TEST_F(Tasks, WriteToTheEditTargetThatTheyName)
{
    const SdfLayerRefPtr sublayer = SdfLayer::CreateAnonymous("sub.usda");
    stage->GetRootLayer()->InsertSubLayerPath(sublayer->GetIdentifier());
    const auto define = [](const char* path) {
        return [path](const Context& context) { context.stage()->DefinePrim(SdfPath(path)); };
    };
    document->edit("by target", define("/A"), stage->GetEditTargetForLocalLayer(SdfLayerHandle(sublayer)));
    document->edit("by name", define("/B"), sublayer->GetIdentifier());
    document->edit("default", define("/C"));
    document->runPendingTasks();
    EXPECT_TRUE(sublayer->GetPrimAtPath(SdfPath("/A")));
    EXPECT_TRUE(sublayer->GetPrimAtPath(SdfPath("/B")));
    EXPECT_FALSE(sublayer->GetPrimAtPath(SdfPath("/C")));
    EXPECT_TRUE(stage->GetRootLayer()->GetPrimAtPath(SdfPath("/C")));
    EXPECT_EQ(stage->GetEditTarget().GetLayer(), stage->GetRootLayer())
        << "the stage's own target is put back";
}

TEST_F(Tasks, WhoseEditTargetIsNotOnTheStageAreDropped)
{
    const SdfLayerRefPtr stranger = SdfLayer::CreateAnonymous("stranger.usda");
    const Future<void> byTarget = document->edit(
        "by target", [](const Context&) {}, UsdEditTarget(SdfLayerHandle(stranger)));
    const Future<void> byName = document->edit(
        "by name", [](const Context&) {}, std::string("nowhere.usda"));
    document->runPendingTasks();
    EXPECT_EQ(endOf(byTarget), "1 broken promise");
    EXPECT_EQ(endOf(byName), "1 broken promise");
    EXPECT_EQ(
        log.takeTexts(),
        (Labels{
            "UsdDocument: the task 'by target' was dropped: its edit target is no layer of the stage; choose "
            "one of the layer stack.",
            "UsdDocument: the task 'by name' was dropped: the stage has no layer 'nowhere.usda'; choose one "
            "of the layer stack."}));
}

TEST(TaskBase, DoesNothingWhenItIsRun)
{
    static_assert(std::has_virtual_destructor_v<UsdDocument::Task>);
    UsdDocument::Task task;
    task.run();
}

TEST(TaskThread, IsTheDocumentsOwnByDefault)
{
    const auto document = UsdDocument::create();
    EXPECT_FALSE(document->isManual());
    const std::thread::id first =
        document->read("look", [](const Context&) { return std::this_thread::get_id(); }).get();
    const std::thread::id second =
        document->read("look", [](const Context&) { return std::this_thread::get_id(); }).get();
    EXPECT_NE(first, std::this_thread::get_id());
    EXPECT_EQ(first, second);
    EXPECT_EQ(document->runPendingTasks(), 0u) << "only a manual document runs tasks on the caller's thread";
}

TEST(TaskThread, RunsWhatManyThreadsPost)
{
    const auto document = UsdDocument::create();
    int count = 0; // Tasks run one after another: no lock.
    std::vector<std::thread> threads;
    for (int i = 0; i < 4; ++i)
        threads.emplace_back([&] {
            for (int n = 0; n < 1000; ++n)
                document->read("count", [&](const Context&) { ++count; });
        });
    for (std::thread& thread : threads)
        thread.join();
    document->waitUntilIdle();
    EXPECT_EQ(count, 4000);
}

TEST(TaskThread, RefusesToWaitForItself)
{
    const auto document = UsdDocument::create();
    const auto future = document->read("wait", [&](const Context&) { document->waitUntilIdle(); });
    try {
        future.get();
        ADD_FAILURE() << "nothing was thrown";
    } catch (const std::system_error& error) {
        EXPECT_EQ(error.code(), std::errc::resource_deadlock_would_occur);
    }
}

TEST(Documents, HaveUniqueIdsThatStay)
{
    const auto a = UsdDocument::create();
    const auto b = UsdDocument::create();
    EXPECT_NE(a->getId(), b->getId());
    EXPECT_FALSE(a->getId().empty());
    EXPECT_EQ(&a->getId(), &a->getId());
}

TEST(Documents, AreNotMadeWithoutAStage)
{
    try {
        UsdDocument::attach(UsdStageRefPtr());
        ADD_FAILURE() << "nothing was thrown";
    } catch (const vesk::base::error_handling::Exception& error) {
        EXPECT_STREQ(error.what(), "a document needs a stage: Invalid argument");
    }
}
