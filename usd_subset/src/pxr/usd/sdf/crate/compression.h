#pragma once

/// The two compressions of crate files: blocks of LZ4, and lists of integers packed into such blocks.

#include <pxr/pxr.h>

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

PXR_NAMESPACE_OPEN_SCOPE

/// No byte of LZ4 stands for more bytes than this.
constexpr uint64_t kSdf_MaxExpansion = 255;

/// Unpacks a block into at most `size` bytes and returns how many there were; npos where it is malformed.
size_t Sdf_Decompress(const char* packed, size_t packedSize, char* to, size_t size);
/// Packs bytes into a block.
std::vector<char> Sdf_Compress(const char* bytes, size_t size);

/// Unpacks exactly `count` integers; false, with the reason, where the block does not hold them. The caller
/// has checked with Sdf_CanHoldInts() before it allocated room for them.
template <class Int>
bool Sdf_DecompressInts(const char* packed, size_t packedSize, Int* to, size_t count, std::string* whyNot);
/// Says whether a block of that many bytes can hold that many integers.
bool Sdf_CanHoldInts(uint64_t packedSize, uint64_t count);
/// Packs integers of 4 or 8 bytes: as differences, the most frequent one in 2 bits, the others in as few
/// bytes as they need.
template <class Int>
std::vector<char> Sdf_CompressInts(const Int* ints, size_t count);

PXR_NAMESPACE_CLOSE_SCOPE
