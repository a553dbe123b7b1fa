#include <type_traits>

#include "document_fixture.h"

using namespace vesk::framework::usd_document::tests;
using namespace vesk::framework::usd_document;
using vesk::base::Future;
using vesk::base::error_handling::Exception;

namespace vesk::framework::usd_viewport {

/// Stands where the viewport stands: the only class that may submit work by itself.
class ViewportModel
{
public:
    template <class F>
    static auto exec(UsdDocument& document, F work, TaskType type, const std::string& label,
                     const std::variant<UsdEditTarget, std::string>& target = UsdEditTarget(),
                     bool updateUri = false)
    {
        return document._exec(std::move(work), type, label, target, updateUri);
    }
    static void addTask(UsdDocument& document, std::unique_ptr<UsdDocument::Task> task,
                        const std::string& label)
    {
        document._addTask(std::move(task), TaskType::Read, label, document._getStage(), UsdEditTarget());
    }
    static const TfRefPtr<UsdStage>& stage(const UsdDocument& document) { return document._getStage(); }
    static UsdDocument::ExecContext context(UsdDocument& document) { return document._getExecContext(); }
};

} // namespace vesk::framework::usd_viewport

namespace {

using Model = vesk::framework::usd_viewport::ViewportModel;
using Submit = DocumentTest;

class CountingTask final : public UsdDocument::Task
{
public:
    CountingTask(int& runs, int& deaths) : m_runs(runs), m_deaths(deaths) {}
    ~CountingTask() override { ++m_deaths; }
    void run() override { ++m_runs; }

private:
    int& m_runs;
    int& m_deaths;
};

} // namespace

TEST_F(Submit, QueuesOneTaskAndReturnsItsFuture)
{
    const auto future = Model::exec(
        *document, [](const Context&) { return 5; }, TaskType::Read, "look");
    static_assert(std::is_same_v<decltype(future), const Future<int>>);
    EXPECT_EQ(document->pendingTaskCount(), 1u);
    document->runPendingTasks();
    EXPECT_EQ(future.get(), 5);
}

TEST_F(Submit, TakesTheTaskAndDestroysItAfterItsRun)
{
    int runs = 0, deaths = 0;
    Model::addTask(*document, std::make_unique<CountingTask>(runs, deaths), "count");
    EXPECT_EQ(deaths, 0);
    document->runPendingTasks();
    EXPECT_EQ(runs, 1);
    EXPECT_EQ(deaths, 1);
}

TEST_F(Submit, GivesTheStageUntilTheDocumentIsClosed)
{
    EXPECT_EQ(Model::stage(*document), stage);
    EXPECT_EQ(Model::context(*document).stage(), stage);
    document->close();
    EXPECT_FALSE(Model::stage(*document));
}

TEST_F(Submit, UpdatesTheUriWithWhatTheWorkReturns)
{
    const auto future = Model::exec(
        *document, [](const Context&) { return std::string("/new/uri.usda"); }, TaskType::Read, "save",
        UsdEditTarget(), true);
    EXPECT_EQ(document->getURI(), stage->GetRootLayer()->GetIdentifier());
    document->runPendingTasks();
    EXPECT_EQ(document->getURI(), "/new/uri.usda");
    EXPECT_EQ(future.get(), "/new/uri.usda");
}

TEST_F(Submit, RefusesToUpdateTheUriWithWorkThatReturnsNoText)
{
    try {
        Model::exec(
            *document, [](const Context&) { return 1; }, TaskType::Edit, "{} label", UsdEditTarget(), true);
        ADD_FAILURE() << "nothing was thrown";
    } catch (const Exception& error) {
        EXPECT_EQ(error.code().value(), 2);
        EXPECT_STREQ(error.code().category().name(), "GenericError");
        EXPECT_EQ(std::string(error.what()).rfind("updateDocumentURI requires string return value", 0), 0u);
    }
    EXPECT_EQ(document->pendingTaskCount(), 0u);
    const auto records = log.take();
    ASSERT_EQ(records.size(), 1u);
    EXPECT_EQ(records[0].text, "({} label) When updateDocumentURI is true, the function needs to return the "
                               "std::string of the new URI");
    EXPECT_EQ(records[0].level, spdlog::level::err);
    EXPECT_EQ(records[0].function, "vesk_framework_usd_viewport");
    EXPECT_EQ(records[0].file,
              "vesk/framework/usd_document/include/vesk/framework/usd_document/usd_document.h");
}

TEST_F(Submit, KeepsTheUriWhenItIsNotAskedToUpdateIt)
{
    Model::exec(
        *document, [](const Context&) { return std::string("not a uri"); }, TaskType::Read, "look");
    document->runPendingTasks();
    EXPECT_EQ(document->getURI(), stage->GetRootLayer()->GetIdentifier());
}
