#pragma once

#include <pxr/base/tf/hash.h>
#include <pxr/export.h>
#include <pxr/pxr.h>

#include <cstddef>
#include <utility>

PXR_NAMESPACE_OPEN_SCOPE

class Usd_PrimData;
class SdfPath;

typedef Usd_PrimData* Usd_PrimDataPtr;
typedef const Usd_PrimData* Usd_PrimDataConstPtr;

// These take pointers so that the handle stays usable where the prim data's definition is not known.
VESK_USD_API void Usd_RetainPrimData(const Usd_PrimData* data) noexcept;
VESK_USD_API void Usd_ReleasePrimData(const Usd_PrimData* data) noexcept;
VESK_USD_API bool Usd_IsDead(const Usd_PrimData* data) noexcept;
[[noreturn]] VESK_USD_API void Usd_ThrowExpiredPrimAccessError(const Usd_PrimData* data);

/// A counted pointer to a prim's data. It is false when the prim has gone, and throws when it is then used.
class Usd_PrimDataHandle
{
public:
    Usd_PrimDataHandle() noexcept = default;
    Usd_PrimDataHandle(const Usd_PrimData* data) noexcept : _data(data)
    {
        if (_data) {
            Usd_RetainPrimData(_data);
        }
    }
    Usd_PrimDataHandle(const Usd_PrimDataHandle& other) noexcept : Usd_PrimDataHandle(other._data) {}
    Usd_PrimDataHandle(Usd_PrimDataHandle&& other) noexcept : _data(std::exchange(other._data, nullptr)) {}
    ~Usd_PrimDataHandle()
    {
        if (_data) {
            Usd_ReleasePrimData(_data);
        }
    }
    Usd_PrimDataHandle& operator=(Usd_PrimDataHandle other) noexcept
    {
        std::swap(_data, other._data);
        return *this;
    }

    const Usd_PrimData* operator->() const
    {
        if (!_data || Usd_IsDead(_data)) {
            Usd_ThrowExpiredPrimAccessError(_data);
        }
        return _data;
    }
    explicit operator bool() const noexcept { return _data && !Usd_IsDead(_data); }

    friend const Usd_PrimData* get_pointer(const Usd_PrimDataHandle& handle) { return handle._data; }
    friend bool operator==(const Usd_PrimDataHandle& a, const Usd_PrimDataHandle& b)
    {
        return a._data == b._data;
    }
    friend bool operator!=(const Usd_PrimDataHandle& a, const Usd_PrimDataHandle& b)
    {
        return a._data != b._data;
    }
    friend bool operator<(const Usd_PrimDataHandle& a, const Usd_PrimDataHandle& b)
    {
        return a._data < b._data;
    }

    template <class HashState>
    friend void TfHashAppend(HashState& h, const Usd_PrimDataHandle& handle)
    {
        h.Append(handle._data);
    }

private:
    const Usd_PrimData* _data = nullptr;
};

PXR_NAMESPACE_CLOSE_SCOPE
