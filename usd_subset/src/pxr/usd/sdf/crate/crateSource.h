#pragma once

/// The bytes of a crate file, and bounded reading from them.

#include <pxr/base/vt/array.h>
#include <pxr/pxr.h>
#include <pxr/usd/ar/asset.h>

#include <atomic>
#include <cstdint>
#include <cstring>
#include <memory>
#include <mutex>
#include <stdexcept>
#include <string>
#include <type_traits>
#include <vector>

PXR_NAMESPACE_OPEN_SCOPE

/// A fault of a crate file: in which part, at which byte, and what was expected there.
class Sdf_CrateError : public std::runtime_error
{
public:
    Sdf_CrateError(const std::string& part, uint64_t offset, const std::string& text);
};

/// Counts the memory that one load asks for. Every table and value is charged before it is allocated.
class Sdf_CrateBudget
{
public:
    explicit Sdf_CrateBudget(uint64_t limit) : _limit(limit), _left(limit) {}
    uint64_t GetLimit() const { return _limit; }
    /// Takes the bytes; false where they exceed what is left.
    bool Take(uint64_t bytes)
    {
        const bool fits = bytes <= _left;
        _left -= fits ? bytes : 0;
        return fits;
    }

private:
    uint64_t _limit;
    uint64_t _left;
};

/// The bytes of one file. A file up to the given size has one buffer, into which each byte is read once and
/// which arrays share and keep alive: a small file at once, a larger one piece by piece, when something in it
/// is asked for, so that opening it costs no more than its tables. Of a still larger file each part is read
/// whenever it is asked for. Thread: any.
class Sdf_CrateSource
{
public:
    /// Throws Sdf_CrateError where the file cannot be read.
    Sdf_CrateSource(const std::shared_ptr<ArAsset>& asset, uint64_t maxBufferSize);
    ~Sdf_CrateSource();
    Sdf_CrateSource(const Sdf_CrateSource&) = delete;
    Sdf_CrateSource& operator=(const Sdf_CrateSource&) = delete;

    uint64_t GetSize() const { return _size; }
    /// Returns the buffer, in which only those bytes are valid that Fill() was called for; null where there
    /// is none.
    const char* GetData() const { return _data; }
    /// Reads bytes into the buffer; the range must be inside the file. Throws Sdf_CrateError where the file
    /// changed or became shorter since it was opened.
    void Fill(uint64_t offset, uint64_t count) const
    {
        if (!_isWhole && count > 0) {
            _FillPieces(offset / kPieceSize, (offset + count - 1) / kPieceSize);
        }
    }
    /// Copies bytes; the range must be inside the file. Throws as Fill().
    void Copy(void* to, uint64_t offset, size_t count) const;

    /// Returns an array of elements that lie at `offset` of the buffer. Throws as Fill().
    template <class T>
    VtArray<T> Share(uint64_t offset, size_t count) const
    {
        Fill(offset, count * sizeof(T));
        const char* bytes = GetData() + offset;
        return VtArray<T>(_foreign, reinterpret_cast<T*>(const_cast<char*>(bytes)), count);
    }

private:
    static constexpr uint64_t kPieceSize = 64 * 1024;
    static constexpr uint64_t kSmallFile = 1024 * 1024;

    void _MakeBuffer();
    void _FillPieces(uint64_t first, uint64_t last) const;
    void _ReadPieces(uint64_t first, uint64_t last) const;
    bool _MayStayOpen();

    std::shared_ptr<ArAsset> _asset; // where bytes are still to be read
    uint64_t _size;
    bool _isWhole = true; // else the pieces tell
    bool _staysOpen = false;
    Vt_ArrayForeignDataSource* _foreign = nullptr;
    VtArray<char> _buffer; // keeps the foreign source alive
    char* _data = nullptr;
    int64_t _changeTime = 0; // of the file, in ns
    mutable std::unique_ptr<std::atomic<bool>[]> _filled;
    mutable std::mutex _mutex;
};

/// Reads a part of a file from front to back; nothing outside the part is ever read.
class Sdf_CrateCursor
{
public:
    Sdf_CrateCursor(const Sdf_CrateSource& source, const char* part, uint64_t begin, uint64_t end)
        : _source(&source), _part(part), _at(begin), _end(end)
    {}

    /// Goes to another range of the file.
    void Restrict(uint64_t begin, uint64_t end)
    {
        _at = begin;
        _end = end;
    }
    const Sdf_CrateSource& GetSource() const { return *_source; }
    uint64_t Tell() const { return _at; }
    uint64_t Left() const { return _end - _at; }
    /// Throws Sdf_CrateError where the offset is outside the part.
    void Seek(uint64_t offset)
    {
        if (offset > _end) {
            FailSeek(offset);
        }
        _at = offset;
    }

    template <class T>
    T Read()
    {
        static_assert(std::is_trivially_copyable_v<T> && !std::is_same_v<T, bool>);
        T value;
        CopyTo(&value, sizeof value);
        return value;
    }
    void CopyTo(void* to, size_t count)
    {
        Need(count);
        _source->Copy(to, _at, count);
        _at += count;
    }
    /// Returns the next bytes in one piece; they stay valid until the next call.
    const char* Take(uint64_t count);
    /// Reads a count of things that each occupy at least `minSize` of the bytes that are left.
    uint64_t ReadCount(uint64_t minSize, const char* things);
    void CheckCount(uint64_t count, uint64_t minSize, const char* things) const;

    void Need(uint64_t count) const
    {
        if (count > Left()) {
            FailShort(count);
        }
    }
    [[noreturn]] void Fail(const std::string& text) const;
    [[noreturn]] void FailShort(uint64_t count) const;
    [[noreturn]] void FailSeek(uint64_t offset) const;
    /// Charges memory to a budget.
    void Charge(Sdf_CrateBudget* budget, uint64_t bytes) const;

private:
    const Sdf_CrateSource* _source;
    const char* _part;
    uint64_t _at;
    uint64_t _end;
    std::vector<char> _taken;
};

PXR_NAMESPACE_CLOSE_SCOPE
