#include "support.h"

#include <pxr/usd/sdf/fileFormat.h>
#include <pxr/usd/sdf/layerUtils.h>
#include <pxr/usd/sdf/primSpec.h>
#include <pxr/usd/sdf/schema.h>

#include <atomic>
#include <thread>

using namespace sdf_tests;

namespace {

const char* const kScene = "#usda 1.0\ndef \"A\" {}\n";

std::vector<std::string> errorsOfOpening(const std::string& path)
{
    Errors errors;
    EXPECT_FALSE(SdfLayer::FindOrOpen(path));
    EXPECT_FALSE(SdfLayer::Find(path));
    return errors.Take();
}

} // namespace

TEST(Layers, AreFoundAgainByAnyNameOfTheirFile)
{
    const TemporaryDirectory directory;
    const std::string file = directory.Write("a.usda", kScene);
    const SdfLayerRefPtr layer = SdfLayer::FindOrOpen(file);
    ASSERT_TRUE(layer);
    EXPECT_EQ(SdfLayer::FindOrOpen(directory.path + "/./x/../a.usda"), layer);
    EXPECT_EQ(SdfLayer::Find(file), layer);
    EXPECT_EQ(layer->GetIdentifier(), file);
    EXPECT_EQ(layer->GetRealPath(), file);
    EXPECT_EQ(layer->GetDisplayName(), "a.usda");
    EXPECT_EQ(SdfLayer::GetLoadedLayers().count(layer), 1u);
}

TEST(Layers, AreForgottenWithTheirLastReference)
{
    const TemporaryDirectory directory;
    const std::string file = directory.Write("a.usda", kScene);
    SdfLayerHandle weak;
    SdfPrimSpecHandle prim;
    {
        const SdfLayerRefPtr layer = SdfLayer::FindOrOpen(file);
        weak = layer;
        prim = layer->GetPrimAtPath(SdfPath("/A"));
        EXPECT_TRUE(prim);
    }
    EXPECT_FALSE(weak);
    EXPECT_FALSE(prim);
    EXPECT_FALSE(SdfLayer::Find(file));
}

TEST(Layers, OpenOnceFromManyThreads)
{
    const TemporaryDirectory directory;
    const std::string file = directory.Write("a.usda", kScene);
    std::vector<SdfLayerRefPtr> layers(8);
    std::vector<std::thread> threads;
    for (SdfLayerRefPtr& layer : layers) {
        threads.emplace_back([&layer, &file] { layer = SdfLayer::FindOrOpen(file); });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    for (const SdfLayerRefPtr& layer : layers) {
        EXPECT_TRUE(layer);
        EXPECT_EQ(layer, layers[0]);
    }
}

TEST(Layers, AreReadFromManyThreads)
{
    const auto layer = Parse("def \"A\" { int x = 1\n def \"B\" {}\n}\n");
    std::atomic<int> sum{0};
    std::vector<std::thread> threads;
    for (int i = 0; i < 4; ++i) {
        threads.emplace_back([&] {
            for (int n = 0; n < 1000; ++n) {
                sum += layer->GetFieldAs<int>(SdfPath("/A.x"), SdfFieldKeys->Default);
                sum += layer->GetPrimAtPath(SdfPath("/A"))->GetNameChildren().size() == 1 ? 1 : 0;
            }
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    EXPECT_EQ(sum, 8000);
}

TEST(Layers, AnonymousOnesHaveATagAndNoFile)
{
    const SdfLayerRefPtr layer = SdfLayer::CreateAnonymous("tag");
    EXPECT_TRUE(layer->IsAnonymous());
    EXPECT_EQ(layer->GetDisplayName(), "tag");
    EXPECT_EQ(layer->GetRealPath(), "");
    EXPECT_EQ(SdfLayer::Find(layer->GetIdentifier()), layer);
    EXPECT_NE(SdfLayer::CreateAnonymous("tag")->GetIdentifier(), layer->GetIdentifier());
    Errors errors;
    EXPECT_FALSE(layer->Save());
    EXPECT_EQ(errors.Take(),
              std::vector<std::string>{"Cannot save anonymous layer @" + layer->GetIdentifier() + "@"});
}

TEST(Layers, AFileThatIsNotThereIsNoError)
{
    const TemporaryDirectory directory;
    EXPECT_EQ(errorsOfOpening(directory.File("none.usda")), std::vector<std::string>());
    EXPECT_EQ(errorsOfOpening(""), std::vector<std::string>());
}

TEST(Layers, AFileThatCannotBeReadIsOneError)
{
    const TemporaryDirectory directory;
    const std::string broken = directory.Write("broken.usda", "#usda 1.0\ndef {\n");
    EXPECT_EQ(errorsOfOpening(broken),
              std::vector<std::string>{broken + ":2:5: found '{', expected a prim's type or its "
                                                "name between quotes"});
    const std::string empty = directory.Write("empty.usd", "");
    EXPECT_EQ(errorsOfOpening(empty),
              std::vector<std::string>{empty + ":1:1: found an empty file, expected a line such as #usda 1.0"});
    const std::string unknown = directory.Write("a.xyz", kScene);
    EXPECT_EQ(
        errorsOfOpening(unknown),
        std::vector<std::string>{"Cannot open layer @" + unknown +
                                 "@: no file format is known for the extension \"xyz\"; known are usd, usda, "
                                 "usdc, usdz"});
    const std::string bare = directory.Write("bare", kScene);
    EXPECT_EQ(errorsOfOpening(bare),
              std::vector<std::string>{"Cannot open layer @" + bare +
                                       "@: its name has no extension; known are usd, usda, "
                                       "usdc, usdz"});
    std::filesystem::create_directory(directory.File("dir.usda"));
    EXPECT_EQ(errorsOfOpening(directory.File("dir.usda")),
              std::vector<std::string>{"Cannot open layer @" + directory.File("dir.usda") +
                                       "@: it is a directory, and a layer is a file"});
}

TEST(Layers, ADamagedCrateFileIsOneError)
{
    const TemporaryDirectory directory;
    for (const char* name : {"c.usdc", "c.usd"}) {
        const std::string file = directory.Write(name, "PXR-USDC\x01");
        EXPECT_EQ(errorsOfOpening(file),
                  std::vector<std::string>{"Cannot read layer @" + file +
                                           "@: the crate file is damaged: header, byte 8: 80 bytes are "
                                           "expected, but only 1 are left"});
    }
}

TEST(Layers, ContentThatDoesNotFitTheExtensionIsOneError)
{
    const TemporaryDirectory directory;
    const std::string binary = directory.Write("c.usda", "PXR-USDC\x01");
    EXPECT_EQ(errorsOfOpening(binary),
              std::vector<std::string>{"Cannot read layer @" + binary +
                                       "@: its content is usdc, not text; let its name end in .usdc"});
    const std::string text = directory.Write("t.usdc", kScene);
    EXPECT_EQ(
        errorsOfOpening(text),
        std::vector<std::string>{"Cannot read layer @" + text +
                                 "@: the crate file is damaged: header, byte 0: \"PXR-USDC\" is expected"});
}

TEST(Layers, UsdFilesAreReadByTheirContent)
{
    const TemporaryDirectory directory;
    const SdfLayerRefPtr layer = SdfLayer::FindOrOpen(directory.Write("a.usd", kScene));
    ASSERT_TRUE(layer);
    EXPECT_EQ(layer->GetFileFormat()->GetFormatId(), "usd");
    EXPECT_EQ(layer->GetRootPrims().size(), 1u);
}

TEST(Layers, SavingReplacesTheFileAsAWhole)
{
    const TemporaryDirectory directory;
    const std::string file = directory.Write("a.usda", kScene);
    const SdfLayerRefPtr layer = SdfLayer::FindOrOpen(file);
    SdfPrimSpec::New(layer, "B", SdfSpecifierDef);
    ASSERT_TRUE(layer->Save());
    EXPECT_EQ(directory.Read("a.usda"), "#usda 1.0\n\ndef \"A\"\n{\n}\n\ndef \"B\"\n{\n}\n\n");
    EXPECT_EQ(std::distance(std::filesystem::directory_iterator(directory.path), {}), 1);
}

TEST(Layers, AFailedSaveLeavesTheFileAsItWas)
{
    const TemporaryDirectory directory;
    const std::string file = directory.Write("sub/a.usda", kScene);
    const SdfLayerRefPtr layer = SdfLayer::FindOrOpen(file);
    layer->SetDocumentation("changed");
    layer->SetPermissionToSave(false);
    Errors errors;
    EXPECT_FALSE(layer->Save());
    EXPECT_EQ(errors.Take(),
              std::vector<std::string>{"Cannot save layer @" + file + "@, saving not allowed"});
    EXPECT_EQ(directory.Read("sub/a.usda"), kScene);
    EXPECT_TRUE(layer->IsDirty());
}

TEST(Layers, ExportingToAPlaceThatIsNotThereIsOneError)
{
    const TemporaryDirectory directory;
    const auto layer = Parse("def \"A\" {}\n");
    Errors errors;
    const std::string file = directory.File("none/a.usda");
    EXPECT_FALSE(layer->Export(file));
    EXPECT_EQ(errors.Take(),
              std::vector<std::string>{"Cannot write layer @" + file + "@: No such file or directory"});
    EXPECT_FALSE(layer->Export(directory.File("none/a.usdc")));
    EXPECT_EQ(errors.Take(), std::vector<std::string>{"Cannot write layer @" + directory.File("none/a.usdc") +
                                                      "@: No such file or directory"});
    EXPECT_FALSE(layer->Export(directory.File("a.usdz")));
    EXPECT_EQ(errors.Take(), std::vector<std::string>{"Cannot export layer @" + directory.File("a.usdz") +
                                                      "@: writing usdz layers is not possible; write usda or "
                                                      "usdc instead"});
    EXPECT_FALSE(layer->Export(directory.path));
    EXPECT_EQ(errors.Take(),
              std::vector<std::string>{"Cannot write layer @" + directory.path + "@: it is a directory"});
}

TEST(Layers, ExportingWritesACopyWithAComment)
{
    const TemporaryDirectory directory;
    const auto layer = Parse("def \"A\" {}\n");
    ASSERT_TRUE(layer->Export(directory.File("b.usda"), "made by a test"));
    EXPECT_EQ(directory.Read("b.usda"), "#usda 1.0\n(\n    \"made by a test\"\n)\n\ndef \"A\"\n{\n}\n\n");
    EXPECT_EQ(layer->GetComment(), "");
}

TEST(Layers, CreatingNeedsANameThatIsFreeAndHasAKnownExtension)
{
    const TemporaryDirectory directory;
    const SdfLayerRefPtr layer = SdfLayer::CreateNew(directory.File("a.usda"));
    ASSERT_TRUE(layer);
    EXPECT_EQ(directory.Read("a.usda"), "#usda 1.0\n\n");
    Errors errors;
    EXPECT_FALSE(SdfLayer::CreateNew(directory.File("a.usda")));
    EXPECT_EQ(errors.Take(), std::vector<std::string>{"A layer already exists with identifier '" +
                                                      directory.File("a.usda") + "'"});
    EXPECT_FALSE(SdfLayer::CreateNew(directory.File("a.txt")));
    EXPECT_EQ(errors.Take(),
              std::vector<std::string>{"Cannot create new layer '" + directory.File("a.txt") +
                                       "': no file format is known for the extension \"txt\"; known "
                                       "are usd, usda, usdc, usdz"});
    EXPECT_FALSE(SdfLayer::CreateNew(directory.File("none/a.usda")));
    EXPECT_EQ(errors.Take().size(), 1u);
    EXPECT_FALSE(SdfLayer::Find(directory.File("none/a.usda")));
    EXPECT_FALSE(SdfLayer::CreateNew(""));
    EXPECT_EQ(errors.Take(),
              std::vector<std::string>{"Cannot create new layer '': cannot use empty identifier."});
}

TEST(Layers, ReloadingReadsTheFileAgain)
{
    const TemporaryDirectory directory;
    const std::string file = directory.Write("a.usda", kScene);
    const SdfLayerRefPtr layer = SdfLayer::FindOrOpen(file);
    EXPECT_FALSE(layer->Reload());
    layer->SetDocumentation("changed");
    EXPECT_TRUE(layer->Reload());
    EXPECT_EQ(layer->GetDocumentation(), "");
    EXPECT_FALSE(layer->IsDirty());
    directory.Write("a.usda", "#usda 1.0\ndef \"B\" {}\n");
    EXPECT_TRUE(layer->Reload(/* force = */ true));
    EXPECT_EQ(layer->GetRootPrims().keys(), std::vector<std::string>{"B"});
    directory.Write("a.usda", "broken");
    Errors errors;
    EXPECT_FALSE(layer->Reload(true));
    EXPECT_EQ(errors.Take().size(), 1u);
    EXPECT_EQ(layer->GetRootPrims().keys(), std::vector<std::string>{"B"});
}

TEST(Layers, RelativePathsFollowTheLayerThatNamesThem)
{
    const TemporaryDirectory directory;
    const SdfLayerRefPtr anchor = SdfLayer::FindOrOpen(directory.Write("sub/a.usda", kScene));
    const std::string other = directory.Write("b.usda", kScene);
    EXPECT_EQ(anchor->ComputeAbsolutePath("../b.usda"), other);
    EXPECT_EQ(SdfComputeAssetPathRelativeToLayer(anchor, "./c.usda"), directory.File("sub/c.usda"));
    EXPECT_EQ(SdfComputeAssetPathRelativeToLayer(anchor, "sought.usda"), "sought.usda");
    const SdfLayerRefPtr found = SdfLayer::FindOrOpenRelativeToLayer(anchor, "../b.usda");
    ASSERT_TRUE(found);
    EXPECT_EQ(found->GetIdentifier(), other);
}

TEST(Layers, ARenamedLayerIsFoundByItsNewName)
{
    const TemporaryDirectory directory;
    const SdfLayerRefPtr layer = SdfLayer::FindOrOpen(directory.Write("a.usda", kScene));
    layer->SetIdentifier(directory.File("b.usda"));
    EXPECT_EQ(SdfLayer::Find(directory.File("b.usda")), layer);
    EXPECT_FALSE(SdfLayer::Find(directory.File("a.usda")));
}

TEST(Layers, TransferTheirContent)
{
    const auto source = Parse("(doc = \"d\")\ndef \"A\" { int x = 1; }\n");
    const SdfLayerRefPtr target = SdfLayer::CreateAnonymous();
    target->TransferContent(source);
    EXPECT_EQ(Text(target), Text(source));
    EXPECT_TRUE(target->IsDirty());
    target->Clear();
    EXPECT_TRUE(target->IsEmpty());
    EXPECT_FALSE(source->IsEmpty());
}

TEST(Layers, SplitAndJoinArguments)
{
    std::string path;
    SdfLayer::FileFormatArguments args;
    ASSERT_TRUE(SdfLayer::SplitIdentifier("/a.usda:SDF_FORMAT_ARGS:k=v&x=y", &path, &args));
    EXPECT_EQ(path, "/a.usda");
    EXPECT_EQ(args, (SdfLayer::FileFormatArguments{{"k", "v"}, {"x", "y"}}));
    EXPECT_EQ(SdfLayer::CreateIdentifier(path, args), "/a.usda:SDF_FORMAT_ARGS:k=v&x=y");
}
