#pragma once

/// Writes a file aside and puts it in its place when it is whole.

#include <pxr/pxr.h>
#include <pxr/usd/sdf/api.h>

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

PXR_NAMESPACE_OPEN_SCOPE

/// A new file beside the one that it will replace, so that a failure leaves the old file as it was. Without
/// Commit() nothing is left behind. After a fault every further call does nothing, and Commit() says why.
/// Thread: one.
class Sdf_SafeOutput
{
public:
    Sdf_SafeOutput() = default;
    ~Sdf_SafeOutput();
    Sdf_SafeOutput(const Sdf_SafeOutput&) = delete;
    Sdf_SafeOutput& operator=(const Sdf_SafeOutput&) = delete;

    /// Begins a file; false, with the reason, where none can be made there.
    bool Open(const std::string& path, std::string* whyNot);
    void Write(const void* bytes, size_t count);
    /// Replaces bytes that were written.
    void WriteAt(uint64_t offset, const void* bytes, size_t count);
    /// Returns how many bytes were written.
    uint64_t Tell() const { return _size; }
    /// Puts the file in its place; false, with the reason, where it could not be written as a whole.
    bool Commit(std::string* whyNot);

private:
    void _Flush();
    void _Put(const char* bytes, size_t count);
    void _Abandon();

    std::string _target;
    std::string _aside;
    int _fd = -1;
    int _error = 0;
    uint64_t _size = 0;
    std::vector<char> _pending; // gathered small writes
};

PXR_NAMESPACE_CLOSE_SCOPE
