#pragma once

#include <filesystem>

namespace vesk::apps {

/// A file beside the one that is to be written: it takes its place when it is whole, so that nobody ever sees
/// half a file, and is removed when the object dies before. Its name is nobody else's: a file that exists is
/// never written to.
class SideFile
{
public:
    /// Makes the empty file. Throws: `JobError` when it cannot be made.
    explicit SideFile(std::filesystem::path target);
    ~SideFile();
    SideFile(const SideFile&) = delete;
    SideFile& operator=(const SideFile&) = delete;

    const std::filesystem::path& path() const { return m_path; }

    /// Puts the file into its target's place. Throws: `JobError` when that is impossible.
    void moveToPlace();

private:
    std::filesystem::path m_target;
    std::filesystem::path m_path;
    bool m_moved = false;
};

} // namespace vesk::apps
