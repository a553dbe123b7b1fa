#pragma once

/// Named sets of tokens.
///
/// A set is written as a sequence: (name) makes the token "name", ((name, "text")) the token "text".
/// In a header: TF_DECLARE_PUBLIC_TOKENS(MyTokens, MY_API, MY_TOKENS); in one source:
/// TF_DEFINE_PUBLIC_TOKENS(MyTokens, MY_TOKENS); use: MyTokens->name, MyTokens->allTokens.

#include <pxr/base/tf/preprocessorUtilsLite.h>
#include <pxr/base/tf/staticData.h>
#include <pxr/base/tf/token.h>
#include <pxr/pxr.h>

#include <vector>

// A sequence is walked by two macros that hand over to each other: each takes one element and leaves the
// other's name in front of the next element.
#define TF_TOKENS_MEMBER_A(elem) TF_TOKENS_MEMBER(elem) TF_TOKENS_MEMBER_B
#define TF_TOKENS_MEMBER_B(elem) TF_TOKENS_MEMBER(elem) TF_TOKENS_MEMBER_A
#define TF_TOKENS_MEMBER_A_END
#define TF_TOKENS_MEMBER_B_END
#define TF_TOKENS_NAME_A(elem) TF_TOKENS_NAME(elem), TF_TOKENS_NAME_B
#define TF_TOKENS_NAME_B(elem) TF_TOKENS_NAME(elem), TF_TOKENS_NAME_A
#define TF_TOKENS_NAME_A_END
#define TF_TOKENS_NAME_B_END

#define TF_TOKENS_MEMBER(elem) TF_PP_CAT(TF_TOKENS_MEMBER_, TF_PP_IS_TUPLE(elem))(elem)
#define TF_TOKENS_MEMBER_0(elem) PXR_NS::TfToken elem{#elem, PXR_NS::TfToken::Immortal};
#define TF_TOKENS_MEMBER_1(elem)                                                                             \
    PXR_NS::TfToken TF_PP_TUPLE_ELEM(0, elem){TF_PP_TUPLE_ELEM(1, elem), PXR_NS::TfToken::Immortal};
#define TF_TOKENS_NAME(elem) TF_PP_CAT(TF_TOKENS_NAME_, TF_PP_IS_TUPLE(elem))(elem)
#define TF_TOKENS_NAME_0(elem) elem
#define TF_TOKENS_NAME_1(elem) TF_PP_TUPLE_ELEM(0, elem)

#define TF_TOKENS_END_IMPL(...) __VA_ARGS__##_END
#define TF_TOKENS_END(...) TF_TOKENS_END_IMPL(__VA_ARGS__)

#define TF_TOKENS_MEMBERS(seq)                                                                               \
    TF_TOKENS_END(TF_TOKENS_MEMBER_A seq)                                                                    \
    std::vector<PXR_NS::TfToken> allTokens = {TF_TOKENS_END(TF_TOKENS_NAME_A seq)};

#define TF_TOKENS_STRUCT(key) TF_PP_CAT(key, _StaticTokenType)
#define TF_TOKENS_PRIVATE_STRUCT(key) TF_PP_CAT(key, _PrivateStaticTokenType)

#define TF_DECLARE_PUBLIC_TOKENS_3(key, api, seq)                                                            \
    struct TF_TOKENS_STRUCT(key)                                                                             \
    {                                                                                                        \
        api TF_TOKENS_STRUCT(key)();                                                                         \
        api ~TF_TOKENS_STRUCT(key)();                                                                        \
        TF_TOKENS_MEMBERS(seq)                                                                               \
    };                                                                                                       \
    extern api PXR_NS::TfStaticData<TF_TOKENS_STRUCT(key)> key
#define TF_DECLARE_PUBLIC_TOKENS_2(key, seq) TF_DECLARE_PUBLIC_TOKENS_3(key, , seq)
#define TF_DECLARE_PUBLIC_TOKENS_CHOOSE(a, b, c, macro, ...) macro

/// Declares the set `key`: TF_DECLARE_PUBLIC_TOKENS(key, sequence) or (key, export macro, sequence).
#define TF_DECLARE_PUBLIC_TOKENS(...)                                                                        \
    TF_DECLARE_PUBLIC_TOKENS_CHOOSE(__VA_ARGS__, TF_DECLARE_PUBLIC_TOKENS_3, TF_DECLARE_PUBLIC_TOKENS_2, ~)  \
    (__VA_ARGS__)

/// Defines a set that TF_DECLARE_PUBLIC_TOKENS declared.
#define TF_DEFINE_PUBLIC_TOKENS(key, seq)                                                                    \
    TF_TOKENS_STRUCT(key)::TF_TOKENS_STRUCT(key)() = default;                                                \
    TF_TOKENS_STRUCT(key)::~TF_TOKENS_STRUCT(key)() = default;                                               \
    PXR_NS::TfStaticData<TF_TOKENS_STRUCT(key)> key

/// Declares and defines a set that only this source sees.
#define TF_DEFINE_PRIVATE_TOKENS(key, seq)                                                                   \
    namespace {                                                                                              \
    struct TF_TOKENS_PRIVATE_STRUCT(key)                                                                     \
    {                                                                                                        \
        TF_TOKENS_PRIVATE_STRUCT(key)() = default;                                                           \
        TF_TOKENS_MEMBERS(seq)                                                                               \
    };                                                                                                       \
    }                                                                                                        \
    static PXR_NS::TfStaticData<TF_TOKENS_PRIVATE_STRUCT(key)> key
