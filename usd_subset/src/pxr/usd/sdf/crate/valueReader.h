#pragma once

/// Decodes the values of crate files.

#include "pxr/usd/sdf/crate/crateFile.h"

#include <pxr/base/vt/array.h>
#include <pxr/base/vt/value.h>
#include <pxr/pxr.h>

#include <map>
#include <vector>

PXR_NAMESPACE_OPEN_SCOPE

/// Decodes one value with all that it holds. Nesting, the number of nested values and the memory are
/// limited. All functions throw Sdf_CrateError.
class Sdf_CrateValueReader
{
public:
    explicit Sdf_CrateValueReader(const Sdf_CrateFile& file);

    VtValue Read(Sdf_CrateRep rep);
    /// Goes to where the samples of an attribute lie, and returns the reference to their times.
    Sdf_CrateRep ReadSampleTimes(Sdf_CrateRep rep);
    /// After ReadSampleTimes(): returns where the `count` references to the values lie.
    uint64_t ReadSampleReps(uint64_t count);

private:
    template <class T>
    VtValue _ReadSingle(Sdf_CrateRep rep);
    template <class T>
    VtValue _ReadSingleOrArray(Sdf_CrateRep rep);
    template <class T>
    VtArray<T> _ReadArray(Sdf_CrateRep rep);
    template <class T>
    void _ReadElements(uint64_t count, VtArray<T>* array);
    template <class T>
    void _ReadPacked(uint64_t count, VtArray<T>* array);
    template <class T>
    void _ReadPackedFloats(uint64_t count, VtArray<T>* array);
    template <class Int>
    void _ReadPackedInts(uint64_t count, Int* ints);
    template <class T>
    VtArray<T> _MakeArray(uint64_t count);
    template <class T>
    T _FromInlined(uint32_t bits);
    uint64_t _FollowOffset();

    template <class T>
    T _Get()
    {
        if constexpr (Sdf_CrateIsPlain<T>) {
            return _cursor.Read<T>();
        } else {
            T value{};
            _Get(&value);
            return value;
        }
    }
    /// Throws Sdf_CrateError where the text can be no asset path.
    SdfAssetPath _AssetPath(const std::string& path) const;
    void _Get(std::string* value);
    void _Get(TfToken* value);
    void _Get(SdfPath* value);
    void _Get(SdfAssetPath* value);
    void _Get(SdfTimeCode* value);
    void _Get(SdfLayerOffset* value);
    void _Get(SdfReference* value);
    void _Get(SdfPayload* value);
    void _Get(SdfRelocate* value);
    void _Get(SdfUnregisteredValue* value);
    void _Get(VtDictionary* value);
    void _Get(SdfVariantSelectionMap* value);
    void _Get(VtValue* value);
    template <class T>
    void _Get(std::vector<T>* values);
    template <class T>
    void _Get(SdfListOp<T>* op);
    template <class T>
    static constexpr uint64_t _LeastSize();
    template <class T>
    T _Checked(T value, int count, const char* what);

    const Sdf_CrateFile& _file;
    Sdf_CrateCursor _cursor;
    Sdf_CrateBudget _budget;
    int _depth = 0;
    uint64_t _nestedLeft;
};

PXR_NAMESPACE_CLOSE_SCOPE
