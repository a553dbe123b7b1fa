#include <pxr/base/tf/hash.h>
#include <pxr/base/tf/token.h>

#include <gtest/gtest.h>

#include <unordered_set>

PXR_NAMESPACE_USING_DIRECTIVE

namespace user {

struct Appended
{
    int a, b;
};
template <class HashState>
void TfHashAppend(HashState& h, Appended const& value)
{
    h.Append(value.a, value.b);
}

struct Valued
{
    int a;
};
size_t hash_value(Valued const& value) { return value.a * 31; }

} // namespace user

TEST(Hash, OfEqualValuesIsEqual)
{
    EXPECT_EQ(TfHash()(std::string("abc")), TfHash()(std::string("abc")));
    EXPECT_EQ(TfHash()(0.0), TfHash()(-0.0));
    EXPECT_EQ(TfHash()(std::vector<int>{1, 2}), TfHash()(std::vector<int>{1, 2}));
    EXPECT_EQ(TfHash()(std::string("abc")), TfHash()(TfHashAsCStr("abc")));
}

TEST(Hash, DependsOnTheOrder)
{
    EXPECT_NE(TfHash::Combine(1, 2), TfHash::Combine(2, 1));
    EXPECT_NE(TfHash()(std::pair<int, int>(1, 2)), TfHash()(std::pair<int, int>(2, 1)));
}

TEST(Hash, TakesUserTypes)
{
    EXPECT_EQ(TfHash()(user::Appended{1, 2}), TfHash()(user::Appended{1, 2}));
    EXPECT_NE(TfHash()(user::Appended{1, 2}), TfHash()(user::Appended{2, 1}));
    EXPECT_NE(TfHash()(user::Valued{1}), TfHash()(user::Valued{2}));
}

TEST(Hash, SpreadsSmallNumbers)
{
    // Of 4096 successive numbers, the low twelve bits of the hashes of a random function are about 63 %
    // distinct.
    std::unordered_set<size_t> low;
    for (int i = 0; i != 4096; ++i) {
        low.insert(TfHash()(i) & 4095);
    }
    EXPECT_GT(low.size(), 2400u);
}

TEST(Hash, OfStringsDependsOnEveryByte)
{
    std::unordered_set<size_t> hashes;
    for (size_t length = 0; length != 20; ++length) {
        for (size_t at = 0; at != length; ++at) {
            std::string text(length, '\0');
            text[at] = 'x';
            hashes.insert(TfHash()(text));
        }
    }
    EXPECT_EQ(hashes.size(), 190u); // 1 + 2 + ... + 19
}
