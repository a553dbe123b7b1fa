#include "session.h"

#include "observed_renderer.h"

#include <apps/support/errors.h>

#include <vesk/base/thread_pool.h>

#include <algorithm>
#include <ostream>

PXR_NAMESPACE_USING_DIRECTIVE

namespace vesk::cli::replay {

using apps::Json;
using framework::usd_document::DocumentException;
using framework::usd_document::DocumentOptions;
using framework::usd_document::UsdDocument;
using framework::usd_viewport::ViewportModel;

Session::Session(const std::string& scene) : m_observer(std::make_shared<Observer>()), m_log(m_observer)
{
    _open(scene);
}

void Session::_open(const std::string& scene)
{
    DocumentOptions options;
    options.manual = true;
    try {
        m_documents.push_back(UsdDocument::open(scene, {}, options));
    } catch (const DocumentException& error) {
        throw apps::JobError(apps::oneLine(error.what()));
    }
    UsdStagePtr stage;
    m_documents.back()->read(
        "stage", [&stage](const UsdDocument::ExecContext& context) { stage = UsdStagePtr(context.stage()); });
    m_documents.back()->runPendingTasks();
    m_stages.push_back(stage);
    m_observer->watch(*m_documents.back());
}

void Session::construct(const Construction& how)
{
    const auto known = framework::hydra_renderer::registeredRendererIds();
    if (std::find(known.begin(), known.end(), how.renderer) == known.end()) {
        throw apps::UsageError("there is no renderer '" + how.renderer + "'; vesk --version lists them");
    }
    m_model.reset();
    registerObservedRenderer(m_observer, how.renderer);
    const int renderSize[2] = {how.renderSize[0], how.renderSize[1]};
    const int viewportSize[2] = {how.viewportSize[0], how.viewportSize[1]};
    m_model = std::make_unique<ViewportModel>(
        m_documents.back(), nullptr, kObservedRendererId, std::vector<usd::utils::Param<VtValue>>{},
        renderSize, viewportSize, how.devicePixelRatio, true, true, false, nullptr, nullptr);
}

void Session::setDocument(const std::string& scene)
{
    _open(scene);
    m_model->setDocument(m_documents.back());
}

std::size_t Session::runTasks()
{
    std::size_t total = 0;
    std::size_t ran = 0;
    do {
        ran = 0;
        for (const auto& document : m_documents)
            ran += document->runPendingTasks();
        total += ran;
        // A continuation of these tasks may queue further ones.
        base::ThreadPool::defaultPool().waitUntilIdle();
    } while (ran > 0);
    return total;
}

Json Session::_takeCompleted()
{
    Json completed = Json::array();
    std::vector<Pending> still;
    for (Pending& pending : m_pending) {
        if (!pending.isReady()) {
            still.push_back(std::move(pending));
            continue;
        }
        Json line = {{"step", pending.step}};
        line.update(pending.end());
        completed.push_back(std::move(line));
    }
    m_pending = std::move(still);
    return completed;
}

void Session::step(const std::string& operation, const Action& action, std::ostream& out)
{
    Json line = {{"step", m_step}, {"op", operation}, {"result", nullptr}};
    try {
        line["result"] = action(*this);
    } catch (const apps::UsageError&) {
        throw;
    } catch (...) {
        line["error"] = errorJson(std::current_exception());
    }
    base::ThreadPool::defaultPool().waitUntilIdle();

    const Json completed = _takeCompleted();
    if (!completed.empty()) line["completed"] = completed;
    line["camera"] = apps::jsonCamera(m_model->getViewportCamera());
    line["distanceToCenter"] = apps::jsonNumber(m_model->distanceToCenter());
    line["activeCameraPath"] = m_model->activeCameraPath();
    line["zUp"] = m_model->zUp();
    line.update(m_observer->take());
    // Bad UTF-8 of a scene must not end the session: it is replaced.
    out << line.dump(-1, ' ', false, Json::error_handler_t::replace) << "\n";
    ++m_step;
}

} // namespace vesk::cli::replay
