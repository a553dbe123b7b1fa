#pragma once

#include <filesystem>

namespace vesk::apps {

/// A new folder among the system's temporary ones, removed with all it holds when the object dies.
class TemporaryFolder
{
public:
    /// Throws: `JobError` when none can be made.
    TemporaryFolder();
    ~TemporaryFolder();
    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;

    const std::filesystem::path& path() const { return m_path; }

private:
    std::filesystem::path m_path;
};

} // namespace vesk::apps
