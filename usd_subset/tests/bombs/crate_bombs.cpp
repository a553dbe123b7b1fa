#include "bombs.h"

#include "../sdf/crate_builder.h"

#include <cstring>

namespace sdf_tests {

namespace {

constexpr uint64_t kHuge = uint64_t(1) << 60;
constexpr uint64_t kAtValues = 88; // where the first value lies

// The bytes of numbers, all of the first one's type.
template <class T, class... Rest>
std::string packed(T first, Rest... rest)
{
    std::string bytes;
    for (const T value : {first, static_cast<T>(rest)...}) {
        CrateBuilder::Put(&bytes, value);
    }
    return bytes;
}

// A block of LZ4 that stands for `count` bytes of one value, or a little more.
std::string runOf(char byte, size_t count)
{
    const std::string match = packed<uint8_t>(0x1f) + byte + packed<uint16_t>(1);
    const std::string end = packed<uint8_t>(0x50) + std::string(5, byte);
    return std::string(1, '\0') + match + std::string(count / 255, '\xff') + std::string(1, '\0') + end;
}

// How many bytes such a block unpacks to.
uint64_t sizeOfRun(size_t count) { return 1 + 15 + 4 + uint64_t(count / 255) * 255 + 5; }

/// The six tables of a file of version 0.8.0, whose tables are packed.
struct PackedTables
{
    // One token, one path, one spec of the root without fields: sound.
    std::string bodies[6] = {packed<uint64_t>(2, 3, 5) + tokens(),
                             packed<uint64_t>(0),
                             packed<uint64_t>(0, 0, 0),
                             packed<uint64_t>(1) + ints(~0u),
                             packed<uint64_t>(1, 1) + ints(0) + ints(0) + ints(~1u),
                             packed<uint64_t>(1) + ints(0) + ints(0) + ints(SdfSpecTypePseudoRoot)};

    static std::string tokens() { return std::string("\0\x30\0A\0", 5); }
    static std::string ints(uint32_t value)
    {
        // The common difference, one code of 4 * 2 bits, in a block of 5 literals.
        std::string block = std::string("\0\x50", 2) + packed(value) + '\0';
        return packed<uint64_t>(block.size()) + block;
    }
    std::string build() const
    {
        const char* const names[] = {"TOKENS", "STRINGS", "FIELDS", "FIELDSETS", "PATHS", "SPECS"};
        std::string file = std::string("PXR-USDC") + std::string(80, '\0');
        std::string contents = packed<uint64_t>(6);
        for (size_t i = 0; i < 6; ++i) {
            std::string name = names[i];
            name.resize(16);
            contents += name + packed<uint64_t>(file.size(), bodies[i].size());
            file += bodies[i];
        }
        const uint64_t start = file.size();
        file[9] = 8;
        std::memcpy(&file[16], &start, sizeof start);
        return file + contents;
    }
};

CrateBuilder sound() { return withValue(CrateBuilder::Rep(1, 1, false, true)); }

// A file of version 0.2.0 with 8 bytes changed, counted from where a table begins.
std::string changedTable(size_t table, size_t at, uint64_t value)
{
    std::string file = sound().Build();
    uint64_t contents = 0;
    std::memcpy(&contents, &file[16], sizeof contents);
    uint64_t start = 0;
    std::memcpy(&start, &file[contents + 8 + table * 32 + 16], sizeof start);
    std::memcpy(&file[start + at], &value, sizeof value);
    return file;
}

std::string changedPacked(size_t table, size_t at, uint64_t value)
{
    PackedTables tables;
    std::memcpy(&tables.bodies[table][at], &value, sizeof value);
    return tables.build();
}

std::string changedContents(size_t at, uint64_t value)
{
    std::string file = sound().Build();
    uint64_t contents = 0;
    std::memcpy(&contents, &file[16], sizeof contents);
    std::memcpy(&file[contents + at], &value, sizeof value);
    return file;
}

// A file whose one field is a value of that type, with its bytes.
std::string valueOf(int type, const std::string& bytes, bool isArray = false, uint8_t version = 2)
{
    CrateBuilder builder = withValue(CrateBuilder::Rep(type, kAtValues, isArray));
    builder.Add(bytes + std::string(32, '\0'));
    std::string file = builder.Build();
    file[9] = static_cast<char>(version);
    return file;
}

// The same in a file of packed tables, where counts of arrays have 8 bytes.
std::string wideArrayOf(int type, const std::string& bytes, bool isPacked)
{
    PackedTables tables;
    const uint64_t rep = CrateBuilder::Rep(type, kAtValues, true) | uint64_t(isPacked) << 61;
    const std::string reps = std::string("\0\x80", 2) + packed(rep);
    tables.bodies[2] = packed<uint64_t>(1) + PackedTables::ints(0) + packed<uint64_t>(reps.size()) + reps;
    const std::string sets = std::string("\0\x60", 2) + packed<uint32_t>(0) + '\x04' + '\xff';
    tables.bodies[3] = packed<uint64_t>(2) + packed<uint64_t>(sets.size()) + sets;
    std::string file = tables.build();
    // The values lie in front of the tables, which move.
    file.insert(kAtValues, bytes);
    const auto move = [&](size_t at) {
        uint64_t offset = 0;
        std::memcpy(&offset, &file[at], sizeof offset);
        offset += bytes.size();
        std::memcpy(&file[at], &offset, sizeof offset);
    };
    move(16);
    uint64_t contents = 0;
    std::memcpy(&contents, &file[16], sizeof contents);
    for (size_t i = 0; i < 6; ++i) {
        move(contents + 8 + i * 32 + 16);
    }
    return file;
}

CrateBomb tableBomb(const char* name, size_t table, size_t at, const char* error)
{
    return {name, [=] { return changedTable(table, at, kHuge); }, error};
}

CrateBomb packedBomb(const char* name, size_t table, size_t at, const char* error)
{
    return {name, [=] { return changedPacked(table, at, kHuge); }, error};
}

std::vector<CrateBomb> tables()
{
    return {
        {"sound tables", [] { return sound().Build(); }, ""},
        {"sound packed tables", [] { return PackedTables().build(); }, ""},
        {"sections", [] { return changedContents(0, kHuge); }, "1152921504606846976 sections are announced"},
        {"place of a section", [] { return changedContents(24, kHuge); }, "is outside the file"},
        {"size of a section", [] { return changedContents(32, ~uint64_t(0)); }, "is outside the file"},
        tableBomb("tokens", 0, 0, "TOKENS section"),
        tableBomb("text of tokens", 0, 8, "TOKENS section"),
        tableBomb("strings", 1, 0, "STRINGS section"),
        tableBomb("fields", 2, 0, "FIELDS section"),
        tableBomb("sets of fields", 3, 0, "FIELDSETS section"),
        tableBomb("paths", 4, 0, "PATHS section"),
        tableBomb("specs", 5, 0, "SPECS section"),
        packedBomb("packed tokens", 0, 0, "TOKENS section"),
        packedBomb("packed text of tokens", 0, 8, "TOKENS section"),
        packedBomb("packed size of tokens", 0, 16, "TOKENS section"),
        packedBomb("packed strings", 1, 0, "STRINGS section"),
        packedBomb("packed fields", 2, 0, "FIELDS section"),
        packedBomb("packed values", 2, 16, "FIELDS section"),
        packedBomb("packed sets of fields", 3, 0, "FIELDSETS section"),
        packedBomb("packed size of sets of fields", 3, 8, "FIELDSETS section"),
        packedBomb("packed paths", 4, 0, "PATHS section"),
        packedBomb("packed tree of paths", 4, 8, "PATHS section"),
        packedBomb("packed specs", 5, 0, "SPECS section"),
    };
}

std::vector<CrateBomb> expansions()
{
    constexpr size_t kBig = size_t(2) << 30;
    return {
        {"tokens that unpack to 2 GiB",
         [] {
             PackedTables tables;
             const std::string block = runOf('\0', kBig);
             tables.bodies[0] = packed<uint64_t>(1, sizeOfRun(kBig), block.size()) + block;
             return tables.build();
         },
         "it needs more memory than the 268435456 bytes that one load may use"},
        {"millions of empty tokens",
         [] {
             PackedTables tables;
             const std::string block = runOf('\0', 64 << 20);
             const uint64_t size = sizeOfRun(64 << 20);
             tables.bodies[0] = packed<uint64_t>(size, size, block.size()) + block;
             return tables.build();
         },
         "it needs more memory than the 268435456 bytes that one load may use"},
        {"sets of fields that unpack to 2 GiB",
         [] {
             PackedTables tables;
             const std::string block = runOf('\0', kBig / 8);
             tables.bodies[3] = packed<uint64_t>(kBig / 4, block.size()) + block;
             return tables.build();
         },
         "it needs more memory than the 268435456 bytes that one load may use"},
        {"paths that unpack to 2 GiB",
         [] {
             PackedTables tables;
             const std::string block = runOf('\0', kBig / 8);
             tables.bodies[4] = packed<uint64_t>(kBig / 4, kBig / 4, block.size()) + block;
             return tables.build();
         },
         "it needs more memory than the 268435456 bytes that one load may use"},
        {"array that unpacks to 2 GiB",
         [] {
             const std::string block = runOf('\0', kBig / 16);
             return wideArrayOf(3, packed<uint64_t>(kBig / 4, block.size()) + block, true);
         },
         "it needs more memory than the 268435456 bytes that one load may use"},
    };
}

std::vector<CrateBomb> counts()
{
    std::vector<CrateBomb> bombs;
    const auto add = [&](const char* name, int type, const std::string& bytes) {
        bombs.push_back({name, [=] { return valueOf(type, bytes); }, "are announced, but only"});
    };
    add("entries of a dictionary", 31, packed(kHuge));
    add("items of a list of tokens", 32, packed<uint8_t>(3) + packed(kHuge));
    add("items of a list of strings", 33, packed<uint8_t>(3) + packed(kHuge));
    add("items of a list of paths", 34, packed<uint8_t>(4) + packed(kHuge));
    add("items of a list of references", 35, packed<uint8_t>(8) + packed(kHuge));
    add("items of a list of integers", 36, packed<uint8_t>(16) + packed(kHuge));
    add("items of a list of long integers", 37, packed<uint8_t>(32) + packed(kHuge));
    add("items of a list of payloads", 55, packed<uint8_t>(3) + packed(kHuge));
    add("items of a list of unknown values", 54, packed<uint8_t>(3) + packed(kHuge));
    add("paths in a value", 40, packed(kHuge));
    add("tokens in a value", 41, packed(kHuge));
    add("selections of variants", 45, packed(kHuge));
    add("doubles in a value", 48, packed(kHuge));
    add("offsets of layers", 49, packed(kHuge));
    add("strings in a value", 50, packed(kHuge));
    add("relocates", 58, packed(kHuge));
    const auto addArray = [&](const char* name, int type, bool isPacked, const std::string& bytes) {
        bombs.push_back(
            {name, [=] { return wideArrayOf(type, bytes, isPacked); }, "are announced, but only"});
    };
    addArray("elements of bytes", 2, false, packed(kHuge));
    addArray("elements of strings", 10, false, packed(kHuge));
    addArray("elements of assets", 12, false, packed(kHuge));
    addArray("elements of matrices", 15, false, packed(kHuge));
    addArray("elements of packed integers", 3, true, packed<uint64_t>(kHuge, 0));
    addArray("elements of packed long integers", 5, true, packed<uint64_t>(kHuge, 0));
    addArray("elements of packed floats", 8, true, packed(kHuge) + "i");
    addArray("table of packed doubles", 9, true,
             packed<uint64_t>(16) + "t" + packed<uint32_t>(~0u) + std::string(16, '\0'));
    return bombs;
}

std::string entryOf(uint64_t rep)
{
    return packed<uint64_t>(1) + packed<uint32_t>(0) + packed<uint64_t>(8) + packed(rep);
}

std::vector<CrateBomb> selfHolding()
{
    const char* const deep = "a value holds values more than 64 levels deep";
    return {
        {"dictionary of itself", [] { return valueOf(31, entryOf(CrateBuilder::Rep(31, kAtValues))); }, deep},
        {"value of itself",
         [] { return valueOf(52, packed<uint64_t>(8) + packed(CrateBuilder::Rep(52, kAtValues))); }, deep},
        {"unknown value of itself",
         [] { return valueOf(53, packed<uint64_t>(8) + packed(CrateBuilder::Rep(53, kAtValues))); }, deep},
        {"list of itself",
         [] {
             return valueOf(54, packed<uint8_t>(3) + packed<uint64_t>(1, 8) +
                                    packed(CrateBuilder::Rep(54, kAtValues)));
         },
         deep},
        {"offset that turns back",
         [] { return valueOf(52, packed<uint64_t>(0) + packed(CrateBuilder::Rep(52, kAtValues))); },
         "values of type 0 cannot be read"},
        {"samples of themselves",
         [] {
             // Times and values are those of the value itself.
             return valueOf(46, packed<uint64_t>(8) + packed(CrateBuilder::Rep(46, kAtValues)) +
                                    packed<uint64_t>(8, 1) + packed(CrateBuilder::Rep(46, kAtValues)));
         },
         "values of type 46 cannot be read"},
        {"many times of samples",
         [] {
             return valueOf(46, packed<uint64_t>(8) + packed(CrateBuilder::Rep(48, kAtValues + 16)) +
                                    packed(kHuge));
         },
         "are announced, but only"},
    };
}

// A tree of paths, each the child or the sibling of the one before.
std::string treeOf(uint32_t count, uint32_t bits)
{
    CrateBuilder builder = sound();
    builder.pathTree.clear();
    builder.pathCount = count;
    for (uint32_t i = 0; i < count; ++i) {
        builder.AddPath({i, i == 0 ? 0u : 1u,
                         i + 1 == count ? 0u
                         : i == 0       ? uint32_t(CrateBuilder::Child)
                                        : bits});
    }
    return builder.Build();
}

std::vector<CrateBomb> pathTrees()
{
    return {
        {"deep tree of paths", [] { return treeOf(1000000, CrateBuilder::Child); },
         "paths of more than 2000 elements are not read"},
        {"wide tree of one path", [] { return treeOf(1000000, CrateBuilder::Sibling); }, ""},
        {"many indices of one path",
         [] {
             CrateBuilder builder = sound();
             builder.pathTree.clear();
             builder.pathCount = 3;
             builder.AddPath({0, 0, CrateBuilder::Child});
             builder.AddPath({1, 1, CrateBuilder::Child});
             builder.AddPath({1, 1, 0});
             return builder.Build();
         },
         "path 1 occurs twice in the tree of paths"},
    };
}

} // namespace

std::vector<CrateBomb> crateBombs()
{
    std::vector<CrateBomb> bombs;
    for (const std::vector<CrateBomb>& more :
         {tables(), expansions(), counts(), selfHolding(), pathTrees()}) {
        bombs.insert(bombs.end(), more.begin(), more.end());
    }
    return bombs;
}

} // namespace sdf_tests
