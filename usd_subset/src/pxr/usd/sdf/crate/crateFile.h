#pragma once

/// An open crate file: its tables, and its values, which are decoded when they are asked for.

#include "pxr/usd/sdf/crate/crateFormat.h"
#include "pxr/usd/sdf/crate/crateSource.h"

#include <pxr/base/tf/token.h>
#include <pxr/pxr.h>
#include <pxr/usd/sdf/path.h>

#include <memory>
#include <mutex>
#include <string>
#include <typeinfo>
#include <unordered_map>
#include <unordered_set>
#include <vector>

PXR_NAMESPACE_OPEN_SCOPE

/// How much one load, and the decoding of one value, may cost.
struct Sdf_CrateLimits
{
    uint64_t memory = uint64_t(4) << 30;
    /// Larger files are read part by part.
    uint64_t buffer = uint64_t(512) << 20;
    size_t pathDepth = 2000;
    int valueDepth = 64;
};

/// The times of samples; attributes that are sampled at the same times share them.
typedef std::shared_ptr<const std::vector<double>> Sdf_CrateTimes;

/// The samples of an attribute as they lie in the file.
struct Sdf_CrateFileSamples
{
    Sdf_CrateTimes times;
    uint64_t reps = 0; // where the references to the values lie
};

/// Thread: one while it opens, then any.
class Sdf_CrateFile
{
public:
    struct Field
    {
        uint32_t name;
        Sdf_CrateRep rep;
    };
    struct Spec
    {
        uint32_t path;
        uint32_t fieldSet;
        SdfSpecType type;
    };
    /// The tables that are of use while the layer's data is made.
    struct Tables
    {
        std::vector<Field> fields;
        std::vector<uint32_t> fieldSets; // runs of field indices, each ended by kSdf_CrateNoIndex
        std::vector<Spec> specs;
    };

    /// Reads the tables of a file. Throws Sdf_CrateError.
    Sdf_CrateFile(const std::string& name, const std::shared_ptr<ArAsset>& asset,
                  const Sdf_CrateLimits& limits, Tables* tables);

    const std::string& GetName() const { return _name; }
    const Sdf_CrateSource& GetSource() const { return _source; }
    const Sdf_CrateLimits& GetLimits() const { return _limits; }
    Sdf_CrateVersion GetVersion() const { return _version; }
    const std::vector<SdfPath>& GetPaths() const { return _paths; }
    size_t GetTokenCount() const { return _tokens.size(); }
    const TfToken& GetToken(uint32_t index) const { return _tokens[index]; }

    /// \name Looking up indices that were read at the cursor. Throws Sdf_CrateError.
    /// @{
    const TfToken& TokenAt(uint32_t index, const Sdf_CrateCursor& at) const;
    const std::string& StringAt(uint32_t index, const Sdf_CrateCursor& at) const;
    const SdfPath& PathAt(uint32_t index, const Sdf_CrateCursor& at) const;
    /// @}

    /// Decodes a value; where it is damaged, the answer is empty, with one error at the first time.
    VtValue Unpack(Sdf_CrateRep rep) const;
    /// Decodes the value of one sample.
    VtValue UnpackSample(const Sdf_CrateFileSamples& samples, size_t index) const;
    /// Decodes a value. Throws Sdf_CrateError.
    VtValue UnpackOrThrow(Sdf_CrateRep rep) const;
    /// Reads where samples lie, and their times. Thread: one, while the layer's data is made. Throws
    /// Sdf_CrateError.
    Sdf_CrateFileSamples ReadSamples(Sdf_CrateRep rep);
    /// Returns the type of a value without decoding it; `void` for one that cannot be decoded.
    static const std::type_info& GetTypeid(Sdf_CrateRep rep);

private:
    struct _Section
    {
        std::string name;
        uint64_t start;
        uint64_t end;
    };
    void _ReadHeader();
    void _ReadContents(uint64_t offset);
    bool _Open(const char* name, Sdf_CrateCursor* cursor) const;
    void _ReadTokens();
    void _ReadStrings();
    void _ReadFields(Tables* tables);
    void _ReadFieldSets(Tables* tables);
    void _ReadPaths();
    void _ReadSpecs(Tables* tables);
    void _CheckSpecs(const Tables& tables, const Sdf_CrateCursor& at) const;
    template <class Int>
    std::vector<Int> _ReadInts(Sdf_CrateCursor* cursor, uint64_t count);
    void _PostOnce(const std::string& text) const;

    std::string _name;
    Sdf_CrateLimits _limits;
    Sdf_CrateSource _source;
    Sdf_CrateBudget _budget;
    Sdf_CrateVersion _version;
    std::vector<_Section> _sections;
    std::vector<TfToken> _tokens;
    std::vector<uint32_t> _strings;
    std::vector<SdfPath> _paths;
    std::unordered_map<uint64_t, Sdf_CrateTimes> _times;

    mutable std::mutex _mutex;
    mutable std::unordered_set<std::string> _reported; // errors that were posted
};

PXR_NAMESPACE_CLOSE_SCOPE
