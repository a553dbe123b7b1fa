#include "bombs.h"

namespace sdf_tests {

namespace {

constexpr size_t kMillion = 1000000;

std::string inXform(const std::string& body) { return "def Xform \"A\"\n{\n" + body + "\n}\n"; }

std::string number(size_t i) { return std::to_string(i); }

std::string instancer(const std::string& name, const std::string& prototype)
{
    return "def PointInstancer \"" + name + "\"\n{\nrel prototypes = " + prototype +
           "\nint[] protoIndices = [0, 0]\npoint3f[] positions = [(0, 0, 0), (1, 0, 0)]\n}\n";
}

std::string collection(const std::string& name, const std::string& includes)
{
    return "uniform token collection:" + name + ":expansionRule = \"expandPrims\"\nrel collection:" + name +
           ":includes = " + includes + "\n";
}

std::string boundBy(const std::string& collections)
{
    return "def Xform \"A\" (\nprepend apiSchemas = [\"CollectionAPI:c\", \"CollectionAPI:d\", "
           "\"MaterialBindingAPI\"]\n)\n{\n" +
           collections +
           "rel material:binding:collection:m = [</A.collection:c>, </M>]\n}\ndef Material \"M\"\n{\n}\n";
}

std::string mesh(const std::string& counts, const std::string& indices, const std::string& points)
{
    return "def Mesh \"A\"\n{\nint[] faceVertexCounts = " + counts +
           "\nint[] faceVertexIndices = " + indices + "\npoint3f[] points = " + points + "\n}\n";
}

std::vector<Bomb> relationships()
{
    return {
        {"relationship to itself", textFile([] { return inXform("rel r = </A.r>"); }), {"", 1, ""}},
        {"ring of relationships",
         textFile([] { return inXform("rel r = </A.s>\nrel s = </A.t>\nrel t = </A.r>"); }),
         {"", 1, ""}},
        {"chain of relationships",
         textFile([] {
             return inXform(numbered(
                 500, [](size_t i) { return "rel r" + number(i) + " = </A.r" + number(i + 1) + ">\n"; }));
         }),
         {"", 1, ""}},
        {"chain of doubled relationships",
         textFile([] {
             return inXform(numbered(60, [](size_t i) {
                 return "rel r" + number(i) + " = [</A.s" + number(i) + ">, </A.t" + number(i) + ">]\nrel s" +
                        number(i) + " = </A.r" + number(i + 1) + ">\nrel t" + number(i) + " = </A.r" +
                        number(i + 1) + ">\n";
             }));
         }),
         {"", 1, ""}},
        {"connection to itself",
         textFile([] {
             return std::string("def NodeGraph \"A\"\n{\nfloat inputs:a.connect = </A.inputs:a>\n}\n");
         }),
         {"", 1, "lead back to it"}},
        {"chain of connections",
         textFile([] {
             return numbered(1010, [](size_t i) {
                 return "def NodeGraph \"N" + number(i) + "\"\n{\nfloat inputs:a.connect = </N" +
                        number(i + 1) + ".inputs:a>\n}\n";
             });
         }),
         {"", 1010, "on through more than 1000 others", 10}},
        {"chain of doubled connections",
         textFile([] {
             return numbered(60, [](size_t i) {
                 const std::string next = "</N" + number(i + 1) + ".inputs:";
                 return "def NodeGraph \"N" + number(i) + "\"\n{\nfloat inputs:a.connect = [" + next +
                        "a>, " + next + "b>]\nfloat inputs:b.connect = [" + next + "a>, " + next + "b>]\n}\n";
             });
         }),
         {"", 60, "in more than 10000 ways", 94}},
        {"collection of itself",
         textFile([] { return boundBy(collection("c", "</A.collection:c>")); }),
         {"", 2, ""}},
        {"ring of collections",
         textFile([] {
             return boundBy(collection("c", "</A.collection:d>") + collection("d", "</A.collection:c>"));
         }),
         {"", 2, ""}},
    };
}

std::vector<Bomb> geometry()
{
    return {
        {"instancer of itself", textFile([] { return instancer("A", "</A>"); }), {"", 1, "itself"}},
        {"ring of instancers",
         textFile([] { return instancer("A", "</B>") + instancer("B", "</A>"); }),
         {"", 2, "itself", 2}},
        {"chain of instancers",
         textFile([] {
             return numbered(
                        150,
                        [](size_t i) { return instancer("P" + number(i), "</P" + number(i + 1) + ">"); }) +
                    "def Sphere \"P150\"\n{\n}\n";
         }),
         {"", 151, "100", 50}},
        {"transforms that are no numbers",
         textFile([] {
             return numbered(1000,
                             [](size_t) {
                                 return std::string(
                                     "def Xform \"B\"\n{\ndouble3 xformOp:scale = (nan, inf, 0)\nuniform "
                                     "token[] xformOpOrder = [\"xformOp:scale\"]\n");
                             }) +
                    numbered(1000, [](size_t) { return std::string("}\n"); });
         }),
         {"", 1000, ""}},
        {"one operation many times",
         textFile([] {
             return inXform("double3 xformOp:scale = (2, 2, 2)\nuniform token[] xformOpOrder = [" +
                            numbered(100000, [](size_t) { return std::string("\"xformOp:scale\", "); }) +
                            "]");
         }),
         {"", 1, ""}},
        {"points that are no numbers",
         textFile([] {
             return mesh("[3]", "[0, 1, 2]", "[" + numbered(kMillion, [](size_t) {
                                                 return std::string("(nan, inf, -inf), ");
                                             }) + "]");
         }),
         {"", 1, ""}},
        {"prims with points that are no numbers",
         textFile([] {
             return numbered(100000, [](size_t i) {
                 return "def Points \"p" + number(i) + "\"\n{\npoint3f[] points = [(nan, nan, nan)]\n}\n";
             });
         }),
         {"", 100000, ""}},
        {"indices out of range",
         textFile([] {
             return mesh("[2147483647, -2147483648, 3]", "[2147483647, -1, -2147483648]", "[(0, 0, 0)]");
         }),
         {"", 1, ""}},
        {"huge extents",
         textFile([] {
             return std::string("def Sphere \"A\"\n{\ndouble radius = 1e308\ndouble3 xformOp:scale = (1e308, "
                                "1e308, 1e308)\nuniform token[] xformOpOrder = [\"xformOp:scale\"]\n}\n");
         }),
         {"", 1, ""}},
        {"samples at many times",
         textFile([] {
             return inXform("double a.timeSamples = {" +
                            numbered(300000, [](size_t i) { return number(i) + ": 1, "; }) + "}");
         }),
         {"", 1, ""}},
        {"clips at more times than there are atoms",
         textFile([] {
             return std::string(
                 "def Xform \"A\" (\nclips = {\ndictionary default = {\nstring primPath = \"/A\"\n"
                 "string templateAssetPath = \"./c.####.usda\"\ndouble templateStartTime = 0\n"
                 "double templateEndTime = 1e300\ndouble templateStride = 1e-300\n}\n}\n)\n{\n"
                 "double a\n}\n");
         }),
         {"", 1, "more than 100,000 steps of templateStride"}},
    };
}

} // namespace

std::string numbered(size_t count, const std::function<std::string(size_t)>& item)
{
    std::string text;
    for (size_t i = 0; i < count; ++i) {
        text += item(i);
    }
    return text;
}

std::function<std::string(const TemporaryDirectory&)> textFile(const std::function<std::string()>& body)
{
    return [body](const TemporaryDirectory& directory) {
        return directory.Write("bomb.usda", "#usda 1.0\n" + body());
    };
}

std::vector<Bomb> sceneBombs()
{
    std::vector<Bomb> bombs = relationships();
    const std::vector<Bomb> more = geometry();
    bombs.insert(bombs.end(), more.begin(), more.end());
    return bombs;
}

} // namespace sdf_tests
