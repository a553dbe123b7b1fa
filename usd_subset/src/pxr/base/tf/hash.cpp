#include <pxr/base/tf/hash.h>

PXR_NAMESPACE_OPEN_SCOPE

void Tf_HashState::_AppendBytes(char const* bytes, size_t count)
{
    _Append(static_cast<uint64_t>(count));
    for (; count >= sizeof(uint64_t); bytes += sizeof(uint64_t), count -= sizeof(uint64_t)) {
        uint64_t word;
        std::memcpy(&word, bytes, sizeof(word));
        _Append(word);
    }
    if (count) {
        uint64_t word = 0;
        std::memcpy(&word, bytes, count);
        _Append(word);
    }
}

PXR_NAMESPACE_CLOSE_SCOPE
