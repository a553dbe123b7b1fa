// The operations have exactly these signatures: hosts take their addresses and wrap them.
#include <vesk/framework/usd_viewport/viewport_model.h>

#include <vesk/framework/usd_document/usd_document.h>
#include <vesk/framework/usd_viewport/errors.h>

#include <gtest/gtest.h>

#include <type_traits>

namespace vesk::framework::usd_viewport {
namespace {

PXR_NAMESPACE_USING_DIRECTIVE
using usd_document::UsdDocument;
using vesk::base::Future;
using vesk::framework::hydra_renderer::HydraRenderer;
using vesk::usd::utils::ProjectionType;
using Model = ViewportModel;
using Label = const std::string&;

template <class Signature, class Member>
constexpr bool is(Member)
{
    return std::is_same_v<Signature, Member>;
}

// Life and plain values.
static_assert(is<std::shared_ptr<UsdDocument> (Model::*)() const>(&Model::document));
static_assert(is<void (Model::*)(const std::shared_ptr<UsdDocument>&)>(&Model::setDocument));
static_assert(is<unsigned int (Model::*)() const>(&Model::viewportId));
static_assert(is<const std::unique_ptr<HydraRenderer>& (Model::*)() const>(&Model::getRenderer));
static_assert(is<double (Model::*)() const>(&Model::currentTime));
static_assert(is<float (Model::*)() const>(&Model::devicePixelRatio));
static_assert(is<const LightingModel& (Model::*)() const>(&Model::lighting));
static_assert(is<const UsdEditTarget& (Model::*)() const>(&Model::getEditTarget));
static_assert(is<void (Model::*)(const UsdEditTarget&)>(&Model::setEditTarget));
static_assert(is<void (Model::*)(double)>(&Model::setCurrentTime));
static_assert(is<void (Model::*)(const int (&)[2])>(&Model::setViewportSize));
static_assert(is<void (Model::*)(const int (&)[2], float)>(&Model::setRenderSize));
static_assert(is<void (Model::*)()>(&Model::waitForFrameRendered));
static_assert(is<void (Model::*)()>(&Model::notifyCameraChanged));
static_assert(std::is_same_v<decltype(std::declval<const Model&>().viewportSize()), const int (&)[2]>);
static_assert(std::is_same_v<decltype(std::declval<Model&>().viewportSize()), const int (&)[2]>);
static_assert(std::is_same_v<decltype(std::declval<const Model&>().renderSize()), const int (&)[2]>);

// The camera.
static_assert(is<const GfCamera& (Model::*)() const>(&Model::getGfCamera));
static_assert(is<GfCamera (Model::*)() const>(&Model::getViewportCamera));
static_assert(is<void (Model::*)(const GfCamera&, Label)>(&Model::setGfCamera));
static_assert(is<void (Model::*)(const TfWeakPtr<UsdStage>&, const GfCamera&)>(&Model::setViewportCamera));
static_assert(is<GfCamera (Model::*)(const GfCamera&)>(&Model::adjustGfCamera));
static_assert(is<GfMatrix4f (Model::*)() const>(&Model::getViewMatrix));
static_assert(is<std::array<float, 2> (Model::*)(float, float)>(&Model::viewportToRenderCoordinates));
static_assert(is<void (Model::*)(CameraUtilConformWindowPolicy)>(&Model::setCameraFitPolicy));
static_assert(is<bool (Model::*)() const>(&Model::zUp));
static_assert(is<void (Model::*)(bool)>(&Model::setZUp));
static_assert(is<void (*)(GfCamera&, float)>(&setRackFocus));
static_assert(is<void (HydraRenderer::*)(const std::variant<GfCamera, SdfPath>&)>(&HydraRenderer::setCamera));

// Navigation.
static_assert(is<void (Model::*)()>(&Model::beginCameraInteraction));
static_assert(is<void (Model::*)()>(&Model::endCameraInteraction));
static_assert(is<void (Model::*)(float, float, Label)>(&Model::orbitCamera));
static_assert(is<void (Model::*)(float, float, Label)>(&Model::orbitCameraUsingDeltaAngles));
static_assert(is<void (Model::*)(float, float, Label)>(&Model::rotateCamera));
static_assert(is<void (Model::*)(float, float, Label)>(&Model::panCamera));
static_assert(is<void (Model::*)(float, float, Label)>(&Model::zoomCamera));
static_assert(is<void (Model::*)(float, float, float, Label)>(&Model::moveCamera));
static_assert(is<float (Model::*)() const>(&Model::distanceToCenter));
static_assert(is<void (Model::*)(float)>(&Model::setDistanceToCenter));
static_assert(is<float (Model::*)() const>(&Model::gizmoScaleMultiplier));
static_assert(is<void (Model::*)(float)>(&Model::setGizmoScaleMultiplier));

// Work for the document.
static_assert(is<Future<GfRange3f> (Model::*)()>(&Model::getSceneBounds));
static_assert(is<void (Model::*)()>(&Model::recomputeCachedSceneBounds));
static_assert(is<Future<void> (Model::*)(Label)>(&Model::setActiveCameraPath));
static_assert(is<Future<void> (Model::*)()>(&Model::checkCameraUpAxis));
static_assert(is<Future<void> (Model::*)(Label, bool, Label)>(&Model::copyCameraFromPath));
static_assert(is<Future<void> (Model::*)(ProjectionType, ViewDirection, const std::vector<SdfPath>&)>(
    &Model::frameScene));

// Class-wide values.
static_assert(is<float (*)()>(&Model::defaultVerticalFieldOfView));
static_assert(is<void (*)(float)>(&Model::setDefaultVerticalFieldOfView));
static_assert(is<CameraUtilConformWindowPolicy (*)()>(&Model::defaultCameraFitPolicy));
static_assert(is<void (*)(CameraUtilConformWindowPolicy)>(&Model::setDefaultCameraFitPolicy));
static_assert(is<float*>(&Model::m_defaultVerticalFieldOfView));
static_assert(is<CameraUtilConformWindowPolicy*>(&Model::m_defaultCameraFitPolicy));
static_assert(is<const float*>(&Model::kGizmoScaleMin));
static_assert(is<const float*>(&Model::kGizmoScaleMax));
static_assert(is<const std::string*>(&Model::m_cameraUpdateUndoLabel));

// The classes.
static_assert(!std::is_copy_constructible_v<Model> && !std::is_copy_assignable_v<Model>);
static_assert(!std::is_polymorphic_v<Model>);

template <class Value>
constexpr bool isValue()
{
    return std::is_default_constructible_v<Value> && std::is_copy_constructible_v<Value> &&
           std::is_copy_assignable_v<Value> && std::is_move_constructible_v<Value> &&
           std::is_move_assignable_v<Value>;
}
static_assert(isValue<LightingModel>());
static_assert(isValue<PrimPathPickingResult>());
static_assert(isValue<ViewportCameraChangedEvent>());

using vesk::base::error_handling::Exception;
static_assert(std::is_base_of_v<std::system_error, Exception>);
static_assert(std::is_base_of_v<std::runtime_error, Exception>);
static_assert(std::is_base_of_v<std::exception, Exception>);

// What is private: a use from outside does not compile.
template <class Object, class = void>
constexpr bool kHandlesEvents = false;
template <class Object>
constexpr bool
    kHandlesEvents<Object, std::void_t<decltype(std::declval<Object&>()._handleEvent(std::any()))>> = true;
template <class Object, class = void>
constexpr bool kHandsOn = false;
template <class Object>
constexpr bool kHandsOn<Object, std::void_t<decltype(std::declval<Object&>()._setGfCamera(
                                    TfWeakPtr<UsdStage>(), GfCamera(), std::string()))>> = true;
template <class Object, class = void>
constexpr bool kChecksTransforms = false;
template <class Object>
constexpr bool kChecksTransforms<Object, std::void_t<decltype(std::declval<Object&>().checkGfCameraTransform(
                                             std::declval<GfCamera&>()))>> = true;
template <class Object, class = void>
constexpr bool kFitsApertures = false;
template <class Object>
constexpr bool kFitsApertures<Object, std::void_t<decltype(std::declval<Object&>().updateGfCameraAperature(
                                          std::declval<GfCamera&>()))>> = true;

struct Open
{
    void _handleEvent(const std::any&);
};
static_assert(kHandlesEvents<Open>, "the check itself works");
static_assert(!kHandlesEvents<Model> && !kHandsOn<Model> && !kChecksTransforms<Model> &&
              !kFitsApertures<Model>);

} // namespace

// Explicit instantiation may name private members.
template <class Signature, Signature Member>
struct PrivateSignature
{};
template struct PrivateSignature<void (Model::*)(const std::any&), &ViewportModel::_handleEvent>;
template struct PrivateSignature<void (Model::*)(const TfWeakPtr<UsdStage>&, const GfCamera&, Label),
                                 &ViewportModel::_setGfCamera>;
template struct PrivateSignature<void (Model::*)(const TfWeakPtr<UsdStage>&, const GfCamera&, Label),
                                 &ViewportModel::_setRendererGfCamera>;
template struct PrivateSignature<void (Model::*)(GfCamera&), &ViewportModel::checkGfCameraFocusDistance>;
template struct PrivateSignature<void (Model::*)(GfCamera&) const, &ViewportModel::checkGfCameraTransform>;
template struct PrivateSignature<void (Model::*)(GfCamera&), &ViewportModel::updateGfCameraAperature>;
template struct PrivateSignature<void (Model::*)(GfCamera&, float), &ViewportModel::updateGfCameraNearFar>;
template struct PrivateSignature<float (Model::*)(const GfCamera&),
                                 &ViewportModel::getGfCameraDistanceToCenter>;
template struct PrivateSignature<float (Model::*)() const, &ViewportModel::getRenderAspectRatio>;
template struct PrivateSignature<GfRange3f (Model::*)(), &ViewportModel::_getCachedSceneBounds>;
template struct PrivateSignature<void (Model::*)(const GfRange3f&), &ViewportModel::_setCachedSceneBounds>;

} // namespace vesk::framework::usd_viewport
