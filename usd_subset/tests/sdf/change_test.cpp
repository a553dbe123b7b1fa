#include "support.h"

#include <pxr/base/tf/notice.h>
#include <pxr/base/tf/weakBase.h>
#include <pxr/usd/sdf/attributeSpec.h>
#include <pxr/usd/sdf/changeBlock.h>
#include <pxr/usd/sdf/notice.h>
#include <pxr/usd/sdf/primSpec.h>
#include <pxr/usd/sdf/relationshipSpec.h>
#include <pxr/usd/sdf/schema.h>

using namespace sdf_tests;

namespace {

// Remembers the change lists that one layer sends.
class Listener : public TfWeakBase
{
public:
    explicit Listener(const SdfLayerHandle& layer) : _layer(layer)
    {
        _key = TfNotice::Register(TfCreateWeakPtr(this), &Listener::_OnChange, layer);
        _dirtyKey = TfNotice::Register(TfCreateWeakPtr(this), &Listener::_OnDirty, layer);
    }
    ~Listener()
    {
        TfNotice::Revoke(_key);
        TfNotice::Revoke(_dirtyKey);
    }
    const SdfChangeList& Last() const
    {
        static const SdfChangeList none;
        return lists.empty() ? none : lists.back();
    }

    std::vector<SdfChangeList> lists;
    int dirtyChanges = 0;

private:
    void _OnChange(const SdfNotice::LayersDidChangeSentPerLayer& notice)
    {
        lists.push_back(notice.find(_layer)->second);
    }
    void _OnDirty(const SdfNotice::LayerDirtinessChanged&) { ++dirtyChanges; }

    SdfLayerHandle _layer;
    TfNotice::Key _key;
    TfNotice::Key _dirtyKey;
};

const SdfPath kPrim("/P");
const SdfPath kAttribute("/P.x");

} // namespace

TEST(Changes, AddedPrimsTellWhetherTheyAreInert)
{
    const SdfLayerRefPtr layer = SdfLayer::CreateAnonymous();
    Listener listener(layer);
    SdfPrimSpec::New(layer, "P", SdfSpecifierDef, "Xform");
    ASSERT_EQ(listener.lists.size(), 1u);
    EXPECT_TRUE(listener.Last().GetEntry(kPrim).flags.didAddNonInertPrim);
    EXPECT_TRUE(listener.Last().GetEntry(kPrim).HasInfoChange(SdfFieldKeys->TypeName));
    SdfJustCreatePrimInLayer(layer, SdfPath("/Q/R"));
    EXPECT_TRUE(listener.Last().GetEntry(SdfPath("/Q")).flags.didAddInertPrim);
    EXPECT_TRUE(listener.Last().GetEntry(SdfPath("/Q/R")).flags.didAddInertPrim);
    EXPECT_EQ(listener.lists.size(), 2u);
}

TEST(Changes, FieldsTellOldAndNewValues)
{
    const auto layer = Parse("def \"P\" { int x = 1; }\n");
    Listener listener(layer);
    layer->SetField(kAttribute, SdfFieldKeys->Default, 2);
    ASSERT_EQ(listener.lists.size(), 1u);
    const auto change = listener.Last().GetEntry(kAttribute).FindInfoChange(SdfFieldKeys->Default);
    EXPECT_EQ(change->second.first, VtValue(1));
    EXPECT_EQ(change->second.second, VtValue(2));
    EXPECT_EQ(listener.Last().GetEntryList().size(), 1u);
}

TEST(Changes, AnEqualValueSendsNothing)
{
    const auto layer = Parse(
        "def \"P\" (\n customData = { int a = 1 }\n) {\n int x = 1\n float t.timeSamples = { 1: 2 }\n}\n");
    Listener listener(layer);
    layer->SetField(kAttribute, SdfFieldKeys->Default, 1);
    layer->SetField(kPrim, SdfFieldKeys->Specifier, SdfSpecifierDef);
    layer->SetFieldDictValueByKey(kPrim, SdfFieldKeys->CustomData, TfToken("a"), 1);
    layer->SetTimeSample(SdfPath("/P.t"), 1.0, 2.0f);
    layer->EraseField(kPrim, SdfFieldKeys->Kind);
    layer->EraseTimeSample(SdfPath("/P.t"), 5.0);
    EXPECT_EQ(listener.lists.size(), 0u);
    EXPECT_FALSE(SdfLayer::CreateAnonymous()->IsDirty());
}

TEST(Changes, ABlockSendsOnceAndKeepsTheFirstOldValue)
{
    const auto layer = Parse("def \"P\" { int x = 1; }\n");
    Listener listener(layer);
    {
        SdfChangeBlock outer;
        layer->SetField(kAttribute, SdfFieldKeys->Default, 2);
        {
            SdfChangeBlock inner;
            layer->SetField(kAttribute, SdfFieldKeys->Default, 3);
        }
        EXPECT_EQ(listener.lists.size(), 0u);
    }
    ASSERT_EQ(listener.lists.size(), 1u);
    const auto change = listener.Last().GetEntry(kAttribute).FindInfoChange(SdfFieldKeys->Default);
    EXPECT_EQ(change->second.first, VtValue(1));
    EXPECT_EQ(change->second.second, VtValue(3));
}

TEST(Changes, SamplesTargetsAndArcsSetTheirFlags)
{
    const auto layer = Parse("def \"P\" { double x\n rel r\n}\n");
    Listener listener(layer);
    layer->SetTimeSample(kAttribute, 1.0, 2.0);
    EXPECT_TRUE(listener.Last().GetEntry(kAttribute).flags.didChangeAttributeTimeSamples);
    layer->GetRelationshipAtPath(SdfPath("/P.r"))->GetTargetPathList().Prepend(SdfPath("/A"));
    EXPECT_TRUE(listener.Last().GetEntry(SdfPath("/P.r")).flags.didChangeRelationshipTargets);
    layer->GetAttributeAtPath(kAttribute)->GetConnectionPathList().Append(SdfPath("/A.b"));
    EXPECT_TRUE(listener.Last().GetEntry(kAttribute).flags.didChangeAttributeConnection);
    const SdfPrimSpecHandle prim = layer->GetPrimAtPath(kPrim);
    prim->GetReferenceList().Add(SdfReference("a.usda"));
    EXPECT_TRUE(listener.Last().GetEntry(kPrim).flags.didChangePrimReferences);
    prim->GetInheritPathList().Add(SdfPath("/C"));
    EXPECT_TRUE(listener.Last().GetEntry(kPrim).flags.didChangePrimInheritPaths);
    prim->GetSpecializesList().Add(SdfPath("/C"));
    EXPECT_TRUE(listener.Last().GetEntry(kPrim).flags.didChangePrimSpecializes);
    prim->GetVariantSetNameList().Add("v");
    EXPECT_TRUE(listener.Last().GetEntry(kPrim).flags.didChangePrimVariantSets);
    prim->SetNameChildrenOrder({TfToken("B"), TfToken("A")});
    EXPECT_TRUE(listener.Last().GetEntry(kPrim).flags.didReorderChildren);
    EXPECT_EQ(listener.lists.size(), 8u);
}

TEST(Changes, PropertiesTellWhetherTheyHaveOnlyRequiredFields)
{
    const auto layer = Parse("def \"P\" {\n}\n");
    Listener listener(layer);
    const SdfPrimSpecHandle prim = layer->GetPrimAtPath(kPrim);
    const SdfAttributeSpecHandle plain = SdfAttributeSpec::New(prim, "x", SdfValueTypeNames->Int);
    EXPECT_TRUE(listener.Last().GetEntry(kAttribute).flags.didAddPropertyWithOnlyRequiredFields);
    SdfAttributeSpec::New(prim, "y", SdfValueTypeNames->Int, SdfVariabilityVarying, /* custom = */ true);
    EXPECT_TRUE(listener.Last().GetEntry(SdfPath("/P.y")).flags.didAddProperty);
    prim->RemoveProperty(plain);
    EXPECT_TRUE(listener.Last().GetEntry(kAttribute).flags.didRemovePropertyWithOnlyRequiredFields);
    prim->RemoveProperty(layer->GetPropertyAtPath(SdfPath("/P.y")));
    EXPECT_TRUE(listener.Last().GetEntry(SdfPath("/P.y")).flags.didRemoveProperty);
}

TEST(Changes, SublayersAreToldOneByOne)
{
    const auto layer = Parse("(subLayers = [@a@, @b@])\n");
    Listener listener(layer);
    const SdfPath& root = SdfPath::AbsoluteRootPath();
    typedef SdfChangeList::Entry::SubLayerChange Change;
    layer->SetSubLayerPaths({"b", "c"});
    EXPECT_EQ(
        listener.Last().GetEntry(root).subLayerChanges,
        (std::vector<Change>{{"c", SdfChangeList::SubLayerAdded}, {"a", SdfChangeList::SubLayerRemoved}}));
    layer->SetSubLayerOffset(SdfLayerOffset(5), 1);
    EXPECT_EQ(listener.Last().GetEntry(root).subLayerChanges,
              (std::vector<Change>{{"c", SdfChangeList::SubLayerOffset}}));
}

TEST(Changes, ARenameKeepsTheOldPath)
{
    const auto layer = Parse("def \"P\" { def \"C\" { int x; }\n}\n");
    const SdfPrimSpecHandle prim = layer->GetPrimAtPath(kPrim);
    const SdfAttributeSpecHandle below = layer->GetAttributeAtPath(SdfPath("/P/C.x"));
    Listener listener(layer);
    ASSERT_TRUE(prim->SetName("Q"));
    EXPECT_TRUE(listener.Last().GetEntry(SdfPath("/Q")).flags.didRename);
    EXPECT_EQ(listener.Last().GetEntry(SdfPath("/Q")).oldPath, kPrim);
    EXPECT_EQ(prim->GetPath(), SdfPath("/Q"));
    EXPECT_EQ(below->GetPath(), SdfPath("/Q/C.x"));
    EXPECT_FALSE(layer->HasSpec(kPrim));
}

TEST(Changes, ImportingSendsOnlyTheDifferences)
{
    const auto layer = Parse("def \"P\" { int x = 1; }\ndef \"Same\" {}\n");
    Listener listener(layer);
    ASSERT_TRUE(
        layer->ImportFromString("#usda 1.0\ndef \"P\" { int x = 2; }\ndef \"Same\" {}\ndef \"New\" {}\n"));
    ASSERT_EQ(listener.lists.size(), 1u);
    EXPECT_TRUE(listener.Last().GetEntry(kAttribute).HasInfoChange(SdfFieldKeys->Default));
    EXPECT_TRUE(listener.Last().GetEntry(SdfPath("/New")).flags.didAddNonInertPrim);
    EXPECT_EQ(listener.Last().FindEntry(SdfPath("/Same")), listener.Last().end());
}

TEST(Changes, DirtinessIsToldWhenItChanges)
{
    const TemporaryDirectory directory;
    const SdfLayerRefPtr layer = SdfLayer::CreateNew(directory.File("a.usda"));
    Listener listener(layer);
    EXPECT_FALSE(layer->IsDirty());
    layer->SetDocumentation("a");
    layer->SetDocumentation("b");
    EXPECT_TRUE(layer->IsDirty());
    EXPECT_EQ(listener.dirtyChanges, 1);
    ASSERT_TRUE(layer->Save());
    EXPECT_FALSE(layer->IsDirty());
    EXPECT_EQ(listener.dirtyChanges, 2);
}

TEST(Changes, ALayerThatMayNotBeEditedStaysAsItIs)
{
    const auto layer = Parse("def \"P\" { int x = 1; }\n");
    layer->SetPermissionToEdit(false);
    Errors errors;
    layer->SetField(kAttribute, SdfFieldKeys->Default, 2);
    EXPECT_EQ(errors.Take(), (std::vector<std::string>{"Cannot set default on </P.x>. Layer @" +
                                                       layer->GetIdentifier() + "@ is not editable."}));
    EXPECT_FALSE(SdfPrimSpec::New(layer, "Q", SdfSpecifierDef));
    EXPECT_EQ(errors.Take().size(), 1u);
    EXPECT_EQ(layer->GetField(kAttribute, SdfFieldKeys->Default), VtValue(1));
}
