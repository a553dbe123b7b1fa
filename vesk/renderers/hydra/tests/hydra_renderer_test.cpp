#include <vesk/renderers/hydra/hydra_renderers.h>

#include "gl_context.h"

#include <pxr/usd/sdf/layer.h>
#include <pxr/usd/usd/stage.h>
#include <vesk/framework/hydra_renderer/hydra_renderer.h>
#include <vesk/framework/hydra_renderer/renderer_registry.h>
#include <vesk/framework/usd_document/usd_document.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <future>
#include <mutex>
#include <set>
#include <thread>

PXR_NAMESPACE_USING_DIRECTIVE

namespace vesk::renderers::hydra {
namespace {

using namespace framework::hydra_renderer;
using framework::usd_document::UsdDocument;

std::shared_ptr<UsdDocument> openText(const char* text)
{
    const UsdStageRefPtr stage = UsdStage::CreateInMemory();
    EXPECT_TRUE(stage->GetRootLayer()->ImportFromString(text));
    return UsdDocument::attach(stage);
}

std::unique_ptr<HydraRenderer> makeRenderer(const std::shared_ptr<UsdDocument>& document,
                                            const std::shared_ptr<HWContext>& context = nullptr)
{
    registerHydraRenderers();
    auto renderer = HydraRenderer::create(nullptr, document, context, kStormRendererId, {}, GfVec2i(64, 64),
                                          1, true, false, true, {}, {});
    GfCamera camera;
    camera.SetTransform(GfMatrix4d(1.0).SetTranslate(GfVec3d(0.0, 0.0, 10.0)));
    renderer->setCamera(camera);
    renderer->setGridEnabled(false);
    renderer->setClearColor(GfVec4f(0.0f, 0.0f, 0.0f, 1.0f));
    return renderer;
}

template <class T>
std::string errorOf(const base::Future<T>& future)
{
    try {
        future.get();
    } catch (const std::exception& error) {
        return error.what();
    }
    return "no error";
}

constexpr const char* kCube = "#usda 1.0\ndef Cube \"Box\" { double size = 2\n}\n";

TEST(HydraRenderer, OffersStormFirstUnderHydrasOwnName)
{
    const std::vector<std::string> ids = hydraRendererIds();
    ASSERT_FALSE(ids.empty());
    EXPECT_EQ(ids.front(), "HdStormRendererPlugin");
    registerHydraRenderers();
    const std::vector<std::string> registered = registeredRendererIds();
    for (const std::string& id : ids)
        EXPECT_EQ(std::count(registered.begin(), registered.end(), id), 1) << id;
}

TEST(HydraRenderer, DrawsWithAContextOfItsOwnWhereTheHostHasNone)
{
    const auto document = openText(kCube);
    const auto renderer = makeRenderer(document);
    RenderParameters parameters;
    parameters.aovs = {TfToken("color")};
    const HydraRenderJobResult result = renderer->renderFrame(parameters).get();
    EXPECT_TRUE(result.converged);
    const AovBuffer& color = result.aovs.at(0).second;
    EXPECT_EQ(color.size, GfVec2i(64, 64));
    const auto red = [&color](int x, int y) { return (*color.bytes)[std::size_t(y * 64 + x) * 4]; };
    EXPECT_GT(red(32, 32), 20);
    EXPECT_EQ(red(1, 1), 0);
}

/// A host's context that counts its use and lends nothing: Hydra is not reached with it.
class CountingContext final : public HWContext
{
public:
    explicit CountingContext(bool works) : m_works(works) {}
    bool makeCurrent() override
    {
        const std::lock_guard lock(m_mutex);
        threads.insert(std::this_thread::get_id());
        ++made;
        return m_works && m_own->makeCurrent();
    }
    void doneCurrent() override
    {
        const std::lock_guard lock(m_mutex);
        threads.insert(std::this_thread::get_id());
        ++done;
        m_own->doneCurrent();
    }

    int made = 0;
    int done = 0;
    std::set<std::thread::id> threads;

private:
    std::mutex m_mutex;
    bool m_works;
    std::shared_ptr<HWContext> m_own = makeOffscreenContext();
};

TEST(HydraRenderer, UsesTheHostsContextOnOneThreadAndLeavesItEachTime)
{
    const auto context = std::make_shared<CountingContext>(true);
    const auto document = openText(kCube);
    auto renderer = makeRenderer(document, context);
    EXPECT_EQ(context->made, 0); // not before the first picture
    renderer->renderFrame({}).get();
    EXPECT_TRUE(renderer->singlePointPicking(32.0f, 32.0f, 0.0f).get().hit);
    renderer->renderFrame({}).get();
    EXPECT_GE(context->made, 3);
    EXPECT_EQ(context->made, context->done);
    EXPECT_EQ(context->threads.size(), 1u);
    EXPECT_EQ(context->threads.count(std::this_thread::get_id()), 0u);
}

TEST(HydraRenderer, ReportsAContextThatCannotBeMadeCurrentInEachFuture)
{
    const auto document = openText(kCube);
    const auto renderer = makeRenderer(document, std::make_shared<CountingContext>(false));
    const char* const expected =
        "Hydra cannot draw: the graphics context cannot be made current: No such device";
    EXPECT_EQ(errorOf(renderer->renderFrame({})), expected);
    EXPECT_EQ(errorOf(renderer->singlePointPicking(1.0f, 1.0f, 0.0f)), expected);
    EXPECT_EQ(errorOf(renderer->colorPicking({1.0f, 1.0f}, TfToken("color"))), expected);
}

TEST(HydraRenderer, NamesTheDelegatesWhenItIsToldToBecomeSomethingElse)
{
    const auto renderer = makeRenderer(openText(kCube));
    try {
        renderer->switchRenderer("teapot", {});
        FAIL() << "no error";
    } catch (const std::system_error& error) {
        EXPECT_THAT(error.what(), testing::StartsWith("the renderer 'HdStormRendererPlugin' cannot become "
                                                      "'teapot'; Hydra's render delegates here: "
                                                      "HdStormRendererPlugin"));
    }
}

TEST(HydraRenderer, TakesTheStormAsItsDefaultAndGoesOnDrawing)
{
    const auto document = openText(kCube);
    const auto renderer = makeRenderer(document);
    renderer->switchRenderer("", {{"samples", VtValue(3)}});
    EXPECT_EQ(renderer->renderFrame({}).get().samples, 3);
}

// Two renderers, each with an engine and a context of its own, draw the same scene in turns.
TEST(HydraRenderer, DrawsSeveralViewportsOfOneDocument)
{
    const auto document = openText(kCube);
    const auto first = makeRenderer(document);
    const auto second = makeRenderer(document);
    std::vector<base::Future<HydraRenderJobResult>> frames;
    for (int i = 0; i < 4; ++i) {
        frames.push_back(first->renderFrame({}));
        frames.push_back(second->renderFrame({}));
    }
    for (const auto& frame : frames)
        EXPECT_TRUE(frame.get().converged);
}

// The document's thread is held while Hydra reads, not while it draws or while the host is told.
TEST(HydraRenderer, LetsTheDocumentWorkWhileTheHostIsTold)
{
    const auto document = openText(kCube);
    const auto renderer = makeRenderer(document);
    std::promise<bool> edited;
    renderer->setAfterRenderCallback(
        [&](bool) { edited.set_value(document->read("look", [](const auto&) { return true; }).get()); });
    renderer->renderFrame({}).get();
    EXPECT_TRUE(edited.get_future().get());
}

} // namespace
} // namespace vesk::renderers::hydra
