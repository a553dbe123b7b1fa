#pragma once

#include <pxr/base/gf/range3d.h>
#include <pxr/usd/usd/attribute.h>
#include <pxr/usd/usd/prim.h>
#include <pxr/usd/usd/stage.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <map>
#include <string>
#include <vector>

PXR_NAMESPACE_USING_DIRECTIVE

namespace conformance {

using Strings = std::vector<std::string>;

/// A stage on files of a folder of its own, which goes with it. The first line of each file is added, and a
/// new line after each semicolon and around each brace, so that small scenes fit a few lines.
class Scene
{
public:
    /// Opens "root.usda" of the files.
    explicit Scene(const std::map<std::string, std::string>& files,
                   UsdStage::InitialLoadSet load = UsdStage::LoadAll);
    /// The same with only that file.
    explicit Scene(const std::string& root) : Scene({{"root.usda", root}}) {}
    ~Scene();
    Scene(const Scene&) = delete;
    Scene& operator=(const Scene&) = delete;

    const UsdStageRefPtr& GetStage() const { return m_stage; }
    UsdPrim GetPrim(const std::string& path) const { return m_stage->GetPrimAtPath(SdfPath(path)); }
    UsdAttribute GetAttribute(const std::string& path) const
    {
        return m_stage->GetAttributeAtPath(SdfPath(path));
    }
    std::string GetFile(const std::string& name) const { return m_folder + "/" + name; }

    /// The value of an attribute; the type's own default where it has none.
    template <class T>
    T Get(const std::string& path, UsdTimeCode time = UsdTimeCode::Default()) const
    {
        T value{};
        GetAttribute(path).Get(&value, time);
        return value;
    }

    /// The specs that make up a prim, strongest first, each as "file path".
    Strings GetPrimStack(const std::string& path) const;
    /// The names of all children, whatever they are.
    Strings GetChildren(const std::string& path) const;
    Strings GetTargets(const std::string& relationship) const;
    /// The box of a prim in the world, for the default and render purposes.
    GfRange3d GetBounds(const std::string& path, UsdTimeCode time = UsdTimeCode::Default()) const;

private:
    std::string m_folder;
    UsdStageRefPtr m_stage;
};

/// Expects corners to be where they are to within a millionth.
void ExpectBox(const GfRange3d& box, const GfVec3d& min, const GfVec3d& max);

Strings ToStrings(const SdfPathVector& paths);
Strings ToStrings(const TfTokenVector& tokens);

} // namespace conformance
