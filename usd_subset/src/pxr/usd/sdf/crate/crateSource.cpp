#include "pxr/usd/sdf/crate/crateSource.h"

#include <algorithm>
#include <cstdio>
#include <sys/stat.h>

PXR_NAMESPACE_OPEN_SCOPE

namespace {

// Keeps the buffer of a file alive for the arrays that refer to it.
class SharedBytes : public Vt_ArrayForeignDataSource
{
public:
    explicit SharedBytes(const std::shared_ptr<const char>& bytes)
        : Vt_ArrayForeignDataSource(&SharedBytes::_Delete), _bytes(bytes)
    {}

private:
    static void _Delete(Vt_ArrayForeignDataSource* self) { delete static_cast<SharedBytes*>(self); }
    std::shared_ptr<const char> _bytes;
};

constexpr int kMaxOpenFiles = 128;

// How many files stay open because they are read piece by piece.
std::atomic<int>& openFiles()
{
    static std::atomic<int> count{0};
    return count;
}

// The time of a file's last change in ns; 0 for what is no file.
int64_t changeTime(const ArAsset& asset)
{
    struct stat status;
    FILE* file = asset.GetFileUnsafe().first;
    return file && fstat(fileno(file), &status) == 0
               ? int64_t(status.st_mtim.tv_sec) * 1000000000 + status.st_mtim.tv_nsec
               : 0;
}

} // namespace

Sdf_CrateError::Sdf_CrateError(const std::string& part, uint64_t offset, const std::string& text)
    : std::runtime_error(part + ", byte " + std::to_string(offset) + ": " + text)
{}

Sdf_CrateSource::Sdf_CrateSource(const std::shared_ptr<ArAsset>& asset, uint64_t maxBufferSize)
    : _asset(asset), _size(asset->GetSize()), _changeTime(changeTime(*asset))
{
    if (_size > maxBufferSize) {
        return;
    }
    _MakeBuffer();
    if (_size > kSmallFile && _MayStayOpen()) {
        const size_t pieces = static_cast<size_t>((_size + kPieceSize - 1) / kPieceSize);
        _filled.reset(new std::atomic<bool>[pieces]());
        _isWhole = false;
        return;
    }
    if (asset->Read(_data, static_cast<size_t>(_size), 0) != _size) {
        throw Sdf_CrateError("file", 0, "its " + std::to_string(_size) + " bytes cannot be read");
    }
    _asset.reset();
}

Sdf_CrateSource::~Sdf_CrateSource()
{
    if (_staysOpen) {
        openFiles().fetch_sub(1);
    }
}

// Many open files would use up the descriptors of the process.
bool Sdf_CrateSource::_MayStayOpen()
{
    _staysOpen = openFiles().fetch_add(1) < kMaxOpenFiles;
    if (!_staysOpen) {
        openFiles().fetch_sub(1);
    }
    return _staysOpen;
}

void Sdf_CrateSource::_MakeBuffer()
{
    // Not initialized: memory that nothing is read into is never touched.
    const std::shared_ptr<char> bytes(new char[static_cast<size_t>(_size) + 1],
                                      std::default_delete<char[]>());
    auto* shared = new SharedBytes(bytes);
    _foreign = shared;
    _data = bytes.get();
    _buffer = VtArray<char>(shared, _data, static_cast<size_t>(_size));
}

void Sdf_CrateSource::_FillPieces(uint64_t first, uint64_t last) const
{
    while (first <= last && _filled[first].load(std::memory_order_acquire)) {
        ++first;
    }
    if (first > last) {
        return;
    }
    const std::lock_guard<std::mutex> lock(_mutex);
    while (first <= last) {
        uint64_t end = first;
        while (end <= last && !_filled[end].load(std::memory_order_relaxed)) {
            ++end;
        }
        if (end > first) {
            _ReadPieces(first, end - 1);
        }
        first = end + 1;
    }
}

void Sdf_CrateSource::_ReadPieces(uint64_t first, uint64_t last) const
{
    const uint64_t begin = first * kPieceSize;
    const size_t count = static_cast<size_t>(std::min((last + 1) * kPieceSize, _size) - begin);
    if (_asset->Read(_data + begin, count, static_cast<size_t>(begin)) != count ||
        changeTime(*_asset) != _changeTime) {
        throw Sdf_CrateError("file", begin, "the file changed after it was opened; reload it");
    }
    for (uint64_t piece = first; piece <= last; ++piece) {
        _filled[piece].store(true, std::memory_order_release);
    }
}

void Sdf_CrateSource::Copy(void* to, uint64_t offset, size_t count) const
{
    if (count == 0) {
        return;
    }
    if (_data) {
        Fill(offset, count);
        std::memcpy(to, _data + offset, count);
    } else if (_asset->Read(to, count, static_cast<size_t>(offset)) != count ||
               changeTime(*_asset) != _changeTime) {
        throw Sdf_CrateError("file", offset, "the file changed after it was opened; reload it");
    }
}

const char* Sdf_CrateCursor::Take(uint64_t count)
{
    Need(count);
    const uint64_t from = _at;
    _at += count;
    if (const char* data = _source->GetData()) {
        _source->Fill(from, count);
        return data + from;
    }
    _taken.resize(static_cast<size_t>(count));
    _source->Copy(_taken.data(), from, _taken.size());
    return _taken.data();
}

uint64_t Sdf_CrateCursor::ReadCount(uint64_t minSize, const char* things)
{
    const uint64_t count = Read<uint64_t>();
    CheckCount(count, minSize, things);
    return count;
}

void Sdf_CrateCursor::CheckCount(uint64_t count, uint64_t minSize, const char* things) const
{
    if (count > Left() / minSize) {
        Fail(std::to_string(count) + " " + things + " are announced, but only " + std::to_string(Left()) +
             " bytes are left");
    }
}

void Sdf_CrateCursor::Fail(const std::string& text) const { throw Sdf_CrateError(_part, _at, text); }

void Sdf_CrateCursor::FailShort(uint64_t count) const
{
    Fail(std::to_string(count) + " bytes are expected, but only " + std::to_string(Left()) + " are left");
}

void Sdf_CrateCursor::FailSeek(uint64_t offset) const
{
    Fail("it refers to byte " + std::to_string(offset) + ", which is outside; it ends at byte " +
         std::to_string(_end));
}

void Sdf_CrateCursor::Charge(Sdf_CrateBudget* budget, uint64_t bytes) const
{
    if (!budget->Take(bytes)) {
        Fail("it needs more memory than the " + std::to_string(budget->GetLimit()) +
             " bytes that one load may use");
    }
}

PXR_NAMESPACE_CLOSE_SCOPE
