#include "malformed_text.h"

namespace sdf_tests {

std::vector<MalformedFile> malformedFromIssues()
{
    const auto file = [](const std::string& text, const char* found, const char* expected) {
        return malformedFile("", text, "", found, expected);
    };
    const std::string prim = "#usda 1.0\ndef \"P\"\n{\n";
    std::vector<MalformedFile> files;
    // OpenUSD #1630: a backslash takes the closing quote with it.
    files.push_back(
        file("#usda 1.0\n(\n    ^\"\\\"\n)\n", "a string that does not end on its line", "the closing \""));
    files.push_back(file("#usda 1.0\n(\n    doc = ^'\\'\n)\n", "a string that does not end on its line",
                         "the closing '"));
    files.push_back(
        file("#usda 1.0\n(\n    ^\"\"\"\\\"\"\"\n)\n", "a string without an end", "the closing \"\"\""));
    // OpenUSD #1730: prims without names inside each other, left open.
    files.push_back(
        file("#usda .\n(a = \"\"\nb = {string c = \"\"})\ndef ^\"\" {def \"\" {def \"\" (d = \"\") {e f\n",
             "\"\"", "a prim's name: letters, digits and '_', not beginning with a digit"));
    files.push_back(file("#usda 1.0\ndef \"A\" {\nf g = <>\ndef ^\"\" (h = <>) {", "\"\"",
                         "a prim's name: letters, digits and '_', not beginning with a digit"));
    // OpenUSD #4214, #1761: lists inside lists without end.
    files.push_back(file("#usda 1.0\n(a = " + repeated("[", 64) + "^" + repeated("[", 99936),
                         "values nested deeper than 64 levels", "fewer levels"));
    files.push_back(file(prim + "int[] x = " + repeated("[", 64) + "^" + repeated("[", 99936),
                         ("'" + std::string(40, '[') + "'").c_str(),
                         "values nested less deep than 64 levels"));
    // OpenUSD #4215: the same with tuples.
    files.push_back(file("#usda 1.0\n(a = " + repeated("(", 64) + "^" + repeated("(", 99936),
                         "values nested deeper than 64 levels", "fewer levels"));
    files.push_back(file(prim + "float3 x = (^" + repeated("(", 99999),
                         ("'" + std::string(40, '(') + "'").c_str(), "a number"));
    // OpenUSD #1763: prims inside prims without end.
    files.push_back(
        file("#usda 1.0\n" + repeated("def \"a\" {", 1000) + "def ^\"a\" {" + repeated("def \"a\" {", 99000),
             "prims nested deeper than 1000 levels", "fewer levels"));
    // OpenUSD #4217, #4218: variants whose names make no path, and prims in them.
    files.push_back(file(prim + "variantSet \"v\" = {\n^\"\" {\ndef \"root\" {\n}\n}\n}\n}\n", "\"\"",
                         "a variant's name: letters, digits, '_', '-' and '|'"));
    files.push_back(file(prim + "variantSet ^\"\" = {\n\"a\" {\ndef \"root\" {\n}\n}\n}\n}\n", "\"\"",
                         "a variant set's name between quotes: letters, digits, '_', '-' and '|'"));
    files.push_back(file(
        prim + "variantSet \"v\" = {\n\"a\" {\ndef \"root\" {\nvariantSet \"w\" = {\n^{\n}\n}\n}\n}\n}\n}\n",
        "'{'", "a variant's name between quotes or '}'"));
    files.push_back(file(prim + "def ^\"/\" {\ndef \"root\" {\n}\n}\n}\n", "\"/\"",
                         "a prim's name: letters, digits and '_', not beginning with a digit"));
    return files;
}

} // namespace sdf_tests
