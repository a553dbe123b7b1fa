#include "scene.h"

#include <pxr/usd/ar/defaultResolverContext.h>
#include <pxr/usd/sdf/assetPath.h>

#include <filesystem>
#include <fstream>
#include <gmock/gmock.h>
#include <stdlib.h>

using namespace usd_tests;

/// A root layer, a model in a folder below it, and parts beside the one, the other, or both.
class AssetSearch : public testing::Test
{
protected:
    AssetSearch()
    {
        std::string pattern = (std::filesystem::temp_directory_path() / "usd_search_XXXXXX").string();
        m_folder = mkdtemp(pattern.data());
        write("root.usda", "def \"A\" (references = @./models/model.usda@</M>) {}");
        write("models/model.usda", R"(def "M" (references = [@parts/near.usda@</P>, @parts/far.usda@</P>,
            @parts/both.usda@</P>]) { asset file = @parts/far.usda@ })");
        write("models/parts/near.usda", "def \"P\" { int near = 1 }");
        write("parts/far.usda", "def \"P\" { int far = 2 }");
        write("models/parts/both.usda", "def \"P\" { int both = 3 }");
        write("parts/both.usda", "def \"P\" { int wrong = 4 }");
    }
    ~AssetSearch() override { std::filesystem::remove_all(m_folder); }

    void write(const std::string& name, const std::string& text) const
    {
        const std::filesystem::path path = m_folder / name;
        std::filesystem::create_directories(path.parent_path());
        std::ofstream(path) << "#usda 1.0\n" << onLines(text);
    }
    std::string folder() const { return m_folder.string(); }
    std::string file(const std::string& name) const { return (m_folder / name).string(); }

private:
    std::filesystem::path m_folder;
};

TEST_F(AssetSearch, LooksBesideTheLayerThatNamesTheAssetAndThenBesideTheRootLayer)
{
    const UsdStageRefPtr scene = UsdStage::Open(file("root.usda"));
    ASSERT_TRUE(scene);
    EXPECT_TRUE(attribute(scene, "/A.near"));
    EXPECT_TRUE(attribute(scene, "/A.far"));
    EXPECT_TRUE(attribute(scene, "/A.both"));
    EXPECT_FALSE(attribute(scene, "/A.wrong"));
}

TEST_F(AssetSearch, TakesPartInTheValuesOfAssetPaths)
{
    const UsdStageRefPtr scene = UsdStage::Open(file("root.usda"));
    const SdfAssetPath found = valueOf<SdfAssetPath>(attribute(scene, "/A.file"));
    EXPECT_EQ(found.GetResolvedPath(), file("parts/far.usda"));
}

TEST_F(AssetSearch, FindsOtherLayersOfTheSameNameForOtherStages)
{
    write("second/root.usda", "def \"A\" (references = @parts/far.usda@</P>) {}");
    write("second/parts/far.usda", "def \"P\" { int second = 5 }");
    const UsdStageRefPtr first = UsdStage::Open(file("root.usda"));
    const UsdStageRefPtr second = UsdStage::Open(file("second/root.usda"));
    EXPECT_TRUE(attribute(first, "/A.far"));
    EXPECT_TRUE(attribute(second, "/A.second"));
    EXPECT_FALSE(attribute(second, "/A.far"));
}

TEST_F(AssetSearch, IsThatOfTheStagesContext)
{
    const UsdStageRefPtr scene = UsdStage::Open(file("root.usda"));
    const ArResolverContext context = scene->GetPathResolverContext();
    const auto* const searched = context.Get<ArDefaultResolverContext>();
    ASSERT_TRUE(searched);
    EXPECT_THAT(searched->GetSearchPath(), testing::ElementsAre(folder()));
}
