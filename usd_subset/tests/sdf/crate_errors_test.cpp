#include "crate_builder.h"
#include "crate_scenes.h"
#include "support.h"

using namespace sdf_tests;

namespace {

std::string errorOf(const std::string& bytes)
{
    std::string error;
    EXPECT_FALSE(readCrate(bytes, &error));
    return error;
}

// The errors of decoding the values of a file whose tables are sound.
std::vector<std::string> errorsOfValues(const std::string& bytes)
{
    std::string error;
    const SdfAbstractDataRefPtr data = readCrate(bytes, &error);
    EXPECT_TRUE(data) << error;
    Errors errors;
    Decoder decoder;
    data->VisitSpecs(&decoder);
    data->VisitSpecs(&decoder); // a fault is told once
    return errors.Take();
}

std::vector<std::string> damaged(const std::string& text)
{
    return {"Cannot read layer @test.usdc@: the crate file is damaged: " + text};
}

std::string crateOf(const std::string& body)
{
    const TemporaryDirectory directory;
    EXPECT_TRUE(Parse(body)->Export(directory.File("a.usdc")));
    return directory.Read("a.usdc");
}

// Reads a file that may be damaged anywhere, with all its values: one error, or content.
void expectOneErrorOrContent(const std::string& bytes, const std::string& what)
{
    Errors errors;
    std::string error;
    const SdfAbstractDataRefPtr data = readCrate(bytes, &error);
    EXPECT_EQ(errors.Take().size(), 0u) << what;
    EXPECT_EQ(static_cast<bool>(data), error.empty()) << what;
    if (data) {
        Decoder decoder;
        data->VisitSpecs(&decoder);
    }
}

std::vector<std::string> seeds()
{
    return {
        crateOf("def \"A\" { float f = 1; }\n"), crateOf(kEveryField),
        crateOf(
            "def \"A\" { double[] d = [1, 2.5]\n int[] i = [1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, "
            "15, 16, 17]\n float[] t = [0.1, 0.1, 0.1, 0.1, 0.1, 0.1, 0.1, 0.1, 0.1, 0.1, 0.1, 0.1, 0.1, "
            "0.1, 0.1, 0.1]\n string[] s = [\"a\", \"b\"]; }\n"),
        withValue(CrateBuilder::Rep(1, 1, false, true)).Build()};
}

} // namespace

TEST(CrateErrors, TheBuilderMakesSoundFiles)
{
    EXPECT_EQ(errorsOfValues(withValue(CrateBuilder::Rep(1, 1, false, true)).Build()),
              std::vector<std::string>());
}

TEST(CrateErrors, EveryTruncationEndsInOneErrorOrContent)
{
    for (const std::string& seed : seeds()) {
        for (size_t size = 0; size < seed.size(); ++size) {
            expectOneErrorOrContent(seed.substr(0, size), "cut at " + std::to_string(size));
        }
    }
}

TEST(CrateErrors, EveryChangedByteEndsInOneErrorOrContent)
{
    for (const std::string& seed : seeds()) {
        for (size_t at = 0; at < seed.size(); ++at) {
            for (const int flip : {0x01, 0x80, 0xff}) {
                std::string changed = seed;
                changed[at] = static_cast<char>(changed[at] ^ flip);
                expectOneErrorOrContent(changed,
                                        "byte " + std::to_string(at) + " changed by " + std::to_string(flip));
            }
        }
    }
}

TEST(CrateErrors, FaultsOfTheHeaderSayWhatIsExpected)
{
    const std::string sound = withValue(CrateBuilder::Rep(1, 1, false, true)).Build();
    EXPECT_EQ(errorOf(""),
              "the crate file is damaged: header, byte 0: 8 bytes are expected, but only 0 are left");
    std::string newer = sound;
    newer[9] = 13;
    EXPECT_EQ(errorOf(newer),
              "the crate file is damaged: header, byte 8: version 0.13.0 is not known; the newest "
              "that is known is 0.12.0");
    std::string outside = sound;
    outside[23] = 0x7f;
    EXPECT_NE(errorOf(outside).find("table of contents, byte 0: it refers to byte 9151314442816848"),
              std::string::npos)
        << errorOf(outside);
}

TEST(CrateErrors, CountsAreCheckedBeforeAnythingIsAllocated)
{
    CrateBuilder builder = withValue(0);
    builder.pathCount = uint64_t(1) << 60;
    EXPECT_EQ(errorOf(builder.Build()).find("the crate file is damaged: PATHS section, byte "), 0u);
    const uint64_t many = uint64_t(1) << 60;
    std::string array;
    CrateBuilder::Put<uint32_t>(&array, 1);
    CrateBuilder::Put<uint32_t>(&array, 0xffffffff);
    CrateBuilder floats = withValue(CrateBuilder::Rep(8, 88, true));
    floats.Add(array);
    EXPECT_EQ(errorsOfValues(floats.Build()),
              damaged("value, byte 96: 4294967295 elements are announced, but only " +
                      std::to_string(floats.Build().size() - 96) + " bytes are left"));
    std::string numbers;
    CrateBuilder::Put(&numbers, many);
    CrateBuilder vector = withValue(CrateBuilder::Rep(48, 88));
    vector.Add(numbers);
    EXPECT_EQ(errorsOfValues(vector.Build()),
              damaged("value, byte 96: 1152921504606846976 items are announced, but only " +
                      std::to_string(vector.Build().size() - 96) + " bytes are left"));
}

TEST(CrateErrors, IndicesAreChecked)
{
    EXPECT_EQ(errorOf(withValue(CrateBuilder::Rep(11, 99, false, true)).Build()).substr(0, 71),
              "the crate file is damaged: value, byte 0: token 99 is referred to, but ");
    CrateBuilder sets = withValue(0);
    sets.fieldSets = {5, ~0u};
    EXPECT_NE(errorOf(sets.Build()).find("field 5 is referred to, but there are 1"), std::string::npos);
    CrateBuilder open = withValue(0);
    open.fieldSets = {0};
    EXPECT_NE(errorOf(open.Build()).find("the last set of fields has no end"), std::string::npos);
    CrateBuilder inside = withValue(CrateBuilder::Rep(1, 1, false, true));
    inside.specs[0].element = 1;
    EXPECT_NE(errorOf(inside.Build()).find("no set of fields begins at index 1, which </> refers to"),
              std::string::npos);
}

TEST(CrateErrors, AssetPathsThatAreNoTextAreOneErrorWithTheirPlace)
{
    CrateBuilder inlined = withValue(CrateBuilder::Rep(12, 1, false, true));
    inlined.tokens[1] = "\xff.png";
    EXPECT_EQ(errorOf(inlined.Build()),
              "the crate file is damaged: value, byte 0: an asset path is expected, but character 1 is no "
              "valid UTF-8");
    std::string array;
    CrateBuilder::Put<uint32_t>(&array, 1);
    CrateBuilder::Put<uint32_t>(&array, 2);
    CrateBuilder::Put<uint32_t>(&array, 0);
    CrateBuilder::Put<uint32_t>(&array, 0);
    CrateBuilder many = withValue(CrateBuilder::Rep(12, 88, true));
    many.tokens[1] = "a\nb";
    many.Add(array);
    EXPECT_EQ(errorsOfValues(many.Build()),
              damaged("value, byte 100: an asset path is expected, but character 2 is control character 0xa"));
    std::string references;
    CrateBuilder::Put<uint8_t>(&references, 3);
    CrateBuilder::Put<uint64_t>(&references, 1);
    references += std::string(40, '\0');
    CrateBuilder reference = withValue(CrateBuilder::Rep(35, 88));
    reference.tokens[1] = "\x01";
    reference.Add(references);
    EXPECT_EQ(errorsOfValues(reference.Build()),
              damaged("value, byte 101: an asset path is expected, but character 1 is control character 0x1"));
}

TEST(CrateErrors, PathTreesThatTurnBackAreFoundOut)
{
    CrateBuilder builder;
    builder.pathCount = 3;
    builder.AddPath({0, 0, CrateBuilder::Child});
    builder.AddPath({1, 1, CrateBuilder::Child | CrateBuilder::Sibling});
    CrateBuilder::Put<uint64_t>(&builder.pathTree, 0); // the sibling's place, found below
    builder.AddPath({2, 2, 0});
    const std::string file = builder.Build();
    const size_t tree = file.find(builder.pathTree);
    std::string back = file;
    const uint64_t place = tree + 12;
    std::memcpy(&back[tree + 24], &place, sizeof place);
    EXPECT_NE(errorOf(back).find("path 1 occurs twice in the tree of paths"), std::string::npos);
}

TEST(CrateErrors, PathsThatCannotBeAreOneErrorWithoutAWarning)
{
    CrateBuilder builder;
    builder.tokens[1] = "not a name";
    builder.pathCount = 2;
    builder.AddPath({0, 0, CrateBuilder::Child});
    builder.AddPath({1, 1, 0});
    EXPECT_NE(errorOf(builder.Build()).find("the path </> cannot be continued by \"not a name\""),
              std::string::npos);
    builder.tokens[1] = "{=x}";
    EXPECT_NE(errorOf(builder.Build()).find("the path </> cannot be continued by \"{=x}\""),
              std::string::npos);
}

TEST(CrateErrors, DeepPathsAreLimited)
{
    CrateBuilder builder;
    builder.pathCount = 100000;
    for (uint32_t i = 0; i < builder.pathCount; ++i) {
        builder.AddPath(
            {i, i == 0 ? 0u : 1u, i + 1 < builder.pathCount ? uint32_t(CrateBuilder::Child) : 0u});
    }
    EXPECT_NE(errorOf(builder.Build()).find("paths of more than 2000 elements are not read"),
              std::string::npos);
}

TEST(CrateErrors, SpecsMustFitTheirPaths)
{
    CrateBuilder twice = withValue(CrateBuilder::Rep(1, 1, false, true));
    twice.specs.push_back(twice.specs[0]);
    EXPECT_NE(errorOf(twice.Build()).find("there are two specs at </>"), std::string::npos);
    CrateBuilder wrong = withValue(CrateBuilder::Rep(1, 1, false, true));
    wrong.specs[0].bits = SdfSpecTypeAttribute;
    EXPECT_NE(errorOf(wrong.Build()).find("a spec of type 1 cannot be at </>"), std::string::npos);
    CrateBuilder none = withValue(CrateBuilder::Rep(1, 1, false, true));
    none.specs.clear();
    EXPECT_EQ(errorOf(none.Build()),
              "the crate file is damaged: SPECS section: there is no spec of the root");
}

TEST(CrateErrors, ValuesThatHoldThemselvesAreFoundOut)
{
    CrateBuilder builder = withValue(CrateBuilder::Rep(31, 88));
    std::string dictionary;
    CrateBuilder::Put<uint64_t>(&dictionary, 1);
    CrateBuilder::Put<uint32_t>(&dictionary, 0);
    CrateBuilder::Put<int64_t>(&dictionary, 8);
    CrateBuilder::Put<uint64_t>(&dictionary, CrateBuilder::Rep(31, 88));
    builder.Add(dictionary);
    EXPECT_EQ(errorsOfValues(builder.Build()),
              damaged("value, byte 116: a value holds values more than 64 levels deep"));
}

TEST(CrateErrors, ValuesThatMultiplyAreLimited)
{
    // Twenty dictionaries of ten entries, each of which is the next dictionary.
    CrateBuilder builder = withValue(CrateBuilder::Rep(31, 88));
    const uint64_t size = 8 + 10 * 20;
    for (uint64_t level = 0; level < 20; ++level) {
        std::string dictionary;
        CrateBuilder::Put<uint64_t>(&dictionary, 10);
        for (uint32_t entry = 0; entry < 10; ++entry) {
            CrateBuilder::Put<uint32_t>(&dictionary, entry);
            CrateBuilder::Put<int64_t>(&dictionary, 8);
            CrateBuilder::Put<uint64_t>(&dictionary, level < 19
                                                         ? CrateBuilder::Rep(31, 88 + (level + 1) * size)
                                                         : CrateBuilder::Rep(1, 1, false, true));
        }
        builder.Add(dictionary);
    }
    builder.tokens.resize(20, "k");
    builder.strings = {4, 5, 6, 7, 8, 9, 10, 11, 12, 13};
    const std::vector<std::string> errors = errorsOfValues(builder.Build());
    ASSERT_EQ(errors.size(), 1u);
    EXPECT_NE(errors[0].find("a value holds more values than the file has room for"), std::string::npos);
}

TEST(CrateErrors, ValuesOfTypesThatAreNotReadAreLeftOut)
{
    // A spline, which later versions of the format know.
    std::string error;
    const SdfAbstractDataRefPtr data = readCrate(withValue(CrateBuilder::Rep(59, 88)).Build(), &error);
    ASSERT_TRUE(data) << error;
    EXPECT_FALSE(data->Has(SdfPath::AbsoluteRootPath(), TfToken("customData")));
    EXPECT_TRUE(data->List(SdfPath::AbsoluteRootPath()).empty());
}

TEST(CrateErrors, ListsOfChildrenMustHoldNames)
{
    CrateBuilder builder = withValue(CrateBuilder::Rep(3, 7, false, true));
    builder.tokens[3] = "primChildren";
    EXPECT_EQ(errorOf(builder.Build()),
              "the crate file is damaged: field \"primChildren\", byte 7: a list of names is expected");
}

TEST(CrateErrors, PackedBlocksThatAreTooSmallAreRefusedBeforeTheyAreUnpacked)
{
    std::string sound = crateOf("def \"A\" { float f = 1; }\n");
    // The number of field indices is the first of the section's numbers.
    uint64_t contents = 0;
    std::memcpy(&contents, &sound[16], sizeof contents);
    uint64_t section = 0;
    std::memcpy(&section, &sound[contents + 8 + 3 * 32 + 16], sizeof section);
    const uint64_t many = uint64_t(1) << 40;
    std::memcpy(&sound[section], &many, sizeof many);
    EXPECT_NE(errorOf(sound).find("FIELDSETS section, byte "), std::string::npos);
    EXPECT_NE(errorOf(sound).find(" bytes cannot hold 1099511627776 packed integers"), std::string::npos);
}

TEST(CrateErrors, OneLoadHasABudgetOfMemory)
{
    const std::string bytes = crateOf("def \"A\" { float f = 1; }\n");
    const std::shared_ptr<char> buffer(new char[bytes.size()], std::default_delete<char[]>());
    std::copy(bytes.begin(), bytes.end(), buffer.get());
    Sdf_CrateLimits limits;
    limits.memory = 100;
    std::string error;
    EXPECT_FALSE(Sdf_ReadCrate("t.usdc", ArInMemoryAsset::FromBuffer(buffer, bytes.size()), limits, &error));
    EXPECT_NE(error.find("it needs more memory than the 100 bytes that one load may use"), std::string::npos);
}

TEST(CrateErrors, LargeFilesAreReadPartByPart)
{
    const std::string bytes = crateOf(std::string(kEveryField) + kEveryType);
    const std::shared_ptr<char> buffer(new char[bytes.size()], std::default_delete<char[]>());
    std::copy(bytes.begin(), bytes.end(), buffer.get());
    const std::shared_ptr<ArAsset> asset = ArInMemoryAsset::FromBuffer(buffer, bytes.size());
    std::string error;
    const SdfAbstractDataRefPtr whole = Sdf_ReadCrate("t.usdc", asset, Sdf_CrateLimits(), &error);
    Sdf_CrateLimits limits;
    limits.buffer = 0;
    const SdfAbstractDataRefPtr parts = Sdf_ReadCrate("t.usdc", asset, limits, &error);
    ASSERT_TRUE(whole && parts) << error;
    EXPECT_TRUE(whole->Equals(parts));
}
