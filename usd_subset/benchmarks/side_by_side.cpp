// Opens a scene, walks it, measures its bounds and edits it, through OpenUSD's public API alone. Prints the
// time of each step in nanoseconds, the memory, and what it found, one "name value" a line.
//
//   usd_side_by_side SCENE               measure
//   usd_side_by_side --write KIND FILE   write a generated scene as text (see scene_writer.h)
//   usd_side_by_side --convert FROM TO   write a layer in the format that TO's name says
#include "scene_writer.h"

#include <pxr/base/tf/notice.h>
#include <pxr/base/tf/weakBase.h>
#include <pxr/usd/sdf/layer.h>
#include <pxr/usd/sdf/types.h>
#include <pxr/usd/usd/attribute.h>
#include <pxr/usd/usd/notice.h>
#include <pxr/usd/usd/prim.h>
#include <pxr/usd/usd/primRange.h>
#include <pxr/usd/usd/stage.h>
#include <pxr/usd/usdGeom/bboxCache.h>
#include <pxr/usd/usdGeom/tokens.h>

#include <sys/resource.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <exception>
#include <stdexcept>
#include <string>
#include <vector>

PXR_NAMESPACE_USING_DIRECTIVE

namespace {

/// Calls the step so many times, or fewer when it takes long, and prints the median of its times.
template <class Step>
void measure(const char* name, int times, Step step)
{
    constexpr double kLong = 2e8;
    std::vector<double> durations;
    double total = 0.0;
    while (static_cast<int>(durations.size()) < times && total < kLong) {
        const auto begin = std::chrono::steady_clock::now();
        step();
        durations.push_back(
            std::chrono::duration<double, std::nano>(std::chrono::steady_clock::now() - begin).count());
        total += durations.back();
    }
    const auto middle = durations.begin() + static_cast<std::ptrdiff_t>(durations.size() / 2);
    std::nth_element(durations.begin(), middle, durations.end());
    std::printf("time.%s %.0f\n", name, *middle);
}

long peakKib()
{
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    return usage.ru_maxrss;
}

class ChangeCounter : public TfWeakBase
{
public:
    explicit ChangeCounter(const UsdStageRefPtr& stage)
        : m_key(TfNotice::Register(TfCreateWeakPtr(this), &ChangeCounter::note, stage))
    {}
    ~ChangeCounter() { TfNotice::Revoke(m_key); }

    int count = 0;

private:
    void note(const UsdNotice::ObjectsChanged&, const UsdStageWeakPtr&) { ++count; }

    TfNotice::Key m_key;
};

UsdPrimRange everything(const UsdStageRefPtr& stage)
{
    return UsdPrimRange(stage->GetPseudoRoot(), UsdTraverseInstanceProxies(UsdPrimAllPrimsPredicate));
}

UsdGeomBBoxCache newCache()
{
    return UsdGeomBBoxCache(UsdTimeCode(0.0), {UsdGeomTokens->default_, UsdGeomTokens->render});
}

void measureTraversal(const UsdStageRefPtr& stage)
{
    long prims = 0;
    long typed = 0;
    measure("traverse", 7, [&] {
        prims = typed = 0;
        for (const UsdPrim& prim : everything(stage)) {
            ++prims;
            if (!prim.GetTypeName().IsEmpty()) ++typed;
        }
    });
    std::printf("answer.prims %ld\nanswer.typed %ld\n", prims, typed);
}

void measureBounds(const UsdStageRefPtr& stage)
{
    GfRange3d range;
    measure("bounds.cold", 3, [&] {
        UsdGeomBBoxCache cache = newCache();
        range = cache.ComputeWorldBound(stage->GetPseudoRoot()).ComputeAlignedRange();
    });
    UsdGeomBBoxCache cache = newCache();
    cache.ComputeWorldBound(stage->GetPseudoRoot());
    GfRange3d again;
    measure("bounds.warm", 201,
            [&] { again = cache.ComputeWorldBound(stage->GetPseudoRoot()).ComputeAlignedRange(); });
    std::printf("answer.bounds %.9g,%.9g,%.9g,%.9g,%.9g,%.9g%s\n", range.GetMin()[0], range.GetMin()[1],
                range.GetMin()[2], range.GetMax()[0], range.GetMax()[1], range.GetMax()[2],
                again == range ? "" : ",warm-differs");
}

void measureEdit(const UsdStageRefPtr& stage)
{
    UsdPrim last;
    for (const UsdPrim& prim : everything(stage))
        if (!prim.IsInstanceProxy() && !prim.IsPseudoRoot()) last = prim;
    UsdAttribute attribute = last.CreateAttribute(TfToken("sideBySide"), SdfValueTypeNames->Double);
    attribute.Set(-1.0);
    ChangeCounter counter(stage);
    double value = 0.0;
    measure("edit", 301, [&] {
        value += 1.0;
        attribute.Set(value);
    });
    double read = 0.0;
    attribute.Get(&read);
    std::printf("answer.edit %s\n", read == value && counter.count == value ? "told" : "untold");
}

void measureScene(const std::string& path)
{
    std::printf("memory.start %ld\n", peakKib());
    UsdStageRefPtr stage;
    measure("open", 1, [&] { stage = UsdStage::Open(path); });
    if (!stage) throw std::runtime_error("cannot open '" + path + "'");
    std::printf("memory.open %ld\n", peakKib());
    measureTraversal(stage);
    measureBounds(stage);
    measureEdit(stage);
    std::printf("memory.peak %ld\n", peakKib());
    measure("close", 1, [&] { stage.Reset(); });
}

void convert(const std::string& from, const std::string& to)
{
    const SdfLayerRefPtr layer = SdfLayer::FindOrOpen(from);
    if (!layer || !layer->Export(to)) throw std::runtime_error("cannot write '" + from + "' as '" + to + "'");
}

} // namespace

int main(int argc, char** argv)
{
    const std::vector<std::string> arguments(argv + 1, argv + argc);
    try {
        if (arguments.size() == 1)
            measureScene(arguments[0]);
        else if (arguments.size() == 3 && arguments[0] == "--write")
            writeScene(arguments[1], arguments[2]);
        else if (arguments.size() == 3 && arguments[0] == "--convert")
            convert(arguments[1], arguments[2]);
        else
            throw std::runtime_error("usage: usd_side_by_side SCENE | --write KIND FILE | --convert FROM TO");
    } catch (const std::exception& error) {
        std::fprintf(stderr, "usd_side_by_side: %s\n", error.what());
        return 1;
    }
}
