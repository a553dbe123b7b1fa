#include "skeleton_reading.h"

#include "stage_reading.h"

#include <pxr/base/gf/matrix3d.h>
#include <pxr/base/gf/quatd.h>
#include <pxr/base/gf/quatf.h>
#include <pxr/base/gf/vec3h.h>
#include <pxr/usd/usd/relationship.h>
#include <pxr/usd/usd/stage.h>
#include <pxr/usd/usdGeom/xformCache.h>
#include <vesk/base/logging.h>

#include <algorithm>

PXR_NAMESPACE_USING_DIRECTIVE

namespace vesk::renderers::embree {
namespace {

bool isBindingPrim(const UsdPrim& prim)
{
    static const TfToken api("SkelBindingAPI");
    return prim.HasAPI(api);
}

bool isRoot(const UsdPrim& prim) { return prim.GetTypeName() == "SkelRoot"; }

UsdPrim targetOf(const UsdPrim& prim, const char* relationship)
{
    const UsdRelationship rel = prim.GetRelationship(TfToken(relationship));
    SdfPathVector targets;
    if (!rel || !rel.GetForwardedTargets(&targets) || targets.empty()) return {};
    return prim.GetStage()->GetPrimAtPath(targets.front());
}

// The nearest target at or above a prim, up to the skeleton root.
UsdPrim inheritedTarget(const UsdPrim& prim, const char* relationship)
{
    for (UsdPrim p = prim; p && !p.IsPseudoRoot(); p = p.GetParent()) {
        if (isBindingPrim(p)) {
            if (const UsdPrim target = targetOf(p, relationship)) return target;
        }
        if (isRoot(p)) break;
    }
    return {};
}

bool hasRootAbove(const UsdPrim& prim)
{
    for (UsdPrim p = prim.GetParent(); p && !p.IsPseudoRoot(); p = p.GetParent()) {
        if (isRoot(p)) return true;
    }
    return false;
}

// The joint above each one by their paths, -1 for a root; joints come after those above them.
std::vector<int> parentsOf(const VtTokenArray& joints)
{
    std::map<std::string, int> places;
    std::vector<int> parents;
    for (std::size_t i = 0; i < joints.size(); ++i) {
        std::string path = joints[i].GetString();
        int parent = -1;
        for (std::size_t cut = path.rfind('/'); cut != std::string::npos && parent < 0;
             cut = path.rfind('/')) {
            path.resize(cut);
            const auto at = places.find(path);
            if (at != places.end()) parent = at->second;
        }
        parents.push_back(parent);
        places.emplace(joints[i].GetString(), static_cast<int>(i));
    }
    return parents;
}

GfMatrix4d localMatrix(const GfVec3f& translation, const GfQuatf& rotation, const GfVec3h& scale)
{
    GfMatrix4d m(1.0);
    m.SetRotate(GfQuatd(rotation.GetNormalized()));
    for (int row = 0; row < 3; ++row) {
        for (int column = 0; column < 3; ++column)
            m[row][column] *= static_cast<double>(static_cast<float>(scale[row]));
    }
    m.SetTranslateOnly(GfVec3d(translation));
    return m;
}

// Where an animation moves joints, they move; the others rest.
void applyAnimation(const UsdPrim& animation, UsdTimeCode time, const VtTokenArray& joints,
                    std::vector<GfMatrix4d>& locals)
{
    const VtTokenArray moved = readAttribute(animation, "joints", time, VtTokenArray());
    const VtVec3fArray translations = readAttribute(animation, "translations", time, VtVec3fArray());
    const VtQuatfArray rotations = readAttribute(animation, "rotations", time, VtQuatfArray());
    const VtVec3hArray scales = readAttribute(animation, "scales", time, VtVec3hArray());
    if (translations.size() != moved.size() || rotations.size() != moved.size() ||
        scales.size() != moved.size()) {
        return;
    }
    std::map<TfToken, std::size_t> places;
    for (std::size_t i = 0; i < joints.size(); ++i)
        places.emplace(joints[i], i);
    for (std::size_t i = 0; i < moved.size(); ++i) {
        const auto at = places.find(moved[i]);
        if (at != places.end()) locals[at->second] = localMatrix(translations[i], rotations[i], scales[i]);
    }
}

} // namespace

bool SkeletonReader::isBound(const UsdPrim& mesh) const
{
    return hasRootAbove(mesh) && bool(inheritedTarget(mesh, "skel:skeleton"));
}

std::optional<Deformation> SkeletonReader::read(const UsdPrim& mesh, std::size_t pointCount)
{
    if (!hasRootAbove(mesh)) return std::nullopt;
    const UsdPrim skeleton = inheritedTarget(mesh, "skel:skeleton");
    if (!skeleton || skeleton.GetTypeName() != "Skeleton" || !skeleton.IsActive()) return std::nullopt;
    const Pose& pose = _poseOf(skeleton);
    Deformation deformation;
    _addBlendShapes(mesh, pose, pointCount, deformation);
    const std::string problem = _addSkinning(mesh, skeleton, pose, pointCount, deformation);
    if (!problem.empty()) VESK_LOG_WARN("Mesh {} {} and rests", mesh.GetPath().GetString(), problem);
    return deformation.empty() ? std::nullopt : std::optional<Deformation>(std::move(deformation));
}

const SkeletonReader::Pose& SkeletonReader::_poseOf(const UsdPrim& skeleton)
{
    const auto known = m_poses.find(skeleton.GetPath());
    if (known != m_poses.end()) return known->second;
    return m_poses[skeleton.GetPath()] = _readPose(skeleton);
}

SkeletonReader::Pose SkeletonReader::_readPose(const UsdPrim& skeleton)
{
    Pose pose;
    m_usedPaths.insert(skeleton.GetPath());
    pose.joints = readAttribute(skeleton, "joints", m_time, VtTokenArray());
    const VtMatrix4dArray rest = readAttribute(skeleton, "restTransforms", m_time, VtMatrix4dArray());
    const VtMatrix4dArray bind = readAttribute(skeleton, "bindTransforms", m_time, VtMatrix4dArray());
    const UsdPrim animation = inheritedTarget(skeleton, "skel:animationSource");
    std::vector<GfMatrix4d> locals(rest.begin(), rest.end());
    locals.resize(pose.joints.size(), GfMatrix4d(1.0));
    if (animation && animation.IsActive()) {
        m_usedPaths.insert(animation.GetPath());
        applyAnimation(animation, m_time, pose.joints, locals);
        const VtTokenArray shapes = readAttribute(animation, "blendShapes", m_time, VtTokenArray());
        const VtFloatArray weights = readAttribute(animation, "blendShapeWeights", m_time, VtFloatArray());
        for (std::size_t i = 0; i < std::min(shapes.size(), weights.size()); ++i)
            pose.blendWeights[shapes[i].GetString()] = weights[i];
    }
    if (bind.size() != pose.joints.size()) return pose;
    const std::vector<int> parents = parentsOf(pose.joints);
    for (std::size_t i = 0; i < locals.size(); ++i) {
        if (parents[i] >= 0) locals[i] *= locals[static_cast<std::size_t>(parents[i])];
    }
    for (std::size_t i = 0; i < locals.size(); ++i)
        pose.skinning.push_back(bind[i].GetInverse() * locals[i]);
    return pose;
}

void SkeletonReader::_addBlendShapes(const UsdPrim& mesh, const Pose& pose, std::size_t pointCount,
                                     Deformation& deformation)
{
    const VtTokenArray names = readAttribute(mesh, "skel:blendShapes", m_time, VtTokenArray());
    const UsdRelationship rel = mesh.GetRelationship(TfToken("skel:blendShapeTargets"));
    SdfPathVector targets;
    if (names.empty() || !rel || !rel.GetForwardedTargets(&targets)) return;
    const auto add = [pointCount](const VtVec3fArray& offsets, const VtIntArray& points, float weight,
                                  std::vector<Vec3>& sum) {
        if (offsets.empty() || (!points.empty() && points.size() != offsets.size())) return;
        sum.resize(pointCount);
        for (std::size_t i = 0; i < offsets.size(); ++i) {
            const auto point = points.empty() ? i : static_cast<std::size_t>(points[i]);
            if (point < pointCount) sum[point] += Vec3(offsets[i]) * weight;
        }
    };
    for (std::size_t i = 0; i < std::min(names.size(), targets.size()); ++i) {
        m_usedPaths.insert(targets[i]);
        const auto weight = pose.blendWeights.find(names[i].GetString());
        const UsdPrim shape = mesh.GetStage()->GetPrimAtPath(targets[i]);
        if (weight == pose.blendWeights.end() || weight->second == 0.0f || !shape) continue;
        const VtIntArray points = readAttribute(shape, "pointIndices", m_time, VtIntArray());
        add(readAttribute(shape, "offsets", m_time, VtVec3fArray()), points, weight->second,
            deformation.offsets);
        add(readAttribute(shape, "normalOffsets", m_time, VtVec3fArray()), points, weight->second,
            deformation.normalOffsets);
    }
}

namespace {

// A mesh may number the joints in an order of its own; -1 where the skeleton lacks one.
std::vector<int> jointNumbers(const UsdPrim& mesh, const VtTokenArray& joints, UsdTimeCode time)
{
    const VtTokenArray own = readAttribute(mesh, "skel:joints", time, VtTokenArray());
    std::vector<int> numbers;
    for (std::size_t i = 0; i < (own.empty() ? joints.size() : own.size()); ++i) {
        if (own.empty()) {
            numbers.push_back(static_cast<int>(i));
            continue;
        }
        const auto at = std::find(joints.begin(), joints.end(), own[i]);
        numbers.push_back(at == joints.end() ? -1 : static_cast<int>(at - joints.begin()));
    }
    return numbers;
}

std::size_t elementSize(const UsdAttribute& attribute)
{
    int size = 1;
    attribute.GetMetadata(TfToken("elementSize"), &size);
    return static_cast<std::size_t>(std::max(size, 1));
}

} // namespace

// Returns what is wrong, empty where nothing is.
std::string SkeletonReader::_addSkinning(const UsdPrim& mesh, const UsdPrim& skeleton, const Pose& pose,
                                         std::size_t pointCount, Deformation& deformation) const
{
    const UsdAttribute attribute = mesh.GetAttribute(TfToken("primvars:skel:jointIndices"));
    VtIntArray indices;
    if (!attribute || !attribute.Get(&indices, m_time) || indices.empty()) return {};
    const VtFloatArray weights = readAttribute(mesh, "primvars:skel:jointWeights", m_time, VtFloatArray());
    TfToken interpolation;
    attribute.GetMetadata(TfToken("interpolation"), &interpolation);
    const bool isRigid = interpolation != "vertex" && interpolation != "varying";
    const std::size_t perPoint = isRigid ? indices.size() : elementSize(attribute);
    if (weights.size() != indices.size()) return "has not as many joint weights as joint indices";
    if (!isRigid && indices.size() != perPoint * pointCount) return "has not a set of joints for each point";
    if (pose.skinning.empty()) return "is bound to a skeleton without a bind transform for each joint";
    const std::vector<int> numbers = jointNumbers(mesh, pose.joints, m_time);
    std::vector<int> joints;
    for (std::size_t i = 0; i < indices.size(); ++i) {
        const auto index = static_cast<std::size_t>(indices[i]);
        const int joint = indices[i] >= 0 && index < numbers.size() ? numbers[index] : -1;
        if (joint < 0 && weights[i] != 0.0f) return "has a joint index that its skeleton does not have";
        joints.push_back(std::max(joint, 0));
    }
    UsdGeomXformCache places(m_time);
    double determinant = 0.0;
    const GfMatrix4d toMesh = places.GetLocalToWorldTransform(skeleton) *
                              places.GetLocalToWorldTransform(mesh).GetInverse(&determinant);
    if (determinant == 0.0) return "lies at a place without volume";
    const GfMatrix4d bind = readAttribute(mesh, "primvars:skel:geomBindTransform", m_time, GfMatrix4d(1.0));
    for (const GfMatrix4d& joint : pose.skinning)
        deformation.joints.push_back(bind * joint * toMesh);
    deformation.jointIndices = std::move(joints);
    deformation.weights.assign(weights.begin(), weights.end());
    deformation.perPoint = perPoint;
    deformation.isRigid = isRigid;
    return {};
}

} // namespace vesk::renderers::embree
