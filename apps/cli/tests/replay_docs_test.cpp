#include "replay_fixture.h"

#include <regex>

namespace vesk::cli::tests {
namespace {

/// The text between a line of three backticks and the word, and the next line of three backticks, in the
/// example.
std::string fenced(const std::string& document, const std::string& word)
{
    const std::size_t example = document.find("\n## An example\n");
    const std::string opening = "\n```" + word + "\n";
    const std::size_t begin = document.find(opening, example);
    if (example == std::string::npos || begin == std::string::npos) return {};
    const std::size_t from = begin + opening.size();
    return document.substr(from, document.find("\n```\n", from) + 1 - from);
}

/// Ids count up within a process, and other tests have been here before.
std::string withoutIds(const std::string& lines)
{
    return std::regex_replace(lines, std::regex(R"re("documentId":"[^"]*","viewportId":[0-9]+)re"), "ids");
}

TEST_F(Replay, PrintsWhatTheDocumentationShows)
{
    const std::string document = vesk::tests::readFile(std::string(VESK_SOURCE_FOLDER) + "/docs/replay.md");
    const std::string scene = m_folder.write("example.usda", fenced(document, "usda")).string();
    const std::string script = m_folder.write("example.json", fenced(document, "json")).string();
    // The lines follow the last of the three fences, which has no word of its own.
    const std::string lines =
        fenced(document.substr(document.find("What it prints:")).insert(0, "\n## An example\n"), "");
    const CliResult result = runCli({"replay", scene, script});
    EXPECT_EQ(result.exitCode, 0) << result.err;
    EXPECT_EQ(withoutIds(result.out), withoutIds(lines));
    EXPECT_NE(lines, "");
}

} // namespace
} // namespace vesk::cli::tests
