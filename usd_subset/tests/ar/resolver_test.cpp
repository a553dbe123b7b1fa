#include <pxr/usd/ar/asset.h>
#include <pxr/usd/ar/defaultResolver.h>
#include <pxr/usd/ar/packageUtils.h>
#include <pxr/usd/ar/resolver.h>
#include <pxr/usd/ar/resolverContextBinder.h>

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <string>

PXR_NAMESPACE_USING_DIRECTIVE

namespace {

// A directory with the file `assets/a.usda`.
class Resolver : public testing::Test
{
protected:
    void SetUp() override
    {
        std::string pattern = (std::filesystem::temp_directory_path() / "ar_tests.XXXXXX").string();
        root = mkdtemp(pattern.data());
        std::filesystem::create_directory(root + "/assets");
        std::ofstream(root + "/assets/a.usda") << "text";
    }
    void TearDown() override { std::filesystem::remove_all(root); }

    std::string root;
    ArResolver& resolver = ArGetResolver();
};

} // namespace

TEST_F(Resolver, AnchorsRelativePathsToTheDirectoryOfTheirAnchor)
{
    const ArResolvedPath anchor(root + "/assets/scene.usda");
    EXPECT_EQ(resolver.CreateIdentifier("./b.usda", anchor), root + "/assets/b.usda");
    EXPECT_EQ(resolver.CreateIdentifier("../b.usda", anchor), root + "/b.usda");
    EXPECT_EQ(resolver.CreateIdentifier("/x/../y.usda", anchor), "/y.usda");
    EXPECT_EQ(resolver.CreateIdentifier("a.usda", anchor), root + "/assets/a.usda");
    EXPECT_EQ(resolver.CreateIdentifier("missing.usda", anchor), "missing.usda");
    EXPECT_EQ(resolver.CreateIdentifierForNewAsset("missing.usda", anchor), root + "/assets/missing.usda");
    EXPECT_EQ(resolver.CreateIdentifier(""), "");
}

TEST_F(Resolver, FindsPlainPathsInTheBoundContextOnly)
{
    EXPECT_TRUE(resolver.Resolve("assets/a.usda").IsEmpty());
    {
        const ArResolverContextBinder binder(ArResolverContext(ArDefaultResolverContext({root})));
        EXPECT_EQ(resolver.Resolve("assets/a.usda"), root + "/assets/a.usda");
        EXPECT_TRUE(resolver.Resolve("./assets/a.usda").IsEmpty());
    }
    EXPECT_TRUE(resolver.Resolve("assets/a.usda").IsEmpty());
}

TEST_F(Resolver, FindsPlainPathsInTheDefaultSearchPath)
{
    ArDefaultResolver::SetDefaultSearchPath({root + "/assets"});
    EXPECT_EQ(resolver.Resolve("a.usda"), root + "/assets/a.usda");
    ArDefaultResolver::SetDefaultSearchPath({});
    EXPECT_TRUE(resolver.Resolve("a.usda").IsEmpty());
}

TEST_F(Resolver, ResolvesNothingForWhatIsNotThere)
{
    EXPECT_TRUE(resolver.Resolve("").IsEmpty());
    EXPECT_TRUE(resolver.Resolve(root + "/none").IsEmpty());
    EXPECT_TRUE(resolver.Resolve(std::string("/tmp\0x", 6)).IsEmpty());
    EXPECT_TRUE(resolver.Resolve("http://example.com/a.usda").IsEmpty());
    EXPECT_FALSE(resolver.GetModificationTimestamp("", ArResolvedPath(root + "/none")).IsValid());
}

TEST_F(Resolver, OpensFilesForReading)
{
    const std::shared_ptr<ArAsset> asset = resolver.OpenAsset(ArResolvedPath(root + "/assets/a.usda"));
    ASSERT_TRUE(asset);
    EXPECT_EQ(asset->GetSize(), 4u);
    EXPECT_EQ(std::string(asset->GetBuffer().get(), 4), "text");
    char bytes[8] = {};
    EXPECT_EQ(asset->Read(bytes, 8, 2), 2u);
    EXPECT_EQ(std::string(bytes), "xt");
    EXPECT_FALSE(resolver.OpenAsset(ArResolvedPath(root)));
}

TEST_F(Resolver, TellsExtensions)
{
    EXPECT_EQ(resolver.GetExtension("/a.b/c.usda"), "usda");
    EXPECT_EQ(resolver.GetExtension("/a.b/c"), "");
    EXPECT_EQ(resolver.GetExtension("/a.usdz[b/c.png]"), "png");
}

TEST(PackagePaths, JoinAndSplit)
{
    EXPECT_EQ(ArJoinPackageRelativePath("/a.usdz", "b.png"), "/a.usdz[b.png]");
    EXPECT_EQ(ArJoinPackageRelativePath("/a.usdz[b.usdz]", "c.png"), "/a.usdz[b.usdz[c.png]]");
    typedef std::pair<std::string, std::string> Parts;
    EXPECT_EQ(ArSplitPackageRelativePathOuter("/a.usdz[b.usdz[c.png]]"), Parts("/a.usdz", "b.usdz[c.png]"));
    EXPECT_EQ(ArSplitPackageRelativePathInner("/a.usdz[b.usdz[c.png]]"), Parts("/a.usdz[b.usdz]", "c.png"));
    EXPECT_EQ(ArSplitPackageRelativePathInner("/a.usda"), Parts("/a.usda", ""));
    EXPECT_TRUE(ArIsPackageRelativePath("/a.usdz[b]"));
    EXPECT_FALSE(ArIsPackageRelativePath("/a.usdz"));
    EXPECT_FALSE(ArIsPackageRelativePath("[b]"));
    const std::string odd = ArJoinPackageRelativePath("/a.usdz", "b[1].png");
    EXPECT_EQ(ArSplitPackageRelativePathInner(odd), Parts("/a.usdz", "b[1].png"));
}
