#pragma once

/// Writes crate files.

#include "pxr/usd/sdf/crate/crateNames.h"
#include "pxr/usd/sdf/crate/valueWriter.h"
#include "pxr/usd/sdf/safeOutput.h"

#include <pxr/pxr.h>
#include <pxr/usd/sdf/abstractData.h>

#include <map>
#include <string>
#include <unordered_map>
#include <vector>

PXR_NAMESPACE_OPEN_SCOPE

/// Writes one file. The same content gives the same bytes. The version is 0.8.0, or a later one where a value
/// needs it. Thread: one, while nobody edits the data.
class Sdf_CrateWriter
{
public:
    explicit Sdf_CrateWriter(const SdfAbstractData& data);

    /// Writes the file aside and puts it in its place; false, with the reason, where it cannot be written as
    /// a whole.
    bool Write(const std::string& path, std::string* whyNot);

private:
    typedef std::vector<std::pair<TfToken, Sdf_CrateRep>> _Fields;
    struct _Section
    {
        const char* name;
        uint64_t start;
        uint64_t size;
    };
    bool _PackSpecs(std::string* whyNot);
    bool _PackSamples(std::string* whyNot);
    bool _Failed(const SdfPath& path, const TfToken& field, std::string* whyNot) const;
    void _AddSpec(const SdfPath& path, const _Fields& fields);
    void _WriteSections();
    void _WriteContents();
    void _WriteTokens();
    void _WriteFields();
    void _Begin(const char* name);
    void _End();
    template <class T>
    void _Put(const T& value);
    template <class Int>
    void _PutInts(const std::vector<Int>& ints);

    const SdfAbstractData& _data;
    SdfPathVector _specPaths; // in the order of the file
    Sdf_SafeOutput _output;
    Sdf_CrateNames _names;
    Sdf_CrateValueWriter _values;
    std::unordered_map<SdfPath, Sdf_CrateRep, SdfPath::Hash> _samples;

    std::vector<std::pair<uint32_t, Sdf_CrateRep>> _fields;
    std::map<std::pair<uint32_t, uint64_t>, uint32_t> _fieldIndices;
    std::vector<uint32_t> _fieldSets;
    std::map<std::vector<uint32_t>, uint32_t> _fieldSetIndices;
    std::vector<uint32_t> _specPathIndices;
    std::vector<uint32_t> _specFieldSets;
    std::vector<uint32_t> _specTypes;
    std::vector<_Section> _sections;
};

PXR_NAMESPACE_CLOSE_SCOPE
