#include <filesystem>
#include <set>

#include <sys/stat.h>

#include <tests/support/scene_files.h>

#include "document_fixture.h"

using namespace vesk::framework::usd_document::tests;
using namespace vesk::framework::usd_document;
using vesk::base::Future;
using vesk::tests::LogCapture;
using vesk::tests::readFile;
using vesk::tests::TemporaryFolder;
namespace fs = std::filesystem;

namespace {

constexpr const char* kScene = "#usda 1.0\ndef Cube \"Box\"\n{\n    double size = 2\n}\n";

DocumentOptions manual()
{
    DocumentOptions options;
    options.manual = true;
    return options;
}

/// The code and the sentence of the failure.
std::pair<int, std::string> failureOf(const std::function<void()>& call)
{
    try {
        call();
    } catch (const DocumentException& error) {
        EXPECT_STREQ(error.code().category().name(), "DocumentError");
        return {error.code().value(), error.what()};
    }
    return {0, "nothing was thrown"};
}

std::pair<int, std::string> openFailure(const std::string& path)
{
    return failureOf([&] { UsdDocument::open(path); });
}

template <class T>
std::pair<int, std::string> failureOf(const Future<T>& future)
{
    return failureOf([&] { future.get(); });
}

using Failure = std::pair<int, std::string>;

} // namespace

TEST(Open, ReadsASceneAndKnowsItsUri)
{
    const TemporaryFolder folder;
    const std::string path = folder.write("scene.usda", kScene).string();
    const auto document = UsdDocument::open(path, {}, manual());
    EXPECT_EQ(document->getURI(), path);
    const Future<bool> valid = document->read("look", [](const Context& context) {
        return context.stage()->GetPrimAtPath(SdfPath("/Box")).IsValid();
    });
    document->runPendingTasks();
    EXPECT_TRUE(valid.get());
}

TEST(Open, NamesAFileThatIsNotThere)
{
    EXPECT_EQ(openFailure("/nowhere/scene.usda"),
              Failure(1, "Cannot open '/nowhere/scene.usda': there is no such file; check the path."));
    EXPECT_EQ(openFailure(""), Failure(1, "Cannot open '': the file name is empty; name a scene file."));
    EXPECT_EQ(openFailure(std::string("a\0b.usda", 8)).second.substr(12),
              std::string("'a\0b.usda': the file name holds a NUL character; remove it.", 58).c_str());
}

TEST(Open, RefusesADirectoryAndOtherThingsThatAreNoFiles)
{
    const TemporaryFolder folder;
    const std::string directory = folder.path().string();
    EXPECT_EQ(openFailure(directory),
              Failure(2, "Cannot open '" + directory + "': it is a directory; name a scene file inside it."));
    const std::string fifo = (folder.path() / "pipe.usda").string();
    ASSERT_EQ(mkfifo(fifo.c_str(), 0600), 0);
    EXPECT_EQ(openFailure(fifo),
              Failure(2, "Cannot open '" + fifo + "': it is not a regular file; name a scene file."));
}

TEST(Open, RefusesAFormatThatItDoesNotKnow)
{
    const TemporaryFolder folder;
    const std::string path = folder.write("scene.xyz", kScene).string();
    EXPECT_EQ(openFailure(path),
              Failure(4, "Cannot open '" + path +
                             "': its name does not end as a scene's does; use a .usda, .usdc, .usd or "
                             ".usdz file."));
}

TEST(Open, SaysWhereASyntaxErrorIsInOneLine)
{
    const TemporaryFolder folder;
    const LogCapture log;
    const std::string path =
        folder.write("broken.usda", "#usda 1.0\ndef Cube \"Box\"\n{\n    double size 2\n}\n").string();
    const auto [code, sentence] = openFailure(path);
    EXPECT_EQ(code, 5);
    EXPECT_EQ(sentence.rfind("Cannot open '" + path + "': ", 0), 0u) << sentence;
    EXPECT_NE(sentence.find("4"), std::string::npos) << "the line: " << sentence;
    EXPECT_EQ(sentence.find('\n'), std::string::npos) << sentence;
}

TEST(Open, LeavesNothingBehindWhenItFails)
{
    const TemporaryFolder folder;
    const std::string path = folder.write("broken.usda", "#usda 1.0\ndef {").string();
    const std::size_t before = SdfLayer::GetLoadedLayers().size();
    openFailure(path);
    EXPECT_EQ(SdfLayer::GetLoadedLayers().size(), before);
}

TEST(Open, ReportsProgressStepByStep)
{
    const TemporaryFolder folder;
    folder.write("a.usda", "#usda 1.0\n(\n    subLayers = [@./b.usda@]\n)\n");
    folder.write("b.usda", kScene);
    const std::string root =
        folder.write("root.usda", "#usda 1.0\n(\n    subLayers = [@./a.usda@, @./b.usda@]\n)\n").string();
    std::vector<LoadProgress> steps;
    OpenOptions options;
    options.progress = [&](const LoadProgress& progress) { steps.push_back(progress); };
    UsdDocument::open(root, options, manual());
    ASSERT_GE(steps.size(), 7u);
    EXPECT_EQ(steps.front().phase, LoadProgress::Phase::Checking);
    EXPECT_EQ(steps[1].phase, LoadProgress::Phase::ReadingLayers);
    EXPECT_EQ(steps[2].item, "./a.usda");
    EXPECT_EQ(steps[2].done, 1u);
    EXPECT_EQ(steps[2].total, 3u);
    EXPECT_EQ(steps.back().phase, LoadProgress::Phase::Finished);
    for (std::size_t i = 1; i < steps.size(); ++i)
        EXPECT_LE(steps[i - 1].phase, steps[i].phase);
}

TEST(Open, EndsOnASublayerCycle)
{
    const TemporaryFolder folder;
    const std::string a = folder.write("a.usda", "#usda 1.0\n(\n    subLayers = [@./b.usda@]\n)\n").string();
    folder.write("b.usda", "#usda 1.0\n(\n    subLayers = [@./a.usda@]\n)\ndef \"B\" {}\n");
    EXPECT_TRUE(UsdDocument::open(a, {}, manual()));
}

TEST(Open, CanBeCancelledAtEveryStep)
{
    const TemporaryFolder folder;
    folder.write("a.usda", kScene);
    const std::string path =
        folder.write("root.usda", "#usda 1.0\n(\n    subLayers = [@./a.usda@]\n)\n").string();
    std::size_t steps = 0;
    OpenOptions counting;
    counting.progress = [&](const LoadProgress&) { ++steps; };
    UsdDocument::open(path, counting, manual());
    const std::size_t layersBefore = SdfLayer::GetLoadedLayers().size();
    for (std::size_t last = 0; last < steps; ++last) {
        OpenOptions options;
        if (last == 0) options.cancellation.cancel();
        std::size_t seen = 0;
        options.progress = [&](const LoadProgress&) {
            if (++seen == last) options.cancellation.cancel();
        };
        EXPECT_EQ(failureOf([&] { UsdDocument::open(path, options, manual()); }),
                  Failure(6, "Cannot open '" + path + "': the load was cancelled; open it again to see it."));
        EXPECT_EQ(seen, last);
        EXPECT_EQ(SdfLayer::GetLoadedLayers().size(), layersBefore);
    }
}

TEST(OpenAsync, YieldsTheDocumentOrTheFailure)
{
    const TemporaryFolder folder;
    const std::string path = folder.write("scene.usda", kScene).string();
    EXPECT_EQ(UsdDocument::openAsync(path, {}, manual()).get()->getURI(), path);
    EXPECT_EQ(failureOf(UsdDocument::openAsync("/nowhere/scene.usda")).first, 1);
}

TEST(Save, WritesTheChangedLayer)
{
    const TemporaryFolder folder;
    const fs::path path = folder.write("scene.usda", kScene);
    const auto document = UsdDocument::open(path.string(), {}, manual());
    document->edit("change", [](const Context& context) {
        context.stage()->GetAttributeAtPath(SdfPath("/Box.size")).Set(7.0);
    });
    const Future<void> saved = document->save();
    document->runPendingTasks();
    EXPECT_EQ(endOf(saved), "value");
    EXPECT_NE(readFile(path).find("double size = 7"), std::string::npos);
    EXPECT_EQ(document->undoLabels(), Labels{"change"}) << "a saved edit can still be undone";
}

TEST(Save, AsksForANameWhenThereIsNone)
{
    const auto document = UsdDocument::create(manual());
    const Future<void> saved = document->save();
    document->runPendingTasks();
    EXPECT_EQ(failureOf(saved), Failure(7, "Cannot save '" + document->getURI() +
                                               "': the scene has no file yet; save it under a name first."));
}

TEST(SaveAs, WritesTheSceneAndMovesTheUri)
{
    const TemporaryFolder folder;
    const auto document = UsdDocument::create(manual());
    document->edit("make", [](const Context& context) { context.stage()->DefinePrim(SdfPath("/Box")); });
    const fs::path path = folder.path() / "new.usda";
    const Future<std::string> saved = document->saveAs(path.string());
    document->runPendingTasks();
    EXPECT_EQ(saved.get(), path.string());
    EXPECT_EQ(document->getURI(), path.string());
    EXPECT_NE(readFile(path).find("def \"Box\""), std::string::npos);
    EXPECT_EQ(std::distance(fs::directory_iterator(folder.path()), fs::directory_iterator()), 1)
        << "nothing lies beside the file";
}

TEST(SaveAs, NamesWhatStandsInItsWayAndChangesNothing)
{
    const TemporaryFolder folder;
    const auto document = UsdDocument::create(manual());
    const std::string uri = document->getURI();
    const auto failure = [&](const std::string& path) {
        const Future<std::string> saved = document->saveAs(path);
        document->runPendingTasks();
        return failureOf(saved);
    };
    const std::string missing = (folder.path() / "missing" / "a.usda").string();
    EXPECT_EQ(failure(missing),
              Failure(7, "Cannot save '" + missing + "': the folder '" +
                             (folder.path() / "missing").string() + "' does not exist; create it first."));
    const std::string format = (folder.path() / "a.xyz").string();
    EXPECT_EQ(failure(format),
              Failure(4, "Cannot save '" + format +
                             "': scenes are not written in this format; use a .usda, .usdc or .usd "
                             "file."));
    fs::create_directory(folder.path() / "d.usda");
    const std::string directory = (folder.path() / "d.usda").string();
    EXPECT_EQ(failure(directory),
              Failure(7, "Cannot save '" + directory + "': it is a directory; name a file inside it."));
    EXPECT_EQ(document->getURI(), uri);
    EXPECT_EQ(std::distance(fs::directory_iterator(folder.path()), fs::directory_iterator()), 1);
}

TEST(Reload, BringsTheFileBackAndForgetsWhatCouldBeUndone)
{
    const TemporaryFolder folder;
    const fs::path path = folder.write("scene.usda", kScene);
    const auto document = UsdDocument::open(path.string(), {}, manual());
    document->edit("change", [](const Context& context) {
        context.stage()->GetAttributeAtPath(SdfPath("/Box.size")).Set(7.0);
    });
    const Future<void> reloaded = document->reload();
    const Future<double> size = document->read("look", [](const Context& context) {
        double value = 0.0;
        context.stage()->GetAttributeAtPath(SdfPath("/Box.size")).Get(&value);
        return value;
    });
    document->runPendingTasks();
    EXPECT_EQ(endOf(reloaded), "value");
    EXPECT_EQ(size.get(), 2.0);
    EXPECT_EQ(document->undoLabels(), Labels());
}

TEST(DocumentError, HasAMessageForEachCode)
{
    const std::error_category& category = vesk::base::error_handling::getErrorCategory<DocumentError>();
    const std::vector<std::string> messages{"Unknown DocumentError error",
                                            "File not found",
                                            "Not a file",
                                            "File not readable",
                                            "Unknown file format",
                                            "Invalid scene",
                                            "Cancelled",
                                            "File not writable",
                                            "Invalid edit target",
                                            "Unknown DocumentError error"};
    for (std::size_t code = 0; code < messages.size(); ++code)
        EXPECT_EQ(category.message(static_cast<int>(code)), messages[code]);
    EXPECT_STREQ(DocumentException(DocumentError::Cancelled, "a sentence").what(), "a sentence");
}
