#pragma once

#include "deformation.h"

#include <pxr/base/gf/matrix4d.h>
#include <pxr/base/vt/array.h>
#include <pxr/base/vt/types.h>
#include <pxr/usd/sdf/path.h>
#include <pxr/usd/usd/prim.h>
#include <pxr/usd/usd/timeCode.h>

#include <map>
#include <optional>
#include <set>
#include <string>
#include <vector>

namespace vesk::renderers::embree {

/// Reads how skeletons deform the meshes below skeleton roots (UsdSkel): bindings, poses and blend shapes.
/// Poses are worked out once a skeleton. Lives for one extraction.
class SkeletonReader
{
public:
    explicit SkeletonReader(PXR_NS::UsdTimeCode time) : m_time(time) {}

    /// What deforms a mesh; nothing for one that is drawn as it is authored.
    /// \param pointCount of the mesh
    /// Logs: warn, where a binding does not fit the mesh or its skeleton.
    std::optional<Deformation> read(const PXR_NS::UsdPrim& mesh, std::size_t pointCount);

    /// Whether a prim lies below a skeleton root and is bound there; what it looks like depends on others
    /// then.
    bool isBound(const PXR_NS::UsdPrim& mesh) const;

    /// The skeletons, animations and blend shapes that were read.
    const std::set<PXR_NS::SdfPath>& usedPaths() const { return m_usedPaths; }

private:
    /// A skeleton's joints and animation at the time.
    struct Pose
    {
        PXR_NS::VtTokenArray joints;
        std::vector<PXR_NS::GfMatrix4d> skinning; ///< one a joint, in the skeleton's space; empty: unusable
        std::map<std::string, float> blendWeights;
    };

    const Pose& _poseOf(const PXR_NS::UsdPrim& skeleton);
    Pose _readPose(const PXR_NS::UsdPrim& skeleton);
    void _addBlendShapes(const PXR_NS::UsdPrim& mesh, const Pose& pose, std::size_t pointCount,
                         Deformation& deformation);
    std::string _addSkinning(const PXR_NS::UsdPrim& mesh, const PXR_NS::UsdPrim& skeleton, const Pose& pose,
                             std::size_t pointCount, Deformation& deformation) const;

    PXR_NS::UsdTimeCode m_time;
    std::map<PXR_NS::SdfPath, Pose> m_poses;
    std::set<PXR_NS::SdfPath> m_usedPaths;
};

} // namespace vesk::renderers::embree
