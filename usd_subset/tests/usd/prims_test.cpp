#include "scene.h"

#include <pxr/usd/usd/errors.h>
#include <pxr/usd/usd/primRange.h>

#include <gmock/gmock.h>

using namespace usd_tests;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

const char* const kTree =
    "def \"A\" { def \"B\" { def \"C\" {} }\n over \"Over\" { def \"Below\" {} }\n"
    " def \"Off\" ( active = false ) {}\n def \"D\" {} }\n class \"Class\" { def \"E\" {} }";

} // namespace

TEST(Traversal, VisitsActiveDefinedConcretePrimsParentsFirst)
{
    EXPECT_THAT(pathsOf(stage(kTree)->Traverse()), ElementsAre("/A", "/A/B", "/A/B/C", "/A/D"));
}

TEST(Traversal, VisitsAllPrimsOnWish)
{
    EXPECT_THAT(pathsOf(stage(kTree)->TraverseAll()),
                ElementsAre("/A", "/A/B", "/A/B/C", "/A/Over", "/A/Over/Below", "/A/Off", "/A/D", "/Class",
                            "/Class/E"));
}

TEST(Traversal, TakesPredicatesAndTheirCombinations)
{
    const UsdStageRefPtr scene = stage(kTree);
    EXPECT_THAT(pathsOf(scene->Traverse(UsdPrimIsAbstract || UsdPrimIsDefined)),
                ElementsAre("/A", "/A/B", "/A/B/C", "/A/Off", "/A/D", "/Class", "/Class/E"));
    EXPECT_THAT(pathsOf(scene->Traverse(UsdPrimIsActive && !UsdPrimIsAbstract)),
                ElementsAre("/A", "/A/B", "/A/B/C", "/A/Over", "/A/Over/Below", "/A/D"));
    EXPECT_THAT(pathsOf(scene->Traverse(!(UsdPrimIsActive && UsdPrimIsDefined))), IsEmpty());
    EXPECT_TRUE((UsdPrimIsActive && UsdPrimIsDefined)(prim(scene, "/A")));
    EXPECT_FALSE((UsdPrimIsActive && UsdPrimIsDefined)(prim(scene, "/A/Over")));
}

TEST(Traversal, OfASubtreeBeginsWithItsTop)
{
    const UsdStageRefPtr scene = stage(kTree);
    EXPECT_THAT(pathsOf(UsdPrimRange(prim(scene, "/A/B"))), ElementsAre("/A/B", "/A/B/C"));
    EXPECT_THAT(pathsOf(UsdPrimRange(prim(scene, "/A/Off"))), IsEmpty());
}

TEST(Traversal, SkipsWhatIsPruned)
{
    const UsdStageRefPtr scene = stage(kTree);
    const UsdPrimRange range = scene->Traverse();
    std::vector<std::string> visited;
    for (auto it = range.begin(); it != range.end(); ++it) {
        visited.push_back(it->GetPath().GetString());
        if (it->GetName() == TfToken("B")) {
            it.PruneChildren();
        }
    }
    EXPECT_THAT(visited, ElementsAre("/A", "/A/B", "/A/D"));
}

TEST(Traversal, ComesBackAfterTheChildrenOnWish)
{
    const UsdStageRefPtr scene = stage(kTree);
    const UsdPrimRange range = UsdPrimRange::PreAndPostVisit(prim(scene, "/A"));
    std::vector<std::string> visited;
    for (auto it = range.begin(); it != range.end(); ++it) {
        visited.push_back((it.IsPostVisit() ? "-" : "+") + it->GetName().GetString());
    }
    EXPECT_THAT(visited, ElementsAre("+A", "+B", "+C", "-C", "-B", "+D", "-D", "-A"));
}

TEST(Traversal, DescendantsAreWithoutThePrimItself)
{
    const UsdStageRefPtr scene = stage(kTree);
    std::vector<std::string> paths;
    for (const UsdPrim& each : prim(scene, "/A").GetDescendants()) {
        paths.push_back(each.GetPath().GetString());
    }
    EXPECT_THAT(paths, ElementsAre("/A/B", "/A/B/C", "/A/D"));
    EXPECT_TRUE(prim(scene, "/A/B/C").GetDescendants().empty());
}

TEST(Prims, KnowTheirRelatives)
{
    const UsdStageRefPtr scene = stage(kTree);
    EXPECT_EQ(prim(scene, "/A/B").GetParent(), prim(scene, "/A"));
    EXPECT_EQ(prim(scene, "/A").GetParent(), scene->GetPseudoRoot());
    EXPECT_FALSE(scene->GetPseudoRoot().GetParent());
    EXPECT_EQ(prim(scene, "/A/B").GetNextSibling(), prim(scene, "/A/D"));
    EXPECT_EQ(prim(scene, "/A/B").GetFilteredNextSibling(UsdPrimAllPrimsPredicate), prim(scene, "/A/Over"));
    EXPECT_FALSE(prim(scene, "/A/D").GetNextSibling());
    EXPECT_EQ(prim(scene, "/A").GetChild(TfToken("B")), prim(scene, "/A/B"));
    EXPECT_EQ(prim(scene, "/A/B").GetPrimAtPath(SdfPath("../D")), prim(scene, "/A/D"));
}

TEST(Prims, ExpireWhenTheyAreRemovedAndAreThereAgainOnlyAsNewOnes)
{
    const UsdStageRefPtr scene = stage("def \"A\" { def \"B\" {} }");
    const UsdPrim b = prim(scene, "/A/B");
    EXPECT_TRUE(scene->RemovePrim(SdfPath("/A")));
    EXPECT_FALSE(b);
    EXPECT_EQ(b.GetPath(), SdfPath("/A/B"));
    scene->DefinePrim(SdfPath("/A/B"));
    EXPECT_FALSE(b);
    EXPECT_TRUE(prim(scene, "/A/B"));
}

TEST(Prims, ExpireWithTheirStage)
{
    UsdStageRefPtr scene = stage("def \"A\" { double a = 1 }");
    const UsdPrim a = prim(scene, "/A");
    const UsdAttribute value = attribute(scene, "/A.a");
    scene.Reset();
    EXPECT_FALSE(a);
    EXPECT_FALSE(value);
    EXPECT_FALSE(a.GetStage());
}

TEST(Prims, ThrowWhenTheyAreUsedAfterTheyExpired)
{
    const UsdStageRefPtr scene = stage("def \"A\" { }");
    const UsdPrim a = prim(scene, "/A");
    scene->RemovePrim(SdfPath("/A"));
    EXPECT_THROW(a.IsActive(), UsdExpiredPrimAccessError);
    EXPECT_THROW(UsdPrim().IsActive(), UsdExpiredPrimAccessError);
    double value = 0;
    EXPECT_THROW(UsdAttribute().Get(&value), UsdExpiredPrimAccessError);
    EXPECT_TRUE(UsdPrim().GetChildren().empty());
}

TEST(Prims, StayTheSameWhenTheyAreComposedAnew)
{
    const UsdStageRefPtr scene = stage("def \"A\" { def \"B\" {} }");
    const UsdPrim b = prim(scene, "/A/B");
    prim(scene, "/A").SetKind(TfToken("group"));
    EXPECT_TRUE(b);
    EXPECT_EQ(b, prim(scene, "/A/B"));
}

TEST(Prims, AreDefinedWithTheirAncestors)
{
    const UsdStageRefPtr scene = stage("");
    const UsdPrim b = scene->DefinePrim(SdfPath("/A/B"), TfToken("Xform"));
    EXPECT_EQ(b.GetTypeName(), TfToken("Xform"));
    EXPECT_TRUE(prim(scene, "/A").IsDefined());
    EXPECT_EQ(prim(scene, "/A").GetTypeName(), TfToken());
    EXPECT_EQ(scene->DefinePrim(SdfPath("/A/B")), b);
}

TEST(Prims, AreOverriddenWithoutBeingDefined)
{
    const UsdStageRefPtr scene = stage("");
    const UsdPrim a = scene->OverridePrim(SdfPath("/A"));
    EXPECT_TRUE(a);
    EXPECT_FALSE(a.IsDefined());
}

TEST(Prims, ClassesAreAbstract)
{
    const UsdStageRefPtr scene = stage("def \"Def\" {}");
    EXPECT_TRUE(scene->CreateClassPrim(SdfPath("/Class")).IsAbstract());
    Errors errors;
    EXPECT_FALSE(scene->CreateClassPrim(SdfPath("/Def")));
    EXPECT_THAT(errors.take(), ElementsAre("Non-class prim already exists at </Def>"));
}

TEST(Prims, CannotBeMadeAtPathsThatNameNone)
{
    const UsdStageRefPtr scene = stage("");
    Errors errors;
    EXPECT_FALSE(scene->DefinePrim(SdfPath("A")));
    EXPECT_FALSE(scene->DefinePrim(SdfPath("/A.a")));
    EXPECT_FALSE(scene->OverridePrim(SdfPath("/A{v=x}B")));
    EXPECT_THAT(errors.take(),
                ElementsAre("Path must be an absolute path: <A>", "Path must be a prim path: </A.a>",
                            "Path must not contain variant selections: </A{v=x}B>"));
}

TEST(Prims, TheDefaultPrimIsTheRootLayers)
{
    const UsdStageRefPtr scene = stage("( defaultPrim = \"A\" )\n def \"A\" {}\n def \"B\" {}");
    EXPECT_EQ(scene->GetDefaultPrim(), prim(scene, "/A"));
    scene->SetDefaultPrim(prim(scene, "/B"));
    EXPECT_EQ(scene->GetDefaultPrim(), prim(scene, "/B"));
    scene->ClearDefaultPrim();
    EXPECT_FALSE(scene->HasDefaultPrim());
    EXPECT_FALSE(scene->GetDefaultPrim());
}

TEST(Prims, ASchemaIsKnownByItsBases)
{
    const UsdStageRefPtr scene = stage("def Sphere \"S\" {}\n def \"None\" {}\n def Unknown \"U\" {}");
    EXPECT_TRUE(prim(scene, "/S").IsA(TfToken("Sphere")));
    EXPECT_TRUE(prim(scene, "/S").IsA(TfToken("Xformable")));
    EXPECT_FALSE(prim(scene, "/S").IsA(TfToken("Cube")));
    EXPECT_FALSE(prim(scene, "/None").IsA(TfToken("Imageable")));
    EXPECT_EQ(prim(scene, "/U").GetTypeName(), TfToken("Unknown"));
}

TEST(Prims, AppliedSchemasAreAddedAndRemoved)
{
    const UsdStageRefPtr scene = stage("def \"A\" {}");
    const UsdPrim a = prim(scene, "/A");
    EXPECT_TRUE(a.AddAppliedSchema(TfToken("MyAPI")));
    EXPECT_TRUE(a.AddAppliedSchema(TfToken("MyAPI:x")));
    EXPECT_THAT(texts(a.GetPrimTypeInfo().GetAppliedAPISchemas()), ElementsAre("MyAPI", "MyAPI:x"));
    EXPECT_TRUE(a.RemoveAppliedSchema(TfToken("MyAPI")));
    EXPECT_THAT(texts(a.GetPrimTypeInfo().GetAppliedAPISchemas()), ElementsAre("MyAPI:x"));
}
