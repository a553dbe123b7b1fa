#pragma once

#include <filesystem>
#include <string>
#include <string_view>

namespace vesk::tests {

/// A folder of its own for one test's files; it and all that lies in it are removed when the object dies.
class TemporaryFolder
{
public:
    /// Throws: std::filesystem::filesystem_error when the system's temporary folder cannot be written.
    TemporaryFolder();
    ~TemporaryFolder();
    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;

    const std::filesystem::path& path() const { return m_path; }

    /// Writes `text` to a file of this folder, subfolders included, and returns the file's full path.
    std::filesystem::path write(const std::filesystem::path& name, std::string_view text) const;

private:
    std::filesystem::path m_path;
};

/// Reads a whole file as bytes; an unreadable file gives an empty string.
std::string readFile(const std::filesystem::path& path);

} // namespace vesk::tests
