#pragma once

#include "program.h"

#include <tests/support/scene_files.h>

#include <sstream>
#include <string>
#include <vector>

namespace vesk::cli::tests {

/// What one run of the program gave.
struct CliResult
{
    int exitCode = -1;
    std::string out;
    std::string err;
};

/// Runs the program in this process.
/// \param arguments without the program's name
inline CliResult runCli(const std::vector<std::string>& arguments)
{
    std::vector<const char*> argv{"vesk"};
    for (const std::string& argument : arguments)
        argv.push_back(argument.c_str());
    std::ostringstream out;
    std::ostringstream err;
    CliResult result;
    result.exitCode = run(static_cast<int>(argv.size()), argv.data(), out, err);
    result.out = out.str();
    result.err = err.str();
    return result;
}

/// A cube of size 2 at the origin, a sphere of radius 1 at x = 5 (render purpose), a proxy cone, and two
/// cameras.
inline const char* const kScene = R"usda(#usda 1.0
(
    upAxis = "Y"
    metersPerUnit = 0.01
    startTimeCode = 1
    endTimeCode = 5
    timeCodesPerSecond = 24
)

def Xform "World"
{
    def Cube "Box"
    {
        double size = 2
    }

    def Sphere "Ball"
    {
        uniform token purpose = "render"
        double radius = 1
        double3 xformOp:translate.timeSamples = {
            1: (5, 0, 0),
            5: (9, 0, 0),
        }
        uniform token[] xformOpOrder = ["xformOp:translate"]
    }

    def Cube "Stand"
    {
        uniform token purpose = "proxy"
        double size = 20
    }

    def Mesh "Sheet"
    {
        uniform token subdivisionScheme = "none"
        float3[] extent = [(-1, -1, 0), (1, -1, 1)]
        int[] faceVertexCounts = [4]
        int[] faceVertexIndices = [0, 1, 2, 3]
        point3f[] points = [(-1, -1, 1), (1, -1, 1), (1, -1, 0), (-1, -1, 0)]
    }

    def Camera "Front"
    {
        double3 xformOp:translate = (0, 0, 10)
        uniform token[] xformOpOrder = ["xformOp:translate"]
    }

    def Camera "Side"
    {
    }
}
)usda";

/// A scene with nothing to see.
inline const char* const kEmptyScene = R"usda(#usda 1.0

def Xform "World"
{
}
)usda";

} // namespace vesk::cli::tests
