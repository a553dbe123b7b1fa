#pragma once

/// The parts of Sdf_CrateValueWriter that pack arrays and numbers; included by its source alone.

#include "pxr/usd/sdf/crate/arrayReader.h"
#include "pxr/usd/sdf/crate/compression.h"
#include "pxr/usd/sdf/crate/valueWriter.h"

#include <pxr/pxr.h>

#include <cmath>
#include <cstring>
#include <limits>
#include <string_view>
#include <typeindex>
#include <unordered_map>

PXR_NAMESPACE_OPEN_SCOPE

/// Returns the integer that a number is exactly, zeros below 0 excepted.
template <class Int, class T>
bool Sdf_CrateIsExactly(T number, Int* integer)
{
    const double wide = static_cast<double>(number);
    if (!(wide >= std::numeric_limits<Int>::min() && wide <= std::numeric_limits<Int>::max()) ||
        (wide == 0 && std::signbit(wide))) {
        return false;
    }
    *integer = static_cast<Int>(wide);
    return static_cast<double>(*integer) == wide;
}

/// Does the opposite of Sdf_CrateFromInlinedBits(); false where the value does not fit into 4 bytes.
template <class T>
bool Sdf_CrateToInlinedBits(const T& value, uint32_t* bits)
{
    signed char small[4] = {};
    if constexpr (std::is_same_v<T, double>) {
        const float number =
            std::fabs(value) <= std::numeric_limits<float>::max() ? static_cast<float>(value) : 0.0f;
        std::memcpy(bits, &number, sizeof number);
        return static_cast<double>(number) == value;
    } else if constexpr (std::is_same_v<T, int64_t>) {
        *bits = static_cast<uint32_t>(value);
        return value == static_cast<int32_t>(*bits);
    } else if constexpr (std::is_same_v<T, uint64_t>) {
        *bits = static_cast<uint32_t>(value);
        return value == *bits;
    } else if constexpr (GfIsGfVec<T>::value) {
        for (size_t i = 0; i < T::dimension; ++i) {
            if (!Sdf_CrateIsExactly(value[i], &small[i])) {
                return false;
            }
        }
    } else if constexpr (GfIsGfMatrix<T>::value) {
        for (int i = 0; i < static_cast<int>(T::numRows * T::numColumns); ++i) {
            const int row = i / static_cast<int>(T::numColumns);
            const int column = i % static_cast<int>(T::numColumns);
            signed char element = 0;
            if (!Sdf_CrateIsExactly(value[row][column], &element) || (row != column && element != 0)) {
                return false;
            }
            small[row] = row == column ? element : small[row];
        }
    } else if constexpr (std::is_same_v<T, VtDictionary>) {
        return value.empty();
    } else {
        return false;
    }
    std::memcpy(bits, small, sizeof small);
    return true;
}

template <class T>
Sdf_CrateRep Sdf_CrateValueWriter::_PackArray(const VtArray<T>& array)
{
    const uint64_t bits = Sdf_CrateRep(Sdf_CrateTypeOf<T>, Sdf_CrateRep::kArray, 0).GetBits();
    if (array.empty()) {
        return Sdf_CrateRep(bits);
    }
    if constexpr (Sdf_CrateIsPlain<T>) {
        const std::string_view bytes(reinterpret_cast<const char*>(array.cdata()), array.size() * sizeof(T));
        const size_t hash = std::hash<std::string_view>()(bytes) ^ static_cast<size_t>(Sdf_CrateTypeOf<T>);
        const auto known = _knownArrays.equal_range(hash);
        for (auto it = known.first; it != known.second; ++it) {
            if (it->second.array.IsHolding<VtArray<T>>()) {
                const VtArray<T>& other = it->second.array.UncheckedGet<VtArray<T>>();
                if (other.size() == array.size() &&
                    std::memcmp(other.cdata(), static_cast<const void*>(array.cdata()), bytes.size()) == 0) {
                    return it->second.rep;
                }
            }
        }
        const Sdf_CrateRep rep = _WriteArray(array);
        _knownArrays.emplace(hash, _KnownArray{VtValue(array), rep});
        return rep;
    } else {
        _Bytes bytes;
        _PutRaw(&bytes, static_cast<uint64_t>(array.size()));
        for (const T& element : array) {
            if constexpr (std::is_same_v<T, bool>) {
                bytes.push_back(element ? 1 : 0);
            } else {
                _Put(&bytes, element);
            }
        }
        return _WriteOnce(bits, sizeof(uint64_t), bytes);
    }
}

// Writes an array whose bytes in memory are those in the file, packed where that makes it smaller.
template <class T>
Sdf_CrateRep Sdf_CrateValueWriter::_WriteArray(const VtArray<T>& array)
{
    const uint64_t bits = Sdf_CrateRep(Sdf_CrateTypeOf<T>, Sdf_CrateRep::kArray, 0).GetBits();
    _Bytes bytes;
    _PutRaw(&bytes, static_cast<uint64_t>(array.size()));
    if constexpr (Sdf_CrateIsPackedInt<T> || Sdf_CrateIsPackedFloat<T>) {
        if (array.size() >= kSdf_CrateMinCompressedCount && _PackNumbers(array, &bytes)) {
            return Sdf_CrateRep(bits | Sdf_CrateRep::kCompressed | _Write(1, bytes, nullptr, 0));
        }
    }
    // Behind the count the elements are aligned, so that a reader can use them where they lie.
    return Sdf_CrateRep(bits | _Write(sizeof(uint64_t), bytes, static_cast<const void*>(array.cdata()),
                                      array.size() * sizeof(T)));
}

/// Appends packed integers with their size.
template <class Int>
void Sdf_CratePutInts(std::string* bytes, const Int* ints, size_t count)
{
    const std::vector<char> packed = Sdf_CompressInts(ints, count);
    const uint64_t size = packed.size();
    bytes->append(reinterpret_cast<const char*>(&size), sizeof size);
    bytes->append(packed.data(), packed.size());
}

/// Finds the distinct numbers of an array, told apart by their bits, and where each element stands among
/// them; false where there are more than `most`.
template <class T>
bool Sdf_CrateMakeTable(const VtArray<T>& array, size_t most, std::vector<T>* table,
                        std::vector<uint32_t>* places)
{
    std::unordered_map<uint64_t, uint32_t> known;
    places->reserve(array.size());
    for (const T& element : array) {
        uint64_t bits = 0;
        std::memcpy(&bits, static_cast<const void*>(&element), sizeof element);
        const auto added = known.emplace(bits, static_cast<uint32_t>(table->size()));
        if (added.second) {
            if (table->size() == most) {
                return false;
            }
            table->push_back(element);
        }
        places->push_back(added.first->second);
    }
    return true;
}

template <class T>
bool Sdf_CrateValueWriter::_PackNumbers(const VtArray<T>& array, _Bytes* bytes)
{
    if constexpr (Sdf_CrateIsPackedInt<T>) {
        Sdf_CratePutInts(bytes, array.cdata(), array.size());
        return true;
    } else {
        std::vector<int32_t> ints(array.size());
        size_t exact = 0;
        while (exact < ints.size() && Sdf_CrateIsExactly(array.AsConst()[exact], &ints[exact])) {
            ++exact;
        }
        if (exact == ints.size()) {
            bytes->push_back('i');
            Sdf_CratePutInts(bytes, ints.data(), ints.size());
            return true;
        }
        std::vector<T> table;
        std::vector<uint32_t> places;
        if (!Sdf_CrateMakeTable(array, std::min<size_t>(array.size() / 4, 1024), &table, &places)) {
            return false;
        }
        bytes->push_back('t');
        _PutRaw(bytes, static_cast<uint32_t>(table.size()));
        bytes->append(reinterpret_cast<const char*>(table.data()), table.size() * sizeof(T));
        Sdf_CratePutInts(bytes, places.data(), places.size());
        return true;
    }
}

PXR_NAMESPACE_CLOSE_SCOPE
