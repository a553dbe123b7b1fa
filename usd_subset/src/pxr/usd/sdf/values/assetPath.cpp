#include "pxr/usd/sdf/values/assetPathText.h"

#include <pxr/base/tf/diagnostic.h>
#include <pxr/base/tf/registryManager.h>
#include <pxr/base/tf/stringUtils.h>
#include <pxr/base/tf/type.h>
#include <pxr/base/tf/unicodeUtils.h>
#include <pxr/base/vt/array.h>
#include <pxr/usd/sdf/assetPath.h>

#include <ostream>

PXR_NAMESPACE_OPEN_SCOPE

TF_REGISTRY_FUNCTION(TfType)
{
    TfType::Define<SdfAssetPath>();
    TfType::Define<VtArray<SdfAssetPath>>();
}

namespace {

bool IsControl(uint32_t codePoint) { return codePoint < 0x20 || (0x7f <= codePoint && codePoint <= 0x9f); }

bool CheckText(const std::string& path)
{
    std::string whyNot;
    if (!Sdf_IsAssetPathText(path, &whyNot)) {
        TF_CODING_ERROR("Invalid asset path string -- %s", whyNot.c_str());
        return false;
    }
    return true;
}

} // namespace

bool Sdf_IsAssetPathText(const std::string& path, std::string* whyNot)
{
    const char* at = path.c_str();
    const char* end = at + path.size();
    for (int number = 1; at != end; ++number) {
        const char* first = at;
        const uint32_t codePoint = Tf_NextCodePoint(&at, end);
        if (codePoint == Tf_invalidCodePoint && std::string(first, at) != "\xef\xbf\xbd") {
            *whyNot = TfStringPrintf("character %d is no valid UTF-8", number);
            return false;
        }
        if (IsControl(codePoint)) {
            *whyNot = TfStringPrintf("character %d is control character 0x%x", number, codePoint);
            return false;
        }
    }
    return true;
}

SdfAssetPath::SdfAssetPath(const std::string& path) : SdfAssetPath(path, std::string()) {}

SdfAssetPath::SdfAssetPath(const std::string& path, const std::string& resolvedPath)
{
    if (CheckText(path) && CheckText(resolvedPath)) {
        _assetPath = path;
        _resolvedPath = resolvedPath;
    }
}

std::ostream& operator<<(std::ostream& out, const SdfAssetPath& path)
{
    return out << '@' << path.GetAssetPath() << '@';
}

PXR_NAMESPACE_CLOSE_SCOPE
