#include <apps/support/outputs.h>

#include <apps/support/errors.h>
#include <tests/support/scene_files.h>

#include <gtest/gtest.h>

#include <functional>

namespace vesk::apps {
namespace {

std::vector<std::string> planned(const std::filesystem::path& file, const std::vector<std::string>& aovs)
{
    std::vector<std::string> texts;
    for (const Output& output : planOutputs(file, aovs))
        texts.push_back(output.aov + " " + output.file.string());
    return texts;
}

template <class Error>
std::string errorOf(const std::function<void()>& action)
{
    try {
        action();
    } catch (const Error& error) {
        return error.what();
    }
    return "";
}

using Texts = std::vector<std::string>;

TEST(PlanOutputs, WritesColourToTheFileWhenNothingElseIsAskedFor)
{
    EXPECT_EQ(planned("out/a.png", {}), (Texts{"color out/a.png"}));
}

TEST(PlanOutputs, WritesOneOutputToTheFileItself)
{
    EXPECT_EQ(planned("a.exr", {"depth"}), (Texts{"depth a.exr"}));
}

TEST(PlanOutputs, PutsTheOutputsNameBeforeTheExtensionForSeveral)
{
    EXPECT_EQ(planned("out/a.png", {"color", "depth"}),
              (Texts{"color out/a.color.png", "depth out/a.depth.exr"}));
}

TEST(PlanOutputs, TakesExtensionsInCapitals) { EXPECT_EQ(planned("A.PNG", {}), (Texts{"color A.PNG"})); }

TEST(PlanOutputs, RefusesAnUnknownPictureFormat)
{
    EXPECT_EQ(errorOf<UsageError>([] { planOutputs("a.jpg", {}); }), "'a.jpg' must end in .png or .exr");
}

TEST(PlanOutputs, RefusesDecimalsInPng)
{
    EXPECT_EQ(errorOf<UsageError>([] { planOutputs("a.png", {"depth"}); }),
              "'a.png' must end in .exr: the output 'depth' holds decimals");
}

TEST(RequireWritable, NamesAMissingFolder)
{
    EXPECT_EQ(
        errorOf<JobError>([] { requireWritable("/no/such/folder/a.png"); }),
        "cannot write '/no/such/folder/a.png': the folder '/no/such/folder' does not exist; create it first");
}

TEST(RequireWritable, NamesAFolderThatStandsInThePlaceOfTheFile)
{
    const tests::TemporaryFolder folder;
    const std::string name = folder.path().string();
    EXPECT_EQ(errorOf<JobError>([&] { requireWritable(name); }),
              "cannot write '" + name + "': it is a folder; name a file in it");
}

TEST(RequireWritable, LetsAGoodFilePass)
{
    const tests::TemporaryFolder folder;
    EXPECT_EQ(errorOf<JobError>([&] { requireWritable(folder.path() / "a.png"); }), "");
}

} // namespace
} // namespace vesk::apps
