#include <pxr/base/tf/unicodeUtils.h>

#include <gtest/gtest.h>

#include <string>
#include <vector>

PXR_NAMESPACE_USING_DIRECTIVE

namespace {

std::vector<uint32_t> decode(const std::string& text)
{
    std::vector<uint32_t> codePoints;
    const char* at = text.data();
    while (at != text.data() + text.size()) {
        codePoints.push_back(Tf_NextCodePoint(&at, text.data() + text.size()));
    }
    return codePoints;
}

} // namespace

TEST(Unicode, DecodesSequencesOfEachLength)
{
    EXPECT_EQ(decode("a\xc3\xa4\xe2\x82\xac\xf0\x9f\x98\x80"),
              (std::vector<uint32_t>{'a', 0xe4, 0x20ac, 0x1f600}));
}

TEST(Unicode, RefusesOverlongSurrogateAndCutSequences)
{
    const uint32_t bad = Tf_invalidCodePoint;
    EXPECT_EQ(decode("\xc0\xaf"), (std::vector<uint32_t>{bad, bad}));
    EXPECT_EQ(decode("\xe0\x80\xaf"), std::vector<uint32_t>{bad});
    EXPECT_EQ(decode("\xed\xa0\x80"), std::vector<uint32_t>{bad});
    EXPECT_EQ(decode("\xf4\x90\x80\x80"), std::vector<uint32_t>{bad});
    EXPECT_EQ(decode("\xe2\x82"), (std::vector<uint32_t>{bad, bad}));
    EXPECT_EQ(decode("\x80z"), (std::vector<uint32_t>{bad, 'z'}));
}

TEST(Unicode, KnowsWhatStartsAnIdentifier)
{
    for (uint32_t letter : {uint32_t('a'), uint32_t('Z'), 0xe4u, 0x3b1u, 0x4e00u, 0x2ebf0u, 0x10400u}) {
        EXPECT_TRUE(TfIsUtf8CodePointXidStart(letter)) << std::hex << letter;
    }
    for (uint32_t other :
         {uint32_t('_'), uint32_t('0'), uint32_t('-'), 0xd7u, 0x300u, 0x20acu, 0x1f600u, 0x10ffffu}) {
        EXPECT_FALSE(TfIsUtf8CodePointXidStart(other)) << std::hex << other;
    }
}

TEST(Unicode, KnowsWhatContinuesAnIdentifier)
{
    for (uint32_t part : {uint32_t('a'), uint32_t('_'), uint32_t('9'), 0xb7u, 0x300u, 0x663u, 0x203fu}) {
        EXPECT_TRUE(TfIsUtf8CodePointXidContinue(part)) << std::hex << part;
    }
    for (uint32_t other : {uint32_t(' '), uint32_t(':'), 0xa0u, 0x2028u, Tf_invalidCodePoint}) {
        EXPECT_FALSE(TfIsUtf8CodePointXidContinue(other)) << std::hex << other;
    }
}
