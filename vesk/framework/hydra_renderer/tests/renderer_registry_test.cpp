#include <vesk/framework/hydra_renderer/renderer_registry.h>

#include <vesk/base/error_handling.h>
#include <vesk/framework/hydra_renderer/hydra_renderer.h>

#include <gtest/gtest.h>

#include <stdexcept>

PXR_NAMESPACE_USING_DIRECTIVE

namespace vesk::framework::hydra_renderer {
namespace {

RendererFactory factoryOfNothing()
{
    return [](const RendererCreateInfo&) { return std::unique_ptr<HydraRenderer>(); };
}

std::unique_ptr<HydraRenderer> createWith(const std::string& id)
{
    return HydraRenderer::create(nullptr, nullptr, nullptr, id, {}, GfVec2i(8, 4), 3, true, false, true, {},
                                 {});
}

std::string errorOf(const std::string& id)
{
    try {
        createWith(id);
    } catch (const vesk::base::error_handling::Exception& error) {
        return error.what();
    }
    return "no error";
}

std::string joined(const std::vector<std::string>& ids)
{
    std::string text;
    for (const std::string& id : ids) {
        text += (text.empty() ? "" : ", ") + id;
    }
    return text;
}

// The registry is the process's own: other tests may have registered renderers before.
TEST(RendererRegistry, NamesItsRenderersInTheOrderOfTheirRegistration)
{
    const std::vector<std::string> before = registeredRendererIds();
    registerRenderer("first", "The First", factoryOfNothing());
    registerRenderer("second", "The Second", factoryOfNothing());
    std::vector<std::string> expected = before;
    expected.insert(expected.end(), {"first", "second"});
    EXPECT_EQ(registeredRendererIds(), expected);
    EXPECT_EQ(rendererDisplayName("second"), "The Second");

    registerRenderer("first", "The First Again", factoryOfNothing());
    EXPECT_EQ(registeredRendererIds(), expected);
    EXPECT_EQ(rendererDisplayName("first"), "The First Again");
}

TEST(RendererRegistry, TakesTheFirstOneAsDefaultUntilAnotherIsChosen)
{
    registerRenderer("early", "Early", factoryOfNothing());
    registerRenderer("late", "Late", factoryOfNothing());
    EXPECT_EQ(defaultRendererId(), registeredRendererIds().front());
    EXPECT_EQ(resolveRendererId(""), defaultRendererId());
    const std::string former = defaultRendererId();
    setDefaultRendererId("late");
    EXPECT_EQ(resolveRendererId(""), "late");
    EXPECT_THROW(setDefaultRendererId("nobody"), vesk::base::error_handling::Exception);
    EXPECT_EQ(defaultRendererId(), "late");
    setDefaultRendererId(former);
}

TEST(RendererRegistry, NamesTheKnownRenderersWhenAnUnknownOneIsAskedFor)
{
    registerRenderer("known", "Known", factoryOfNothing());
    EXPECT_EQ(errorOf("teapot"), "unknown renderer 'teapot'; known renderers: " +
                                     joined(registeredRendererIds()) + ": Invalid argument");
    EXPECT_EQ(rendererDisplayName("teapot"), "");
}

TEST(RendererRegistry, RefusesAnEmptyIdAndAnEmptyFactory)
{
    EXPECT_THROW(registerRenderer("", "Nobody", factoryOfNothing()), vesk::base::error_handling::Exception);
    EXPECT_THROW(registerRenderer("empty", "Empty", {}), vesk::base::error_handling::Exception);
    EXPECT_EQ(rendererDisplayName("empty"), "");
}

TEST(HydraRendererCreate, HandsEveryArgumentToTheFactory)
{
    RendererCreateInfo seen;
    registerRenderer("seeing", "Seeing", [&seen](const RendererCreateInfo& info) {
        seen = info;
        return std::unique_ptr<HydraRenderer>();
    });
    int progressed = 0;
    int rendered = 0;
    HydraRenderer::create(
        nullptr, nullptr, nullptr, "seeing", {{"samples", VtValue(3)}}, GfVec2i(151, 49), 7, true, false,
        true, [&](int, float, bool) { return ++progressed > 0; }, [&](bool) { ++rendered; });
    EXPECT_EQ(seen.rendererId, "seeing");
    ASSERT_EQ(seen.settings.size(), 1u);
    EXPECT_EQ(seen.settings[0].name, "samples");
    EXPECT_EQ(seen.settings[0].value, VtValue(3));
    EXPECT_EQ(seen.renderSize, GfVec2i(151, 49));
    EXPECT_EQ(seen.viewportId, 7u);
    EXPECT_TRUE(seen.enableSceneMaterials);
    EXPECT_FALSE(seen.enableColorCorrection);
    EXPECT_TRUE(seen.enableAsyncRendering);
    seen.progressCallback(1, 0.5f, false);
    seen.afterRenderCallback(true);
    EXPECT_EQ(progressed, 1);
    EXPECT_EQ(rendered, 1);
}

TEST(HydraRendererCreate, LetsWhatTheFactoryThrowsPass)
{
    registerRenderer("throwing", "Throwing", [](const RendererCreateInfo&) -> std::unique_ptr<HydraRenderer> {
        throw std::runtime_error("no device");
    });
    EXPECT_THROW(createWith("throwing"), std::runtime_error);
}

} // namespace
} // namespace vesk::framework::hydra_renderer
