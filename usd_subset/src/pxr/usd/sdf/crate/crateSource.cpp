#include "pxr/usd/sdf/crate/crateSource.h"

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

} // namespace

Sdf_CrateError::Sdf_CrateError(const std::string& part, uint64_t offset, const std::string& text)
    : std::runtime_error(part + ", byte " + std::to_string(offset) + ": " + text)
{}

Sdf_CrateSource::Sdf_CrateSource(const std::shared_ptr<ArAsset>& asset, uint64_t maxBufferSize)
    : _asset(asset), _size(asset->GetSize())
{
    if (_size > maxBufferSize) {
        return;
    }
    const std::shared_ptr<const char> bytes = asset->GetBuffer();
    _asset.reset();
    if (!bytes) {
        throw Sdf_CrateError("file", 0, "its " + std::to_string(_size) + " bytes cannot be read");
    }
    auto* shared = new SharedBytes(bytes);
    _foreign = shared;
    _buffer = VtArray<char>(shared, const_cast<char*>(bytes.get()), static_cast<size_t>(_size));
}

void Sdf_CrateSource::Copy(void* to, uint64_t offset, size_t count) const
{
    if (const char* data = GetData()) {
        std::memcpy(to, data + offset, count);
    } else if (_asset->Read(to, count, static_cast<size_t>(offset)) != count) {
        throw Sdf_CrateError("file", offset,
                             std::to_string(count) + " bytes cannot be read; the file became shorter");
    }
}

const char* Sdf_CrateCursor::Take(uint64_t count)
{
    Need(count);
    const uint64_t from = _at;
    _at += count;
    if (const char* data = _source->GetData()) {
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
