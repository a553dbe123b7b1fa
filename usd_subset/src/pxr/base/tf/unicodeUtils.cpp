#include <pxr/base/tf/unicodeUtils.h>

#include "pxr/base/tf/xidTables.h"

#include <algorithm>
#include <vector>

PXR_NAMESPACE_OPEN_SCOPE

namespace {

/// A class of code points: the points at which it begins and ends, in turn.
class CodePointClass
{
public:
    CodePointClass(const uint32_t* counts, size_t size)
    {
        m_ascii.resize(128);
        m_edges.reserve(size);
        uint32_t edge = 0;
        for (size_t i = 0; i != size; ++i) {
            edge += counts[i];
            m_edges.push_back(edge);
        }
        for (uint32_t c = 0; c != m_ascii.size(); ++c) {
            m_ascii[c] = _Search(c);
        }
    }

    bool contains(uint32_t codePoint) const
    {
        return codePoint < m_ascii.size() ? m_ascii[codePoint] : _Search(codePoint);
    }

private:
    bool _Search(uint32_t codePoint) const
    {
        const auto above = std::upper_bound(m_edges.begin(), m_edges.end(), codePoint);
        return (above - m_edges.begin()) % 2 == 1;
    }

    std::vector<char> m_ascii;
    std::vector<uint32_t> m_edges;
};

bool IsContinuation(unsigned char byte) { return (byte & 0xc0) == 0x80; }

/// Returns how many bytes a sequence has that starts with this byte, 0 for a byte that starts none.
size_t SequenceLength(unsigned char first)
{
    return first < 0x80 ? 1 : first < 0xc2 ? 0 : first < 0xe0 ? 2 : first < 0xf0 ? 3 : first < 0xf5 ? 4 : 0;
}

} // namespace

bool TfIsUtf8CodePointXidStart(uint32_t codePoint)
{
    static const CodePointClass* const starts = new CodePointClass(Tf_xidStart, Tf_xidStartSize);
    return starts->contains(codePoint);
}

bool TfIsUtf8CodePointXidContinue(uint32_t codePoint)
{
    static const CodePointClass* const continues = new CodePointClass(Tf_xidContinue, Tf_xidContinueSize);
    return continues->contains(codePoint);
}

uint32_t Tf_NextCodePoint(const char** text, const char* end)
{
    const auto* bytes = reinterpret_cast<const unsigned char*>(*text);
    const size_t length = SequenceLength(*bytes);
    if (length == 0 || length > static_cast<size_t>(end - *text)) {
        ++*text;
        return Tf_invalidCodePoint;
    }
    uint32_t codePoint = length == 1 ? bytes[0] : bytes[0] & (0x7fu >> length);
    for (size_t i = 1; i != length; ++i) {
        if (!IsContinuation(bytes[i])) {
            *text += i;
            return Tf_invalidCodePoint;
        }
        codePoint = codePoint << 6 | (bytes[i] & 0x3fu);
    }
    *text += length;
    static constexpr uint32_t smallest[] = {0, 0, 0x80, 0x800, 0x10000};
    const bool surrogate = codePoint >= 0xd800 && codePoint <= 0xdfff;
    return codePoint < smallest[length] || surrogate || codePoint > 0x10ffff ? Tf_invalidCodePoint
                                                                             : codePoint;
}

PXR_NAMESPACE_CLOSE_SCOPE
