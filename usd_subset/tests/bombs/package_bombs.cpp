#include "bombs.h"

#include <cstdint>

namespace sdf_tests {

namespace {

void put(std::string* bytes, uint64_t value, int count)
{
    for (; count > 0; --count, value >>= 8) {
        *bytes += static_cast<char>(value & 0xff);
    }
}

/// A file of a package, as its header tells it and as it is.
struct Member
{
    std::string name;
    std::string bytes;
    uint64_t method = 0;
    uint64_t flags = 0;
    uint64_t size = ~uint64_t(0); // that of the bytes
    uint64_t plainSize = ~uint64_t(0);
};

std::string zipOf(const Member& member)
{
    std::string zip;
    put(&zip, 0x04034b50, 4);
    put(&zip, 20, 2);
    put(&zip, member.flags, 2);
    put(&zip, member.method, 2);
    put(&zip, 0, 8); // time, date and sum
    const uint64_t size = member.size == ~uint64_t(0) ? member.bytes.size() : member.size;
    put(&zip, size, 4);
    put(&zip, member.plainSize == ~uint64_t(0) ? size : member.plainSize, 4);
    put(&zip, member.name.size(), 2);
    put(&zip, 0, 2);
    return zip + member.name + member.bytes;
}

std::string ended(const std::string& zip)
{
    std::string end = "PK\x05\x06";
    put(&end, 0, 18);
    return zip + end;
}

std::string layer(const std::string& body) { return "#usda 1.0\n" + body; }

std::function<std::string(const TemporaryDirectory&)> package(const std::function<std::string()>& zip)
{
    return [zip](const TemporaryDirectory& directory) { return directory.Write("bomb.usdz", ended(zip())); };
}

std::function<std::string(const TemporaryDirectory&)> package(const Member& member)
{
    return package([member] { return zipOf(member); });
}

std::string inPackages(size_t depth)
{
    std::string bytes = layer("def \"A\" {\n}\n");
    std::string name = "a.usda";
    for (size_t i = 0; i < depth; ++i) {
        bytes = ended(zipOf({name, bytes}));
        name = "a.usdz";
    }
    return bytes;
}

std::vector<Bomb> damaged()
{
    const std::string plain = layer("def \"A\" {\n}\n");
    return {
        {"file packed 1 to 1000",
         package({"a.usda", std::string(1000, '\0'), 8, 0, 1000, 1000000}),
         {"it is compressed", 0, ""}},
        {"file of 4 GiB",
         package({"a.usda", plain, 0, 0, 0xfffffffe, 0xfffffffe}),
         {"a file of 4294967294 bytes is announced", 0, ""}},
        {"file of more than 4 GiB",
         package({"a.usda", plain, 0, 0, 0xffffffff, 0xffffffff}),
         {"a file of 4294967295 bytes is announced", 0, ""}},
        {"file that unpacks to 4 GiB",
         package({"a.usda", plain, 0, 0, plain.size(), 0xfffffffe}),
         {"a stored file has two sizes", 0, ""}},
        {"size behind the data",
         package({"a.usda", plain, 0, 8, 0, 0}),
         {"the size of a file stands behind its data", 0, ""}},
        {"encrypted file", package({"a.usda", plain, 0, 1}), {"it is encrypted", 0, ""}},
        {"long name",
         package([] {
             return zipOf({std::string(65530, 'a') + ".usda", "#usda 1.0\n"});
         }),
         {"", 0, ""}},
    };
}

std::vector<Bomb> nested()
{
    return {
        {"packages in packages",
         [](const TemporaryDirectory& directory) { return directory.Write("bomb.usdz", inPackages(15)); },
         {"", 1, ""}},
        {"too many packages in packages",
         [](const TemporaryDirectory& directory) { return directory.Write("bomb.usdz", inPackages(40)); },
         {"packages that lie in more than 16 others are not read", 0, ""}},
        {"package in itself",
         package([] {
             return zipOf({"a.usda", layer("(subLayers = [@bomb.usdz@])\ndef \"A\" {\n}\n")});
         }),
         {"", 1, "bomb.usdz"}},
        {"layer of a package in itself",
         package([] {
             return zipOf({"a.usda", layer("(subLayers = [@a.usda@])\ndef \"A\" {\n}\n")});
         }),
         {"", 1, "includes itself"}},
        {"path into many packages",
         package([] {
             const size_t many = 100000;
             return zipOf({"a.usda", layer("def \"A\" (\nreferences = @" +
                                           numbered(many, [](size_t) { return std::string("b.usdz["); }) +
                                           "a.usda" + std::string(many, ']') + "@\n)\n{\n}\n")});
         }),
         {"", 1, "The arc to"}},
        {"deep text in a package",
         package([] {
             return zipOf(
                 {"a.usda", layer(numbered(300000, [](size_t) { return std::string("def \"a\" {\n"); }))});
         }),
         {"prims nested deeper than 1000 levels", 0, ""}},
    };
}

std::vector<Bomb> many()
{
    return {
        {"many empty files",
         package([] {
             return zipOf({"a.usda", layer("def \"A\" {\n}\n")}) + numbered(400000, [](size_t i) {
                        return zipOf({std::to_string(i), ""});
                    });
         }),
         {"", 1, ""}},
        {"files of one name",
         package([] {
             const std::string file = zipOf({"a.usda", layer("def \"A\" {\n}\n")});
             return numbered(100000, [&](size_t) { return file; });
         }),
         {"", 1, ""}},
        {"references into many files of a package",
         package([] {
             return zipOf({"a.usda",
                           layer("def \"A\" (\nreferences = [" +
                                 numbered(500,
                                          [](size_t i) { return "@" + std::to_string(i) + ".usda@</A>, "; }) +
                                 "]\n)\n{\n}\n")}) +
                    numbered(500, [](size_t i) {
                        return zipOf({std::to_string(i) + ".usda", layer("def \"A\" {\n}\n")});
                    });
         }),
         {"", 1, ""}},
    };
}

} // namespace

std::vector<Bomb> packageBombs()
{
    std::vector<Bomb> bombs = damaged();
    for (const std::vector<Bomb>& more : {nested(), many()}) {
        bombs.insert(bombs.end(), more.begin(), more.end());
    }
    return bombs;
}

} // namespace sdf_tests
