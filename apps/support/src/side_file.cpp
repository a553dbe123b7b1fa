#include <apps/support/side_file.h>

#include <apps/support/errors.h>

#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <string>
#include <system_error>
#include <unistd.h>

namespace vesk::apps {
namespace {

[[noreturn]] void fail(const std::filesystem::path& target, const std::string& reason)
{
    throw JobError("cannot write '" + target.string() + "': " + reason);
}

} // namespace

SideFile::SideFile(std::filesystem::path target) : m_target(std::move(target))
{
    for (unsigned number = 0;; ++number) {
        m_path = m_target;
        m_path += "." + std::to_string(::getpid()) + "-" + std::to_string(number) + ".partial";
        const int file = ::open(m_path.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666);
        if (file >= 0) {
            ::close(file);
            return;
        }
        if (errno != EEXIST) fail(m_target, std::strerror(errno));
    }
}

SideFile::~SideFile()
{
    std::error_code ignored;
    if (!m_moved) std::filesystem::remove(m_path, ignored);
}

void SideFile::moveToPlace()
{
    std::error_code error;
    std::filesystem::rename(m_path, m_target, error);
    if (error) fail(m_target, error.message());
    m_moved = true;
}

} // namespace vesk::apps
