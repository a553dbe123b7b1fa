#include "tile_pass.h"

#include <tests/support/gate.h>
#include <vesk/base/thread_pool.h>

#include <gtest/gtest.h>

#include <array>
#include <stdexcept>

namespace vesk::renderers::embree {
namespace {

using tests::Gate;

/// Remembers what a pass did.
struct Record
{
    std::array<std::atomic<int>, 200> traced{};
    std::exception_ptr error;
    std::atomic<int> ends{0};
    Gate ended;

    TilePass::Steps steps()
    {
        TilePass::Steps s;
        s.trace = [this](std::size_t tile) { ++traced.at(tile); };
        s.isOver = [] { return false; };
        s.whenDone = [this](std::exception_ptr e) {
            error = std::move(e);
            ++ends;
            ended.open();
        };
        return s;
    }
    int count() const
    {
        int all = 0;
        for (const auto& tile : traced)
            all += tile;
        return all;
    }
};

TEST(TilePass, TracesEachTileOnce)
{
    for (const bool urgent : {true, false}) {
        Record record;
        TilePass::run(200, urgent, record.steps());
        record.ended.wait();
        for (const auto& tile : record.traced)
            EXPECT_EQ(tile, 1);
        EXPECT_EQ(record.ends, 1);
        EXPECT_EQ(record.error, nullptr);
    }
}

TEST(TilePass, EndsAtOnceWithoutTiles)
{
    Record record;
    TilePass::run(0, false, record.steps());
    EXPECT_EQ(record.ends, 1);
}

// Every answer "not yet" lets one tile begin, whichever thread asked.
TEST(TilePass, BeginsNoTileOnceThePassIsOver)
{
    Record record;
    std::atomic<int> asked{0};
    TilePass::Steps steps = record.steps();
    steps.isOver = [&asked] { return ++asked > 7; };
    TilePass::run(200, false, std::move(steps));
    record.ended.wait();
    EXPECT_EQ(record.count(), 7);
    EXPECT_EQ(record.ends, 1);
}

TEST(TilePass, EndsWithWhatATileThrew)
{
    Record record;
    TilePass::Steps steps = record.steps();
    steps.trace = [](std::size_t tile) {
        if (tile == 3) throw std::runtime_error("no memory");
    };
    TilePass::run(200, false, std::move(steps));
    record.ended.wait();
    ASSERT_NE(record.error, nullptr);
    EXPECT_THROW(std::rethrow_exception(record.error), std::runtime_error);
}

// Every thread of the pool holds a tile of the pass while the urgent work is posted. Later tiles wait for
// that work: if none made room for it the pass would never end.
TEST(TilePass, MakesRoomForUrgentWorkAfterTheTilesInHand)
{
    Record record;
    const unsigned threads = base::ThreadPool::defaultPool().threadCount();
    std::atomic<unsigned> begun{0};
    Gate allHeld;
    Gate release;
    Gate urgentRan;
    TilePass::Steps steps = record.steps();
    steps.trace = [&](std::size_t tile) {
        ++record.traced.at(tile);
        const unsigned number = ++begun;
        if (number == threads) allHeld.open();
        (number <= threads ? release : urgentRan).wait();
    };
    TilePass::run(200, false, std::move(steps));
    allHeld.wait();
    urgentExecutor()->post(base::Work([&urgentRan] { urgentRan.open(); }));
    release.open();
    record.ended.wait();
    EXPECT_EQ(record.count(), 200);
}

} // namespace
} // namespace vesk::renderers::embree
