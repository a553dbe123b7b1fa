#include "targets.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <ostream>
#include <string>
#include <vector>

namespace {

std::vector<std::filesystem::path> inputsOf(const char* target)
{
    std::vector<std::filesystem::path> inputs;
    for (const auto& entry :
         std::filesystem::directory_iterator(std::filesystem::path(VESK_FUZZ_CORPUS) / target)) {
        inputs.push_back(entry.path());
    }
    std::sort(inputs.begin(), inputs.end());
    return inputs;
}

std::string readFile(const std::filesystem::path& path)
{
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

// Test names show the target's name, not its addresses.
struct Named : vesk::fuzz::Target
{
    explicit Named(const vesk::fuzz::Target& target) : Target(target) {}
    friend void PrintTo(const Named& target, std::ostream* out) { *out << target.name; }
};

class Replay : public testing::TestWithParam<Named>
{};

} // namespace

TEST_P(Replay, KeptInputsEndWell)
{
    // Where one ends badly, VESK_REPLAY_NAMES=1 tells which.
    const bool names = std::getenv("VESK_REPLAY_NAMES") != nullptr;
    const auto inputs = inputsOf(GetParam().name);
    EXPECT_GE(inputs.size(), 100u);
    for (const std::filesystem::path& input : inputs) {
        if (names) {
            std::fprintf(stderr, "%s\n", input.c_str());
        }
        GetParam().run(readFile(input));
    }
}

INSTANTIATE_TEST_SUITE_P(Of, Replay,
                         testing::ValuesIn(std::vector<Named>(vesk::fuzz::targets().begin(),
                                                              vesk::fuzz::targets().end())),
                         [](const auto& of) { return std::string(of.param.name); });
