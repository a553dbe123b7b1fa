#include "pxr/usd/sdf/wholeFile.h"

#include "pxr/usd/ar/package.h"
#include "pxr/usd/sdf/safeOutput.h"

#include <pxr/usd/ar/asset.h>
#include <pxr/usd/ar/packageUtils.h>
#include <pxr/usd/ar/resolver.h>

#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <memory>
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

private:
    int _fd;
};

bool fail(std::string* whyNot, const std::string& reason)
{
    *whyNot = reason;
    return false;
}

std::string reasonOf(int error) { return std::strerror(error); }

// Reads a file that lies in a package.
bool readPackaged(const std::string& path, std::string* bytes, std::string* whyNot)
{
    const std::shared_ptr<ArAsset> asset = Ar_OpenAsset(path, whyNot);
    if (!asset) {
        return false;
    }
    try {
        bytes->resize(asset->GetSize());
    } catch (const std::exception&) {
        return fail(whyNot, "there is not enough memory to read it");
    }
    return asset->Read(bytes->data(), bytes->size(), 0) == bytes->size() ||
           fail(whyNot, "it became shorter while it was read");
}

} // namespace

bool Sdf_ReadWholeFile(const std::string& path, std::string* bytes, std::string* whyNot)
{
    if (ArIsPackageRelativePath(path)) {
        return readPackaged(path, bytes, whyNot);
    }
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
    std::string bytes(count, '\0');
    if (ArIsPackageRelativePath(path)) {
        const std::shared_ptr<ArAsset> asset = ArGetResolver().OpenAsset(ArResolvedPath(path));
        bytes.resize(asset ? asset->Read(bytes.data(), count, 0) : 0);
        return bytes;
    }
    const Descriptor file(open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK));
    const ssize_t n = file.Get() < 0 ? -1 : read(file.Get(), bytes.data(), count);
    bytes.resize(n > 0 ? static_cast<size_t>(n) : 0);
    return bytes;
}

bool Sdf_ReplaceFile(const std::string& path, const std::string& bytes, std::string* whyNot)
{
    Sdf_SafeOutput output;
    if (!output.Open(path, whyNot)) {
        return false;
    }
    output.Write(bytes.data(), bytes.size());
    return output.Commit(whyNot);
}

PXR_NAMESPACE_CLOSE_SCOPE
