#pragma once

#include <vesk/renderers/recording/recording_log.h>

#include <array>
#include <deque>
#include <mutex>

namespace vesk::renderers::recording {

/// Open futures of one kind, oldest first, with the renderer that each belongs to.
template <class T>
class OpenFutures
{
public:
    base::Future<T> add(const void* owner)
    {
        base::Promise<T> promise;
        base::Future<T> future = promise.getFuture();
        m_entries.push_back({owner, std::move(promise)});
        return future;
    }

    /// Takes the oldest out; nothing where none is open.
    std::optional<base::Promise<T>> takeOldest()
    {
        if (m_entries.empty()) return std::nullopt;
        std::optional<base::Promise<T>> promise(std::move(m_entries.front().promise));
        m_entries.pop_front();
        return promise;
    }

    /// Takes those of one renderer out.
    std::vector<base::Promise<T>> takeOf(const void* owner)
    {
        std::vector<base::Promise<T>> taken;
        std::deque<Entry> kept;
        for (Entry& entry : m_entries) {
            if (entry.owner == owner) {
                taken.push_back(std::move(entry.promise));
            } else {
                kept.push_back(std::move(entry));
            }
        }
        m_entries.swap(kept);
        return taken;
    }

    std::size_t size() const { return m_entries.size(); }

private:
    struct Entry
    {
        const void* owner;
        base::Promise<T> promise;
    };
    std::deque<Entry> m_entries;
};

struct RecordingLog::Impl
{
    std::array<std::atomic<std::uint64_t>, kOperationCount> counts{};
    std::atomic<bool> countOnly{false};
    std::atomic<bool> handFed{false};

    mutable std::mutex mutex; // guards what follows; nothing is called while it is held
    std::vector<RecordedCall> calls;
    std::shared_ptr<std::atomic<std::uint64_t>> sequence = std::make_shared<std::atomic<std::uint64_t>>(0);
    std::function<void(const RecordedCall&)> observer;
    std::function<void(bool)> afterRender;
    OpenFutures<framework::hydra_renderer::PickingResult> picks;
    OpenFutures<PXR_NS::GfVec4f> colorPicks;
    OpenFutures<void> captures;
    OpenFutures<framework::hydra_renderer::HydraRenderJobResult> frames;

    /// Counts a call and, unless only counting, keeps it with the arguments that `arguments` makes.
    template <class Arguments>
    void note(Operation operation, unsigned int viewportId, Arguments&& arguments)
    {
        counts[static_cast<std::size_t>(operation)].fetch_add(1, std::memory_order_relaxed);
        if (countOnly.load(std::memory_order_relaxed)) return;
        keep(operation, viewportId, arguments());
    }

    void keep(Operation operation, unsigned int viewportId, std::vector<RecordedArgument> arguments);

    /// The future of a request: open when hand-fed, else answered with `value`.
    template <class T>
    base::Future<T> request(OpenFutures<T>& open, const void* owner, const T& value)
    {
        if (!handFed) return base::makeReadyFuture(value);
        const std::lock_guard lock(mutex);
        return open.add(owner);
    }
};

} // namespace vesk::renderers::recording
