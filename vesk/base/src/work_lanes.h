#pragma once

#include <array>
#include <cstddef>

#include <vesk/base/executor.h>

namespace vesk::base {

/// Work of three priorities, each first in first out. Takes from the highest lane, but a lane that was passed
/// over kPatience times while it had work is served next: low work is late, never lost. Not thread-safe.
class WorkLanes
{
public:
    /// How often the lanes Low, Normal and High let others go first.
    static constexpr std::array<unsigned, 3> kPatience{64, 16, 4};

    bool isEmpty() const noexcept { return m_count == 0; }
    std::size_t size() const noexcept { return m_count; }

    void append(Priority priority, Work work) noexcept
    {
        WorkNode* node = work.release();
        if (!node) return;
        Lane& lane = m_lanes[static_cast<std::size_t>(priority)];
        node->next = nullptr;
        (lane.last ? lane.last->next : lane.first) = node;
        lane.last = node;
        ++m_count;
    }

    /// The next work, empty when there is none.
    Work take() noexcept
    {
        if (m_count == 0) return Work();
        const std::size_t chosen = _choose();
        for (std::size_t i = 0; i < m_lanes.size(); ++i)
            if (i != chosen && m_lanes[i].first) ++m_lanes[i].passedOver;
        Lane& lane = m_lanes[chosen];
        WorkNode* node = lane.first;
        lane.first = node->next;
        if (!lane.first) lane.last = nullptr;
        lane.passedOver = 0;
        --m_count;
        return Work(node);
    }

    ~WorkLanes()
    {
        while (!isEmpty())
            take();
    }

private:
    struct Lane
    {
        WorkNode* first = nullptr;
        WorkNode* last = nullptr;
        unsigned passedOver = 0;
    };

    std::size_t _choose() const noexcept
    {
        for (std::size_t i = 0; i < m_lanes.size(); ++i)
            if (m_lanes[i].first && m_lanes[i].passedOver >= kPatience[i]) return i;
        std::size_t highest = m_lanes.size() - 1;
        while (!m_lanes[highest].first)
            --highest;
        return highest;
    }

    std::array<Lane, 3> m_lanes;
    std::size_t m_count = 0;
};

} // namespace vesk::base
