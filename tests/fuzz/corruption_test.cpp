#include "targets.h"

#include <pxr/usd/sdf/layer.h>
#include <pxr/usd/usd/zipFile.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

PXR_NAMESPACE_USING_DIRECTIVE

namespace {

std::string readFile(const std::filesystem::path& path)
{
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

std::vector<std::filesystem::path> seedPaths()
{
    std::vector<std::filesystem::path> paths;
    for (const auto& entry : std::filesystem::directory_iterator(VESK_FUZZ_SEEDS)) {
        paths.push_back(entry.path());
    }
    std::sort(paths.begin(), paths.end());
    return paths;
}

std::vector<std::string> textSeeds()
{
    std::vector<std::string> seeds;
    for (const auto& path : seedPaths()) {
        seeds.push_back(readFile(path));
    }
    return seeds;
}

// Runs every prefix, and every byte with its lowest bit, its highest bit and all of its bits turned; of each
// kind every `step`th.
void corrupt(const std::string& seed, void (*run)(std::string_view), size_t step)
{
    run(seed);
    for (size_t length = 0; length < seed.size(); length += step) {
        run(std::string_view(seed).substr(0, length));
    }
    size_t turn = 0;
    for (size_t at = 0; at < seed.size(); ++at) {
        for (const unsigned char bits : {0x01, 0x80, 0xFF}) {
            if (turn++ % step == 0) {
                std::string changed = seed;
                changed[at] = static_cast<char>(static_cast<unsigned char>(changed[at]) ^ bits);
                run(changed);
            }
        }
    }
}

// Every tenth, a number that shares no factor with three flips a byte.
constexpr size_t kSample = 10;

// Text seeds as our own writer puts them into crate files.
std::vector<std::string> crateSeeds()
{
    std::vector<std::string> crates;
    for (const char* name : {"attr", "layer", "prim", "time", "types"}) {
        const SdfLayerRefPtr layer =
            SdfLayer::OpenAsAnonymous((std::filesystem::path(VESK_FUZZ_SEEDS) / name).string() + ".usda");
        const std::string path = testing::TempDir() + "/seed_" + name + ".usdc";
        EXPECT_TRUE(layer && layer->Export(path));
        crates.push_back(readFile(path));
        std::filesystem::remove(path);
    }
    return crates;
}

// Packages of text layers, and of a crate file beside one.
std::vector<std::string> packageSeeds()
{
    const std::filesystem::path folder = std::filesystem::path(testing::TempDir());
    const std::string crate = (folder / "member.usdc").string();
    std::ofstream(crate, std::ios::binary) << crateSeeds()[1];
    const std::string layer = seedPaths()[1].string();
    const std::vector<std::vector<std::string>> members = {
        {seedPaths()[0].string()}, {layer, seedPaths()[2].string(), seedPaths()[3].string()}, {crate, layer}};
    std::vector<std::string> packages;
    for (const std::vector<std::string>& files : members) {
        const std::string path = (folder / "seed.usdz").string();
        UsdZipFileWriter writer = UsdZipFileWriter::CreateNew(path);
        for (const std::string& file : files) {
            const std::string extension = std::filesystem::path(file).extension().string();
            writer.AddFile(file, "m" + std::to_string(&file - files.data()) + extension);
        }
        EXPECT_TRUE(writer.Save());
        packages.push_back(readFile(path));
        std::filesystem::remove(path);
    }
    std::filesystem::remove(crate);
    return packages;
}

} // namespace

TEST(Corruption, AnywhereInTextEndsInOneErrorOrALayer)
{
    ASSERT_EQ(textSeeds().size(), 7u);
    for (const std::string& seed : textSeeds()) {
        ASSERT_LE(seed.size(), 8192u);
        corrupt(seed, &vesk::fuzz::readTextLayer, 1);
    }
}

TEST(Corruption, SampledInTextFilesEndsInOneErrorOrALayer)
{
    for (const std::string& seed : textSeeds()) {
        corrupt(seed, &vesk::fuzz::readTextFile, kSample);
    }
}

TEST(Corruption, DISABLED_AnywhereInTextFilesEndsInOneErrorOrALayer)
{
    for (const std::string& seed : textSeeds()) {
        corrupt(seed, &vesk::fuzz::readTextFile, 1);
    }
}

TEST(Corruption, AnywhereInExpressionsEndsInAValueOrReasons)
{
    for (const char* seed :
         {"`\"plain ${A} and ${NONE}\"`", "`${A}`", "`if(${B}, \"x\", 'y')`", "`[\"a\", \"${A}\", 'b']`",
          "`[1, -2, ${N}]`", "`and(${B}, not(eq(${N}, 3)), or(true, False))`", "`${E}`", "`${SELF}`",
          "`contains([\"a\", \"b\"], \"a\")`", "`at([1, 2, 3], -1)`", "`len(\"${A}\")`",
          "`if(lt(${N}, 4), [None], None)`", "`defined(${A}, ${NONE})`", "`\"a\\\"b\\${A}\"`"}) {
        corrupt(seed, &vesk::fuzz::evaluateExpression, 1);
    }
}

TEST(Corruption, OfDepthInExpressionsEndsInReasons)
{
    for (const char* part : {"if(", "[", "not(", "and(true, ", "\"${", "if(true, "}) {
        std::string deep = "`";
        for (int i = 0; i < 200000; ++i) {
            deep += part;
        }
        vesk::fuzz::evaluateExpression(deep);
        vesk::fuzz::evaluateExpression(deep + "`");
    }
}

TEST(Corruption, SampledInPackagesEndsInOneErrorOrALayer)
{
    for (const std::string& seed : packageSeeds()) {
        ASSERT_LE(seed.size(), 8192u);
        corrupt(seed, &vesk::fuzz::readPackage, kSample);
    }
}

TEST(Corruption, DISABLED_AnywhereInPackagesEndsInOneErrorOrALayer)
{
    for (const std::string& seed : packageSeeds()) {
        corrupt(seed, &vesk::fuzz::readPackage, 1);
    }
}

TEST(Corruption, SampledInCrateFilesEndsInOneErrorOrALayer)
{
    for (const std::string& seed : crateSeeds()) {
        ASSERT_LE(seed.size(), 8192u);
        corrupt(seed, &vesk::fuzz::readCrateFile, kSample);
    }
}

TEST(Corruption, DISABLED_AnywhereInCrateFilesEndsInOneErrorOrALayer)
{
    for (const std::string& seed : crateSeeds()) {
        corrupt(seed, &vesk::fuzz::readCrateFile, 1);
    }
}
