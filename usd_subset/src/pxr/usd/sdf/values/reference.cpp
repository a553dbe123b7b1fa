#include <pxr/usd/sdf/reference.h>

#include <pxr/base/tf/registryManager.h>
#include <pxr/base/tf/type.h>

#include <algorithm>
#include <ostream>

PXR_NAMESPACE_OPEN_SCOPE

TF_REGISTRY_FUNCTION(TfType)
{
    TfType::Define<SdfReference>();
    TfType::Define<SdfReferenceVector>();
}

SdfReference::SdfReference(const std::string& assetPath, const SdfPath& primPath,
                           const SdfLayerOffset& layerOffset, const VtDictionary& customData)
    : _primPath(primPath), _layerOffset(layerOffset), _customData(customData)
{
    SetAssetPath(assetPath);
}

void SdfReference::SetCustomData(const std::string& name, const VtValue& value)
{
    if (value.IsEmpty()) {
        _customData.erase(name);
    } else {
        _customData[name] = value;
    }
}

bool SdfReference::operator==(const SdfReference& rhs) const
{
    return _assetPath == rhs._assetPath && _primPath == rhs._primPath && _layerOffset == rhs._layerOffset &&
           _customData == rhs._customData;
}

bool SdfReference::operator<(const SdfReference& rhs) const
{
    if (_assetPath != rhs._assetPath) {
        return _assetPath < rhs._assetPath;
    }
    if (_primPath != rhs._primPath) {
        return _primPath < rhs._primPath;
    }
    return _layerOffset != rhs._layerOffset ? _layerOffset < rhs._layerOffset
                                            : _customData.size() < rhs._customData.size();
}

int SdfFindReferenceByIdentity(const SdfReferenceVector& references, const SdfReference& reference)
{
    const auto same = [&](const SdfReference& other) {
        return SdfReference::IdentityEqual()(other, reference);
    };
    const auto found = std::find_if(references.begin(), references.end(), same);
    return found == references.end() ? -1 : static_cast<int>(found - references.begin());
}

std::ostream& operator<<(std::ostream& out, const SdfReference& reference)
{
    return out << "SdfReference(" << reference.GetAssetPath() << ", " << reference.GetPrimPath() << ", "
               << reference.GetLayerOffset() << ", " << reference.GetCustomData() << ")";
}

PXR_NAMESPACE_CLOSE_SCOPE
