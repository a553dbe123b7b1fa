#include <tests/support/scene_files.h>

#include <atomic>
#include <fstream>
#include <iterator>
#include <system_error>
#include <unistd.h>

namespace vesk::tests {

TemporaryFolder::TemporaryFolder()
{
    static std::atomic<unsigned> s_next{0};
    const std::string name = "vesk-test-" + std::to_string(::getpid()) + "-" + std::to_string(s_next++);
    m_path = std::filesystem::temp_directory_path() / name;
    std::filesystem::create_directories(m_path);
}

TemporaryFolder::~TemporaryFolder()
{
    std::error_code ignored;
    std::filesystem::remove_all(m_path, ignored);
}

std::filesystem::path TemporaryFolder::write(const std::filesystem::path& name, std::string_view text) const
{
    const std::filesystem::path file = m_path / name;
    std::filesystem::create_directories(file.parent_path());
    std::ofstream(file, std::ios::binary) << text;
    return file;
}

std::string readFile(const std::filesystem::path& path)
{
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

} // namespace vesk::tests
