#include <pxr/base/tf/registryManager.h>
#include <pxr/base/tf/token.h>
#include <pxr/base/tf/type.h>

#include "recording_delegate.h"

#include <gtest/gtest.h>

PXR_NAMESPACE_OPEN_SCOPE

struct TypeTestRoot
{
    virtual ~TypeTestRoot() = default;
};
struct TypeTestLeft : virtual TypeTestRoot
{};
struct TypeTestRight : virtual TypeTestRoot
{};
struct TypeTestBottom : TypeTestLeft, TypeTestRight
{};
enum TypeTestEnum
{
    TypeTestEnumOne
};

struct TypeTestFactory : TfType::FactoryBase
{
    int made = 3;
};

TF_REGISTRY_FUNCTION(TfType)
{
    TfType::Define<TypeTestBottom, TfType::Bases<TypeTestLeft, TypeTestRight>>().Alias(
        TfType::Find<TypeTestRoot>(), "none");
    TfType::Define<TypeTestLeft, TfType::Bases<TypeTestRoot>>();
    TfType::Define<TypeTestRight, TfType::Bases<TypeTestRoot>>();
    TfType::Define<TypeTestRoot>();
    TfType::Define<TypeTestEnum>();
    TfType::AddAlias<TypeTestRoot, TypeTestLeft>("Left");
}

namespace {

TEST(Type, IsFoundByClassAndByName)
{
    const TfType type = TfType::Find<TypeTestLeft>();
    EXPECT_FALSE(type.IsUnknown());
    EXPECT_EQ(type.GetTypeName(), "TypeTestLeft");
    EXPECT_EQ(TfType::FindByName("TypeTestLeft"), type);
    EXPECT_EQ(type.GetTypeid(), typeid(TypeTestLeft));
}

TEST(Type, OfAnObjectIsItsDynamicOne)
{
    const TypeTestBottom bottom;
    const TypeTestRoot& object = bottom;
    EXPECT_EQ(TfType::Find(object), TfType::Find<TypeTestBottom>());
}

TEST(Type, ThatNobodyDefinedIsUnknown)
{
    struct Local
    {};
    EXPECT_TRUE(TfType::Find<Local>().IsUnknown());
    EXPECT_FALSE(TfType::FindByName("NoSuchType"));
    EXPECT_EQ(TfType::Find<Local>(), TfType::GetUnknownType());
}

TEST(Type, IsAllOfItsAncestors)
{
    const TfType bottom = TfType::Find<TypeTestBottom>();
    EXPECT_TRUE(bottom.IsA<TypeTestRoot>());
    EXPECT_TRUE(bottom.IsA<TypeTestRight>());
    EXPECT_TRUE(bottom.IsA(TfType::GetRoot()));
    EXPECT_FALSE(TfType::Find<TypeTestRoot>().IsA(bottom));
    EXPECT_FALSE(TfType().IsA(bottom));
}

TEST(Type, ListsAncestorsEachBeforeItsBases)
{
    std::vector<TfType> ancestors;
    TfType::Find<TypeTestBottom>().GetAllAncestorTypes(&ancestors);
    EXPECT_EQ(ancestors, (std::vector<TfType>{TfType::Find<TypeTestBottom>(), TfType::Find<TypeTestLeft>(),
                                              TfType::Find<TypeTestRight>(), TfType::Find<TypeTestRoot>(),
                                              TfType::GetRoot()}));
}

TEST(Type, ListsDerivedTypes)
{
    std::set<TfType> derived;
    TfType::Find<TypeTestRoot>().GetAllDerivedTypes(&derived);
    EXPECT_EQ(derived, (std::set<TfType>{TfType::Find<TypeTestLeft>(), TfType::Find<TypeTestRight>(),
                                         TfType::Find<TypeTestBottom>()}));
}

TEST(Type, IsFoundByAnAliasUnderItsBase)
{
    const TfType root = TfType::Find<TypeTestRoot>();
    EXPECT_EQ(root.FindDerivedByName("Left"), TfType::Find<TypeTestLeft>());
    EXPECT_EQ(root.FindDerivedByName("TypeTestRight"), TfType::Find<TypeTestRight>());
    EXPECT_TRUE(TfType::Find<TypeTestRight>().FindDerivedByName("TypeTestLeft").IsUnknown());
    EXPECT_EQ(root.GetAliases(TfType::Find<TypeTestLeft>()), std::vector<std::string>{"Left"});
}

TEST(Type, HasReadableNames)
{
    EXPECT_EQ(TfType::Find<std::string>().GetTypeName(), "string");
    EXPECT_EQ(TfType::Find<TfToken>().GetTypeName(), "TfToken");
    EXPECT_EQ(TfType::Find<double>().GetTypeName(), "double");
    EXPECT_EQ(TfType::Find<void>().GetTypeName(), "void");
    EXPECT_EQ(TfType().GetTypeName(), "TfType::_Unknown");
}

TEST(Type, KnowsWhatItsClassIsLike)
{
    EXPECT_TRUE(TfType::Find<TypeTestEnum>().IsEnumType());
    EXPECT_TRUE(TfType::Find<int>().IsPlainOldDataType());
    EXPECT_FALSE(TfType::Find<std::string>().IsPlainOldDataType());
    EXPECT_EQ(TfType::Find<double>().GetSizeof(), sizeof(double));
}

TEST(Type, CarriesAFactory)
{
    const TfType type = TfType::Find<TypeTestRight>();
    EXPECT_EQ(type.GetFactory<TypeTestFactory>(), nullptr);
    type.SetFactory<TypeTestFactory>();
    ASSERT_NE(type.GetFactory<TypeTestFactory>(), nullptr);
    EXPECT_EQ(type.GetFactory<TypeTestFactory>()->made, 3);
}

TEST(Type, ThatIsUnknownHasNoAncestorsAndSaysSo)
{
    RecordingDelegate diagnostics;
    std::vector<TfType> ancestors;
    TfType().GetAllAncestorTypes(&ancestors);
    EXPECT_TRUE(ancestors.empty());
    EXPECT_EQ(diagnostics.texts,
              std::vector<std::string>{"error: Cannot ask for ancestor types of Unknown type"});
}

} // namespace

PXR_NAMESPACE_CLOSE_SCOPE
