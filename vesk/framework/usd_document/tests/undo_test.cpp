#include <pxr/usd/sdf/attributeSpec.h>
#include <pxr/usd/sdf/primSpec.h>
#include <pxr/usd/usd/relationship.h>

#include "document_fixture.h"

using namespace vesk::framework::usd_document::tests;
using namespace vesk::framework::usd_document;

namespace {

class Undo : public DocumentTest
{
protected:
    /// Runs the edit, and checks that undo brings the text of the root layer back to the byte, and redo the
    /// text after the edit.
    template <class F>
    void expectRoundTrip(F work)
    {
        const std::string before = rootText();
        edit("edit", work);
        const std::string after = rootText();
        EXPECT_NE(before, after) << "the edit must change something";
        EXPECT_TRUE(undo());
        EXPECT_EQ(rootText(), before);
        EXPECT_TRUE(redo());
        EXPECT_EQ(rootText(), after);
        EXPECT_TRUE(undo());
        EXPECT_EQ(rootText(), before);
    }
};

SdfPath path(const char* text) { return SdfPath(text); }

} // namespace

TEST_F(Undo, HasNothingToDoAtFirst)
{
    EXPECT_FALSE(undo());
    EXPECT_FALSE(redo());
    EXPECT_EQ(document->undoLabels(), Labels());
}

TEST_F(Undo, TakesEditsBackOneByOneAndBringsThemBack)
{
    setSize(1.0);
    setSize(2.0);
    setSize(3.0);
    EXPECT_TRUE(undo());
    EXPECT_EQ(size(), 2.0);
    EXPECT_TRUE(undo());
    EXPECT_EQ(size(), 1.0);
    EXPECT_TRUE(redo());
    EXPECT_EQ(size(), 2.0);
    EXPECT_TRUE(redo());
    EXPECT_EQ(size(), 3.0);
    EXPECT_FALSE(redo());
    EXPECT_TRUE(undo());
    EXPECT_TRUE(undo());
    EXPECT_TRUE(undo());
    EXPECT_FALSE(stage->GetPrimAtPath(path("/Box"))) << "the first edit made the prim";
    EXPECT_FALSE(undo());
}

TEST_F(Undo, NamesWhatComesNextFirst)
{
    for (const char* label : {"one", "two", "three"})
        edit(label,
             [&](const Context& context) { context.stage()->DefinePrim(SdfPath(std::string("/") + label)); });
    EXPECT_EQ(document->undoLabels(), (Labels{"three", "two", "one"}));
    undo();
    undo();
    EXPECT_EQ(document->undoLabels(), Labels{"one"});
    EXPECT_EQ(document->redoLabels(), (Labels{"two", "three"}));
}

TEST_F(Undo, FollowsTheTasksThatWereQueuedBeforeIt)
{
    document->edit("first", [](const Context& context) { context.stage()->DefinePrim(path("/A")); });
    document->edit("second", [](const Context& context) { context.stage()->DefinePrim(path("/B")); });
    document->undo();
    document->runPendingTasks();
    EXPECT_TRUE(stage->GetPrimAtPath(path("/A")));
    EXPECT_FALSE(stage->GetPrimAtPath(path("/B")));
}

TEST_F(Undo, ForgetsWhatCouldBeRedoneWhenSomethingNewIsAuthored)
{
    setSize(1.0);
    setSize(2.0);
    undo();
    setSize(5.0);
    EXPECT_EQ(document->redoLabels(), Labels());
    EXPECT_FALSE(redo());
    EXPECT_EQ(size(), 5.0);
}

TEST_F(Undo, RecordsNothingForAnEditThatAuthorsNothingAndKeepsTheRedoList)
{
    setSize(1.0);
    setSize(2.0);
    undo();
    edit("author nothing", [](const Context&) {});
    setSize(1.0); // The value that is there already.
    EXPECT_EQ(document->undoLabels(), Labels{"set size"});
    EXPECT_EQ(document->redoLabels(), Labels{"set size"});
    EXPECT_TRUE(redo());
    EXPECT_EQ(size(), 2.0);
}

TEST_F(Undo, DoesNotRecordWhatReadsAuthor)
{
    document->read("read", [](const Context& context) { context.stage()->DefinePrim(path("/A")); });
    document->runPendingTasks();
    EXPECT_TRUE(stage->GetPrimAtPath(path("/A")));
    EXPECT_EQ(document->undoLabels(), Labels());
}

TEST_F(Undo, RecordsWhatAnEditAuthoredBeforeItThrew)
{
    edit("half", [](const Context& context) {
        context.stage()->DefinePrim(path("/A"));
        throw std::runtime_error("why");
    });
    EXPECT_TRUE(stage->GetPrimAtPath(path("/A")));
    EXPECT_EQ(document->undoLabels(), Labels{"half"});
    EXPECT_TRUE(undo());
    EXPECT_FALSE(stage->GetPrimAtPath(path("/A")));
}

TEST_F(Undo, RoundTripsNewPrimsAndAttributes)
{
    expectRoundTrip([](const Context& context) {
        const UsdPrim prim = context.stage()->DefinePrim(path("/World/Group/Box"), TfToken("Cube"));
        prim.CreateAttribute(TfToken("size"), SdfValueTypeNames->Double).Set(3.0);
        prim.CreateRelationship(TfToken("friends")).AddTarget(path("/World"));
    });
}

TEST_F(Undo, RoundTripsRemovedPrimsWithAllThatLiesBeneath)
{
    use(stageFromText(R"(
def Xform "World"
{
    double3 xformOp:translate = (1, 2, 3)
    uniform token[] xformOpOrder = ["xformOp:translate"]

    def Sphere "Ball" (
        documentation = "round"
    )
    {
        double radius = 2
        double radius.timeSamples = {
            1: 2,
            2: 3,
        }
        rel friends = [</World>, </World/Box>]
    }

    def Cube "Box"
    {
        double size.connect = </World/Ball.radius>
    }
}

def Scope "After"
{
}
)"));
    expectRoundTrip([](const Context& context) { context.stage()->RemovePrim(path("/World")); });
}

TEST_F(Undo, RoundTripsTimeSamples)
{
    setSize(1.0);
    expectRoundTrip([](const Context& context) {
        const UsdAttribute attribute = context.stage()->GetAttributeAtPath(path("/Box.size"));
        attribute.Set(5.0, UsdTimeCode(1.0));
        attribute.Set(6.0, UsdTimeCode(2.0));
        attribute.Set(7.0, UsdTimeCode(1.0));
    });
    setSize(1.0);
    edit("sample", [](const Context& context) {
        context.stage()->GetAttributeAtPath(path("/Box.size")).Set(5.0, UsdTimeCode(1.0));
    });
    expectRoundTrip([](const Context& context) {
        context.stage()->GetAttributeAtPath(path("/Box.size")).ClearAtTime(UsdTimeCode(1.0));
    });
}

TEST_F(Undo, RoundTripsMetadataAndDictionaries)
{
    setSize(1.0);
    expectRoundTrip([](const Context& context) {
        const UsdPrim box = context.stage()->GetPrimAtPath(path("/Box"));
        box.SetMetadata(TfToken("documentation"), std::string("a box"));
        box.SetCustomDataByKey(TfToken("tool:version"), VtValue(3));
        box.SetCustomDataByKey(TfToken("tool:name"), VtValue(std::string("saw")));
        box.SetActive(false);
        context.stage()->SetStartTimeCode(5.0);
    });
}

TEST_F(Undo, RoundTripsEditsMadeThroughSdf)
{
    setSize(1.0);
    expectRoundTrip([](const Context& context) {
        const SdfLayerHandle root = context.stage()->GetRootLayer();
        const SdfPrimSpecHandle prim = SdfPrimSpec::New(root, "Made", SdfSpecifierDef, "Cube");
        SdfAttributeSpec::New(prim, "size", SdfValueTypeNames->Double)->SetDefaultValue(VtValue(2.0));
        root->SetComment("by hand");
    });
}

TEST_F(Undo, RoundTripsManyChildrenInOneEdit)
{
    expectRoundTrip([](const Context& context) {
        for (int i = 0; i < 200; ++i)
            context.stage()->DefinePrim(SdfPath("/World/Child" + std::to_string(i)));
        context.stage()->RemovePrim(path("/World/Child7"));
    });
}

TEST_F(Undo, RoundTripsEditsOfASublayer)
{
    const SdfLayerRefPtr sublayer = SdfLayer::CreateAnonymous("sub.usda");
    stage->GetRootLayer()->InsertSubLayerPath(sublayer->GetIdentifier());
    std::string before, after;
    sublayer->ExportToString(&before);
    document->edit(
        "into the sublayer", [](const Context& context) { context.stage()->DefinePrim(path("/A")); },
        sublayer->GetIdentifier());
    document->runPendingTasks();
    EXPECT_TRUE(sublayer->GetPrimAtPath(path("/A")));
    EXPECT_TRUE(undo());
    sublayer->ExportToString(&after);
    EXPECT_EQ(before, after);
}

TEST_F(Undo, LeavesLayersDirtyOnlyWhenTheyWereEdited)
{
    const SdfLayerHandle root = stage->GetRootLayer();
    EXPECT_FALSE(root->IsDirty());
    edit("author nothing", [](const Context&) {});
    EXPECT_FALSE(root->IsDirty());
    setSize(1.0);
    EXPECT_TRUE(root->IsDirty());
}

TEST_F(Undo, SendsOneEventForEachDirection)
{
    setSize(1.0);
    events.clear();
    undo();
    EXPECT_EQ(events.size(), 1u);
    redo();
    EXPECT_EQ(events.size(), 2u);
}

namespace {
using UndoGroups = Undo;
} // namespace

TEST_F(UndoGroups, FoldEditsIntoOneEntryWithTheirLabel)
{
    setSize(1.0);
    document->beginUndoGroup("drag");
    for (int i = 2; i <= 100; ++i)
        setSize(i);
    document->endUndoGroup();
    setSize(200.0);
    EXPECT_EQ(document->undoLabels(), (Labels{"set size", "drag", "set size"}));
    undo();
    EXPECT_EQ(size(), 100.0);
    undo();
    EXPECT_EQ(size(), 1.0);
    redo();
    EXPECT_EQ(size(), 100.0);
}

TEST_F(UndoGroups, CountWhenTheEditIsQueuedNotWhenItRuns)
{
    const auto setLater = [&](double value) {
        document->edit("set size", [value](const Context& context) {
            const UsdPrim box = context.stage()->DefinePrim(path("/Box"));
            box.CreateAttribute(TfToken("size"), SdfValueTypeNames->Double).Set(value);
        });
    };
    document->beginUndoGroup("drag");
    setLater(1.0);
    setLater(2.0);
    document->endUndoGroup();
    setLater(3.0);
    document->runPendingTasks();
    EXPECT_EQ(document->undoLabels(), (Labels{"set size", "drag"}));
}

TEST_F(UndoGroups, NestUnderTheOutermostLabel)
{
    document->beginUndoGroup("outer");
    setSize(1.0);
    document->beginUndoGroup("inner");
    setSize(2.0);
    document->endUndoGroup();
    setSize(3.0);
    document->endUndoGroup();
    EXPECT_EQ(document->undoLabels(), Labels{"outer"});
}

TEST_F(UndoGroups, OneAfterTheOtherAreTwoEntries)
{
    for (const char* label : {"first", "second"}) {
        document->beginUndoGroup(label);
        setSize(label[0]);
        document->endUndoGroup();
    }
    EXPECT_EQ(document->undoLabels(), (Labels{"second", "first"}));
}

TEST_F(UndoGroups, LeaveNothingWhenNothingIsAuthored)
{
    document->beginUndoGroup("drag");
    edit("author nothing", [](const Context&) {});
    document->endUndoGroup();
    EXPECT_EQ(document->undoLabels(), Labels());
}

TEST_F(UndoGroups, DoNotGrowAnEntryThatWasUndoneInBetween)
{
    document->beginUndoGroup("drag");
    setSize(1.0);
    undo();
    redo();
    setSize(2.0);
    document->endUndoGroup();
    EXPECT_EQ(document->undoLabels(), (Labels{"drag", "drag"}));
    undo();
    EXPECT_EQ(size(), 1.0);
}

TEST_F(UndoGroups, WarnWhenNoneIsOpen)
{
    document->endUndoGroup();
    const auto records = log.take();
    ASSERT_EQ(records.size(), 1u);
    EXPECT_EQ(records[0].text, "UsdDocument endUndoGroup: no group is open");
    EXPECT_EQ(records[0].level, spdlog::level::warn);
    EXPECT_EQ(records[0].function, "vesk_framework_usd_document");
}

TEST_F(Undo, IsForgottenOnDemand)
{
    setSize(1.0);
    setSize(2.0);
    undo();
    document->clearUndo();
    EXPECT_FALSE(undo());
    EXPECT_FALSE(redo());
    EXPECT_EQ(size(), 1.0);
}

TEST_F(Undo, SkipsLayersThatHaveGone)
{
    SdfLayerRefPtr sublayer = SdfLayer::CreateAnonymous("sub.usda");
    const std::string identifier = sublayer->GetIdentifier();
    stage->GetRootLayer()->InsertSubLayerPath(identifier);
    document->edit(
        "into the sublayer", [](const Context& context) { context.stage()->DefinePrim(path("/A")); },
        identifier);
    document->runPendingTasks();
    stage->GetRootLayer()->RemoveSubLayerPath(0);
    sublayer.Reset();
    EXPECT_TRUE(undo());
}

TEST_F(Undo, OfTwoDocumentsOnOneLayerTakesBackTheirOwnEdits)
{
    DocumentOptions options;
    options.manual = true;
    const UsdStageRefPtr otherStage = UsdStage::Open(stage->GetRootLayer());
    const auto other = UsdDocument::attach(otherStage, options);
    setSize(1.0);
    other->edit("other", [](const Context& context) { context.stage()->DefinePrim(path("/Other")); });
    other->runPendingTasks();
    setSize(2.0);
    EXPECT_EQ(document->undoLabels(), (Labels{"set size", "set size"}));
    EXPECT_EQ(other->undoLabels(), Labels{"other"});
    other->undo();
    other->runPendingTasks();
    EXPECT_FALSE(stage->GetPrimAtPath(path("/Other")));
    EXPECT_EQ(size(), 2.0);
    EXPECT_TRUE(undo());
    EXPECT_EQ(size(), 1.0);
}

TEST_F(Undo, LeavesTheLayerWithoutItsDelegateWhenTheDocumentIsGone)
{
    setSize(1.0);
    const SdfLayerHandle root = stage->GetRootLayer();
    EXPECT_TRUE(root->IsDirty());
    document.reset();
    EXPECT_TRUE(root->IsDirty()) << "an unsaved layer stays unsaved";
    stage->DefinePrim(path("/Later"));
    EXPECT_TRUE(stage->GetPrimAtPath(path("/Later")));
    document = UsdDocument::create();
}
