#include "pxr/usd/sdf/safeOutput.h"

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <memory>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>

PXR_NAMESPACE_OPEN_SCOPE

namespace {

constexpr size_t kGathered = 256 * 1024;

bool fail(std::string* whyNot, const std::string& reason)
{
    *whyNot = reason;
    return false;
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

Sdf_SafeOutput::~Sdf_SafeOutput() { _Abandon(); }

void Sdf_SafeOutput::_Abandon()
{
    if (_fd >= 0) {
        close(std::exchange(_fd, -1));
        unlink(_aside.c_str());
    }
}

bool Sdf_SafeOutput::Open(const std::string& path, std::string* whyNot)
{
    if (path.find('\0') != std::string::npos) {
        return fail(whyNot, "its name holds a NUL byte");
    }
    _target = followLinks(path);
    struct stat status;
    if (stat(_target.c_str(), &status) == 0 && !S_ISREG(status.st_mode)) {
        return fail(whyNot, S_ISDIR(status.st_mode) ? "it is a directory" : "it is not a regular file");
    }
    if (access(_target.c_str(), F_OK) == 0 && access(_target.c_str(), W_OK) != 0) {
        return fail(whyNot, std::strerror(errno));
    }
    _aside = _target + ".XXXXXX";
    _fd = mkostemp(_aside.data(), O_CLOEXEC);
    if (_fd < 0) {
        return fail(whyNot, std::strerror(errno));
    }
    if (fchmod(_fd, modeFor(_target)) != 0) {
        _error = errno;
    }
    return true;
}

void Sdf_SafeOutput::_Put(const char* bytes, size_t count)
{
    while (_error == 0 && count > 0) {
        const ssize_t n = write(_fd, bytes, count);
        if (n > 0) {
            bytes += n;
            count -= static_cast<size_t>(n);
        } else if (n == 0 || errno != EINTR) {
            _error = n == 0 ? EIO : errno;
        }
    }
}

void Sdf_SafeOutput::_Flush()
{
    _Put(_pending.data(), _pending.size());
    _pending.clear();
}

void Sdf_SafeOutput::Write(const void* bytes, size_t count)
{
    const char* from = static_cast<const char*>(bytes);
    _size += count;
    if (_pending.size() + count > kGathered) {
        _Flush();
    }
    if (count > kGathered) {
        _Put(from, count);
    } else {
        _pending.insert(_pending.end(), from, from + count);
    }
}

void Sdf_SafeOutput::WriteAt(uint64_t offset, const void* bytes, size_t count)
{
    _Flush();
    const char* from = static_cast<const char*>(bytes);
    while (_error == 0 && count > 0) {
        const ssize_t n = pwrite(_fd, from, count, static_cast<off_t>(offset));
        if (n > 0) {
            from += n;
            offset += static_cast<uint64_t>(n);
            count -= static_cast<size_t>(n);
        } else if (n == 0 || errno != EINTR) {
            _error = n == 0 ? EIO : errno;
        }
    }
}

bool Sdf_SafeOutput::Commit(std::string* whyNot)
{
    _Flush();
    if (_error == 0 && close(std::exchange(_fd, -1)) != 0) {
        _error = errno;
    }
    if (_error == 0 && rename(_aside.c_str(), _target.c_str()) != 0) {
        _error = errno;
    }
    if (_error == 0) {
        return true;
    }
    _Abandon();
    unlink(_aside.c_str());
    return fail(whyNot, std::strerror(_error));
}

PXR_NAMESPACE_CLOSE_SCOPE
