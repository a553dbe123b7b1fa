#pragma once

/// Packs values for crate files.

#include "pxr/usd/sdf/crate/crateFormat.h"
#include "pxr/usd/sdf/crate/crateNames.h"
#include "pxr/usd/sdf/safeOutput.h"

#include <pxr/base/vt/array.h>
#include <pxr/base/vt/value.h>
#include <pxr/pxr.h>

#include <string>
#include <typeinfo>
#include <unordered_map>
#include <vector>

PXR_NAMESPACE_OPEN_SCOPE

/// Writes values into the file, each one once, and returns the references to them. Nested values come before
/// what holds them, so that the bytes of a value do not depend on where it lies. Thread: one.
class Sdf_CrateValueWriter
{
public:
    Sdf_CrateValueWriter(Sdf_SafeOutput* output, Sdf_CrateNames* names);

    /// Packs a value; what cannot be packed is noted.
    Sdf_CrateRep Pack(const VtValue& value);
    /// Packs samples whose values are packed already.
    Sdf_CrateRep PackSamples(const std::vector<double>& times, const std::vector<Sdf_CrateRep>& values);

    /// Returns the oldest version of the format that can hold what was packed.
    Sdf_CrateVersion GetVersion() const { return _version; }
    /// Returns why a value cannot be written; empty where all could.
    const std::string& GetFault() const { return _fault; }

private:
    typedef std::string _Bytes;

    template <class T>
    Sdf_CrateRep _PackAs(const VtValue& value);
    template <class T>
    Sdf_CrateRep _PackSingle(const T& value);
    template <class T>
    Sdf_CrateRep _PackArray(const VtArray<T>& array);
    template <class T>
    Sdf_CrateRep _WriteArray(const VtArray<T>& array);
    template <class T>
    bool _PackNumbers(const VtArray<T>& array, _Bytes* bytes);
    Sdf_CrateRep _WriteOnce(uint64_t bits, size_t alignment, const _Bytes& bytes);
    uint64_t _Write(size_t alignment, const _Bytes& bytes, const void* more, size_t moreSize);
    template <class T>
    uint32_t _InlinedBits(const T& value);
    void _Require(Sdf_CrateVersion version);

    template <class T>
    static void _PutRaw(_Bytes* bytes, const T& value)
    {
        bytes->append(reinterpret_cast<const char*>(&value), sizeof value);
    }
    template <class T>
    void _Put(_Bytes* bytes, const T& value);
    template <class T>
    void _Put(_Bytes* bytes, const std::vector<T>& values);
    template <class T>
    void _Put(_Bytes* bytes, const SdfListOp<T>& op);

    struct _KnownArray
    {
        VtValue array;
        Sdf_CrateRep rep;
    };

    Sdf_SafeOutput* _output;
    Sdf_CrateNames* _names;
    Sdf_CrateVersion _version{{0, 8, 0}};
    std::string _fault;
    std::unordered_map<std::string, uint64_t> _knownBytes; // with the type in front
    std::unordered_multimap<size_t, _KnownArray> _knownArrays;
};

PXR_NAMESPACE_CLOSE_SCOPE
