#include "bombs.h"

namespace sdf_tests {

namespace {

const char* const kBack = "leads back to where it comes from. Remove the cycle.";

std::string prim(const std::string& name, const std::string& fields, const std::string& body = "")
{
    return "def \"" + name + "\" (\n" + fields + "\n)\n{\n" + body + "\n}\n";
}

// Prims P0 to P<count>, of which each but the last has the fields that lead to the next.
std::string chain(size_t count, const std::function<std::string(const std::string&)>& fields)
{
    return numbered(count,
                    [&](size_t i) {
                        return prim("P" + std::to_string(i), fields("</P" + std::to_string(i + 1) + ">"));
                    }) +
           "def \"P" + std::to_string(count) + "\" {\n}\n";
}

// Two prims, each of which leads to both of the next two.
std::string twins(size_t i, const std::function<std::string(const std::string&)>& fields)
{
    const std::string number = std::to_string(i);
    const std::string next = std::to_string(i + 1);
    const std::string both = fields("[</A" + next + ">, </B" + next + ">]");
    return prim("A" + number, both) + prim("B" + number, both);
}

// Each prim leads below the next.
std::string stairs(size_t count, const std::function<std::string(const std::string&)>& fields)
{
    return numbered(count,
                    [&](size_t i) {
                        return prim("P" + std::to_string(i), fields("</P" + std::to_string(i + 1) + "/C>"),
                                    prim("C", ""));
                    }) +
           prim("P" + std::to_string(count), "", prim("C", ""));
}

std::function<std::string(const std::string&)> arc(const std::string& kind)
{
    return [kind](const std::string& path) { return "prepend " + kind + " = " + path; };
}

// Files 0.usda to <count - 1>.usda, made by a function of the file's number and the next file's name.
std::function<std::string(const TemporaryDirectory&)>
files(size_t count, const std::function<std::string(size_t, const std::string&)>& body, bool isRing)
{
    return [=](const TemporaryDirectory& directory) {
        for (size_t i = 0; i < count; ++i) {
            const size_t next = i + 1 < count ? i + 1 : isRing ? 0 : count;
            const std::string name = next < count ? "@./" + std::to_string(next) + ".usda@" : "";
            directory.Write(std::to_string(i) + ".usda", "#usda 1.0\n" + body(i, name));
        }
        return directory.File("0.usda");
    };
}

std::string includes(size_t, const std::string& next)
{
    return (next.empty() ? "" : "(subLayers = [" + next + "])\n") + "def \"A\" {\n}\n";
}

std::string includesTwice(size_t, const std::string& next)
{
    return (next.empty() ? "" : "(subLayers = [" + next + ", " + next + "])\n") + "def \"A\" {\n}\n";
}

std::function<std::string(size_t, const std::string&)> leads(const std::string& kind)
{
    return [kind](size_t, const std::string& next) {
        return "(defaultPrim = \"A\")\n" +
               (next.empty() ? "def \"A\" {\n}\n" : prim("A", "prepend " + kind + " = " + next));
    };
}

void addArcsOf(const std::string& kind, const std::vector<const char*>& names, std::vector<Bomb>* bombs)
{
    const auto add = [&](const std::function<std::string()>& body, size_t prims, const char* warning,
                         size_t warnings = 1) {
        bombs->push_back(
            {names[bombs->size() % names.size()], textFile(body), {"", prims, warning, warnings}});
    };
    const auto to = arc(kind);
    // A class counts once, however many ways lead to it.
    const bool isClass = kind == "inherits" || kind == "specializes";
    add([=] { return prim("A", to("</A>")); }, 1, kBack);
    add([=] { return prim("A", to("</B>")) + prim("B", to("</C>")) + prim("C", to("</A>")); }, 3, kBack, 3);
    add([=] { return prim("A", "", prim("B", to("</A>"))); }, 2, kBack);
    add([=] { return prim("A", to("</A/B>"), prim("B", "")); }, 2, kBack);
    add([=] { return chain(3000, to); }, 3001, "lead on through more than 100 others");
    add(
        [=] {
            return numbered(60, [&](size_t i) { return twins(i, to); }) + prim("A60", "") + prim("B60", "");
        },
        122, isClass ? "" : "lead to more than 1000 places");
    add([=] { return stairs(2000, to); }, 4002, "lead on below root prims more than 20 times");
}

} // namespace

std::vector<Bomb> arcBombs()
{
    std::vector<Bomb> bombs;
    addArcsOf("references",
              {"reference to itself", "ring of references", "reference to above", "reference to below",
               "chain of references", "chain of doubled references", "stairs of references"},
              &bombs);
    addArcsOf("payload",
              {"payload to itself", "ring of payloads", "payload to above", "payload to below",
               "chain of payloads", "chain of doubled payloads", "stairs of payloads"},
              &bombs);
    addArcsOf("inherits",
              {"class of itself", "ring of classes", "class above", "class below", "chain of classes",
               "chain of doubled classes", "stairs of classes"},
              &bombs);
    addArcsOf("specializes",
              {"special case of itself", "ring of special cases", "special case of above",
               "special case of below", "chain of special cases", "chain of doubled special cases",
               "stairs of special cases"},
              &bombs);
    const std::vector<Bomb> more = {
        {"sublayer of itself", files(1, includes, true), {"", 1, "includes itself"}},
        {"ring of sublayers", files(3, includes, true), {"", 1, "includes itself"}},
        {"chain of sublayers", files(2000, includes, false), {"", 1, "include each other"}},
        {"chain of doubled sublayers", files(40, includesTwice, false), {"", 1, "include each other"}},
        {"ring of referenced files", files(3, leads("references"), true), {"", 1, kBack}},
        {"chain of referenced files",
         files(1500, leads("references"), false),
         {"", 1, "lead on through more than 100 others"}},
        {"ring of payload files", files(3, leads("payload"), true), {"", 1, kBack}},
        {"doubling prims",
         textFile([] {
             return numbered(60,
                             [](size_t i) {
                                 const std::string next =
                                     "prepend references = </P" + std::to_string(i + 1) + ">";
                                 return prim("P" + std::to_string(i), "", prim("A", next) + prim("B", next));
                             }) +
                    "def \"P60\" {\n}\n";
         }),
         {"", 3419, "what else there is below"}},
        {"doubling instances",
         textFile([] {
             return numbered(60,
                             [](size_t i) {
                                 const std::string next = "instanceable = true\nprepend references = </P" +
                                                          std::to_string(i + 1) + ">";
                                 return prim("P" + std::to_string(i), "", prim("A", next) + prim("B", next));
                             }) +
                    "def \"P60\" {\n}\n";
         }),
         {"", 181, ""}},
        {"instance in its own prototype",
         textFile([] { return prim("A", "", prim("B", "instanceable = true\nprepend references = </A>")); }),
         {"", 2, kBack}},
        {"ring of instances",
         textFile([] {
             return prim("A", "", prim("X", "instanceable = true\nprepend references = </B>")) +
                    prim("B", "", prim("Y", "instanceable = true\nprepend references = </A>"));
         }),
         {"", 4, kBack, 2}},
        {"variant that refers to its prim",
         textFile([] {
             return "def \"A\" (\nprepend variantSets = \"v\"\nvariants = {\nstring v = \"x\"\n}\n)\n{\n"
                    "variantSet \"v\" = {\n\"x\" (\nprepend references = </A>\n) {\n}\n}\n}\n";
         }),
         {"", 1, kBack}},
        {"nested variants",
         textFile([] {
             constexpr size_t count = 400;
             const auto name = [](size_t i) { return "v" + std::to_string(i); };
             return "def \"A\" (\nvariants = {\n" +
                    numbered(count, [&](size_t i) { return "string " + name(i) + " = \"x\"\n"; }) +
                    "}\nprepend variantSets = \"v0\"\n)\n{\n" +
                    numbered(count,
                             [&](size_t i) {
                                 return "variantSet \"" + name(i) +
                                        "\" = {\n\"x\" (\nprepend variantSets = \"" + name(i + 1) +
                                        "\"\n) {\n";
                             }) +
                    numbered(2 * count + 1, [](size_t) { return "}\n"; });
         }),
         {"", 1, "lead on through more than 100 others"}},
    };
    bombs.insert(bombs.end(), more.begin(), more.end());
    return bombs;
}

} // namespace sdf_tests
