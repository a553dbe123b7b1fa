#include "pxr/usd/sdf/crate/crateData.h"

#include <pxr/base/tf/diagnostic.h>
#include <pxr/usd/sdf/schema.h>

#include <algorithm>
#include <new>

PXR_NAMESPACE_OPEN_SCOPE

namespace {

bool isTargetChildren(const TfToken& fieldName)
{
    return fieldName == SdfChildrenKeys->ConnectionChildren ||
           fieldName == SdfChildrenKeys->RelationshipTargetChildren;
}

bool isListOfNames(const TfToken& fieldName)
{
    return fieldName == SdfChildrenKeys->PrimChildren || fieldName == SdfChildrenKeys->PropertyChildren ||
           fieldName == SdfChildrenKeys->VariantChildren || fieldName == SdfChildrenKeys->VariantSetChildren;
}

// Early files hold one payload where later ones hold a list op; one without an asset said "none".
VtValue toPayloadListOp(const VtValue& value)
{
    if (!value.IsHolding<SdfPayload>()) {
        return value;
    }
    const SdfPayload& payload = value.UncheckedGet<SdfPayload>();
    SdfPayloadListOp op;
    op.ClearAndMakeExplicit();
    if (!payload.GetAssetPath().empty()) {
        op.SetExplicitItems({payload});
    }
    return VtValue(op);
}

} // namespace

Sdf_CrateData::Sdf_CrateData() = default;
Sdf_CrateData::~Sdf_CrateData() = default;

bool Sdf_CrateData::StreamsData() const { return true; }

const Sdf_CrateData::_Spec* Sdf_CrateData::_FindSpec(const SdfPath& path) const { return _specs.Find(path); }

const VtValue* Sdf_CrateData::_FindField(const _Spec& spec, const TfToken& fieldName)
{
    if (spec.fields) {
        for (const _Field& field : *spec.fields) {
            if (field.first == fieldName) {
                return &field.second;
            }
        }
    }
    return nullptr;
}

const VtValue* Sdf_CrateData::_Find(const SdfPath& path, const TfToken& fieldName) const
{
    const _Spec* spec = _FindSpec(path);
    return spec ? _FindField(*spec, fieldName) : nullptr;
}

VtValue Sdf_CrateData::_Decode(const VtValue& stored) const
{
    return stored.IsHolding<Sdf_CrateRep>() ? _file->Unpack(stored.UncheckedGet<Sdf_CrateRep>()) : stored;
}

VtValue Sdf_CrateData::_DecodeField(const TfToken& fieldName, const VtValue& stored) const
{
    if (stored.IsHolding<Sdf_CrateSamples>()) {
        const Sdf_CrateSamples& samples = stored.UncheckedGet<Sdf_CrateSamples>();
        SdfTimeSampleMap map;
        for (size_t i = 0; i < samples.times->size(); ++i) {
            map.emplace_hint(map.end(), (*samples.times)[i], _Sample(samples, i));
        }
        return VtValue::Take(map);
    }
    return fieldName == SdfFieldKeys->Payload ? toPayloadListOp(_Decode(stored)) : _Decode(stored);
}

void Sdf_CrateData::CreateSpec(const SdfPath& path, SdfSpecType specType)
{
    if (specType != SdfSpecTypeUnknown && !path.IsTargetPath()) {
        _specs.FindOrAdd(path).type = specType;
    }
}

bool Sdf_CrateData::HasSpec(const SdfPath& path) const
{
    return path.IsTargetPath() ? _HasTarget(path) : _FindSpec(path) != nullptr;
}

void Sdf_CrateData::EraseSpec(const SdfPath& path) { _specs.Erase(path); }

void Sdf_CrateData::MoveSpec(const SdfPath& oldPath, const SdfPath& newPath)
{
    if (_Spec* spec = _specs.Find(oldPath)) {
        _Spec moved = std::move(*spec);
        _specs.Erase(oldPath);
        moved.path = newPath;
        _specs.FindOrAdd(newPath) = std::move(moved);
    }
}

SdfSpecType Sdf_CrateData::GetSpecType(const SdfPath& path) const
{
    if (path.IsTargetPath()) {
        if (!_HasTarget(path)) {
            return SdfSpecTypeUnknown;
        }
        return GetSpecType(path.GetParentPath()) == SdfSpecTypeRelationship ? SdfSpecTypeRelationshipTarget
                                                                            : SdfSpecTypeConnection;
    }
    const _Spec* spec = _FindSpec(path);
    return spec ? spec->type : SdfSpecTypeUnknown;
}

SdfPath Sdf_CrateData::FindProperty(const SdfPath& primPath, const TfToken& name, SdfSpecType* specType) const
{
    const _Spec* spec = _specs.FindProperty(primPath, name);
    if (specType) {
        *specType = spec ? spec->type : SdfSpecTypeUnknown;
    }
    return spec ? spec->path : SdfPath();
}

bool Sdf_CrateData::HasSpecAndField(const SdfPath& path, const TfToken& fieldName, VtValue* value,
                                    SdfSpecType* specType) const
{
    const _Spec* spec = _FindSpec(path);
    *specType = spec ? spec->type : path.IsTargetPath() ? GetSpecType(path) : SdfSpecTypeUnknown;
    if (!spec) {
        return false;
    }
    const VtValue* field = _FindField(*spec, fieldName);
    if (!field) {
        return isTargetChildren(fieldName) && _HasTargetChildren(path, *spec, fieldName, value);
    }
    if (value) {
        *value = _DecodeField(fieldName, *field);
    }
    return !value || !value->IsEmpty();
}

bool Sdf_CrateData::HasSpecAndField(const SdfPath& path, const TfToken& fieldName,
                                    SdfAbstractDataValue* value, SdfSpecType* specType) const
{
    VtValue decoded;
    return HasSpecAndField(path, fieldName, value ? &decoded : nullptr, specType) &&
           (!value || value->StoreValue(decoded));
}

bool Sdf_CrateData::Has(const SdfPath& path, const TfToken& fieldName, VtValue* value) const
{
    SdfSpecType type = SdfSpecTypeUnknown;
    return HasSpecAndField(path, fieldName, value, &type);
}

VtValue Sdf_CrateData::Get(const SdfPath& path, const TfToken& fieldName) const
{
    VtValue value;
    Has(path, fieldName, &value);
    return value;
}

const std::type_info& Sdf_CrateData::GetTypeid(const SdfPath& path, const TfToken& fieldName) const
{
    const VtValue* field = _Find(path, fieldName);
    if (!field) {
        return isTargetChildren(fieldName) && Has(path, fieldName) ? typeid(SdfPathVector) : typeid(void);
    }
    if (field->IsHolding<Sdf_CrateSamples>()) {
        return typeid(SdfTimeSampleMap);
    }
    const std::type_info& type = field->IsHolding<Sdf_CrateRep>()
                                     ? Sdf_CrateFile::GetTypeid(field->UncheckedGet<Sdf_CrateRep>())
                                     : field->GetTypeid();
    return type == typeid(SdfPayload) ? typeid(SdfPayloadListOp) : type;
}

std::vector<TfToken> Sdf_CrateData::List(const SdfPath& path) const
{
    std::vector<TfToken> names;
    const _Spec* spec = _FindSpec(path);
    if (!spec) {
        return names;
    }
    if (spec->fields) {
        names.reserve(spec->fields->size() + 1);
        for (const _Field& field : *spec->fields) {
            names.push_back(field.first);
        }
    }
    for (const TfToken& children :
         {SdfChildrenKeys->RelationshipTargetChildren, SdfChildrenKeys->ConnectionChildren}) {
        if (_HasTargetChildren(path, *spec, children, nullptr)) {
            names.push_back(children);
        }
    }
    return names;
}

SdfPathVector Sdf_CrateData::_Targets(const SdfPath& property, const _Spec& spec, bool applied) const
{
    SdfPathVector targets;
    if (!property.IsPrimPropertyPath()) {
        return targets;
    }
    const VtValue* field =
        _FindField(spec, spec.type == SdfSpecTypeRelationship ? SdfFieldKeys->TargetPaths
                                                              : SdfFieldKeys->ConnectionPaths);
    const VtValue value = field ? _Decode(*field) : VtValue();
    if (!value.IsHolding<SdfPathListOp>()) {
        return targets;
    }
    const SdfPathListOp& op = value.UncheckedGet<SdfPathListOp>();
    if (applied || op.IsExplicit()) {
        op.ApplyOperations(&targets);
        return targets;
    }
    for (const SdfPathVector* items :
         {&op.GetAddedItems(), &op.GetPrependedItems(), &op.GetAppendedItems()}) {
        targets.insert(targets.end(), items->begin(), items->end());
    }
    std::sort(targets.begin(), targets.end());
    targets.erase(std::unique(targets.begin(), targets.end()), targets.end());
    return targets;
}

bool Sdf_CrateData::_HasTarget(const SdfPath& path) const
{
    const SdfPath property = path.GetParentPath();
    const _Spec* spec = _FindSpec(property);
    if (!spec) {
        return false;
    }
    const SdfPathVector targets = _Targets(property, *spec, false);
    return std::find(targets.begin(), targets.end(), path.GetTargetPath()) != targets.end();
}

bool Sdf_CrateData::_HasTargetChildren(const SdfPath& path, const _Spec& spec, const TfToken& fieldName,
                                       VtValue* value) const
{
    const bool ofRelationship = fieldName == SdfChildrenKeys->RelationshipTargetChildren;
    if (spec.type != (ofRelationship ? SdfSpecTypeRelationship : SdfSpecTypeAttribute) ||
        !_FindField(spec, ofRelationship ? SdfFieldKeys->TargetPaths : SdfFieldKeys->ConnectionPaths)) {
        return false;
    }
    if (value) {
        *value = VtValue(_Targets(path, spec, true));
    }
    return true;
}

void Sdf_CrateData::_VisitSpecs(SdfAbstractDataSpecVisitor* visitor) const
{
    _specs.ForEach([this, visitor](const _Spec& spec) {
        if (!visitor->VisitSpec(*this, spec.path)) {
            return false;
        }
        if (spec.type != SdfSpecTypeAttribute && spec.type != SdfSpecTypeRelationship) {
            return true;
        }
        for (const SdfPath& target : _Targets(spec.path, spec, false)) {
            if (!target.IsEmpty() && !visitor->VisitSpec(*this, spec.path.AppendTarget(target))) {
                return false;
            }
        }
        return true;
    });
}

VtValue Sdf_CrateData::_InitialValue(const Sdf_CrateFile::Field& field)
{
    const TfToken& name = _file->GetToken(field.name);
    if (isListOfNames(name) && field.rep.GetType() != Sdf_CrateType::TokenVector) {
        throw Sdf_CrateError("field \"" + name.GetString() + "\"", field.rep.GetPayload(),
                             "a list of names is expected");
    }
    if (Sdf_CrateFile::GetTypeid(field.rep) == typeid(void) &&
        field.rep.GetType() != Sdf_CrateType::TimeSamples) {
        TF_WARN("The field \"%s\" in @%s@ is left out: values of type %d cannot be read", name.GetText(),
                _file->GetName().c_str(), static_cast<int>(field.rep.GetType()));
        return VtValue();
    }
    // What lies in the reference itself, lists of children, and where samples lie are wanted soon.
    if (field.rep.GetType() == Sdf_CrateType::TimeSamples) {
        const Sdf_CrateFileSamples samples = _file->ReadSamples(field.rep);
        return VtValue(Sdf_CrateSamples{samples.times, samples.reps, nullptr});
    }
    if (field.rep.IsInlined() || field.rep.GetType() == Sdf_CrateType::TokenVector) {
        return _file->UnpackOrThrow(field.rep);
    }
    return VtValue(field.rep);
}

void Sdf_CrateData::_Populate(const Sdf_CrateFile::Tables& tables)
{
    std::vector<VtValue> values;
    values.reserve(tables.fields.size());
    for (const Sdf_CrateFile::Field& field : tables.fields) {
        values.push_back(_InitialValue(field));
    }
    const std::vector<uint32_t>& sets = tables.fieldSets;
    std::vector<std::shared_ptr<_Fields>> fields(sets.size());
    for (size_t begin = 0, end = 0; begin < sets.size(); begin = end + 1) {
        for (end = begin; sets[end] != kSdf_CrateNoIndex; ++end) {
        }
        auto list = std::make_shared<_Fields>();
        list->reserve(end - begin);
        for (size_t i = begin; i < end; ++i) {
            if (values[sets[i]].IsEmpty()) {
                continue;
            }
            list->emplace_back(_file->GetToken(tables.fields[sets[i]].name), values[sets[i]]);
        }
        fields[begin] = std::move(list);
    }
    _specs.Reserve(tables.specs.size());
    for (const Sdf_CrateFile::Spec& spec : tables.specs) {
        const SdfPath& path = _file->GetPaths()[spec.path];
        if (!path.IsTargetPath()) {
            _Spec& added = _specs.FindOrAdd(path);
            added.fields = fields[spec.fieldSet];
            added.type = spec.type;
        }
    }
}

bool Sdf_CrateData::Open(const std::string& name, const std::shared_ptr<ArAsset>& asset,
                         const Sdf_CrateLimits& limits, std::string* error)
{
    try {
        Sdf_CrateFile::Tables tables;
        _file = std::make_shared<Sdf_CrateFile>(name, asset, limits, &tables);
        _Populate(tables);
        if (GetSpecType(SdfPath::AbsoluteRootPath()) == SdfSpecTypePseudoRoot) {
            return true;
        }
        *error = "the crate file is damaged: SPECS section: there is no spec of the root";
    } catch (const Sdf_CrateError& fault) {
        *error = std::string("the crate file is damaged: ") + fault.what();
    } catch (const std::exception&) {
        *error = "there is not enough memory to read it";
    }
    _specs = Sdf_SpecTableOf<_Spec>();
    _file.reset();
    return false;
}

PXR_NAMESPACE_CLOSE_SCOPE
