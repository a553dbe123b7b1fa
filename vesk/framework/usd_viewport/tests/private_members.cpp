#include "private_members.h"

namespace vesk::framework::usd_viewport::tests {

PrivateMembers openedMembers(ViewportModel& model);
std::vector<const void*> openedAddresses(ViewportModel& model);

// Explicit instantiation may name private members: so the class needs no door for tests.
template <auto Camera, auto Bounds, auto Wait, auto Waiters, auto Condition>
struct MembersDoor
{
    friend PrivateMembers openedMembers(ViewportModel& model)
    {
        return {model.*Camera, model.*Bounds, model.*Wait, model.*Waiters, model.*Condition};
    }
};
template struct MembersDoor<&ViewportModel::m_cameraMutex, &ViewportModel::m_sceneBoundsMutex,
                            &ViewportModel::m_frameWaitMutex, &ViewportModel::m_frameWaiters,
                            &ViewportModel::m_frameRenderedCondition>;

template <auto... Members>
struct AddressesDoor
{
    friend std::vector<const void*> openedAddresses(ViewportModel& model) { return {&(model.*Members)...}; }
};
template struct AddressesDoor<
    &ViewportModel::m_viewportId, &ViewportModel::m_document, &ViewportModel::m_rendererId,
    &ViewportModel::m_viewportSize, &ViewportModel::m_renderSize, &ViewportModel::m_lighting,
    &ViewportModel::m_currentTime, &ViewportModel::m_distanceToCenter, &ViewportModel::m_activeCameraPath,
    &ViewportModel::m_editTarget, &ViewportModel::m_gfCamera, &ViewportModel::m_cameraInteractionActive,
    &ViewportModel::m_cameraChangedDuringInteraction, &ViewportModel::m_cameraMutex,
    &ViewportModel::m_interactionCameraValid, &ViewportModel::m_interactionCamera,
    &ViewportModel::m_cachedSceneBounds, &ViewportModel::m_sceneBoundsMutex,
    &ViewportModel::m_devicePixelRatio, &ViewportModel::m_gizmoScaleMultiplier, &ViewportModel::m_zUp,
    &ViewportModel::m_renderProxyGeometry, &ViewportModel::m_renderSelectionVisualization,
    &ViewportModel::m_renderer, &ViewportModel::m_eventListenerId, &ViewportModel::m_frameWaitMutex,
    &ViewportModel::m_frameWaiters, &ViewportModel::m_frameRenderedCondition>;

PrivateMembers membersOf(ViewportModel& model) { return openedMembers(model); }

std::vector<const void*> addressesInOrder(ViewportModel& model) { return openedAddresses(model); }

} // namespace vesk::framework::usd_viewport::tests
