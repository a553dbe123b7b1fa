#include "program.h"

#include <apps/support/json.h>
#include <apps/support/scene_session.h>

#include <pxr/usd/usd/prim.h>
#include <pxr/usd/usd/primRange.h>
#include <pxr/usd/usdGeom/camera.h>
#include <pxr/usd/usdGeom/mesh.h>
#include <pxr/usd/usdGeom/metrics.h>
#include <pxr/usd/usdGeom/tokens.h>

#include <memory>
#include <ostream>

PXR_NAMESPACE_USING_DIRECTIVE

namespace vesk::cli {
namespace {

struct InfoArguments
{
    std::string scene;
    bool json = false;
};

/// What `vesk info` tells of a stage.
struct SceneInfo
{
    std::size_t prims = 0;
    std::size_t meshes = 0;
    std::vector<std::string> cameras;
    std::string upAxis;
    double metersPerUnit = 0;
    double startTimeCode = 0;
    double endTimeCode = 0;
    double timeCodesPerSecond = 0;
    GfRange3f bounds;
};

SceneInfo collect(const UsdStagePtr& stage)
{
    SceneInfo info;
    for (const UsdPrim& prim :
         UsdPrimRange(stage->GetPseudoRoot(), UsdTraverseInstanceProxies(UsdPrimDefaultPredicate))) {
        if (prim.IsPseudoRoot()) continue;
        ++info.prims;
        if (prim.IsA<UsdGeomMesh>()) ++info.meshes;
        if (prim.IsA<UsdGeomCamera>()) info.cameras.push_back(prim.GetPath().GetString());
    }
    info.upAxis = UsdGeomGetStageUpAxis(stage).GetString();
    info.metersPerUnit = UsdGeomGetStageMetersPerUnit(stage);
    info.startTimeCode = stage->GetStartTimeCode();
    info.endTimeCode = stage->GetEndTimeCode();
    info.timeCodesPerSecond = stage->GetTimeCodesPerSecond();
    return info;
}

apps::Json asJson(const SceneInfo& info, const std::string& path)
{
    return {{"path", path},
            {"prims", info.prims},
            {"meshes", info.meshes},
            {"cameras", info.cameras},
            {"upAxis", info.upAxis},
            {"metersPerUnit", apps::jsonNumber(info.metersPerUnit)},
            {"startTimeCode", apps::jsonNumber(info.startTimeCode)},
            {"endTimeCode", apps::jsonNumber(info.endTimeCode)},
            {"timeCodesPerSecond", apps::jsonNumber(info.timeCodesPerSecond)},
            {"bounds", apps::jsonBounds(info.bounds)}};
}

void print(const SceneInfo& info, const std::string& path, std::ostream& out)
{
    out << "scene              " << path << "\n"
        << "prims              " << info.prims << "\n"
        << "meshes             " << info.meshes << "\n"
        << "up axis            " << info.upAxis << "\n"
        << "metres per unit    " << info.metersPerUnit << "\n"
        << "time codes         " << info.startTimeCode << " to " << info.endTimeCode << ", "
        << info.timeCodesPerSecond << " a second\n"
        << "bounds             " << apps::boundsText(info.bounds) << "\n"
        << "cameras            " << (info.cameras.empty() ? "none" : "") << "\n";
    for (const std::string& camera : info.cameras)
        out << "  " << camera << "\n";
}

void runInfo(const InfoArguments& arguments, std::ostream& out)
{
    apps::SceneSession session(arguments.scene);
    SceneInfo info = session.read<SceneInfo>("info", collect);
    info.bounds = session.bounds(session.startTime(), {}, false);
    if (arguments.json)
        out << asJson(info, arguments.scene).dump(2) << "\n";
    else
        print(info, arguments.scene, out);
}

} // namespace

void addInfoVerb(Program& program)
{
    auto arguments = std::make_shared<InfoArguments>();
    CLI::App* verb = program.app.add_subcommand("info", "Says what a scene holds");
    verb->add_option("SCENE", arguments->scene, "The scene's file")->required();
    verb->add_flag("--json", arguments->json, "Print JSON");
    verb->footer("Example:\n  vesk info scene.usda --json");
    verb->callback([&program, arguments] {
        program.job = [arguments](std::ostream& out) { runInfo(*arguments, out); };
    });
}

} // namespace vesk::cli
