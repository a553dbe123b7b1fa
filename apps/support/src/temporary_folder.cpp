#include <apps/support/temporary_folder.h>

#include <apps/support/errors.h>

#include <cerrno>
#include <cstring>
#include <stdlib.h>
#include <string>
#include <system_error>

namespace vesk::apps {

TemporaryFolder::TemporaryFolder()
{
    std::error_code error;
    const std::filesystem::path parent = std::filesystem::temp_directory_path(error);
    if (error)
        throw JobError("there is no folder for temporary files: " + error.message() + "; set TMPDIR to one");
    std::string name = (parent / "vesk.XXXXXX").string();
    if (!::mkdtemp(name.data())) {
        throw JobError("cannot make a folder in '" + parent.string() + "': " + std::strerror(errno) +
                       "; set TMPDIR to one that can be written");
    }
    m_path = name;
}

TemporaryFolder::~TemporaryFolder()
{
    std::error_code ignored;
    std::filesystem::remove_all(m_path, ignored);
}

} // namespace vesk::apps
