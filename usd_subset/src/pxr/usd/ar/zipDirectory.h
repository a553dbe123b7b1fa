#pragma once

/// The list of what a zip package holds.

#include <pxr/pxr.h>
#include <pxr/usd/ar/api.h>

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

PXR_NAMESPACE_OPEN_SCOPE

class ArAsset;

/// One file in a package.
struct Ar_ZipEntry
{
    std::string name;
    uint64_t dataOffset = 0;
    uint64_t size = 0; // as stored
    uint64_t plainSize = 0;
    uint32_t crc = 0;
    uint16_t method = 0; // 0: stored as it is
    bool isEncrypted = false;
};

/// Lists the files of a package in the order in which they lie in it, which tells the root layer, from the
/// headers in front of each; the directory at the end is not needed. Returns false, and says what is wrong at
/// which byte, where the package is malformed. Thread: any.
AR_API bool Ar_ReadZipDirectory(const ArAsset& asset, std::vector<Ar_ZipEntry>* entries, std::string* whyNot);
/// Returns the first entry of exactly this name, or null.
AR_API const Ar_ZipEntry* Ar_FindZipEntry(const std::vector<Ar_ZipEntry>& entries, const std::string& name);

PXR_NAMESPACE_CLOSE_SCOPE
