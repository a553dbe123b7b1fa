#include "crate_scenes.h"
#include "support.h"

#include <pxr/base/gf/vec3f.h>
#include <pxr/base/vt/array.h>
#include <pxr/usd/sdf/attributeSpec.h>
#include <pxr/usd/sdf/fileFormat.h>
#include <pxr/usd/sdf/primSpec.h>
#include <pxr/usd/sdf/relationshipSpec.h>
#include <pxr/usd/sdf/schema.h>

#include <atomic>
#include <cmath>
#include <limits>
#include <thread>

using namespace sdf_tests;

namespace {

std::string versionOf(const std::string& bytes)
{
    return std::to_string(bytes.at(8)) + "." + std::to_string(bytes.at(9)) + "." +
           std::to_string(bytes.at(10));
}

// A layer and the same one written as crate and read again.
struct RoundTrip
{
    explicit RoundTrip(const std::string& body) : original(Parse(body))
    {
        EXPECT_TRUE(original && original->Export(directory.File("a.usdc")));
        bytes = directory.Read("a.usdc");
        read = SdfLayer::FindOrOpen(directory.File("a.usdc"));
        EXPECT_TRUE(read);
    }
    VtValue Default(const std::string& path) const
    {
        return read->GetField(SdfPath(path), SdfFieldKeys->Default);
    }

    TemporaryDirectory directory;
    SdfLayerRefPtr original;
    SdfLayerRefPtr read;
    std::string bytes;
};

template <class T>
void expectSharesTheFile(const VtArray<T>& a, const VtArray<T>& b)
{
    EXPECT_EQ(a.cdata(), b.cdata());
    EXPECT_TRUE(a.IsIdentical(b));
}

} // namespace

TEST(Crate, KeepsValuesOfEveryType)
{
    const RoundTrip trip(kEveryType);
    EXPECT_EQ(Text(trip.read), Text(trip.original));
}

TEST(Crate, KeepsSpecsAndFieldsOfEveryKind)
{
    const RoundTrip trip(kEveryField);
    EXPECT_EQ(Text(trip.read), Text(trip.original));
}

TEST(Crate, KeepsZerosBelowZeroAndNaN)
{
    const SdfLayerRefPtr layer =
        Parse("def \"A\" { double zero = 1\n float[] f = []\n float3 v = (1, 0, 0); }\n");
    const float nan = std::numeric_limits<float>::quiet_NaN();
    layer->SetField(SdfPath("/A.zero"), SdfFieldKeys->Default, -0.0);
    layer->SetField(SdfPath("/A.v"), SdfFieldKeys->Default, GfVec3f(0, -0.0f, nan));
    layer->SetField(SdfPath("/A.f"), SdfFieldKeys->Default, VtFloatArray(20, nan));
    const TemporaryDirectory directory;
    ASSERT_TRUE(layer->Export(directory.File("a.usdc")));
    const SdfLayerRefPtr read = SdfLayer::FindOrOpen(directory.File("a.usdc"));
    EXPECT_TRUE(std::signbit(read->GetFieldAs<double>(SdfPath("/A.zero"), SdfFieldKeys->Default)));
    const GfVec3f v = read->GetFieldAs<GfVec3f>(SdfPath("/A.v"), SdfFieldKeys->Default);
    EXPECT_TRUE(std::signbit(v[1]) && std::isnan(v[2]));
    const VtFloatArray f = read->GetFieldAs<VtFloatArray>(SdfPath("/A.f"), SdfFieldKeys->Default);
    ASSERT_EQ(f.size(), 20u);
    EXPECT_TRUE(std::isnan(f.cfront()) && std::isnan(f.cback()));
}

TEST(Crate, KeepsTheTypeOfEveryValue)
{
    const RoundTrip trip(kEveryType);
    EXPECT_TRUE(trip.Default("/Types.uc").IsHolding<unsigned char>());
    EXPECT_TRUE(trip.Default("/Types.lsmall").IsHolding<int64_t>());
    EXPECT_TRUE(trip.Default("/Types.ulsmall").IsHolding<uint64_t>());
    EXPECT_TRUE(trip.Default("/Types.ts").IsHolding<VtArray<SdfTimeCode>>());
    EXPECT_TRUE(trip.Default("/Types.empty").IsHolding<VtIntArray>());
    EXPECT_TRUE(trip.Default("/Types.emptyStrings").IsHolding<VtStringArray>());
    EXPECT_TRUE(trip.Default("/Types.blocked").IsHolding<SdfValueBlock>());
    // Known without decoding the value.
    EXPECT_EQ(trip.read->GetFieldTypeid(SdfPath("/Types.points"), SdfFieldKeys->Default),
              typeid(VtVec3fArray));
}

TEST(Crate, WritesTheSameBytesForTheSameContent)
{
    const std::string body = std::string(kEveryField) + kEveryType;
    const RoundTrip first(body);
    const RoundTrip second(body);
    EXPECT_EQ(first.bytes, second.bytes);
    // And for content that comes from a crate file.
    ASSERT_TRUE(first.read->Export(first.directory.File("b.usdc")));
    EXPECT_EQ(first.directory.Read("b.usdc"), first.bytes);
}

TEST(Crate, WritesTheOldestVersionThatCanHoldTheContent)
{
    EXPECT_EQ(versionOf(RoundTrip("def \"A\" { float f = 1; }\n").bytes), "0.8.0");
    EXPECT_EQ(versionOf(RoundTrip("def \"A\" { timecode t = 1; }\n").bytes), "0.9.0");
    EXPECT_EQ(versionOf(RoundTrip("(relocates = { </A/B> : </A/C> })\ndef \"A\" { def \"B\" {}\n }\n").bytes),
              "0.11.0");
}

TEST(Crate, WritesEqualValuesOnce)
{
    std::string array = "[";
    for (int i = 0; i < 1000; ++i) {
        array += std::to_string(i * i % 977) + ".25, ";
    }
    array += "0.5]";
    const size_t once = RoundTrip("def \"A\" { float[] a = " + array + "; }\n").bytes.size();
    const size_t twice =
        RoundTrip("def \"A\" { float[] a = " + array + "\n float[] b = " + array + "; }\n").bytes.size();
    EXPECT_LT(twice, once + 200);
}

TEST(Crate, SharesLargeArraysWithTheFilesBuffer)
{
    const SdfLayerRefPtr layer = Parse("def \"A\" { point3f[] points = []; }\n");
    VtVec3fArray points(1000);
    for (int i = 0; i < 1000; ++i) {
        points[static_cast<size_t>(i)] = GfVec3f(static_cast<float>(i) * 0.1f, 0, 0);
    }
    const SdfPath path("/A.points");
    layer->SetField(path, SdfFieldKeys->Default, points);
    const TemporaryDirectory directory;
    ASSERT_TRUE(layer->Export(directory.File("a.usdc")));
    SdfLayerRefPtr read = SdfLayer::FindOrOpen(directory.File("a.usdc"));
    const auto first = read->GetFieldAs<VtVec3fArray>(path, SdfFieldKeys->Default);
    expectSharesTheFile(first, read->GetFieldAs<VtVec3fArray>(path, SdfFieldKeys->Default));
    // The array stays when the layer and the file are gone, and is copied before it is changed.
    read.Reset();
    std::filesystem::remove(directory.File("a.usdc"));
    EXPECT_EQ(first, points);
    VtVec3fArray changed = first;
    changed[0] = GfVec3f(7, 7, 7);
    EXPECT_EQ(first, points);
}

namespace {

// A file of more than 1 MiB: 64 arrays of 8,192 numbers, the i-th of which counts from i.
std::string writeLargeFile(const TemporaryDirectory& directory)
{
    const SdfLayerRefPtr layer = SdfLayer::CreateAnonymous("large.usda");
    const SdfPrimSpecHandle prim = SdfPrimSpec::New(layer, "A", SdfSpecifierDef);
    for (int i = 0; i < 64; ++i) {
        const SdfAttributeSpecHandle attribute =
            SdfAttributeSpec::New(prim, "a" + std::to_string(i), SdfValueTypeNames->FloatArray);
        VtFloatArray numbers(8192);
        for (size_t k = 0; k < numbers.size(); ++k) {
            numbers[k] = static_cast<float>(i) + static_cast<float>(k) * 0.25f;
        }
        attribute->SetDefaultValue(VtValue(numbers));
    }
    EXPECT_TRUE(layer->Export(directory.File("large.usdc")));
    EXPECT_GT(std::filesystem::file_size(directory.File("large.usdc")), 1024u * 1024u);
    return directory.File("large.usdc");
}

VtFloatArray readArray(const SdfLayerRefPtr& layer, int i)
{
    return layer->GetFieldAs<VtFloatArray>(SdfPath("/A.a" + std::to_string(i)), SdfFieldKeys->Default);
}

} // namespace

TEST(Crate, LargeFilesAreReadByManyThreadsAtOnce)
{
    const TemporaryDirectory directory;
    const SdfLayerRefPtr layer = SdfLayer::FindOrOpen(writeLargeFile(directory));
    ASSERT_TRUE(layer);
    std::atomic<int> right{0};
    std::vector<std::thread> threads;
    for (int t = 0; t < 4; ++t) {
        threads.emplace_back([&, t] {
            for (int n = 0; n < 64; ++n) {
                const int i = t % 2 == 0 ? n : 63 - n;
                const VtFloatArray numbers = readArray(layer, i);
                right += numbers.size() == 8192 && numbers.cfront() == static_cast<float>(i) &&
                                 numbers.cback() == static_cast<float>(i) + 2047.75f
                             ? 1
                             : 0;
            }
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    EXPECT_EQ(right, 4 * 64);
}

TEST(Crate, AFileThatShrinksAfterItWasOpenedIsOneErrorAndKeepsWhatWasRead)
{
    const TemporaryDirectory directory;
    const std::string file = writeLargeFile(directory);
    const SdfLayerRefPtr layer = SdfLayer::FindOrOpen(file);
    const VtFloatArray before = readArray(layer, 0);
    std::filesystem::resize_file(file, 100);
    Errors errors;
    EXPECT_TRUE(readArray(layer, 40).empty());
    EXPECT_TRUE(readArray(layer, 40).empty());
    const std::vector<std::string> texts = errors.Take();
    ASSERT_EQ(texts.size(), 1u);
    EXPECT_EQ(texts[0].find("Cannot read layer @" + file + "@: the crate file is damaged: file, byte "), 0u);
    EXPECT_NE(texts[0].find(": the file changed after it was opened; reload it"), std::string::npos);
    EXPECT_EQ(before.cback(), 2047.75f);
}

TEST(Crate, AFileThatIsReplacedAfterItWasOpenedKeepsItsContent)
{
    const TemporaryDirectory directory;
    const std::string file = writeLargeFile(directory);
    const SdfLayerRefPtr layer = SdfLayer::FindOrOpen(file);
    ASSERT_TRUE(Parse("def \"B\" {}\n")->Export(file));
    EXPECT_EQ(readArray(layer, 63).cback(), 63.0f + 2047.75f);
}

TEST(Crate, DecodesSamplesOneByOne)
{
    const RoundTrip trip(kEveryField);
    const SdfPath path("/World/B.size");
    EXPECT_EQ(trip.read->ListTimeSamplesForPath(path), (std::set<double>{0, 1.5, 2, 10}));
    EXPECT_EQ(trip.read->GetNumTimeSamplesForPath(path), 4u);
    EXPECT_EQ(trip.read->ListAllTimeSamples(), (std::set<double>{0, 1.5, 2, 10}));
    VtValue value;
    EXPECT_TRUE(trip.read->QueryTimeSample(path, 1.5, &value));
    EXPECT_EQ(value, VtValue(2.5));
    EXPECT_TRUE(trip.read->QueryTimeSample(path, 2, &value));
    EXPECT_TRUE(value.IsHolding<SdfValueBlock>());
    EXPECT_FALSE(trip.read->QueryTimeSample(path, 3, &value));
    double lower = 0;
    double upper = 0;
    EXPECT_TRUE(trip.read->GetBracketingTimeSamplesForPath(path, 5, &lower, &upper));
    EXPECT_EQ(std::make_pair(lower, upper), std::make_pair(2.0, 10.0));
    EXPECT_TRUE(trip.read->GetBracketingTimeSamplesForPath(path, -1, &lower, &upper));
    EXPECT_EQ(std::make_pair(lower, upper), std::make_pair(0.0, 0.0));
}

TEST(Crate, HasSpecsOfTargetsAndConnections)
{
    const RoundTrip trip(kEveryField);
    EXPECT_EQ(trip.read->GetSpecType(SdfPath("/World/B.targets[/World/A]")), SdfSpecTypeRelationshipTarget);
    EXPECT_EQ(trip.read->GetSpecType(SdfPath("/World/B.in[/World/A.out]")), SdfSpecTypeConnection);
    EXPECT_FALSE(trip.read->HasSpec(SdfPath("/World/B.targets[/World/None]")));
    EXPECT_EQ(trip.read->GetFieldAs<SdfPathVector>(SdfPath("/World/B.targets"),
                                                   SdfChildrenKeys->RelationshipTargetChildren),
              (SdfPathVector{SdfPath("/World/A"), SdfPath("/World/A.out")}));
    std::set<SdfPath> paths;
    trip.read->Traverse(SdfPath("/World/B"), [&paths](const SdfPath& path) { paths.insert(path); });
    EXPECT_EQ(paths.count(SdfPath("/World/B.targets[/World/A]")), 1u);
}

TEST(Crate, RefusesWhatItCannotHoldAndWritesNothing)
{
    const SdfLayerRefPtr layer = Parse("def \"A\" { string s = \"x\"; }\n");
    layer->SetField(SdfPath("/A.s"), SdfFieldKeys->Default, std::string("a\0b", 3));
    const TemporaryDirectory directory;
    Errors errors;
    EXPECT_FALSE(layer->Export(directory.File("a.usdc")));
    EXPECT_EQ(errors.Take(),
              std::vector<std::string>{"Cannot write layer @" + directory.File("a.usdc") +
                                       "@: the field \"default\" of </A.s>: a text holds a NUL "
                                       "byte: \"a...\""});
    layer->SetField(SdfPath("/A.s"), SdfFieldKeys->Default, SdfOpaqueValue());
    EXPECT_FALSE(layer->Export(directory.File("a.usdc")));
    EXPECT_EQ(errors.Take(),
              std::vector<std::string>{"Cannot write layer @" + directory.File("a.usdc") +
                                       "@: the field \"default\" of </A.s>: crate files cannot "
                                       "hold values of the type SdfOpaqueValue"});
    EXPECT_TRUE(std::filesystem::is_empty(directory.path));
}
