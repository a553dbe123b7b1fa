#include "scene_writer.h"

#include <cmath>
#include <cstdio>
#include <fstream>
#include <stdexcept>

namespace {

void writeCube(std::ostream& out, int index)
{
    out << "        def Cube \"Part" << index << "\"\n        {\n            double size = " << 1 + index % 3
        << "\n            double3 xformOp:translate = (" << index * 3 << ", " << index % 5 << ", 0)\n"
        << "            uniform token[] xformOpOrder = [\"xformOp:translate\"]\n        }\n";
}

void writeQuad(std::ostream& out, int index)
{
    out << "        def Mesh \"Part" << index
        << "\"\n        {\n            float3[] extent = [(0, 0, 0), (1, 1, 0)]\n"
        << "            int[] faceVertexCounts = [4]\n            int[] faceVertexIndices = [0, 1, 2, 3]\n"
        << "            point3f[] points = [(0, 0, 0), (1, 0, 0), (1, 1, 0), (0, 1, 0)]\n"
        << "            double3 xformOp:translate = (0, " << index << ", 2)\n"
        << "            uniform token[] xformOpOrder = [\"xformOp:translate\"]\n        }\n";
}

/// Groups of nine parts each below one root.
void writePrims(std::ostream& out, long count)
{
    out << "def Xform \"World\"\n{\n";
    for (long group = 0; group * 10 < count; ++group) {
        out << "    def Xform \"Group" << group << "\"\n    {\n        double3 xformOp:translate = (0, 0, "
            << group * 4 << ")\n        uniform token[] xformOpOrder = [\"xformOp:translate\"]\n\n";
        for (int part = 0; part < 9; ++part) {
            if (part % 3 == 2)
                writeQuad(out, part);
            else
                writeCube(out, part);
        }
        out << "    }\n";
    }
    out << "}\n";
}

/// A square height field without an authored extent.
void writePoints(std::ostream& out, long count)
{
    const long side = std::lround(std::sqrt(static_cast<double>(count)));
    out << "def Mesh \"Field\"\n{\n    int[] faceVertexCounts = [";
    const long faces = (side - 1) * (side - 1);
    for (long i = 0; i < faces; ++i)
        out << (i == 0 ? "4" : ", 4");
    out << "]\n    int[] faceVertexIndices = [";
    for (long y = 0; y + 1 < side; ++y)
        for (long x = 0; x + 1 < side; ++x) {
            const long corner = y * side + x;
            out << (corner == 0 ? "" : ", ") << corner << ", " << corner + 1 << ", " << corner + side + 1
                << ", " << corner + side;
        }
    out << "]\n    point3f[] points = [";
    char buffer[96];
    for (long y = 0; y < side; ++y)
        for (long x = 0; x < side; ++x) {
            const double height =
                std::sin(static_cast<double>(x) * 0.013) * std::cos(static_cast<double>(y) * 0.017);
            std::snprintf(buffer, sizeof buffer, "%s(%.4g, %.7g, %.4g)", x + y == 0 ? "" : ", ",
                          static_cast<double>(x) * 0.1, height, static_cast<double>(y) * 0.1);
            out << buffer;
        }
    out << "]\n}\n";
}

} // namespace

void writeScene(const std::string& kind, const std::string& path)
{
    std::ofstream out(path);
    out << "#usda 1.0\n(\n    upAxis = \"Y\"\n)\n\n";
    if (kind.rfind("prims-", 0) == 0)
        writePrims(out, std::stol(kind.substr(6)));
    else if (kind.rfind("points-", 0) == 0)
        writePoints(out, std::stol(kind.substr(7)));
    else
        throw std::runtime_error("there is no kind of scene '" + kind + "'; choose prims-N or points-N");
    if (!out.flush()) throw std::runtime_error("cannot write '" + path + "'");
}
