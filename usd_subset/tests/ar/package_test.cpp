#include <pxr/base/tf/error.h>
#include <pxr/base/tf/errorMark.h>
#include <pxr/usd/ar/asset.h>
#include <pxr/usd/ar/packageUtils.h>
#include <pxr/usd/ar/resolver.h>
#include <pxr/usd/sdf/fileFormat.h>
#include <pxr/usd/sdf/layer.h>
#include <pxr/usd/sdf/layerUtils.h>
#include <pxr/usd/sdf/primSpec.h>
#include <pxr/usd/usd/zipFile.h>

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>
#include <vector>

PXR_NAMESPACE_USING_DIRECTIVE

namespace {

// A directory with the files of a package to be.
class Packages : public testing::Test
{
protected:
    void SetUp() override
    {
        std::string pattern = (std::filesystem::temp_directory_path() / "ar_tests.XXXXXX").string();
        root = mkdtemp(pattern.data());
        Write("main.usda", "#usda 1.0\ndef \"Main\" {}\n");
        Write("sub/part.usda", "#usda 1.0\ndef \"Part\" {}\n");
        Write("sub/wood.png", "not a picture, but bytes\0with a zero");
    }
    void TearDown() override
    {
        mark.Clear();
        std::filesystem::remove_all(root);
    }
    std::string File(const std::string& name) const { return root + "/" + name; }
    void Write(const std::string& name, const std::string& content) const
    {
        std::filesystem::create_directories(std::filesystem::path(File(name)).parent_path());
        std::ofstream(File(name), std::ios::binary) << content;
    }
    std::string Read(const std::string& name) const
    {
        std::ifstream in(File(name), std::ios::binary);
        std::ostringstream text;
        text << in.rdbuf();
        return text.str();
    }
    std::string Pack(const std::string& name, const std::vector<std::string>& files) const
    {
        UsdZipFileWriter writer = UsdZipFileWriter::CreateNew(File(name));
        for (const std::string& file : files) {
            EXPECT_EQ(writer.AddFile(File(file), file), file);
        }
        EXPECT_TRUE(writer.Save());
        return File(name);
    }
    std::vector<std::string> TakeErrors()
    {
        std::vector<std::string> texts;
        for (const TfError& error : mark) {
            texts.push_back(error.GetCommentary());
        }
        mark.Clear();
        return texts;
    }
    static std::string ContentOf(const std::string& path)
    {
        const std::shared_ptr<ArAsset> asset = ArGetResolver().OpenAsset(ArResolvedPath(path));
        return asset ? std::string(asset->GetBuffer().get(), asset->GetSize()) : "none";
    }

    std::string root;
    TfErrorMark mark;
};

} // namespace

TEST_F(Packages, HoldTheirFilesInOrderAlignedTo64Bytes)
{
    const std::string path = Pack("a.usdz", {"main.usda", "sub/wood.png", "sub/part.usda"});
    const UsdZipFile package = UsdZipFile::Open(path);
    ASSERT_TRUE(package);
    EXPECT_EQ(std::vector<std::string>(package.begin(), package.end()),
              (std::vector<std::string>{"main.usda", "sub/wood.png", "sub/part.usda"}));
    for (auto file = package.begin(); file != package.end(); ++file) {
        const UsdZipFile::FileInfo info = file.GetFileInfo();
        EXPECT_EQ(info.dataOffset % 64, 0u) << *file;
        EXPECT_EQ(std::string(file.GetFile(), info.size), Read(*file));
        EXPECT_EQ(info.compressionMethod, 0);
        EXPECT_FALSE(info.encrypted);
    }
}

TEST_F(Packages, StoreTheChecksumThatZipDefines)
{
    Write("digits.txt", "123456789");
    const UsdZipFile package = UsdZipFile::Open(Pack("a.usdz", {"digits.txt"}));
    EXPECT_EQ(package.begin().GetFileInfo().crc, 0xcbf43926u); // the check value of CRC-32
}

TEST_F(Packages, FindFilesByTheirExactNames)
{
    const UsdZipFile package = UsdZipFile::Open(Pack("a.usdz", {"main.usda", "sub/part.usda"}));
    EXPECT_EQ(*package.Find("sub/part.usda"), "sub/part.usda");
    for (const char* name : {"part.usda", "sub/../main.usda", "./main.usda", "MAIN.usda", "../main.usda"}) {
        EXPECT_EQ(package.Find(name), package.end()) << name;
        const std::string path = File("a.usdz") + "[" + name + "]";
        EXPECT_TRUE(ArGetResolver().Resolve(path).IsEmpty()) << name;
        EXPECT_FALSE(ArGetResolver().OpenAsset(ArResolvedPath(path))) << name;
    }
}

TEST_F(Packages, NamesAreNormalizedAndAddedOnce)
{
    UsdZipFileWriter writer = UsdZipFileWriter::CreateNew(File("a.usdz"));
    EXPECT_EQ(writer.AddFile(File("main.usda"), "/x/./y/../main.usda"), "x/main.usda");
    EXPECT_EQ(writer.AddFile(File("main.usda"), "x\\main.usda"), "x/main.usda");
    EXPECT_EQ(writer.AddFile(File("main.usda")), File("main.usda").substr(1));
    ASSERT_TRUE(writer.Save());
    EXPECT_FALSE(writer);
    const UsdZipFile package = UsdZipFile::Open(File("a.usdz"));
    EXPECT_EQ(std::distance(package.begin(), package.end()), 2);
}

TEST_F(Packages, AnOldPackageStaysUntilTheNewOneIsSaved)
{
    Pack("a.usdz", {"main.usda"});
    const std::string before = Read("a.usdz");
    UsdZipFileWriter writer = UsdZipFileWriter::CreateNew(File("a.usdz"));
    writer.AddFile(File("sub/part.usda"), "part.usda");
    EXPECT_EQ(Read("a.usdz"), before);
    writer.Discard();
    EXPECT_EQ(Read("a.usdz"), before);
    EXPECT_EQ(std::distance(std::filesystem::directory_iterator(root), {}), 3);
}

TEST_F(Packages, WhatCannotBeAddedIsOneError)
{
    UsdZipFileWriter writer = UsdZipFileWriter::CreateNew(File("a.usdz"));
    EXPECT_EQ(writer.AddFile(File("none.usda")), "");
    EXPECT_EQ(TakeErrors(), std::vector<std::string>{"Cannot add @" + File("none.usda") + "@ to package @" +
                                                     File("a.usdz") + "@: No such file or directory"});
    EXPECT_EQ(writer.AddFile(File("sub")), "");
    EXPECT_EQ(TakeErrors(), std::vector<std::string>{"Cannot add @" + File("sub") + "@ to package @" +
                                                     File("a.usdz") + "@: it is not a regular file"});
    EXPECT_FALSE(UsdZipFileWriter::CreateNew(File("none/a.usdz")));
    EXPECT_EQ(TakeErrors(), std::vector<std::string>{"Cannot write package @" + File("none/a.usdz") +
                                                     "@: No such file or directory"});
}

TEST_F(Packages, TheirFilesAreAssetsAtAnOffset)
{
    const std::string path = Pack("a.usdz", {"main.usda", "sub/wood.png"});
    const std::string inside = path + "[sub/wood.png]";
    EXPECT_EQ(ArGetResolver().Resolve(inside), inside);
    EXPECT_EQ(ContentOf(inside), Read("sub/wood.png"));
    const std::shared_ptr<ArAsset> asset = ArGetResolver().OpenAsset(ArResolvedPath(inside));
    const std::pair<FILE*, size_t> file = asset->GetFileUnsafe();
    ASSERT_TRUE(file.first);
    EXPECT_EQ(file.second, UsdZipFile::Open(path).Find("sub/wood.png").GetFileInfo().dataOffset);
    char some[8] = {};
    EXPECT_EQ(asset->Read(some, 3, 4), 3u);
    EXPECT_EQ(std::string(some), "a p");
    EXPECT_EQ(asset->Read(some, 8, asset->GetSize() - 2), 2u);
    EXPECT_EQ(asset->Read(some, 8, asset->GetSize() + 5), 0u);
}

TEST_F(Packages, ThatLieInPackagesAreOpenedToo)
{
    Pack("inner.usdz", {"sub/part.usda", "sub/wood.png"});
    const std::string outer = Pack("outer.usdz", {"main.usda", "inner.usdz"});
    const std::string inside = outer + "[inner.usdz[sub/wood.png]]";
    EXPECT_EQ(ArGetResolver().Resolve(inside), inside);
    EXPECT_EQ(ContentOf(inside), Read("sub/wood.png"));
    EXPECT_TRUE(ArGetResolver().Resolve(outer + "[main.usda[x]]").IsEmpty());
    const SdfLayerRefPtr layer = SdfLayer::FindOrOpen(outer + "[inner.usdz]");
    ASSERT_TRUE(layer);
    EXPECT_TRUE(layer->GetPrimAtPath(SdfPath("/Part")));
}

TEST_F(Packages, TheFirstFileIsTheLayer)
{
    const SdfLayerRefPtr layer = SdfLayer::FindOrOpen(Pack("a.usdz", {"main.usda", "sub/part.usda"}));
    ASSERT_TRUE(layer);
    EXPECT_TRUE(layer->GetPrimAtPath(SdfPath("/Main")));
    EXPECT_EQ(layer->GetFileFormat()->GetFormatId(), "usdz");
    EXPECT_FALSE(layer->PermissionToSave() && layer->Save(true));
    EXPECT_EQ(TakeErrors().size(), 1u);
}

TEST_F(Packages, RelativePathsAreSoughtInsideThePackage)
{
    const std::string path = Pack("a.usdz", {"main.usda", "sub/part.usda", "sub/wood.png"});
    const SdfLayerRefPtr main = SdfLayer::FindOrOpen(path);
    const SdfLayerRefPtr part = SdfLayer::FindOrOpen(path + "[sub/part.usda]");
    ASSERT_TRUE(main && part);
    EXPECT_EQ(SdfComputeAssetPathRelativeToLayer(main, "./sub/wood.png"), path + "[sub/wood.png]");
    EXPECT_EQ(SdfComputeAssetPathRelativeToLayer(main, "sub/wood.png"), path + "[sub/wood.png]");
    EXPECT_EQ(SdfComputeAssetPathRelativeToLayer(part, "./wood.png"), path + "[sub/wood.png]");
    EXPECT_EQ(SdfComputeAssetPathRelativeToLayer(part, "wood.png"), path + "[sub/wood.png]");
    // Not beside the layer, but beside the package's root layer.
    EXPECT_EQ(SdfComputeAssetPathRelativeToLayer(part, "sub/wood.png"), path + "[sub/wood.png]");
    // What begins with a dot stays in the package, be it there or not.
    EXPECT_EQ(SdfComputeAssetPathRelativeToLayer(part, "./none.png"), path + "[sub/none.png]");
    EXPECT_EQ(SdfComputeAssetPathRelativeToLayer(main, "/abs/wood.png"), "/abs/wood.png");
}

TEST_F(Packages, AreReadAnewWhenTheyWereReplaced)
{
    const std::string path = Pack("a.usdz", {"main.usda"});
    EXPECT_TRUE(ArGetResolver().Resolve(path + "[sub/wood.png]").IsEmpty());
    Pack("a.usdz", {"main.usda", "sub/wood.png"});
    EXPECT_FALSE(ArGetResolver().Resolve(path + "[sub/wood.png]").IsEmpty());
}

TEST_F(Packages, ThatAreDamagedAreOneErrorEach)
{
    const std::string path = Pack("a.usdz", {"main.usda", "sub/part.usda"});
    const std::string whole = Read("a.usdz");
    const auto errorOf = [&](const std::string& name, const std::string& content) {
        Write(name, content);
        EXPECT_FALSE(SdfLayer::FindOrOpen(File(name))) << name;
        std::vector<std::string> errors = TakeErrors();
        EXPECT_EQ(errors.size(), 1u) << name;
        const std::string prefix = "Cannot read layer @" + File(name) + "@: ";
        EXPECT_EQ(errors.at(0).substr(0, prefix.size()), prefix);
        return errors.at(0).substr(prefix.size());
    };
    EXPECT_EQ(errorOf("empty.usdz", ""),
              "the package is damaged: byte 0: the header of a file in a zip package is expected");
    EXPECT_EQ(errorOf("text.usdz", "#usda 1.0\n"),
              "the package is damaged: byte 0: the header of a file in a zip package is expected");
    EXPECT_EQ(errorOf("none.usdz", std::string("PK\x05\x06", 4) + std::string(18, '\0')),
              "the package holds no file; the first one is the layer");
    EXPECT_EQ(errorOf("head.usdz", whole.substr(0, 20)),
              "the package is damaged: byte 0: the package ends within the header of a file");
    EXPECT_EQ(
        errorOf("cut.usdz", whole.substr(0, 70)),
        "the package is damaged: byte 0: a file of 24 bytes is announced, but the package ends after 40 "
        "bytes");
    std::string name = whole;
    name[31] = '\0';
    EXPECT_EQ(errorOf("name.usdz", name),
              "the package is damaged: byte 0: the name of a file holds a NUL byte");
    std::string sizes = whole;
    sizes[22] = 1;
    EXPECT_EQ(errorOf("sizes.usdz", sizes), "the package is damaged: byte 0: a stored file has two sizes");
    std::string packed = whole;
    packed[8] = 8;
    Write("packed.usdz", packed);
    EXPECT_FALSE(SdfLayer::FindOrOpen(File("packed.usdz")));
    const std::string inside = File("packed.usdz") + "[main.usda]";
    const std::string why = "@: it is compressed, and only files that are stored as they are can be read";
    EXPECT_EQ(TakeErrors(), std::vector<std::string>{"Cannot read layer @" + inside + why});
    EXPECT_FALSE(ArGetResolver().OpenAsset(ArResolvedPath(inside)));
    EXPECT_EQ(TakeErrors(), std::vector<std::string>{"Cannot open @" + inside + why});
}

TEST_F(Packages, CutAnywhereAreReadOrOneError)
{
    Pack("a.usdz", {"main.usda"});
    const std::string whole = Read("a.usdz");
    for (size_t size = 0; size < whole.size(); ++size) {
        Write("cut.usdz", whole.substr(0, size));
        const bool opened = static_cast<bool>(SdfLayer::OpenAsAnonymous(File("cut.usdz")));
        EXPECT_EQ(TakeErrors().size(), opened ? 0u : 1u) << size;
    }
}
