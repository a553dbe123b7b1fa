#pragma once

/// Zip packages: what usdz files are.

#include <pxr/pxr.h>
#include <pxr/usd/usd/api.h>

#include <cstddef>
#include <cstdint>
#include <iterator>
#include <memory>
#include <string>

PXR_NAMESPACE_OPEN_SCOPE

class ArAsset;

/// Reads a zip package. Files are found by their exact names; what is packed or encrypted is listed and left
/// as it is. Thread: any.
class UsdZipFile
{
    class _Impl;

public:
    /// Opens a package; the result is invalid where there is none or it is malformed, the latter with one
    /// error.
    USD_API static UsdZipFile Open(const std::string& filePath);
    USD_API static UsdZipFile Open(const std::shared_ptr<ArAsset>& asset);

    USD_API UsdZipFile();
    USD_API ~UsdZipFile();
    explicit operator bool() const { return static_cast<bool>(_impl); }

    struct FileInfo
    {
        /// The offset of the file's data in the package, in bytes.
        size_t dataOffset = 0;
        /// The size as stored, in bytes.
        size_t size = 0;
        size_t uncompressedSize = 0;
        size_t crc = 0;
        /// How it is packed; 0 where it is stored as it is.
        uint16_t compressionMethod = 0;
        bool encrypted = false;
    };

    /// Goes through the files in the order in which they lie in the package; its value is a file's name.
    class Iterator
    {
        class _ArrowProxy
        {
        public:
            explicit _ArrowProxy(const std::string& text) : _text(text) {}
            const std::string* operator->() const { return &_text; }

        private:
            std::string _text;
        };

    public:
        using difference_type = std::ptrdiff_t;
        using value_type = std::string;
        using pointer = _ArrowProxy;
        using reference = std::string;
        using iterator_category = std::forward_iterator_tag;

        Iterator() = default;

        USD_API Iterator& operator++();
        Iterator operator++(int)
        {
            Iterator before = *this;
            ++*this;
            return before;
        }
        bool operator==(const Iterator& rhs) const { return _impl == rhs._impl && _index == rhs._index; }
        bool operator!=(const Iterator& rhs) const { return !(*this == rhs); }
        USD_API reference operator*() const;
        pointer operator->() const { return _ArrowProxy(**this); }

        /// Returns the file's bytes as stored; they live as long as the package.
        USD_API const char* GetFile() const;
        USD_API FileInfo GetFileInfo() const;

    private:
        friend class UsdZipFile;
        Iterator(const _Impl* impl, size_t index);
        const _Impl* _impl = nullptr; // null at the end
        size_t _index = 0;
    };

    USD_API Iterator begin() const;
    Iterator cbegin() const { return begin(); }
    Iterator end() const { return Iterator(); }
    Iterator cend() const { return end(); }
    /// Returns the first file of exactly this name, or end().
    USD_API Iterator Find(const std::string& path) const;
    /// Prints a listing to the standard output.
    USD_API void DumpContents() const;

private:
    explicit UsdZipFile(std::shared_ptr<const _Impl> impl);
    std::shared_ptr<const _Impl> _impl;
};

/// Writes a zip package as usdz wants it: files stored as they are, each beginning at a multiple of 64 bytes.
/// The package is put in its place by Save(), or by the end of the writer; until then an old file stays.
/// Thread: one.
class UsdZipFileWriter
{
public:
    /// Begins a package; the result is invalid, with one error, where none can be written there.
    USD_API static UsdZipFileWriter CreateNew(const std::string& filePath);

    USD_API UsdZipFileWriter();
    USD_API ~UsdZipFileWriter();
    USD_API UsdZipFileWriter(UsdZipFileWriter&& rhs);
    USD_API UsdZipFileWriter& operator=(UsdZipFileWriter&& rhs);
    UsdZipFileWriter(const UsdZipFileWriter&) = delete;
    UsdZipFileWriter& operator=(const UsdZipFileWriter&) = delete;
    explicit operator bool() const { return static_cast<bool>(_impl); }

    /// Adds a file, under its own path or under another. Returns its name in the package: a path with `/` and
    /// without a leading one. A name that is there already is not added again. Empty, with one error, where
    /// the file cannot be read or does not fit.
    USD_API std::string AddFile(const std::string& filePath,
                                const std::string& filePathInArchive = std::string());
    /// Ends the package and puts it in its place; the writer is invalid afterwards. False, with one error,
    /// where that fails.
    USD_API bool Save();
    /// Drops the package; the writer is invalid afterwards.
    USD_API void Discard();

private:
    class _Impl;
    explicit UsdZipFileWriter(std::unique_ptr<_Impl>&& impl);
    std::unique_ptr<_Impl> _impl;
};

PXR_NAMESPACE_CLOSE_SCOPE
