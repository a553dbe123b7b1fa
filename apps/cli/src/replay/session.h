#pragma once

#include "observer.h"
#include "values.h"

#include <vesk/base/future.h>
#include <vesk/framework/usd_viewport/viewport_model.h>

#include <functional>
#include <iosfwd>
#include <memory>
#include <string>
#include <vector>

namespace vesk::cli::replay {

/// How the model of a session is made.
struct Construction
{
    std::array<int, 2> renderSize{1280, 720};   ///< logical pixels
    std::array<int, 2> viewportSize{1280, 720}; ///< logical pixels
    float devicePixelRatio = 1.0f;
    std::string renderer = "recording";
};

/// What a step does; its result is what the operation returned.
class Session;
using Action = std::function<apps::Json(Session&)>;

/// One viewport model on a document in manual mode, and everything that can be observed of it.
///
/// Thread: the program's main thread, which also runs the document's tasks.
class Session
{
public:
    /// Opens the scene. The model is made by construct() or constructUnseen().
    /// Throws: `JobError` when the scene cannot be opened.
    explicit Session(const std::string& scene);

    /// Makes the model anew. When that fails, the former model stays; a session without one gets the usual
    /// one, unseen, so that the session can go on.
    /// Throws: what the constructor of the model throws.
    void construct(const Construction& how);

    /// Makes the model without showing what the renderer was told meanwhile.
    void constructUnseen(const Construction& how);

    framework::usd_viewport::ViewportModel& model() { return *m_model; }
    framework::usd_document::UsdDocument& document() { return *m_documents.back(); }

    /// The stage of the current document; the session's thread is the one that runs its tasks.
    PXR_NS::UsdStagePtr stage() const { return m_stages.back(); }

    /// Shows another scene.
    void setDocument(const std::string& scene);

    /// Runs the queued tasks of all documents, the oldest document first, until none is left; returns how
    /// many ran. The step's line names them.
    /// Throws: `JobError` when the user has interrupted the program.
    std::size_t runTasks();

    /// Remembers a future; its end stands in the line that completed it. Returns "pending", or "empty" for a
    /// future without state.
    template <class T>
    apps::Json pending(base::Future<T> future)
    {
        if (!future.valid()) return "empty";
        m_pending.push_back(
            {m_step, [future] { return future.isReady(); }, [future] { return _endOf(future); }});
        return "pending";
    }

    /// Does one step and prints its line.
    void step(const std::string& operation, const Action& action, std::ostream& out);

private:
    struct Pending
    {
        int step;
        std::function<bool()> isReady;
        std::function<apps::Json()> end; ///< {"value"} or {"error"}
    };

    template <class T>
    static apps::Json _endOf(const base::Future<T>& future)
    {
        if (const std::exception_ptr error = future.error()) return {{"error", errorJson(error)}};
        if constexpr (std::is_void_v<T>)
            return {{"value", nullptr}};
        else
            return {{"value", toJson(future.get())}};
    }

    void _open(const std::string& scene);
    std::unique_ptr<framework::usd_viewport::ViewportModel> _makeModel(const Construction& how);
    std::size_t _runTasksOf(std::size_t document);
    apps::Json _takeCompleted();

    std::shared_ptr<Observer> m_observer;
    LogObservation m_log;
    std::vector<std::shared_ptr<framework::usd_document::UsdDocument>> m_documents;
    std::vector<std::shared_ptr<TaskQueue>> m_queues; ///< one of each document
    std::vector<PXR_NS::UsdStagePtr> m_stages;
    std::unique_ptr<framework::usd_viewport::ViewportModel> m_model;
    std::vector<Pending> m_pending;
    apps::Json m_ran = apps::Json::array();
    int m_step = 0;
};

} // namespace vesk::cli::replay
