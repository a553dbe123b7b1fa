#include "crate_scenes.h"
#include "support.h"

#include <pxr/usd/sdf/attributeSpec.h>
#include <pxr/usd/sdf/fileFormat.h>
#include <pxr/usd/sdf/primSpec.h>
#include <pxr/usd/sdf/relationshipSpec.h>
#include <pxr/usd/sdf/schema.h>
#include <pxr/usd/usd/usdFileFormat.h>
#include <pxr/usd/usd/usdaFileFormat.h>
#include <pxr/usd/usd/usdcFileFormat.h>

using namespace sdf_tests;

namespace {

// A directory with the crate file a.usdc.
struct CrateFile
{
    explicit CrateFile(const std::string& body)
    {
        EXPECT_TRUE(Parse(body)->Export(directory.File("a.usdc")));
        layer = SdfLayer::FindOrOpen(directory.File("a.usdc"));
    }
    // Saves and reads anew.
    std::string TextOfSaved()
    {
        EXPECT_TRUE(layer->Save());
        return Text(SdfLayer::OpenAsAnonymous(directory.File("a.usdc")));
    }

    TemporaryDirectory directory;
    SdfLayerRefPtr layer;
};

bool isCrate(const std::string& bytes) { return bytes.compare(0, 8, "PXR-USDC") == 0; }

} // namespace

TEST(CrateEditing, ChangesOneSpecOfThoseThatShareTheirFields)
{
    CrateFile file("def \"A\" { float f = 1; }\ndef \"B\" { float f = 1; }\n");
    file.layer->SetField(SdfPath("/A.f"), SdfFieldKeys->Default, 2.0f);
    EXPECT_EQ(file.layer->GetField(SdfPath("/B.f"), SdfFieldKeys->Default), VtValue(1.0f));
    EXPECT_EQ(file.TextOfSaved(), Text(Parse("def \"A\" { float f = 2; }\ndef \"B\" { float f = 1; }\n")));
}

TEST(CrateEditing, KeepsWhatWasNotTouched)
{
    CrateFile file(kEveryField);
    SdfPrimSpec::New(file.layer, "New", SdfSpecifierDef);
    const std::string text = Text(file.layer);
    EXPECT_NE(text.find("def \"New\""), std::string::npos);
    EXPECT_EQ(file.TextOfSaved(), text);
    // Once more, from content whose values now lie in the new file.
    file.layer->SetDocumentation("other words");
    const std::string again = Text(file.layer);
    EXPECT_EQ(file.TextOfSaved(), again);
}

TEST(CrateEditing, SetsAndErasesSamples)
{
    CrateFile file("def \"A\" { double d.timeSamples = { 0: 1, 2: 3 }; }\ndef \"B\" { double "
                   "d.timeSamples = { 0: 1, 2: 3 }; }\n");
    const SdfPath path("/A.d");
    file.layer->SetTimeSample(path, 1.0, 2.0);
    file.layer->SetTimeSample(path, 2.0, 4.0);
    file.layer->EraseTimeSample(path, 0.0);
    EXPECT_EQ(file.layer->GetFieldAs<SdfTimeSampleMap>(path, SdfFieldKeys->TimeSamples),
              (SdfTimeSampleMap{{1.0, VtValue(2.0)}, {2.0, VtValue(4.0)}}));
    EXPECT_EQ(file.TextOfSaved(),
              Text(Parse("def \"A\" { double d.timeSamples = { 1: 2, 2: 4 }; }\ndef \"B\" { "
                         "double d.timeSamples = { 0: 1, 2: 3 }; }\n")));
    file.layer->EraseTimeSample(path, 1.0);
    file.layer->EraseTimeSample(path, 2.0);
    EXPECT_FALSE(file.layer->HasField(path, SdfFieldKeys->TimeSamples));
}

TEST(CrateEditing, AddsManySamplesInLinearTime)
{
    CrateFile file("def \"A\" { double d; }\n");
    for (int i = 0; i < 20000; ++i) {
        file.layer->SetTimeSample(SdfPath("/A.d"), i, i * 0.5);
    }
    EXPECT_EQ(file.layer->GetNumTimeSamplesForPath(SdfPath("/A.d")), 20000u);
}

TEST(CrateEditing, TargetsFollowTheirList)
{
    CrateFile file("def \"A\" { rel r = </B>; }\ndef \"B\" {}\n");
    SdfRelationshipSpecHandle rel = file.layer->GetRelationshipAtPath(SdfPath("/A.r"));
    rel->GetTargetPathList().Add(SdfPath("/A"));
    EXPECT_TRUE(file.layer->HasSpec(SdfPath("/A.r[/A]")));
    EXPECT_EQ(file.TextOfSaved(), Text(Parse("def \"A\" { rel r = [</B>, </A>]; }\ndef \"B\" {}\n")));
}

TEST(CrateEditing, MovesAndRemovesSpecs)
{
    CrateFile file("def \"A\" { def \"B\" { float f = 1; }\n }\ndef \"C\" {}\n");
    file.layer->GetPrimAtPath(SdfPath("/A/B"))->SetName("D");
    file.layer->RemoveRootPrim(file.layer->GetPrimAtPath(SdfPath("/C")));
    EXPECT_EQ(file.TextOfSaved(), Text(Parse("def \"A\" { def \"D\" { float f = 1; }\n }\n")));
}

TEST(CrateEditing, TransferredContentIsACopy)
{
    CrateFile file("def \"A\" {}\n");
    const SdfLayerRefPtr source = Parse("def \"B\" {}\n");
    file.layer->TransferContent(source);
    SdfPrimSpec::New(file.layer, "C", SdfSpecifierDef);
    EXPECT_EQ(Text(source), Text(Parse("def \"B\" {}\n")));
    EXPECT_EQ(file.TextOfSaved(), Text(Parse("def \"B\" {}\ndef \"C\" {}\n")));
}

TEST(CrateEditing, ReloadTakesWhatTheFileHolds)
{
    CrateFile file("def \"A\" {}\n");
    SdfPrimSpec::New(file.layer, "B", SdfSpecifierDef);
    EXPECT_TRUE(file.layer->Reload(true));
    EXPECT_EQ(Text(file.layer), Text(Parse("def \"A\" {}\n")));
    EXPECT_FALSE(file.layer->IsDirty());
}

TEST(UsdFiles, NewOnesAreCrate)
{
    const TemporaryDirectory directory;
    const SdfLayerRefPtr layer = SdfLayer::CreateNew(directory.File("a.usd"));
    ASSERT_TRUE(layer);
    SdfPrimSpec::New(layer, "A", SdfSpecifierDef);
    EXPECT_TRUE(layer->Save());
    EXPECT_TRUE(isCrate(directory.Read("a.usd")));
    EXPECT_EQ(layer->GetFileFormat()->GetFormatId(), "usd");
}

TEST(UsdFiles, TheFormatArgumentTellsTheirContent)
{
    const TemporaryDirectory directory;
    ASSERT_TRUE(SdfLayer::CreateNew(directory.File("a.usd"), {{"format", "usda"}}));
    EXPECT_EQ(directory.Read("a.usd"), "#usda 1.0\n\n");
    const SdfLayerRefPtr layer = Parse("def \"A\" {}\n");
    EXPECT_TRUE(layer->Export(directory.File("b.usd"), "", {{"format", "usda"}}));
    EXPECT_FALSE(isCrate(directory.Read("b.usd")));
    EXPECT_TRUE(layer->Export(directory.File("c.usd"), "", {{"format", "usdc"}}));
    EXPECT_TRUE(isCrate(directory.Read("c.usd")));
    Errors errors;
    EXPECT_TRUE(layer->Export(directory.File("d.usd"), "", {{"format", "usdx"}}));
    EXPECT_EQ(errors.Take(),
              std::vector<std::string>{"'format' argument was 'usdx', must be 'usda' or 'usdc'. "
                                       "Defaulting to 'usdc'."});
}

TEST(UsdFiles, TellTheFormatOfTheirContent)
{
    const TemporaryDirectory directory;
    const std::string arg = UsdUsdFileFormatTokens->FormatArg.GetString();
    const SdfLayerRefPtr text = SdfLayer::CreateNew(directory.File("a.usd"), {{arg, "usda"}});
    const SdfLayerRefPtr crate = SdfLayer::CreateNew(directory.File("b.usd"));
    EXPECT_EQ(UsdUsdFileFormat::GetUnderlyingFormatForLayer(*get_pointer(text)), UsdUsdaFileFormatTokens->Id);
    EXPECT_EQ(UsdUsdFileFormat::GetUnderlyingFormatForLayer(*get_pointer(crate)),
              UsdUsdcFileFormatTokens->Id);
    const SdfLayerRefPtr other = SdfLayer::CreateAnonymous("c.usdc");
    EXPECT_EQ(UsdUsdFileFormat::GetUnderlyingFormatForLayer(*get_pointer(other)), TfToken());
}

TEST(UsdFiles, AreSavedAsTheyWere)
{
    const TemporaryDirectory directory;
    const SdfLayerRefPtr text = SdfLayer::FindOrOpen(directory.Write("t.usd", "#usda 1.0\ndef \"A\" {}\n"));
    SdfPrimSpec::New(text, "B", SdfSpecifierDef);
    EXPECT_TRUE(text->Save());
    EXPECT_FALSE(isCrate(directory.Read("t.usd")));
    ASSERT_TRUE(text->Export(directory.File("c.usd")));
    const SdfLayerRefPtr crate = SdfLayer::FindOrOpen(directory.File("c.usd"));
    SdfPrimSpec::New(crate, "C", SdfSpecifierDef);
    EXPECT_TRUE(crate->Save());
    EXPECT_TRUE(isCrate(directory.Read("c.usd")));
    EXPECT_EQ(Text(SdfLayer::OpenAsAnonymous(directory.File("c.usd"))), Text(crate));
}
