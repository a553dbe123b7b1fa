#pragma once

#include <pxr/base/tf/hash.h>
#include <pxr/export.h>
#include <pxr/pxr.h>

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <utility>

PXR_NAMESPACE_OPEN_SCOPE

class Usd_PrimData;
class SdfPath;

typedef Usd_PrimData* Usd_PrimDataPtr;
typedef const Usd_PrimData* Usd_PrimDataConstPtr;

/// The part of a prim's data that handles touch inline, also where the rest is not known: its beginning.
struct Usd_PrimDataLife
{
    mutable std::atomic<std::uint32_t> count{0};
    bool isDead = false; ///< the stage has it no more
};

inline const Usd_PrimDataLife& Usd_LifeOf(const Usd_PrimData* data)
{
    return *reinterpret_cast<const Usd_PrimDataLife*>(data);
}
inline void Usd_RetainPrimData(const Usd_PrimData* data) noexcept
{
    Usd_LifeOf(data).count.fetch_add(1, std::memory_order_relaxed);
}
VESK_USD_API void Usd_DeletePrimData(const Usd_PrimData* data) noexcept;
inline void Usd_ReleasePrimData(const Usd_PrimData* data) noexcept
{
    if (Usd_LifeOf(data).count.fetch_sub(1, std::memory_order_acq_rel) == 1) {
        Usd_DeletePrimData(data);
    }
}
inline bool Usd_IsDead(const Usd_PrimData* data) noexcept { return Usd_LifeOf(data).isDead; }
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
