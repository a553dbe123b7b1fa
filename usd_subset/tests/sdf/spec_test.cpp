#include "support.h"

#include <pxr/usd/sdf/attributeSpec.h>
#include <pxr/usd/sdf/copyUtils.h>
#include <pxr/usd/sdf/layerStateDelegate.h>
#include <pxr/usd/sdf/primSpec.h>
#include <pxr/usd/sdf/relationshipSpec.h>
#include <pxr/usd/sdf/schema.h>
#include <pxr/usd/sdf/variantSetSpec.h>
#include <pxr/usd/sdf/variantSpec.h>

using namespace sdf_tests;

TEST(Specs, AreMadeWithTheirAncestors)
{
    const SdfLayerRefPtr layer = SdfLayer::CreateAnonymous();
    const SdfPrimSpecHandle prim = SdfCreatePrimInLayer(layer, SdfPath("/A/B{v=x}C"));
    ASSERT_TRUE(prim);
    EXPECT_EQ(prim->GetPath(), SdfPath("/A/B{v=x}C"));
    EXPECT_EQ(layer->GetPrimAtPath(SdfPath("/A/B"))->GetVariantNames("v"), std::vector<std::string>{"x"});
    EXPECT_EQ(layer->GetPrimAtPath(SdfPath("/A/B"))->GetVariantSetNameList().GetPrependedItems(),
              std::vector<std::string>{"v"});
    EXPECT_TRUE(SdfJustCreatePrimAttributeInLayer(layer, SdfPath("/D.x"), SdfValueTypeNames->Float));
    EXPECT_EQ(layer->GetAttributeAtPath(SdfPath("/D.x"))->GetTypeName(), SdfValueTypeNames->Float);
}

TEST(Specs, RefuseBadAndTakenNames)
{
    const SdfLayerRefPtr layer = SdfLayer::CreateAnonymous();
    const SdfPrimSpecHandle prim = SdfPrimSpec::New(layer, "A", SdfSpecifierDef);
    Errors errors;
    EXPECT_FALSE(SdfPrimSpec::New(layer, "a b", SdfSpecifierDef));
    EXPECT_EQ(errors.Take(),
              std::vector<std::string>{"Cannot create prim 'a b' because it is not a valid name"});
    EXPECT_FALSE(SdfPrimSpec::New(layer, "A", SdfSpecifierDef));
    EXPECT_EQ(errors.Take().size(), 1u);
    EXPECT_FALSE(SdfAttributeSpec::New(prim, "1x", SdfValueTypeNames->Int));
    EXPECT_EQ(errors.Take(), std::vector<std::string>{"Cannot create attribute on /A with invalid name: 1x"});
    EXPECT_FALSE(SdfPrimSpec::New(SdfPrimSpecHandle(), "A", SdfSpecifierDef));
    EXPECT_EQ(errors.Take(),
              std::vector<std::string>{"Cannot create prim 'A' because the parent is invalid"});
    std::string why;
    EXPECT_FALSE(prim->CanSetName("", &why));
    EXPECT_EQ(why, "\"\" is not a valid name");
}

TEST(Specs, HandlesKnowWhenTheirSpecIsGone)
{
    const auto layer = Parse("def \"A\" { int x; }\n");
    const SdfAttributeSpecHandle attribute = layer->GetAttributeAtPath(SdfPath("/A.x"));
    layer->RemoveRootPrim(layer->GetPrimAtPath(SdfPath("/A")));
    EXPECT_FALSE(attribute);
    Errors errors;
    EXPECT_FALSE(attribute->HasDefaultValue());
    EXPECT_EQ(errors.Take().size(), 1u);
    EXPECT_TRUE(layer->IsEmpty());
}

TEST(Specs, HandlesCastByTheKindOfSpec)
{
    const auto layer = Parse("def \"A\" { int x\n rel r\n}\n");
    const SdfSpecHandle attribute = layer->GetObjectAtPath(SdfPath("/A.x"));
    EXPECT_TRUE(TfDynamic_cast<SdfAttributeSpecHandle>(attribute));
    EXPECT_TRUE(TfDynamic_cast<SdfPropertySpecHandle>(attribute));
    EXPECT_FALSE(TfDynamic_cast<SdfRelationshipSpecHandle>(attribute));
    EXPECT_FALSE(TfDynamic_cast<SdfPrimSpecHandle>(attribute));
    EXPECT_FALSE(layer->GetAttributeAtPath(SdfPath("/A.r")));
    const SdfPrimSpecHandle prim = layer->GetPrimAtPath(SdfPath("/A"));
    EXPECT_EQ(prim->GetAttributes().keys(), std::vector<std::string>{"x"});
    EXPECT_EQ(prim->GetRelationships().keys(), std::vector<std::string>{"r"});
    EXPECT_EQ(prim->GetProperties().size(), 2u);
    EXPECT_EQ(attribute, prim->GetAttributeAtPath(SdfPath(".x")));
}

TEST(Specs, DefaultsAreCastToTheTypeOfTheAttribute)
{
    const auto layer = Parse("def \"A\" { float x; }\n");
    const SdfAttributeSpecHandle attribute = layer->GetAttributeAtPath(SdfPath("/A.x"));
    EXPECT_TRUE(attribute->SetDefaultValue(VtValue(2)));
    EXPECT_EQ(attribute->GetDefaultValue(), VtValue(2.0f));
    Errors errors;
    EXPECT_FALSE(attribute->SetDefaultValue(VtValue(std::string("text"))));
    EXPECT_EQ(errors.Take(),
              std::vector<std::string>{"Can't set default value on </A.x> to text: expected a value of "
                                       "type \"float\""});
    attribute->SetTimeSample(1.0, VtValue(std::string("text")));
    EXPECT_EQ(errors.Take(),
              std::vector<std::string>{"Can't set time sample on </A.x> to text: expected a value of "
                                       "type \"float\""});
    attribute->SetTimeSample(1.0, 3.0);
    attribute->SetTimeSample(5.0, 4.0);
    double lower = 0;
    double upper = 0;
    EXPECT_TRUE(attribute->GetBracketingTimeSamples(2.0, &lower, &upper));
    EXPECT_EQ(lower, 1.0);
    EXPECT_EQ(upper, 5.0);
    EXPECT_TRUE(attribute->GetBracketingTimeSamples(9.0, &lower, &upper));
    EXPECT_EQ(lower, 5.0);
    EXPECT_EQ(upper, 5.0);
    attribute->EraseTimeSample(1.0);
    attribute->EraseTimeSample(5.0);
    EXPECT_FALSE(attribute->HasField(SdfFieldKeys->TimeSamples));
}

TEST(Specs, ListProxiesEditTheLayer)
{
    const auto layer = Parse("def \"A\" {\n}\n");
    SdfInheritsProxy inherits = layer->GetPrimAtPath(SdfPath("/A"))->GetInheritPathList();
    EXPECT_FALSE(inherits.HasKeys());
    inherits.Prepend(SdfPath("/B"));
    inherits.Prepend(SdfPath("/C"));
    inherits.Append(SdfPath("/D"));
    EXPECT_EQ(std::vector<SdfPath>(inherits.GetPrependedItems()),
              (std::vector<SdfPath>{SdfPath("/C"), SdfPath("/B")}));
    inherits.Remove(SdfPath("/B"));
    EXPECT_EQ(std::vector<SdfPath>(inherits.GetDeletedItems()), std::vector<SdfPath>{SdfPath("/B")});
    EXPECT_EQ(inherits.GetAppliedItems(), (std::vector<SdfPath>{SdfPath("/C"), SdfPath("/D")}));
    inherits.ReplaceItemEdits(SdfPath("/C"), SdfPath("/E"));
    EXPECT_TRUE(inherits.ContainsItemEdit(SdfPath("/E")));
    inherits.ClearEditsAndMakeExplicit();
    EXPECT_TRUE(inherits.IsExplicit());
    inherits.GetExplicitItems() = std::vector<SdfPath>{SdfPath("/X")};
    EXPECT_EQ(inherits.GetAppliedItems(), std::vector<SdfPath>{SdfPath("/X")});
    inherits.ClearEdits();
    EXPECT_FALSE(layer->HasField(SdfPath("/A"), SdfFieldKeys->InheritPaths));
}

TEST(Specs, MapProxiesEditTheLayer)
{
    const auto layer = Parse("def \"A\" {\n}\n");
    const SdfPrimSpecHandle prim = layer->GetPrimAtPath(SdfPath("/A"));
    prim->SetVariantSelection("v", "x");
    prim->BlockVariantSelection("w");
    EXPECT_EQ(layer->GetField(SdfPath("/A"), SdfFieldKeys->VariantSelection),
              VtValue(SdfVariantSelectionMap{{"v", "x"}, {"w", ""}}));
    prim->SetVariantSelection("v", "");
    prim->GetVariantSelections().clear();
    EXPECT_FALSE(layer->HasField(SdfPath("/A"), SdfFieldKeys->VariantSelection));
    prim->SetCustomData("a", VtValue(1));
    prim->GetCustomData()["b"] = VtValue(2);
    EXPECT_EQ(prim->GetCustomData().size(), 2u);
    prim->SetCustomData("a", VtValue());
    EXPECT_EQ(prim->GetCustomData().count("a"), 0u);
}

TEST(Specs, WithoutEffectAreRemovedWithTheirAncestors)
{
    const SdfLayerRefPtr layer = SdfLayer::CreateAnonymous();
    SdfJustCreatePrimAttributeInLayer(layer, SdfPath("/A/B.x"), SdfValueTypeNames->Int);
    const SdfAttributeSpecHandle attribute = layer->GetAttributeAtPath(SdfPath("/A/B.x"));
    EXPECT_TRUE(attribute->HasOnlyRequiredFields());
    layer->ScheduleRemoveIfInert(attribute.GetSpec());
    EXPECT_TRUE(layer->IsEmpty());
    SdfCreatePrimInLayer(layer, SdfPath("/A/B/C"));
    SdfPrimSpec::New(layer->GetPrimAtPath(SdfPath("/A")), "Kept", SdfSpecifierDef);
    layer->RemoveInertSceneDescription();
    EXPECT_TRUE(layer->HasSpec(SdfPath("/A/Kept")));
    EXPECT_FALSE(layer->HasSpec(SdfPath("/A/B")));
}

TEST(Specs, CopiesMovePathsThatPointInside)
{
    const auto layer = Parse(R"(
def "A"
{
    rel r = [</A/B>, </Outside>]
    def "B" (
        references = </A/C>
    ) {
        int x.connect = </A.y>
    }
    variantSet "v" = { "one" { def "D" {
}
} }
}
)");
    ASSERT_TRUE(SdfCopySpec(layer, SdfPath("/A"), layer, SdfPath("/Copy")));
    EXPECT_EQ(layer->GetRelationshipAtPath(SdfPath("/Copy.r"))->GetTargetPathList().GetAppliedItems(),
              (std::vector<SdfPath>{SdfPath("/Copy/B"), SdfPath("/Outside")}));
    EXPECT_EQ(layer->GetAttributeAtPath(SdfPath("/Copy/B.x"))->GetConnectionPathList().GetAppliedItems(),
              std::vector<SdfPath>{SdfPath("/Copy.y")});
    EXPECT_EQ(layer->GetPrimAtPath(SdfPath("/Copy/B"))->GetReferenceList().GetAppliedItems(),
              std::vector<SdfReference>{SdfReference("", SdfPath("/Copy/C"))});
    EXPECT_TRUE(layer->HasSpec(SdfPath("/Copy{v=one}D")));
    EXPECT_EQ(layer->GetRootPrims().keys(), (std::vector<std::string>{"A", "Copy"}));
    Errors errors;
    EXPECT_FALSE(SdfCopySpec(layer, SdfPath("/A"), layer, SdfPath("/None/X")));
    EXPECT_EQ(errors.Take(),
              std::vector<std::string>{"Cannot copy </A> to </None/X>: the parent of the destination "
                                       "does not exist"});
}

namespace {

// Notes the old default of every attribute whose default is set.
class Recorder : public SdfSimpleLayerStateDelegate
{
public:
    std::vector<VtValue> oldValues;

protected:
    void _OnSetField(const SdfPath& path, const TfToken& field, const VtValue& value) override
    {
        oldValues.push_back(_GetLayer()->GetField(path, field));
        SdfSimpleLayerStateDelegate::_OnSetField(path, field, value);
    }
    using SdfSimpleLayerStateDelegate::_OnSetField;
};

} // namespace

TEST(Specs, AStateDelegateSeesTheOldStateOfEachEdit)
{
    const auto layer = Parse("def \"A\" { int x = 1; }\n");
    const TfRefPtr<Recorder> recorder = TfCreateRefPtr(new Recorder);
    layer->SetStateDelegate(recorder);
    layer->SetField(SdfPath("/A.x"), SdfFieldKeys->Default, 2);
    layer->SetField(SdfPath("/A.x"), SdfFieldKeys->Default, 3);
    EXPECT_EQ(recorder->oldValues, (std::vector<VtValue>{VtValue(1), VtValue(2)}));
    EXPECT_TRUE(layer->IsDirty());
}
