#include "picture_options.h"
#include "program.h"

#include <apps/support/contact_sheet.h>
#include <apps/support/errors.h>
#include <apps/support/interruption.h>
#include <apps/support/progress.h>
#include <apps/support/temporary_folder.h>

#include <algorithm>
#include <cmath>
#include <memory>
#include <ostream>

PXR_NAMESPACE_USING_DIRECTIVE

namespace vesk::cli {
namespace {

using framework::usd_viewport::ViewDirection;

struct SheetArguments
{
    PictureArguments picture;
    std::string file;
};

class SheetMaker
{
public:
    explicit SheetMaker(const SheetArguments& arguments)
        : m_arguments(arguments),
          m_scene(arguments.picture.scene),
          m_viewport(m_scene, arguments.picture.viewport),
          m_paths(m_scene.requirePrims(arguments.picture.viewport.camera.paths)),
          m_cameras(m_scene.cameraPaths())
    {
        if (!arguments.picture.drawMode.empty())
            m_viewport.model().setDrawMode(TfToken(arguments.picture.drawMode));
        m_viewport.showTime(arguments.picture.viewport.camera.time.value_or(m_scene.startTime()));
    }

    apps::Image make()
    {
        const auto& names = apps::viewNames();
        for (std::size_t i = 1; i < names.size(); ++i) {
            m_viewport.frame(static_cast<ViewDirection>(i), m_arguments.picture.viewport.camera.projection,
                             m_paths);
            _take(names[i]);
        }
        for (const std::string& path : m_cameras) {
            m_viewport.lookThrough(SdfPath(path));
            _fitToCamera();
            _take(path);
        }
        const auto& size = m_arguments.picture.viewport.camera.size;
        const int columns = m_entries.size() > 12 ? 5 : 4;
        return apps::makeContactSheet(m_entries, columns, size[0], size[1]);
    }

private:
    void _take(const std::string& caption)
    {
        apps::Interruption::check();
        const std::size_t total = apps::viewNames().size() - 1 + m_cameras.size();
        m_progress.show(caption, static_cast<int>(m_entries.size()), static_cast<int>(total));
        const std::filesystem::path file = m_folder.path() / "picture.png";
        takePicture(m_viewport, m_arguments.picture, {{"color", file}});
        m_entries.push_back({apps::readPng(file), caption});
    }

    // A camera's picture has the shape of its window, so that it shows exactly what the camera frames.
    void _fitToCamera()
    {
        const double aspect = m_viewport.model().getViewportCamera().GetAspectRatio();
        const apps::CameraArguments& camera = m_arguments.picture.viewport.camera;
        if (!std::isfinite(aspect) || aspect <= 0.0) return;
        const double height = std::min<double>(camera.size[1], camera.size[0] / aspect);
        const int size[2] = {std::max(1, static_cast<int>(std::lround(height * aspect))),
                             std::max(1, static_cast<int>(std::lround(height)))};
        m_viewport.model().setRenderSize(size, camera.devicePixelRatio);
        m_viewport.model().setViewportSize(size);
    }

    const SheetArguments& m_arguments;
    apps::SceneSession m_scene;
    apps::ViewportSession m_viewport;
    std::vector<SdfPath> m_paths;
    std::vector<std::string> m_cameras;
    apps::TemporaryFolder m_folder;
    apps::Progress m_progress;
    std::vector<apps::SheetEntry> m_entries;
};

void runSheet(const SheetArguments& arguments, std::ostream& out)
{
    if (std::filesystem::path(arguments.file).extension() != ".png")
        throw apps::UsageError("'" + arguments.file + "' must end in .png");
    apps::requireWritable(arguments.file);
    SheetMaker maker(arguments);
    apps::writePng(arguments.file, maker.make());
    out << arguments.file << "\n";
}

} // namespace

void addSheetVerb(Program& program)
{
    auto arguments = std::make_shared<SheetArguments>();
    apps::CameraArguments& camera = arguments->picture.viewport.camera;
    camera.size = {480, 270};
    CLI::App* verb = program.app.add_subcommand(
        "sheet", "Puts pictures from every direction and through every stage camera on one sheet");
    addSceneArgument(*verb, arguments->picture.scene);
    verb->add_option("-o,--output", arguments->file, "Picture to write: .png")->type_name("FILE")->required();
    apps::addFramingOptions(*verb, camera, "Size of each picture in logical pixels (default 480x270)");
    addPictureOptions(*verb, arguments->picture);
    verb->footer("Example:\n  vesk sheet scene.usda -o sheet.png");
    verb->callback([&program, arguments] {
        program.job = [arguments](std::ostream& out) { runSheet(*arguments, out); };
    });
}

} // namespace vesk::cli
