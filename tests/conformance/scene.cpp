#include "scene.h"

#include <pxr/usd/sdf/layer.h>
#include <pxr/usd/sdf/primSpec.h>
#include <pxr/usd/usd/relationship.h>
#include <pxr/usd/usdGeom/bboxCache.h>
#include <pxr/usd/usdGeom/tokens.h>

#include <atomic>
#include <filesystem>
#include <fstream>

#include <unistd.h>

namespace conformance {

namespace {

// Statements of the text format end with their line. What is quoted stays as it is.
std::string WithLines(const std::string& text)
{
    std::string lines;
    for (size_t i = 0; i < text.size(); ++i) {
        const char c = text[i];
        const size_t end = c == '"' || c == '@' ? text.find(c, i + 1) : std::string::npos;
        if (end != std::string::npos) {
            lines.append(text, i, end - i + 1);
            i = end;
            continue;
        }
        switch (c) {
        case ';':
            lines += '\n';
            break;
        case '{':
            lines += "{\n";
            break;
        case '}':
            lines += "\n}\n";
            break;
        default:
            lines += c;
        }
    }
    return lines;
}

} // namespace

Scene::Scene(const std::map<std::string, std::string>& files, UsdStage::InitialLoadSet load)
{
    static std::atomic<int> number{0};
    m_folder = (std::filesystem::temp_directory_path() /
                ("conformance-" + std::to_string(::getpid()) + "-" + std::to_string(++number)))
                   .string();
    for (const auto& [name, text] : files) {
        const std::filesystem::path file = std::filesystem::path(m_folder) / name;
        std::filesystem::create_directories(file.parent_path());
        std::ofstream(file) << "#usda 1.0\n" << WithLines(text);
    }
    m_stage = UsdStage::Open(GetFile("root.usda"), load);
    EXPECT_TRUE(m_stage);
}

Scene::~Scene()
{
    m_stage.Reset();
    std::filesystem::remove_all(m_folder);
}

Strings Scene::GetPrimStack(const std::string& path) const
{
    Strings stack;
    for (const SdfPrimSpecHandle& spec : GetPrim(path).GetPrimStack()) {
        const std::filesystem::path file = spec->GetLayer()->GetIdentifier();
        stack.push_back(file.stem().string() + " " + spec->GetPath().GetString());
    }
    return stack;
}

Strings Scene::GetChildren(const std::string& path) const
{
    return ToStrings(GetPrim(path).GetFilteredChildrenNames(UsdPrimAllPrimsPredicate));
}

Strings Scene::GetTargets(const std::string& relationship) const
{
    SdfPathVector targets;
    m_stage->GetRelationshipAtPath(SdfPath(relationship)).GetTargets(&targets);
    return ToStrings(targets);
}

GfRange3d Scene::GetBounds(const std::string& path, UsdTimeCode time) const
{
    UsdGeomBBoxCache cache(time, {UsdGeomTokens->default_, UsdGeomTokens->render});
    return cache.ComputeWorldBound(GetPrim(path)).ComputeAlignedRange();
}

void ExpectBox(const GfRange3d& box, const GfVec3d& min, const GfVec3d& max)
{
    ASSERT_FALSE(box.IsEmpty());
    for (int i = 0; i != 3; ++i) {
        EXPECT_NEAR(min[i], box.GetMin()[i], 1e-6) << "minimum of axis " << i;
        EXPECT_NEAR(max[i], box.GetMax()[i], 1e-6) << "maximum of axis " << i;
    }
}

Strings ToStrings(const SdfPathVector& paths)
{
    Strings strings;
    for (const SdfPath& path : paths) {
        strings.push_back(path.GetString());
    }
    return strings;
}

Strings ToStrings(const TfTokenVector& tokens)
{
    Strings strings;
    for (const TfToken& token : tokens) {
        strings.push_back(token.GetString());
    }
    return strings;
}

} // namespace conformance
