#include "pxr/usd/sdf/crate/compression.h"

#include <algorithm>
#include <cstring>
#include <limits>
#include <lz4.h>
#include <memory>
#include <type_traits>
#include <unordered_map>

PXR_NAMESPACE_OPEN_SCOPE

namespace {

constexpr size_t kBadBlock = std::string::npos;

// Differences of 4 byte integers are kept in 1, 2 or 4 bytes, those of 8 byte integers in 2, 4 or 8.
template <class Int>
struct Widths
{
    typedef std::make_unsigned_t<Int> Bits;
    typedef std::make_signed_t<Int> Signed;
    typedef std::conditional_t<sizeof(Int) == 4, int8_t, int16_t> Small;
    typedef std::conditional_t<sizeof(Int) == 4, int16_t, int32_t> Medium;
    static size_t CodeSize(size_t count) { return count / 4 + (count % 4 != 0 ? 1 : 0); }
};

template <class T>
T load(const char* from)
{
    T value;
    std::memcpy(&value, from, sizeof value);
    return value;
}

size_t decompressOne(const char* packed, size_t packedSize, char* to, size_t size)
{
    constexpr size_t most = std::numeric_limits<int>::max();
    if (packedSize > most) {
        return kBadBlock;
    }
    const int n =
        LZ4_decompress_safe(packed, to, static_cast<int>(packedSize), static_cast<int>(std::min(size, most)));
    return n < 0 ? kBadBlock : static_cast<size_t>(n);
}

// Unpacks the differences behind the codes; `end` has room for one group of four behind it.
template <class Int>
bool decodeInts(const char* codes, const char* values, const char* end, Int common, Int* to, size_t count)
{
    typedef Widths<Int> W;
    typename W::Bits sum = 0;
    for (size_t i = 0; i < count; ++i) {
        const int code = static_cast<unsigned char>(codes[i / 4]) >> (i % 4 * 2) & 3;
        if (code == 0) {
            sum += static_cast<typename W::Bits>(common);
        } else if (code == 1) {
            sum += static_cast<typename W::Bits>(load<typename W::Small>(values));
            values += sizeof(typename W::Small);
        } else if (code == 2) {
            sum += static_cast<typename W::Bits>(load<typename W::Medium>(values));
            values += sizeof(typename W::Medium);
        } else {
            sum += load<typename W::Bits>(values);
            values += sizeof(Int);
        }
        if (values > end) {
            return false;
        }
        to[i] = static_cast<Int>(sum);
    }
    return true;
}

// The most frequent difference; among equally frequent ones the largest.
template <class Int>
std::make_signed_t<Int> mostFrequent(const std::vector<std::make_signed_t<Int>>& differences)
{
    typedef std::make_signed_t<Int> Signed;
    std::unordered_map<Signed, size_t> counts;
    std::pair<size_t, Signed> best(0, 0);
    for (Signed difference : differences) {
        best = std::max(best, std::make_pair(++counts[difference], difference));
    }
    return best.second;
}

template <class T>
void append(std::vector<char>* bytes, T value)
{
    const char* from = reinterpret_cast<const char*>(&value);
    bytes->insert(bytes->end(), from, from + sizeof value);
}

template <class Narrow, class Wide>
bool fits(Wide value)
{
    return value >= std::numeric_limits<Narrow>::min() && value <= std::numeric_limits<Narrow>::max();
}

} // namespace

size_t Sdf_Decompress(const char* packed, size_t packedSize, char* to, size_t size)
{
    if (packedSize == 0) {
        return kBadBlock;
    }
    const int chunks = static_cast<unsigned char>(*packed);
    const char* const end = packed++ + packedSize;
    if (chunks == 0) {
        return decompressOne(packed, static_cast<size_t>(end - packed), to, size);
    }
    size_t done = 0;
    for (int i = 0; i < chunks; ++i) {
        if (end - packed < static_cast<std::ptrdiff_t>(sizeof(int32_t))) {
            return kBadBlock;
        }
        const int32_t chunk = load<int32_t>(packed);
        packed += sizeof chunk;
        if (chunk < 0 || chunk > end - packed) {
            return kBadBlock;
        }
        const size_t n = decompressOne(packed, static_cast<size_t>(chunk), to + done, size - done);
        if (n == kBadBlock) {
            return kBadBlock;
        }
        packed += chunk;
        done += n;
    }
    return done;
}

std::vector<char> Sdf_Compress(const char* bytes, size_t size)
{
    std::vector<char> packed;
    const size_t chunks = size / LZ4_MAX_INPUT_SIZE + (size % LZ4_MAX_INPUT_SIZE != 0 ? 1 : 0);
    packed.push_back(static_cast<char>(chunks > 1 ? chunks : 0));
    size_t done = 0;
    do {
        const int count = static_cast<int>(std::min<size_t>(size - done, LZ4_MAX_INPUT_SIZE));
        const size_t header = chunks > 1 ? sizeof(int32_t) : 0;
        const size_t at = packed.size() + header;
        packed.resize(at + static_cast<size_t>(LZ4_compressBound(count)));
        const int32_t n =
            LZ4_compress_default(bytes + done, packed.data() + at, count, LZ4_compressBound(count));
        std::memcpy(packed.data() + at - header, &n, header);
        packed.resize(at + static_cast<size_t>(n));
        done += static_cast<size_t>(count);
    } while (done < size);
    return packed;
}

bool Sdf_CanHoldInts(uint64_t packedSize, uint64_t count)
{
    return count / 4 / kSdf_MaxExpansion <= packedSize;
}

template <class Int>
bool Sdf_DecompressInts(const char* packed, size_t packedSize, Int* to, size_t count, std::string* whyNot)
{
    if (count == 0) {
        return true;
    }
    const size_t codeSize = Widths<Int>::CodeSize(count);
    const size_t least = sizeof(Int) + codeSize;
    const size_t most = std::min<uint64_t>(least + count * sizeof(Int), kSdf_MaxExpansion * packedSize);
    if (most < least) {
        *whyNot = "too few bytes for " + std::to_string(count) + " integers";
        return false;
    }
    // Reading one integer behind the last valid one stays inside the room, so that it is noticed afterwards.
    const std::unique_ptr<char[]> plain(new char[most + sizeof(Int)]);
    const size_t size = Sdf_Decompress(packed, packedSize, plain.get(), most);
    if (size == kBadBlock || size < least) {
        *whyNot = "a damaged block of " + std::to_string(count) + " packed integers";
        return false;
    }
    std::memset(plain.get() + size, 0, sizeof(Int));
    const char* const codes = plain.get() + sizeof(Int);
    if (!decodeInts(codes, codes + codeSize, plain.get() + size, load<Int>(plain.get()), to, count)) {
        *whyNot = "a block that ends before the last of " + std::to_string(count) + " packed integers";
        return false;
    }
    return true;
}

template <class Int>
std::vector<char> Sdf_CompressInts(const Int* ints, size_t count)
{
    typedef Widths<Int> W;
    if (count == 0) {
        return Sdf_Compress(nullptr, 0);
    }
    std::vector<typename W::Signed> differences(count);
    for (size_t i = 0; i < count; ++i) {
        const typename W::Bits before = i > 0 ? static_cast<typename W::Bits>(ints[i - 1]) : 0;
        differences[i] = static_cast<typename W::Signed>(static_cast<typename W::Bits>(ints[i]) - before);
    }
    const typename W::Signed common = mostFrequent<Int>(differences);
    std::vector<char> plain;
    plain.reserve(sizeof(Int) + W::CodeSize(count) + count);
    append(&plain, common);
    plain.resize(plain.size() + W::CodeSize(count), 0);
    for (size_t i = 0; i < count; ++i) {
        const typename W::Signed value = differences[i];
        int code = 0;
        if (value == common) {
            continue;
        }
        if (fits<typename W::Small>(value)) {
            code = 1;
            append(&plain, static_cast<typename W::Small>(value));
        } else if (fits<typename W::Medium>(value)) {
            code = 2;
            append(&plain, static_cast<typename W::Medium>(value));
        } else {
            code = 3;
            append(&plain, value);
        }
        char& codes = plain[sizeof(Int) + i / 4];
        codes = static_cast<char>(static_cast<unsigned char>(codes) | code << (i % 4 * 2));
    }
    return Sdf_Compress(plain.data(), plain.size());
}

#define SDF_INT_COMPRESSION(Int)                                                                             \
    template bool Sdf_DecompressInts<Int>(const char*, size_t, Int*, size_t, std::string*);                  \
    template std::vector<char> Sdf_CompressInts<Int>(const Int*, size_t);
SDF_INT_COMPRESSION(int32_t)
SDF_INT_COMPRESSION(uint32_t)
SDF_INT_COMPRESSION(int64_t)
SDF_INT_COMPRESSION(uint64_t)
#undef SDF_INT_COMPRESSION

PXR_NAMESPACE_CLOSE_SCOPE
