#include "scene.h"

#include <gmock/gmock.h>

using namespace usd_tests;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

const char* const kTwoInstances =
    "def \"X\" { double a = 1\n def \"B\" { double b = 1\n rel r = </X/B>\n def \"C\" {} } }\n"
    "def \"I\" ( instanceable = true\n references = </X> ) { double a = 5\n over \"B\" { double b = 5 } }\n"
    "def \"J\" ( instanceable = true\n references = </X> ) { }\n";

std::vector<std::string> proxiesOf(const UsdStageRefPtr& scene, const char* path)
{
    return pathsOf(UsdPrimRange(prim(scene, path), UsdTraverseInstanceProxies()));
}

} // namespace

TEST(Instancing, ShareOnePrototypeWhereTheArcsLeadToTheSame)
{
    const UsdStageRefPtr scene = stage(kTwoInstances);
    EXPECT_TRUE(prim(scene, "/I").IsInstance());
    EXPECT_EQ(scene->GetPrototypes().size(), 1u);
    EXPECT_EQ(prim(scene, "/I").GetPrototype(), prim(scene, "/J").GetPrototype());
    EXPECT_TRUE(prim(scene, "/I").GetPrototype().IsPrototype());
    EXPECT_THAT(prim(scene, "/I").GetPrototype().GetInstances(),
                ElementsAre(prim(scene, "/I"), prim(scene, "/J")));
    EXPECT_FALSE(prim(scene, "/X").IsInstance());
}

TEST(Instancing, HidesWhatIsInsideUntilProxiesAreAskedFor)
{
    const UsdStageRefPtr scene = stage(kTwoInstances);
    EXPECT_THAT(pathsOf(scene->Traverse()), ElementsAre("/X", "/X/B", "/X/B/C", "/I", "/J"));
    EXPECT_THAT(proxiesOf(scene, "/J"), ElementsAre("/J", "/J/B", "/J/B/C"));
    EXPECT_THAT(pathsOf(scene->Traverse(UsdTraverseInstanceProxies())),
                ElementsAre("/X", "/X/B", "/X/B/C", "/I", "/I/B", "/I/B/C", "/J", "/J/B", "/J/B/C"));
}

TEST(Instancing, ProxiesAreFoundByPathAndKnowTheirParents)
{
    const UsdStageRefPtr scene = stage(kTwoInstances);
    const UsdPrim b = prim(scene, "/J/B");
    ASSERT_TRUE(b);
    EXPECT_TRUE(b.IsInstanceProxy());
    EXPECT_EQ(b.GetPath(), SdfPath("/J/B"));
    EXPECT_EQ(b.GetParent(), prim(scene, "/J"));
    EXPECT_EQ(prim(scene, "/J/B/C").GetParent(), b);
    EXPECT_TRUE(b.GetPrimInPrototype().IsInPrototype());
    EXPECT_FALSE(prim(scene, "/J/None"));
}

TEST(Instancing, TakesOpinionsOnAnInstanceButNoneOnWhatIsInside)
{
    const UsdStageRefPtr scene = stage(kTwoInstances);
    EXPECT_EQ(valueOf<double>(attribute(scene, "/I.a")), 5);
    EXPECT_EQ(valueOf<double>(attribute(scene, "/I/B.b")), 1);
}

TEST(Instancing, TargetsLeadIntoTheInstanceTheyAreLookedAtThrough)
{
    const UsdStageRefPtr scene = stage(kTwoInstances);
    SdfPathVector targets;
    EXPECT_TRUE(scene->GetRelationshipAtPath(SdfPath("/J/B.r")).GetTargets(&targets));
    EXPECT_THAT(targets, ElementsAre(SdfPath("/J/B")));
    EXPECT_TRUE(scene->GetRelationshipAtPath(SdfPath("/I/B.r")).GetTargets(&targets));
    EXPECT_THAT(targets, ElementsAre(SdfPath("/I/B")));
}

TEST(Instancing, MayBeNested)
{
    const UsdStageRefPtr scene =
        stage("def \"Leaf\" { def \"L\" {} }\n"
              "def \"Tree\" { def \"One\" ( instanceable = true\n references = </Leaf> ) {}\n"
              " def \"Two\" ( instanceable = true\n references = </Leaf> ) {} }\n"
              "def \"T\" ( instanceable = true\n references = </Tree> ) {}");
    EXPECT_THAT(proxiesOf(scene, "/T"), ElementsAre("/T", "/T/One", "/T/One/L", "/T/Two", "/T/Two/L"));
    EXPECT_EQ(prim(scene, "/T/Two/L").GetParent(), prim(scene, "/T/Two"));
    EXPECT_EQ(scene->GetPrototypes().size(), 2u);
}

TEST(Instancing, NeedsAnArc)
{
    const UsdStageRefPtr scene = stage("def \"A\" ( instanceable = true ) { def \"B\" {} }");
    EXPECT_FALSE(prim(scene, "/A").IsInstance());
    EXPECT_TRUE(prim(scene, "/A").IsInstanceable());
    EXPECT_FALSE(prim(scene, "/A/B").IsInstanceProxy());
}

TEST(Instancing, RefusesEditsInside)
{
    const UsdStageRefPtr scene = stage(kTwoInstances);
    Errors errors;
    EXPECT_FALSE(attribute(scene, "/J/B.b").Set(3.0));
    EXPECT_FALSE(scene->DefinePrim(SdfPath("/J/New")));
    const std::vector<std::string> said = errors.take();
    ASSERT_EQ(said.size(), 3u);
    EXPECT_EQ(said[0],
              "Cannot create property spec at path </J/B>; authoring to an instance proxy is not allowed.");
    EXPECT_EQ(said[2], "Cannot create prim at path </J/New>; authoring to an instance proxy is not allowed.");
}

TEST(Instancing, BeginsAndEndsWithTheSwitch)
{
    const UsdStageRefPtr scene = stage(kTwoInstances);
    prim(scene, "/I").SetInstanceable(false);
    EXPECT_FALSE(prim(scene, "/I").IsInstance());
    EXPECT_EQ(valueOf<double>(attribute(scene, "/I/B.b")), 5);
    EXPECT_THAT(proxiesOf(scene, "/J"), ElementsAre("/J", "/J/B", "/J/B/C"));
    prim(scene, "/J").SetInstanceable(false);
    EXPECT_THAT(scene->GetPrototypes(), IsEmpty());
    prim(scene, "/I").SetInstanceable(true);
    EXPECT_THAT(proxiesOf(scene, "/I"), ElementsAre("/I", "/I/B", "/I/B/C"));
}

TEST(Instancing, FollowsChangesOfWhatIsShared)
{
    const UsdStageRefPtr scene = stage(kTwoInstances);
    attribute(scene, "/X/B.b").Set(7.0);
    EXPECT_EQ(valueOf<double>(attribute(scene, "/J/B.b")), 7);
    scene->DefinePrim(SdfPath("/X/New"));
    EXPECT_TRUE(prim(scene, "/I/New"));
    EXPECT_TRUE(prim(scene, "/J/New").IsInstanceProxy());
    scene->RemovePrim(SdfPath("/X/B"));
    EXPECT_FALSE(prim(scene, "/I/B"));
}
