#pragma once

#include <pxr/base/gf/camera.h>
#include <pxr/base/gf/vec3f.h>
#include <vesk/framework/hydra_renderer/hydra_renderer.h>
#include <vesk/framework/usd_document/usd_document.h>

#include <gtest/gtest.h>

#include <chrono>
#include <cstring>
#include <memory>
#include <string>

namespace vesk::tests::contract {

using namespace framework::hydra_renderer;
using framework::usd_document::UsdDocument;

/// A white sheet of two square faces side by side, which meet at x = 0.
inline constexpr const char* kSheetScene = R"(#usda 1.0
def Mesh "Sheet" {
    uniform token subdivisionScheme = "none"
    int[] faceVertexCounts = [4, 4]
    int[] faceVertexIndices = [0, 1, 4, 3, 1, 2, 5, 4]
    color3f[] primvars:displayColor = [(1, 1, 1)]
    point3f[] points = [(-1, -1, 0), (0, -1, 0), (1, -1, 0), (-1, 1, 0), (0, 1, 0), (1, 1, 0)]
}
)";

/// The scene that most tests stand on: a sphere of radius 1 at the origin.
inline constexpr const char* kSphereScene = R"(#usda 1.0
def Sphere "Ball" { double radius = 1
}
)";

/// One read back picture with its pixels by position.
class Picture
{
public:
    explicit Picture(AovBuffer buffer) : m_buffer(std::move(buffer)) {}

    int width() const { return m_buffer.size[0]; }
    int height() const { return m_buffer.size[1]; }

    template <class T>
    T at(int x, int y, int channel = 0) const
    {
        T value;
        const std::size_t index =
            (static_cast<std::size_t>(y) * static_cast<std::size_t>(width()) + static_cast<std::size_t>(x)) *
                static_cast<std::size_t>(m_buffer.channels) +
            static_cast<std::size_t>(channel);
        std::memcpy(&value, m_buffer.bytes->data() + index * sizeof(T), sizeof(T));
        return value;
    }
    int byte(int x, int y, int channel) const { return at<std::uint8_t>(x, y, channel); }
    float number(int x, int y, int channel = 0) const { return at<float>(x, y, channel); }
    int id(int x, int y) const { return at<std::int32_t>(x, y); }
    const AovBuffer& buffer() const { return m_buffer; }

private:
    AovBuffer m_buffer;
};

/// A document on an inline scene with a renderer of one id, without grid and colour correction, so that
/// pictures can be worked out by hand.
class ContractSession
{
public:
    /// \param manual whether the document's tasks wait for `document->runPendingTasks()`
    ContractSession(const std::string& rendererId, const std::string& scene, int width = 200,
                    int height = 200, bool manual = false);

    /// An orthographic camera on +z that looks along -z and shows `extent` units across the picture's width.
    void lookOrthographic(double extent, double distance = 10.0);

    /// A perspective camera on +z with a view as wide as it is deep (at depth d it shows d units).
    void lookPerspective(double distance);

    /// Light from everywhere and no other: a surface shows its own colour.
    void useAmbientLightOnly();

    /// Renders one frame of one sample and returns an output.
    Picture render(const char* aov, int samples = 1);

    /// Waits for a future of the renderer; a document in manual mode runs what is queued meanwhile.
    template <class T>
    void finish(const base::Future<T>& future) const
    {
        while (document->isManual() && !future.waitFor(std::chrono::milliseconds(1))) {
            document->runPendingTasks();
        }
        future.wait();
    }

    std::shared_ptr<UsdDocument> document;
    std::unique_ptr<HydraRenderer> renderer;
};

/// Opens a scene from its text. Throws: what the text's fault is.
std::shared_ptr<UsdDocument> openText(const std::string& text, bool manual);

/// The message of what a future ended with, "no error" for a value.
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

/// A camera with an aperture of the given ratio that shows `extent` units across.
PXR_NS::GfCamera makeOrthographicCamera(double extent, double ratio, double distance);

/// Tests that run against every renderer.
class EveryRenderer : public testing::TestWithParam<std::string>
{
protected:
    void SetUp() override;
};

/// Tests that run against every renderer that draws.
/// One of Hydra's delegates skips the tests that it has not been shown to pass, and says so.
class EveryDrawingRenderer : public EveryRenderer
{};

} // namespace vesk::tests::contract
