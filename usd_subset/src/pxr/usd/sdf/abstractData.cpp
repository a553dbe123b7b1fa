#include <pxr/base/vt/dictionary.h>
#include <pxr/usd/sdf/abstractData.h>

PXR_NAMESPACE_OPEN_SCOPE

namespace {

// Collects the paths of all specs, or stops at the first that two data objects do not share.
class PathCollector : public SdfAbstractDataSpecVisitor
{
public:
    bool VisitSpec(const SdfAbstractData&, const SdfPath& path) override
    {
        paths.push_back(path);
        return true;
    }
    void Done(const SdfAbstractData&) override {}
    std::vector<SdfPath> paths;
};

std::vector<SdfPath> allPaths(const SdfAbstractData& data)
{
    PathCollector collector;
    data.VisitSpecs(&collector);
    return collector.paths;
}

bool equalFields(const SdfAbstractData& a, const SdfAbstractData& b, const SdfPath& path)
{
    const std::vector<TfToken> names = a.List(path);
    if (names.size() != b.List(path).size()) {
        return false;
    }
    for (const TfToken& name : names) {
        VtValue other;
        if (!b.Has(path, name, &other) || a.Get(path, name) != other) {
            return false;
        }
    }
    return true;
}

} // namespace

SdfAbstractData::SdfAbstractData() = default;
SdfAbstractData::~SdfAbstractData() = default;
SdfAbstractDataSpecVisitor::~SdfAbstractDataSpecVisitor() = default;

void SdfAbstractData::CopyFrom(const SdfAbstractDataConstPtr& source)
{
    for (const SdfPath& path : allPaths(*source)) {
        CreateSpec(path, source->GetSpecType(path));
        for (const TfToken& name : source->List(path)) {
            Set(path, name, source->Get(path, name));
        }
    }
}

SdfPath SdfAbstractData::FindProperty(const SdfPath& primPath, const TfToken& name,
                                      SdfSpecType* specType) const
{
    const SdfPath path =
        primPath.IsPrimOrPrimVariantSelectionPath() ? primPath.AppendProperty(name) : SdfPath();
    const SdfSpecType type = path.IsEmpty() ? SdfSpecTypeUnknown : GetSpecType(path);
    if (specType) {
        *specType = type;
    }
    return type == SdfSpecTypeUnknown ? SdfPath() : path;
}

bool SdfAbstractData::IsDetached() const { return !StreamsData(); }

bool SdfAbstractData::IsEmpty() const { return allPaths(*this).empty(); }

bool SdfAbstractData::Equals(const SdfAbstractDataRefPtr& rhs) const
{
    const std::vector<SdfPath> paths = allPaths(*this);
    if (!rhs || paths.size() != allPaths(*rhs).size()) {
        return false;
    }
    for (const SdfPath& path : paths) {
        if (GetSpecType(path) != rhs->GetSpecType(path) || !equalFields(*this, *rhs, path)) {
            return false;
        }
    }
    return true;
}

void SdfAbstractData::VisitSpecs(SdfAbstractDataSpecVisitor* visitor) const
{
    _VisitSpecs(visitor);
    visitor->Done(*this);
}

bool SdfAbstractData::Has(const SdfPath& path, const TfToken& fieldName, SdfAbstractDataValue* value) const
{
    VtValue field;
    if (!Has(path, fieldName, &field)) {
        return false;
    }
    return !value || value->StoreValue(field);
}

bool SdfAbstractData::HasSpecAndField(const SdfPath& path, const TfToken& fieldName,
                                      SdfAbstractDataValue* value, SdfSpecType* specType) const
{
    *specType = GetSpecType(path);
    return *specType != SdfSpecTypeUnknown && Has(path, fieldName, value);
}

bool SdfAbstractData::HasSpecAndField(const SdfPath& path, const TfToken& fieldName, VtValue* value,
                                      SdfSpecType* specType) const
{
    *specType = GetSpecType(path);
    return *specType != SdfSpecTypeUnknown && Has(path, fieldName, value);
}

const std::type_info& SdfAbstractData::GetTypeid(const SdfPath& path, const TfToken& fieldName) const
{
    return Get(path, fieldName).GetTypeid();
}

void SdfAbstractData::Set(const SdfPath& path, const TfToken& fieldName,
                          const SdfAbstractDataConstValue& value)
{
    VtValue stored;
    value.GetValue(&stored);
    Set(path, fieldName, stored);
}

bool SdfAbstractData::HasDictKey(const SdfPath& path, const TfToken& fieldName, const TfToken& keyPath,
                                 SdfAbstractDataValue* value) const
{
    VtValue entry;
    if (!HasDictKey(path, fieldName, keyPath, &entry)) {
        return false;
    }
    return !value || value->StoreValue(entry);
}

bool SdfAbstractData::HasDictKey(const SdfPath& path, const TfToken& fieldName, const TfToken& keyPath,
                                 VtValue* value) const
{
    VtValue field;
    if (!Has(path, fieldName, &field) || !field.IsHolding<VtDictionary>()) {
        return false;
    }
    const VtValue* entry = field.UncheckedGet<VtDictionary>().GetValueAtPath(keyPath.GetString());
    if (entry && value) {
        *value = *entry;
    }
    return entry != nullptr;
}

VtValue SdfAbstractData::GetDictValueByKey(const SdfPath& path, const TfToken& fieldName,
                                           const TfToken& keyPath) const
{
    VtValue value;
    HasDictKey(path, fieldName, keyPath, &value);
    return value;
}

void SdfAbstractData::SetDictValueByKey(const SdfPath& path, const TfToken& fieldName, const TfToken& keyPath,
                                        const VtValue& value)
{
    if (value.IsEmpty()) {
        EraseDictValueByKey(path, fieldName, keyPath);
        return;
    }
    const VtValue field = Get(path, fieldName);
    VtDictionary dictionary =
        field.IsHolding<VtDictionary>() ? field.UncheckedGet<VtDictionary>() : VtDictionary();
    dictionary.SetValueAtPath(keyPath.GetString(), value);
    Set(path, fieldName, VtValue(dictionary));
}

void SdfAbstractData::EraseDictValueByKey(const SdfPath& path, const TfToken& fieldName,
                                          const TfToken& keyPath)
{
    const VtValue field = Get(path, fieldName);
    if (!field.IsHolding<VtDictionary>()) {
        return;
    }
    VtDictionary dictionary = field.UncheckedGet<VtDictionary>();
    dictionary.EraseValueAtPath(keyPath.GetString());
    if (dictionary.empty()) {
        Erase(path, fieldName);
    } else {
        Set(path, fieldName, VtValue(dictionary));
    }
}

std::vector<TfToken> SdfAbstractData::ListDictKeys(const SdfPath& path, const TfToken& fieldName,
                                                   const TfToken& keyPath) const
{
    const VtValue value =
        keyPath.IsEmpty() ? Get(path, fieldName) : GetDictValueByKey(path, fieldName, keyPath);
    std::vector<TfToken> keys;
    if (value.IsHolding<VtDictionary>()) {
        for (const auto& entry : value.UncheckedGet<VtDictionary>()) {
            keys.push_back(TfToken(entry.first));
        }
    }
    return keys;
}

bool SdfAbstractData::QueryTimeSample(const SdfPath& path, double time, SdfAbstractDataValue* value) const
{
    VtValue sample;
    if (!QueryTimeSample(path, time, &sample)) {
        return false;
    }
    return !value || value->StoreValue(sample);
}

PXR_NAMESPACE_CLOSE_SCOPE
