#include "pxr/usd/sdf/wholeFile.h"

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <memory>
#include <new>
#include <sys/stat.h>
#include <unistd.h>

PXR_NAMESPACE_OPEN_SCOPE

namespace {

// A descriptor that closes itself.
class Descriptor
{
public:
    explicit Descriptor(int fd) : _fd(fd) {}
    Descriptor(const Descriptor&) = delete;
    Descriptor& operator=(const Descriptor&) = delete;
    ~Descriptor()
    {
        if (_fd >= 0) {
            close(_fd);
        }
    }
    int Get() const { return _fd; }
    int Release()
    {
        const int fd = _fd;
        _fd = -1;
        return fd;
    }

private:
    int _fd;
};

bool fail(std::string* whyNot, const std::string& reason)
{
    *whyNot = reason;
    return false;
}

std::string reasonOf(int error) { return std::strerror(error); }

bool writeAll(int fd, const std::string& bytes)
{
    for (size_t done = 0; done < bytes.size();) {
        const ssize_t n = write(fd, bytes.data() + done, bytes.size() - done);
        if (n < 0 && errno == EINTR) {
            continue;
        }
        if (n <= 0) {
            return false;
        }
        done += static_cast<size_t>(n);
    }
    return true;
}

// A link is followed, so that the file that it names is replaced and not the link.
std::string followLinks(const std::string& path)
{
    const std::unique_ptr<char, void (*)(void*)> real(realpath(path.c_str(), nullptr), &std::free);
    return real ? std::string(real.get()) : path;
}

mode_t modeFor(const std::string& path)
{
    struct stat status;
    if (stat(path.c_str(), &status) == 0) {
        return status.st_mode & 07777;
    }
    const mode_t mask = umask(0);
    umask(mask);
    return 0666 & ~mask;
}

} // namespace

bool Sdf_ReadWholeFile(const std::string& path, std::string* bytes, std::string* whyNot)
{
    if (path.find('\0') != std::string::npos) {
        return fail(whyNot, "its name holds a NUL byte");
    }
    const Descriptor file(open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK));
    struct stat status;
    if (file.Get() < 0 || fstat(file.Get(), &status) != 0) {
        return fail(whyNot, reasonOf(errno));
    }
    if (!S_ISREG(status.st_mode)) {
        return fail(whyNot, S_ISDIR(status.st_mode) ? "it is a directory, and a layer is a file"
                                                    : "it is not a regular file");
    }
    try {
        bytes->resize(static_cast<size_t>(status.st_size));
    } catch (const std::exception&) {
        return fail(whyNot, "there is not enough memory to read it");
    }
    size_t done = 0;
    while (done < bytes->size()) {
        const ssize_t n = read(file.Get(), bytes->data() + done, bytes->size() - done);
        if (n < 0 && errno != EINTR) {
            return fail(whyNot, reasonOf(errno));
        }
        if (n == 0) {
            return fail(whyNot, "it became shorter while it was read");
        }
        done += n > 0 ? static_cast<size_t>(n) : 0;
    }
    return true;
}

std::string Sdf_ReadFileStart(const std::string& path, size_t count)
{
    const Descriptor file(open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK));
    std::string bytes(count, '\0');
    const ssize_t n = file.Get() < 0 ? -1 : read(file.Get(), bytes.data(), count);
    bytes.resize(n > 0 ? static_cast<size_t>(n) : 0);
    return bytes;
}

bool Sdf_ReplaceFile(const std::string& path, const std::string& bytes, std::string* whyNot)
{
    if (path.find('\0') != std::string::npos) {
        return fail(whyNot, "its name holds a NUL byte");
    }
    const std::string target = followLinks(path);
    struct stat status;
    if (stat(target.c_str(), &status) == 0 && !S_ISREG(status.st_mode)) {
        return fail(whyNot, S_ISDIR(status.st_mode) ? "it is a directory" : "it is not a regular file");
    }
    if (access(target.c_str(), F_OK) == 0 && access(target.c_str(), W_OK) != 0) {
        return fail(whyNot, reasonOf(errno));
    }
    std::string aside = target + ".XXXXXX";
    Descriptor file(mkostemp(aside.data(), O_CLOEXEC));
    if (file.Get() < 0) {
        return fail(whyNot, reasonOf(errno));
    }
    const bool written = fchmod(file.Get(), modeFor(target)) == 0 && writeAll(file.Get(), bytes);
    const int writeError = errno;
    const bool closed = close(file.Release()) == 0;
    if (!written || !closed || rename(aside.c_str(), target.c_str()) != 0) {
        *whyNot = reasonOf(written ? errno : writeError);
        unlink(aside.c_str());
        return false;
    }
    return true;
}

PXR_NAMESPACE_CLOSE_SCOPE
