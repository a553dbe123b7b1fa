#pragma once

#include "run_cli.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <sstream>
#include <string>
#include <vector>

namespace vesk::cli::tests {

using Json = nlohmann::ordered_json;

/// Replays scripts on a small scene.
class Replay : public ::testing::Test
{
protected:
    /// Replays a script and returns its lines.
    std::vector<Json> replay(const std::string& script)
    {
        const CliResult result = runScript(script);
        EXPECT_EQ(result.exitCode, 0) << result.err;
        std::vector<Json> lines;
        std::istringstream text(result.out);
        for (std::string line; std::getline(text, line);)
            lines.push_back(Json::parse(line));
        return lines;
    }

    CliResult runScript(const std::string& script)
    {
        return runCli({"replay", m_scene, m_folder.write("script.json", script).string()});
    }

    vesk::tests::TemporaryFolder m_folder;
    const std::string m_scene = m_folder.write("scene.usda", kScene).string();
};

} // namespace vesk::cli::tests
