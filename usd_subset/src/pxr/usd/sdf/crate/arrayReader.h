#pragma once

/// The parts of Sdf_CrateValueReader that read arrays and inlined values; included by its source alone.

#include "pxr/usd/sdf/crate/compression.h"
#include "pxr/usd/sdf/crate/valueReader.h"

#include <pxr/pxr.h>

#include <cstring>
#include <memory>

PXR_NAMESPACE_OPEN_SCOPE

constexpr Sdf_CrateVersion kSdf_CratePackedInts{{0, 5, 0}}; // and arrays without a rank
constexpr Sdf_CrateVersion kSdf_CratePackedFloats{{0, 6, 0}};
constexpr Sdf_CrateVersion kSdf_CrateWideCounts{{0, 7, 0}};
/// Shorter arrays are copied, so that a few small ones do not keep the buffer of a closed file alive.
constexpr size_t kSdf_CrateMinSharedBytes = 2048;

template <class T>
constexpr bool Sdf_CrateIsPackedInt = std::is_same_v<T, int> || std::is_same_v<T, unsigned int> ||
                                      std::is_same_v<T, int64_t> || std::is_same_v<T, uint64_t>;
template <class T>
constexpr bool Sdf_CrateIsPackedFloat =
    std::is_same_v<T, GfHalf> || std::is_same_v<T, float> || std::is_same_v<T, double>;

/// Returns the value that 4 bytes stand for: a number in fewer bytes, a vector of small integers, or a
/// diagonal matrix of small integers; of other types only the default value is kept so.
template <class T>
T Sdf_CrateFromInlinedBits(uint32_t bits)
{
    signed char small[4];
    std::memcpy(small, &bits, sizeof small);
    T value{};
    if constexpr (std::is_same_v<T, double>) {
        float number;
        std::memcpy(&number, &bits, sizeof number);
        value = number;
    } else if constexpr (std::is_same_v<T, int64_t>) {
        value = static_cast<int32_t>(bits);
    } else if constexpr (std::is_same_v<T, uint64_t>) {
        value = bits;
    } else if constexpr (GfIsGfVec<T>::value) {
        for (size_t i = 0; i < T::dimension; ++i) {
            value[i] = static_cast<typename T::ScalarType>(static_cast<float>(small[i]));
        }
    } else if constexpr (GfIsGfMatrix<T>::value) {
        value.SetIdentity();
        for (int i = 0; i < static_cast<int>(T::numRows); ++i) {
            value[i][i] = small[i];
        }
    }
    return value;
}

template <class T>
VtArray<T> Sdf_CrateValueReader::_MakeArray(uint64_t count)
{
    _cursor.Charge(&_budget, count * sizeof(T));
    VtArray<T> array;
    if constexpr (std::is_trivially_destructible_v<T>) {
        array.resize(static_cast<size_t>(count), [](T*, T*) {});
    } else {
        array.resize(static_cast<size_t>(count));
    }
    return array;
}

template <class T>
VtArray<T> Sdf_CrateValueReader::_ReadArray(Sdf_CrateRep rep)
{
    VtArray<T> array;
    if (rep.GetPayload() == 0) {
        return array;
    }
    _cursor.Seek(rep.GetPayload());
    const Sdf_CrateVersion version = _file.GetVersion();
    if (version < kSdf_CratePackedInts) {
        _cursor.Read<uint32_t>(); // the rank, always 1
    }
    const uint64_t count =
        version < kSdf_CrateWideCounts ? _cursor.Read<uint32_t>() : _cursor.Read<uint64_t>();
    const bool packed = rep.IsCompressed() && count >= kSdf_CrateMinCompressedCount;
    if constexpr (Sdf_CrateIsPackedInt<T>) {
        if (packed && !(version < kSdf_CratePackedInts)) {
            _ReadPacked(count, &array);
            return array;
        }
    } else if constexpr (Sdf_CrateIsPackedFloat<T>) {
        if (packed && !(version < kSdf_CratePackedFloats)) {
            _ReadPackedFloats(count, &array);
            return array;
        }
    }
    _ReadElements(count, &array);
    return array;
}

template <class T>
void Sdf_CrateValueReader::_ReadElements(uint64_t count, VtArray<T>* array)
{
    _cursor.CheckCount(count, _LeastSize<T>(), "elements");
    if constexpr (Sdf_CrateIsPlain<T>) {
        const size_t size = static_cast<size_t>(count) * sizeof(T);
        const char* data = _cursor.GetSource().GetData();
        const bool aligned = data && reinterpret_cast<uintptr_t>(data + _cursor.Tell()) % alignof(T) == 0;
        if (aligned && size >= kSdf_CrateMinSharedBytes) {
            *array = _cursor.GetSource().Share<T>(_cursor.Tell(), static_cast<size_t>(count));
            _cursor.Seek(_cursor.Tell() + size);
        } else {
            *array = _MakeArray<T>(count);
            _cursor.CopyTo(array->data(), size);
        }
    } else {
        *array = _MakeArray<T>(count);
        T* elements = array->data();
        for (uint64_t i = 0; i < count; ++i) {
            if constexpr (std::is_same_v<T, bool>) {
                elements[i] = _cursor.Read<uint8_t>() != 0;
            } else {
                elements[i] = _Get<T>();
            }
        }
    }
}

template <class Int>
void Sdf_CrateValueReader::_ReadPackedInts(uint64_t count, Int* ints)
{
    const uint64_t size = _cursor.Read<uint64_t>();
    const uint64_t start = _cursor.Tell();
    std::string whyNot;
    if (!Sdf_DecompressInts(_cursor.Take(size), static_cast<size_t>(size), ints, static_cast<size_t>(count),
                            &whyNot)) {
        _cursor.Seek(start);
        _cursor.Fail("there is " + whyNot);
    }
}

template <class T>
void Sdf_CrateValueReader::_ReadPacked(uint64_t count, VtArray<T>* array)
{
    if (!Sdf_CanHoldInts(_cursor.Left(), count)) {
        _cursor.Fail(std::to_string(count) + " packed integers are announced, but only " +
                     std::to_string(_cursor.Left()) + " bytes are left");
    }
    *array = _MakeArray<T>(count);
    _ReadPackedInts(count, array->data());
}

template <class T>
void Sdf_CrateValueReader::_ReadPackedFloats(uint64_t count, VtArray<T>* array)
{
    const char code = _cursor.Read<char>();
    if (code != 'i' && code != 't') {
        _cursor.Fail("a packed array begins with \"i\" or \"t\"");
    }
    if (!Sdf_CanHoldInts(_cursor.Left(), count)) {
        _cursor.Fail(std::to_string(count) + " packed numbers are announced, but only " +
                     std::to_string(_cursor.Left()) + " bytes are left");
    }
    VtArray<T> table;
    if (code == 't') {
        _ReadElements(_cursor.Read<uint32_t>(), &table);
    }
    const VtArray<int32_t> ints = [&] {
        VtArray<int32_t> read = _MakeArray<int32_t>(count);
        _ReadPackedInts(count, read.data());
        return read;
    }();
    *array = _MakeArray<T>(count);
    T* numbers = array->data();
    for (size_t i = 0; i < ints.size(); ++i) {
        const int32_t number = ints[i];
        if (code == 'i') {
            numbers[i] = static_cast<T>(number);
        } else if (static_cast<uint32_t>(number) < table.size()) {
            numbers[i] = table.AsConst()[static_cast<size_t>(number)];
        } else {
            _cursor.Fail("number " + std::to_string(number) + " of a table of " +
                         std::to_string(table.size()) + " is referred to");
        }
    }
}

PXR_NAMESPACE_CLOSE_SCOPE
