#include "malformed_text.h"

#include <algorithm>

namespace sdf_tests {

namespace {

typedef std::vector<MalformedFile> Files;

// A type, one of its values, how a message shows the value's first part, and what the message wants instead
// of a value of another kind.
struct Type
{
    const char* name;
    const char* value;
    const char* shown;
    const char* wanted;
};

const std::vector<Type>& scalarTypes()
{
    static const std::vector<Type> types = {
        {"int", "1", "'1'", "an integer"},
        {"uint", "1", "'1'", "an integer"},
        {"uchar", "1", "'1'", "an integer"},
        {"int64", "1", "'1'", "an integer"},
        {"uint64", "1", "'1'", "an integer"},
        {"half", "1", "'1'", "a number"},
        {"float", "1", "'1'", "a number"},
        {"double", "1", "'1'", "a number"},
        {"timecode", "1", "'1'", "a number"},
        {"string", "\"a\"", "'\"'", "a string"},
        {"token", "\"a\"", "'\"'", "a string"},
        {"asset", "@a@", "'@'", "an asset path such as @file.usda@"},
        {"bool", "true", "'true'", "true, false, yes, no or a number"},
    };
    return types;
}

// A type of vectors or quaternions, how many numbers it has, and what they are.
struct TupleType
{
    std::string name;
    size_t count;
    const char* wanted;
};

std::vector<TupleType> tupleTypes()
{
    std::vector<TupleType> types;
    for (size_t count = 2; count <= 4; ++count) {
        types.push_back({"int" + std::to_string(count), count, "an integer"});
        for (const char* scalar : {"half", "float", "double"}) {
            types.push_back({scalar + std::to_string(count), count, "a number"});
        }
    }
    for (const char* suffix : {"h", "f", "d"}) {
        for (const char* role : {"point3", "vector3", "normal3", "color3", "texCoord3"}) {
            types.push_back({std::string(role) + suffix, 3, "a number"});
        }
        types.push_back({std::string("color4") + suffix, 4, "a number"});
        types.push_back({std::string("texCoord2") + suffix, 2, "a number"});
        types.push_back({std::string("quat") + suffix, 4, "a number"});
    }
    return types;
}

// A value that the prim's closing brace ends.
MalformedFile leftOpen(const std::string& statement, const std::string& expected)
{
    return malformedFile("#usda 1.0\ndef \"P\"\n{\n", statement + "\n^", "}\n", "'}'", expected);
}

std::string ones(size_t count) { return "1" + repeated(", 1", count - 1); }

void addScalars(Files* files)
{
    for (const Type& type : scalarTypes()) {
        const std::string head = std::string(type.name) + " x = ";
        files->push_back(malformedStatement(head + "^(1)", "'('", type.wanted));
        files->push_back(malformedStatement(head + "^[1]", "'['", type.wanted));
        files->push_back(malformedStatement(head + "^{}", "'{}'", type.wanted));
        files->push_back(malformedStatement(head + type.value + " ^" + type.value, type.shown,
                                            "a new line or ';' behind a property"));
        if (type.value[0] != '@') {
            files->push_back(malformedStatement(head + "^@a@", "'@'", type.wanted));
        }
        if (type.value[0] != 't') {
            files->push_back(malformedStatement(head + "^word", "'word'", type.wanted));
        }
        if (type.value[0] == '@' || type.value[0] == '"') {
            files->push_back(malformedStatement(head + "^12", "'12'", type.wanted));
        }
    }
}

void addTuples(Files* files)
{
    for (const TupleType& type : tupleTypes()) {
        const std::string head = type.name + " x = ";
        files->push_back(malformedStatement(head + "^1", "'1'", "'(' to open a tuple"));
        files->push_back(
            malformedStatement(head + "^[" + ones(type.count) + "]", "'['", "'(' to open a tuple"));
        files->push_back(malformedStatement(head + "(" + ones(type.count - 1) + "^)", "')'",
                                            "',' between the items of a tuple"));
        files->push_back(
            malformedStatement(head + "(" + ones(type.count) + ", ^1)", "'1'", "')' to close a tuple"));
        files->push_back(
            malformedStatement(head + "(^@a@, " + ones(type.count - 1) + ")", "'@'", type.wanted));
        files->push_back(leftOpen(head + "(" + ones(type.count), "')' to close a tuple"));
    }
}

void addMatrices(Files* files)
{
    for (const auto& [name, size] : {std::make_pair("matrix2d", 2), std::make_pair("matrix3d", 3),
                                     std::make_pair("matrix4d", 4), std::make_pair("frame4d", 4)}) {
        const size_t n = static_cast<size_t>(size);
        const std::string head = std::string(name) + " x = ";
        const std::string row = "(" + ones(n) + ")";
        files->push_back(malformedStatement(head + "^1", "'1'", "'(' to open a tuple"));
        files->push_back(malformedStatement(head + "(^" + ones(n * n) + ")", "'1'", "'(' to open a tuple"));
        files->push_back(malformedStatement(head + "(" + row + repeated(", " + row, n - 2) + "^)", "')'",
                                            "',' between the items of a tuple"));
        files->push_back(
            malformedStatement(head + "(" + row + repeated(", " + row, n - 1) + ", ^" + row + ")", "'('",
                               "')' to close a tuple"));
    }
}

void addArrays(Files* files, const std::string& type, const std::string& value, const std::string& shown)
{
    const std::string head = type + "[] x = ";
    files->push_back(malformedStatement(head + "^" + value, shown, "'[' to open an array"));
    files->push_back(
        malformedStatement(head + "[" + value + " ^" + value + "]", shown, "',' or ']' in an array"));
    files->push_back(leftOpen(head + "[" + value, "',' or ']' in an array"));
}

void addReservedWords(Files* files)
{
    const std::vector<std::string> words = {"append",
                                            "bezier",
                                            "connect",
                                            "curve",
                                            "customData",
                                            "default",
                                            "dictionary",
                                            "displayUnit",
                                            "doc",
                                            "held",
                                            "hermite",
                                            "inherits",
                                            "kind",
                                            "linear",
                                            "loop",
                                            "nameChildren",
                                            "None",
                                            "none",
                                            "offset",
                                            "oscillate",
                                            "payload",
                                            "permission",
                                            "post",
                                            "pre",
                                            "prefixSubstitutions",
                                            "properties",
                                            "references",
                                            "relocates",
                                            "repeat",
                                            "reset",
                                            "rootPrims",
                                            "scale",
                                            "sloped",
                                            "specializes",
                                            "spline",
                                            "subLayers",
                                            "suffixSubstitutions",
                                            "symmetryArguments",
                                            "symmetryFunction",
                                            "timeSamples",
                                            "variantSets",
                                            "variants"};
    for (const std::string& word : words) {
        const std::string shown = "'" + word + "'";
        files->push_back(malformedStatement("def ^" + word + " \"C\" {\n}", shown,
                                            "a prim's type or its name between quotes"));
        if (word != "append") {
            files->push_back(malformedStatement("^" + word + " x = 1", shown, "an attribute's type"));
        }
    }
}

} // namespace

std::vector<MalformedFile> malformedByRule()
{
    Files files;
    addScalars(&files);
    addTuples(&files);
    addMatrices(&files);
    for (const Type& type : scalarTypes()) {
        addArrays(&files, type.name, type.value, type.shown);
    }
    for (const TupleType& type : tupleTypes()) {
        addArrays(&files, type.name, "(" + ones(type.count) + ")", "'('");
    }
    addReservedWords(&files);
    return files;
}

} // namespace sdf_tests
