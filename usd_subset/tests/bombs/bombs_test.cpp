#include "bombs.h"

#include "../sdf/crate_builder.h"
#include "../sdf_malformed/counting_allocator.h"
#include "pxr/usd/usd/primComposer.h"

#include <pxr/base/tf/diagnosticMgr.h>
#include <pxr/usd/usd/attribute.h>
#include <pxr/usd/usd/prim.h>
#include <pxr/usd/usd/primRange.h>
#include <pxr/usd/usd/relationship.h>
#include <pxr/usd/usd/stage.h>
#include <pxr/usd/usdGeom/bboxCache.h>
#include <pxr/usd/usdGeom/tokens.h>
#include <pxr/usd/usdShade/connectableAPI.h>
#include <pxr/usd/usdShade/input.h>
#include <pxr/usd/usdShade/materialBindingAPI.h>

using namespace sdf_tests;

namespace {

constexpr size_t kMostBytes = size_t(256) << 20;

// Gathers what is said while it lives.
class Diagnostics : public TfDiagnosticMgr::Delegate
{
public:
    Diagnostics() { TfDiagnosticMgr::GetInstance().AddDelegate(this); }
    ~Diagnostics() override { TfDiagnosticMgr::GetInstance().RemoveDelegate(this); }
    void IssueError(const TfError&) override {}
    void IssueFatalError(const TfCallContext&, const std::string&) override {}
    void IssueStatus(const TfStatus&) override {}
    void IssueWarning(const TfWarning& warning) override { warnings.push_back(warning.GetCommentary()); }
    std::vector<std::string> errors() { return m_errors.Take(); }

    std::vector<std::string> warnings;

private:
    Errors m_errors;
};

// Asks a stage for all that it can tell, and returns how many prims there are.
size_t readEverything(const UsdStageRefPtr& stage)
{
    size_t count = 0;
    for (const UsdPrim& prim : stage->Traverse()) {
        ++count;
        for (const UsdAttribute& attribute : prim.GetAttributes()) {
            VtValue value;
            attribute.Get(&value, UsdTimeCode(1.0));
        }
        for (const UsdRelationship& relationship : prim.GetRelationships()) {
            SdfPathVector targets;
            relationship.GetForwardedTargets(&targets);
        }
        for (const UsdShadeInput& input : UsdShadeConnectableAPI(prim).GetInputs()) {
            input.GetValueProducingAttributes();
        }
        UsdShadeMaterialBindingAPI(prim).ComputeBoundMaterial();
    }
    UsdGeomBBoxCache bounds(UsdTimeCode::Default(), {UsdGeomTokens->default_});
    bounds.ComputeWorldBound(stage->GetPseudoRoot());
    return count;
}

class Bombs : public testing::TestWithParam<Bomb>
{
protected:
    void SetUp() override { Usd_MostPlaces() = 200000; }
    void TearDown() override { Usd_MostPlaces() = m_mostPlaces; }

private:
    const size_t m_mostPlaces = Usd_MostPlaces();
};

class CrateBombs : public testing::TestWithParam<CrateBomb>
{};

void expectTexts(const std::vector<std::string>& texts, const std::string& part, size_t count = 1)
{
    EXPECT_EQ(texts.size(), part.empty() ? 0u : count) << testing::PrintToString(texts).substr(0, 2000);
    for (const std::string& text : texts) {
        EXPECT_NE(text.find(part), std::string::npos) << text.substr(0, 2000);
    }
}

void expectLittleMemory(size_t peak)
{
    testing::Test::RecordProperty("peakKiB", std::to_string(peak >> 10));
    if (AllocationCount::IsCounting()) {
        EXPECT_LE(peak, kMostBytes);
    }
}

template <class B>
std::string nameOf(const testing::TestParamInfo<B>& info)
{
    std::string name;
    bool upper = true;
    for (const char* c = info.param.name; *c; ++c) {
        if (*c != ' ') {
            name += upper ? static_cast<char>(std::toupper(*c)) : *c;
        }
        upper = *c == ' ';
    }
    return name;
}

} // namespace

TEST_P(Bombs, EndInOneErrorOrAStageOfBoundedSize)
{
    const Bomb& bomb = GetParam();
    const TemporaryDirectory directory;
    const std::string path = bomb.write(directory);
    Diagnostics diagnostics;
    size_t prims = 0;
    size_t peak = 0;
    {
        const AllocationCount count;
        if (const UsdStageRefPtr stage = UsdStage::Open(path)) {
            EXPECT_EQ(bomb.outcome.error, "");
            prims = readEverything(stage);
        } else {
            EXPECT_FALSE(SdfLayer::Find(path));
        }
        peak = count.PeakBytes();
    }
    expectTexts(diagnostics.errors(), bomb.outcome.error);
    expectTexts(diagnostics.warnings, bomb.outcome.warning, bomb.outcome.warnings);
    EXPECT_EQ(prims, bomb.outcome.prims);
    expectLittleMemory(peak);
}

TEST_P(CrateBombs, EndInOneErrorOrALayerOfBoundedSize)
{
    const CrateBomb& bomb = GetParam();
    const std::string bytes = bomb.bytes();
    Diagnostics diagnostics;
    std::vector<std::string> errors;
    size_t peak = 0;
    {
        const AllocationCount count;
        std::string error;
        const SdfAbstractDataRefPtr data = readCrate(bytes, &error);
        if (data) {
            Decoder decoder;
            data->VisitSpecs(&decoder);
            errors = diagnostics.errors();
        } else {
            errors.push_back(error);
        }
        peak = count.PeakBytes();
    }
    expectTexts(errors, bomb.error);
    expectTexts(diagnostics.warnings, "");
    expectLittleMemory(peak);
}

INSTANTIATE_TEST_SUITE_P(OfArcs, Bombs, testing::ValuesIn(arcBombs()), nameOf<Bomb>);
INSTANTIATE_TEST_SUITE_P(OfScenes, Bombs, testing::ValuesIn(sceneBombs()), nameOf<Bomb>);
INSTANTIATE_TEST_SUITE_P(OfPackages, Bombs, testing::ValuesIn(packageBombs()), nameOf<Bomb>);
INSTANTIATE_TEST_SUITE_P(Of, CrateBombs, testing::ValuesIn(crateBombs()), nameOf<CrateBomb>);
