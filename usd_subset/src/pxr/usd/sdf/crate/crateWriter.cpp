#include "pxr/usd/sdf/crate/crateWriter.h"

#include "pxr/usd/sdf/crate/compression.h"

#include <pxr/usd/sdf/schema.h>

#include <algorithm>
#include <cstring>

PXR_NAMESPACE_OPEN_SCOPE

namespace {

class SpecPaths : public SdfAbstractDataSpecVisitor
{
public:
    bool VisitSpec(const SdfAbstractData&, const SdfPath& path) override
    {
        // Targets and connections follow from the lists of their properties.
        if (!path.IsTargetPath()) {
            paths.push_back(path);
        }
        return true;
    }
    void Done(const SdfAbstractData&) override {}
    SdfPathVector paths;
};

// Prims first, then properties by their names: like values lie together.
bool comesBefore(const SdfPath& a, const SdfPath& b)
{
    const bool propertyA = a.IsPropertyPath();
    const bool propertyB = b.IsPropertyPath();
    if (propertyA != propertyB) {
        return propertyB;
    }
    if (propertyA) {
        const int order = a.GetName().compare(b.GetName());
        return order != 0 ? order < 0 : a < b;
    }
    return a < b;
}

} // namespace

Sdf_CrateWriter::Sdf_CrateWriter(const SdfAbstractData& data) : _data(data), _values(&_output, &_names)
{
    SpecPaths visitor;
    data.VisitSpecs(&visitor);
    _specPaths = std::move(visitor.paths);
    std::sort(_specPaths.begin(), _specPaths.end(), &comesBefore);
}

bool Sdf_CrateWriter::Write(const std::string& path, std::string* whyNot)
{
    if (!_output.Open(path, whyNot)) {
        return false;
    }
    const char header[kSdf_CrateHeaderSize] = {};
    _output.Write(header, sizeof header);
    if (!_PackSamples(whyNot) || !_PackSpecs(whyNot)) {
        return false;
    }
    _WriteSections();
    return _output.Commit(whyNot);
}

// Samples are packed time by time, so that what is shown together lies together.
bool Sdf_CrateWriter::_PackSamples(std::string* whyNot)
{
    struct Sampled
    {
        SdfPath path;
        std::vector<double> times;
        std::vector<Sdf_CrateRep> values;
    };
    struct Sample
    {
        double time;
        size_t attribute;
    };
    std::vector<Sampled> attributes;
    std::vector<Sample> samples;
    for (const SdfPath& path : _specPaths) {
        if (_data.Has(path, SdfFieldKeys->TimeSamples)) {
            const std::set<double> times = _data.ListTimeSamplesForPath(path);
            for (double time : times) {
                samples.push_back({time, attributes.size()});
            }
            attributes.push_back({path, std::vector<double>(times.begin(), times.end()), {}});
        }
    }
    std::stable_sort(samples.begin(), samples.end(),
                     [](const Sample& a, const Sample& b) { return a.time < b.time; });
    for (const Sample& sample : samples) {
        VtValue value;
        Sampled& attribute = attributes[sample.attribute];
        _data.QueryTimeSample(attribute.path, sample.time, &value);
        attribute.values.push_back(_values.Pack(value));
        if (_Failed(attribute.path, SdfFieldKeys->TimeSamples, whyNot)) {
            return false;
        }
    }
    for (const Sampled& attribute : attributes) {
        _samples.emplace(attribute.path, _values.PackSamples(attribute.times, attribute.values));
    }
    return true;
}

bool Sdf_CrateWriter::_Failed(const SdfPath& path, const TfToken& field, std::string* whyNot) const
{
    const std::string& fault = _values.GetFault().empty() ? _names.GetFault() : _values.GetFault();
    if (!fault.empty()) {
        *whyNot = "the field \"" + field.GetString() + "\" of <" + path.GetAsString() + ">: " + fault;
    }
    return !fault.empty();
}

bool Sdf_CrateWriter::_PackSpecs(std::string* whyNot)
{
    for (const SdfPath& path : _specPaths) {
        _Fields fields;
        for (const TfToken& name : _data.List(path)) {
            if (name == SdfChildrenKeys->ConnectionChildren ||
                name == SdfChildrenKeys->RelationshipTargetChildren) {
                continue;
            }
            const auto samples = name == SdfFieldKeys->TimeSamples ? _samples.find(path) : _samples.end();
            fields.emplace_back(name, samples != _samples.end() ? samples->second
                                                                : _values.Pack(_data.Get(path, name)));
            if (_Failed(path, name, whyNot)) {
                return false;
            }
        }
        _AddSpec(path, fields);
        if (_Failed(path, TfToken(), whyNot)) {
            return false;
        }
    }
    return true;
}

void Sdf_CrateWriter::_AddSpec(const SdfPath& path, const _Fields& fields)
{
    std::vector<uint32_t> set;
    for (const auto& field : fields) {
        const uint32_t name = _names.IndexOf(field.first);
        const auto added = _fieldIndices.emplace(std::make_pair(name, field.second.GetBits()),
                                                 static_cast<uint32_t>(_fields.size()));
        if (added.second) {
            _fields.emplace_back(name, field.second);
        }
        set.push_back(added.first->second);
    }
    const auto added = _fieldSetIndices.emplace(set, static_cast<uint32_t>(_fieldSets.size()));
    if (added.second) {
        _fieldSets.insert(_fieldSets.end(), set.begin(), set.end());
        _fieldSets.push_back(kSdf_CrateNoIndex);
    }
    _specPathIndices.push_back(_names.IndexOf(path));
    _specFieldSets.push_back(added.first->second);
    _specTypes.push_back(static_cast<uint32_t>(_data.GetSpecType(path)));
}

template <class T>
void Sdf_CrateWriter::_Put(const T& value)
{
    _output.Write(&value, sizeof value);
}

template <class Int>
void Sdf_CrateWriter::_PutInts(const std::vector<Int>& ints)
{
    const std::vector<char> packed = Sdf_CompressInts(ints.data(), ints.size());
    _Put(static_cast<uint64_t>(packed.size()));
    _output.Write(packed.data(), packed.size());
}

void Sdf_CrateWriter::_Begin(const char* name) { _sections.push_back({name, _output.Tell(), 0}); }

void Sdf_CrateWriter::_End() { _sections.back().size = _output.Tell() - _sections.back().start; }

void Sdf_CrateWriter::_WriteTokens()
{
    std::string text;
    for (const TfToken& token : _names.GetTokens()) {
        text.append(token.GetString()).push_back('\0');
    }
    const std::vector<char> packed = Sdf_Compress(text.data(), text.size());
    _Put(static_cast<uint64_t>(_names.GetTokens().size()));
    _Put(static_cast<uint64_t>(text.size()));
    _Put(static_cast<uint64_t>(packed.size()));
    _output.Write(packed.data(), packed.size());
}

void Sdf_CrateWriter::_WriteFields()
{
    std::vector<uint32_t> names;
    std::vector<uint64_t> reps;
    for (const auto& field : _fields) {
        names.push_back(field.first);
        reps.push_back(field.second.GetBits());
    }
    const std::vector<char> packed =
        Sdf_Compress(reinterpret_cast<const char*>(reps.data()), reps.size() * sizeof(uint64_t));
    _Put(static_cast<uint64_t>(_fields.size()));
    _PutInts(names);
    _Put(static_cast<uint64_t>(packed.size()));
    _output.Write(packed.data(), packed.size());
}

void Sdf_CrateWriter::_WriteSections()
{
    const Sdf_CrateNames::Tree tree = _names.MakeTree();
    _Begin("TOKENS");
    _WriteTokens();
    _End();
    _Begin("STRINGS");
    _Put(static_cast<uint64_t>(_names.GetStrings().size()));
    _output.Write(_names.GetStrings().data(), _names.GetStrings().size() * sizeof(uint32_t));
    _End();
    _Begin("FIELDS");
    _WriteFields();
    _End();
    _Begin("FIELDSETS");
    _Put(static_cast<uint64_t>(_fieldSets.size()));
    _PutInts(_fieldSets);
    _End();
    _Begin("PATHS");
    _Put(static_cast<uint64_t>(_names.GetPaths().size()));
    _Put(static_cast<uint64_t>(tree.indices.size()));
    _PutInts(tree.indices);
    _PutInts(tree.elements);
    _PutInts(tree.jumps);
    _End();
    _Begin("SPECS");
    _Put(static_cast<uint64_t>(_specPathIndices.size()));
    _PutInts(_specPathIndices);
    _PutInts(_specFieldSets);
    _PutInts(_specTypes);
    _End();
    _WriteContents();
}

void Sdf_CrateWriter::_WriteContents()
{
    const uint64_t contents = _output.Tell();
    _Put(static_cast<uint64_t>(_sections.size()));
    for (const _Section& section : _sections) {
        char name[kSdf_CrateSectionNameSize] = {};
        std::strncpy(name, section.name, sizeof name - 1);
        _output.Write(name, sizeof name);
        _Put(section.start);
        _Put(section.size);
    }
    char header[kSdf_CrateHeaderSize] = {};
    const Sdf_CrateVersion version = _values.GetVersion();
    std::memcpy(header, kSdf_CrateMagic, kSdf_CrateMagicSize);
    std::memcpy(header + kSdf_CrateMagicSize, version.numbers, sizeof version.numbers);
    std::memcpy(header + 2 * kSdf_CrateMagicSize, &contents, sizeof contents);
    _output.WriteAt(0, header, sizeof header);
}

PXR_NAMESPACE_CLOSE_SCOPE
