#pragma once

#include <pxr/pxr.h>

#include <cstddef>
#include <cstdint>
#include <memory>
#include <new>
#include <utility>
#include <vector>

PXR_NAMESPACE_OPEN_SCOPE

/// A hash table for hundreds of thousands of entries: a look-up touches one slot of a flat table and the
/// entry itself, and entries that were made one after the other lie side by side. The address of an entry
/// does not change while it is in the table.
///
/// Thread: reading from any number of threads while nobody writes.
///
/// @tparam kKey the member of an entry that it is found by; a default-made one is no key
/// @tparam Hash gives numbers whose low 32 bits are well mixed
template <class Entry, auto kKey, class Hash>
class Tf_ChunkedTable
{
public:
    using Key = std::decay_t<decltype(std::declval<Entry>().*kKey)>;

    Tf_ChunkedTable() = default;
    ~Tf_ChunkedTable() { Clear(); }
    Tf_ChunkedTable(const Tf_ChunkedTable&) = delete;
    Tf_ChunkedTable& operator=(const Tf_ChunkedTable&) = delete;
    Tf_ChunkedTable(Tf_ChunkedTable&& other) noexcept { Swap(other); }
    Tf_ChunkedTable& operator=(Tf_ChunkedTable&& other) noexcept
    {
        Tf_ChunkedTable(std::move(other)).Swap(*this);
        return *this;
    }

    /// The entry of a key; null when there is none.
    const Entry* Find(const Key& key) const
    {
        return FindHashed(_HashOf(key), [&key](const Key& other) { return other == key; });
    }
    Entry* Find(const Key& key) { return const_cast<Entry*>(std::as_const(*this).Find(key)); }

    /// The entry with a certain hash whose key is as wanted; null when there is none.
    template <class IsWanted>
    const Entry* FindHashed(std::uint32_t hash, const IsWanted& isWanted) const
    {
        const std::size_t slot = _FindSlot(hash, isWanted);
        return slot == kNone ? nullptr : &_At(_slots[slot].place);
    }

    /// The entry of a key, made when there is none.
    Entry& FindOrAdd(const Key& key)
    {
        const std::uint32_t hash = _HashOf(key);
        const std::size_t found = _FindSlot(hash, [&key](const Key& other) { return other == key; });
        if (found != kNone) {
            return _At(_slots[found].place);
        }
        if (2 * (_size + 1) > _slots.size()) {
            _Grow();
        }
        const std::uint32_t place = _TakePlace();
        Entry& entry = _At(place);
        entry.*kKey = key;
        _Put({hash, place});
        ++_size;
        return entry;
    }

    bool Erase(const Key& key)
    {
        std::size_t hole = _FindSlot(_HashOf(key), [&key](const Key& other) { return other == key; });
        if (hole == kNone) {
            return false;
        }
        const std::uint32_t place = _slots[hole].place;
        _At(place) = Entry();
        _free.push_back(place);
        --_size;
        // Whatever was put past the slot, because it was taken, moves back.
        const std::size_t mask = _slots.size() - 1;
        for (std::size_t next = (hole + 1) & mask; _slots[next].place != kEmpty; next = (next + 1) & mask) {
            const std::size_t home = _slots[next].hash & mask;
            if (((next - home) & mask) >= ((next - hole) & mask)) {
                _slots[hole] = _slots[next];
                hole = next;
            }
        }
        _slots[hole].place = kEmpty;
        return true;
    }

    /// Makes room for that many entries.
    void Reserve(std::size_t count)
    {
        while (2 * count > _slots.size()) {
            _Grow();
        }
    }

    void Clear()
    {
        for (std::uint32_t i = 0; i != _count; ++i) {
            _At(i).~Entry();
        }
        _slots.clear();
        _chunks.clear();
        _free.clear();
        _count = 0;
        _size = 0;
    }

    void Swap(Tf_ChunkedTable& other) noexcept
    {
        _slots.swap(other._slots);
        _chunks.swap(other._chunks);
        _free.swap(other._free);
        std::swap(_count, other._count);
        std::swap(_size, other._size);
    }

    std::size_t GetSize() const { return _size; }

    /// Calls a function with each entry, in the order in which they were made as far as none was erased,
    /// until it returns false.
    template <class Function>
    void ForEach(const Function& function) const
    {
        for (std::uint32_t i = 0; i != _count; ++i) {
            const Entry& entry = _At(i);
            if (!(entry.*kKey == Key()) && !function(entry)) {
                return;
            }
        }
    }
    template <class Function>
    void ForEach(const Function& function)
    {
        std::as_const(*this).ForEach(
            [&function](const Entry& entry) { return function(const_cast<Entry&>(entry)); });
    }

private:
    static constexpr std::size_t kChunk = 256;
    static constexpr std::uint32_t kEmpty = ~std::uint32_t(0);
    static constexpr std::size_t kNone = ~std::size_t(0);

    struct Slot
    {
        std::uint32_t hash = 0;
        std::uint32_t place = kEmpty;
    };
    /// Room for entries, of which only those that are needed are made.
    struct Chunk
    {
        alignas(Entry) std::byte room[kChunk * sizeof(Entry)];
    };

    static std::uint32_t _HashOf(const Key& key) { return static_cast<std::uint32_t>(Hash()(key)); }
    const Entry& _At(std::uint32_t place) const
    {
        return reinterpret_cast<const Entry*>(_chunks[place / kChunk]->room)[place % kChunk];
    }
    Entry& _At(std::uint32_t place) { return const_cast<Entry&>(std::as_const(*this)._At(place)); }

    std::uint32_t _TakePlace()
    {
        if (!_free.empty()) {
            const std::uint32_t place = _free.back();
            _free.pop_back();
            return place;
        }
        if (_count == kChunk * _chunks.size()) {
            _chunks.emplace_back(new Chunk);
        }
        new (&_At(_count)) Entry();
        return _count++;
    }

    template <class IsWanted>
    std::size_t _FindSlot(std::uint32_t hash, const IsWanted& isWanted) const
    {
        if (_slots.empty()) {
            return kNone;
        }
        const std::size_t mask = _slots.size() - 1;
        for (std::size_t slot = hash & mask; _slots[slot].place != kEmpty; slot = (slot + 1) & mask) {
            if (_slots[slot].hash == hash && isWanted(_At(_slots[slot].place).*kKey)) {
                return slot;
            }
        }
        return kNone;
    }

    void _Put(const Slot& taken)
    {
        const std::size_t mask = _slots.size() - 1;
        std::size_t slot = taken.hash & mask;
        while (_slots[slot].place != kEmpty) {
            slot = (slot + 1) & mask;
        }
        _slots[slot] = taken;
    }

    void _Grow()
    {
        std::vector<Slot> before(_slots.empty() ? 16 : 2 * _slots.size());
        before.swap(_slots);
        for (const Slot& slot : before) {
            if (slot.place != kEmpty) {
                _Put(slot);
            }
        }
    }

    std::vector<Slot> _slots; // a power of two of them, at most half taken
    std::vector<std::unique_ptr<Chunk>> _chunks;
    std::vector<std::uint32_t> _free; // places of erased entries
    std::uint32_t _count = 0;         // places that were ever taken
    std::size_t _size = 0;
};

PXR_NAMESPACE_CLOSE_SCOPE
