#pragma once

#include <any>
#include <memory>
#include <string>
#include <vector>

#include <gtest/gtest.h>
#include <pxr/pxr.h>
#include <pxr/usd/sdf/layer.h>
#include <pxr/usd/sdf/types.h>
#include <pxr/usd/usd/attribute.h>
#include <pxr/usd/usd/prim.h>
#include <pxr/usd/usd/stage.h>

#include <tests/support/log_capture.h>

#include <vesk/framework/usd_document/stage_changes_event.h>
#include <vesk/framework/usd_document/usd_document.h>

namespace vesk::framework::usd_document::tests {

PXR_NAMESPACE_USING_DIRECTIVE

using Context = UsdDocument::ExecContext;

/// Opens a stage from the text of a layer.
inline UsdStageRefPtr stageFromText(const std::string& text)
{
    const SdfLayerRefPtr layer = SdfLayer::CreateAnonymous(".usda");
    EXPECT_TRUE(layer->ImportFromString("#usda 1.0\n" + text));
    return UsdStage::Open(SdfLayerHandle(layer));
}

/// A manual document on a stage in memory, with every event that it sends. The end of a test checks that no
/// task is left and that nothing was logged that the test did not take.
class DocumentTest : public ::testing::Test
{
protected:
    DocumentTest() { use(UsdStage::CreateInMemory()); }

    ~DocumentTest() override { EXPECT_EQ(document->pendingTaskCount(), 0u); }

    void use(const UsdStageRefPtr& newStage, DocumentOptions options = {})
    {
        options.manual = true;
        stage = newStage;
        document = UsdDocument::attach(stage, options);
        document->getEventBus()->subscribeListener([this](const std::any& event) {
            if (const auto* changes = std::any_cast<StageChangesEvent>(&event)) events.push_back(*changes);
        });
    }

    /// Queues an edit and runs the queue.
    template <class F>
    void edit(const std::string& label, F work)
    {
        document->edit(label, std::move(work));
        document->runPendingTasks();
    }

    /// Sets /Box.size and so makes /Box, too.
    void setSize(double size)
    {
        edit("set size", [size](const Context& context) {
            const UsdPrim box = context.stage()->DefinePrim(SdfPath("/Box"));
            box.CreateAttribute(TfToken("size"), SdfValueTypeNames->Double).Set(size);
        });
    }

    double size() const
    {
        double value = -1.0;
        if (const UsdAttribute attribute = stage->GetAttributeAtPath(SdfPath("/Box.size")))
            attribute.Get(&value);
        return value;
    }

    bool undo()
    {
        const base::Future<bool> done = document->undo();
        document->runPendingTasks();
        return done.get();
    }

    bool redo()
    {
        const base::Future<bool> done = document->redo();
        document->runPendingTasks();
        return done.get();
    }

    std::string rootText() const
    {
        std::string text;
        stage->GetRootLayer()->ExportToString(&text);
        return text;
    }

    vesk::tests::LogCapture log;
    UsdStageRefPtr stage;
    std::shared_ptr<UsdDocument> document;
    std::vector<StageChangesEvent> events;
};

using Labels = std::vector<std::string>;

/// "1 broken promise", the text of another error, or "value".
template <class T>
std::string endOf(const base::Future<T>& future)
{
    try {
        future.get();
        return "value";
    } catch (const base::FutureError& error) {
        return std::to_string(error.code().value()) + " " + error.what();
    } catch (const std::exception& error) {
        return error.what();
    }
}

} // namespace vesk::framework::usd_document::tests
