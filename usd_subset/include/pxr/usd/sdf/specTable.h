#pragma once

#include <pxr/base/tf/token.h>
#include <pxr/base/vt/value.h>
#include <pxr/pxr.h>
#include <pxr/usd/sdf/path.h>
#include <pxr/usd/sdf/types.h>

#include <cstddef>
#include <cstdint>
#include <memory>
#include <utility>
#include <vector>

PXR_NAMESPACE_OPEN_SCOPE

/// What a spec is in memory: its path, its fields in the order in which they were set, and its type.
struct Sdf_MemorySpec
{
    using Field = std::pair<TfToken, VtValue>;

    SdfPath path;
    std::vector<Field> fields;
    SdfSpecType type = SdfSpecTypeUnknown;
};

/// Specs by path, for the hundreds of thousands that one layer may have: a look-up touches one slot of a flat
/// table and the spec itself, and specs that were made one after the other lie side by side. The address of a
/// spec does not change while it is in the table.
///
/// Thread: reading from any number of threads while nobody writes.
template <class SpecType>
class Sdf_SpecTableOf
{
public:
    /// Has a member `path`.
    using Spec = SpecType;

    /// The spec of a path; null when there is none.
    const Spec* Find(const SdfPath& path) const
    {
        const std::size_t slot = _FindSlot(path);
        return slot == kNone ? nullptr : &_At(_slots[slot].spec);
    }
    Spec* Find(const SdfPath& path) { return const_cast<Spec*>(std::as_const(*this).Find(path)); }

    /// The spec of a prim's property; null when there is none.
    const Spec* FindProperty(const SdfPath& prim, const TfToken& name) const
    {
        const std::size_t slot =
            _FindSlot(Sdf_PathKey::GetHashOfProperty(prim, name), [&prim, &name](const SdfPath& path) {
                return Sdf_PathKey::IsProperty(path, prim, name);
            });
        return slot == kNone ? nullptr : &_At(_slots[slot].spec);
    }

    /// The spec of a path, made when there is none.
    Spec& FindOrAdd(const SdfPath& path)
    {
        if (Spec* const found = Find(path)) {
            return *found;
        }
        if (2 * (_size + 1) > _slots.size()) {
            _Grow();
        }
        std::uint32_t place = 0;
        if (_free.empty()) {
            if (_count == kChunk * _chunks.size()) {
                _chunks.push_back(std::make_unique<Spec[]>(kChunk));
            }
            place = _count++;
        } else {
            place = _free.back();
            _free.pop_back();
        }
        Spec& spec = _At(place);
        spec.path = path;
        _Place({Sdf_PathKey::GetHash(path), place});
        ++_size;
        return spec;
    }

    /// Makes room for that many specs.
    void Reserve(std::size_t count)
    {
        while (2 * count > _slots.size()) {
            _Grow();
        }
    }

    bool Erase(const SdfPath& path)
    {
        std::size_t hole = _FindSlot(path);
        if (hole == kNone) {
            return false;
        }
        const std::uint32_t place = _slots[hole].spec;
        _At(place) = Spec();
        _free.push_back(place);
        --_size;
        // Whatever was put past the slot, because it was taken, moves back.
        const std::size_t mask = _slots.size() - 1;
        for (std::size_t next = (hole + 1) & mask; _slots[next].spec != kEmpty; next = (next + 1) & mask) {
            const std::size_t home = _slots[next].hash & mask;
            if (((next - home) & mask) >= ((next - hole) & mask)) {
                _slots[hole] = _slots[next];
                hole = next;
            }
        }
        _slots[hole].spec = kEmpty;
        return true;
    }

    std::size_t GetSize() const { return _size; }

    /// Calls a function with each spec until it returns false.
    template <class Function>
    void ForEach(const Function& function) const
    {
        for (std::uint32_t i = 0; i != _count; ++i) {
            const Spec& spec = _At(i);
            if (!spec.path.IsEmpty() && !function(spec)) {
                return;
            }
        }
    }

private:
    static constexpr std::size_t kChunk = 256;
    static constexpr std::uint32_t kEmpty = ~std::uint32_t(0);
    static constexpr std::size_t kNone = ~std::size_t(0);

    struct Slot
    {
        std::uint32_t hash = 0;
        std::uint32_t spec = kEmpty;
    };

    const Spec& _At(std::uint32_t place) const { return _chunks[place / kChunk][place % kChunk]; }
    Spec& _At(std::uint32_t place) { return _chunks[place / kChunk][place % kChunk]; }

    std::size_t _FindSlot(const SdfPath& path) const
    {
        return _FindSlot(Sdf_PathKey::GetHash(path), [&path](const SdfPath& other) { return other == path; });
    }

    template <class IsWanted>
    std::size_t _FindSlot(std::uint32_t hash, const IsWanted& isWanted) const
    {
        if (_slots.empty()) {
            return kNone;
        }
        const std::size_t mask = _slots.size() - 1;
        for (std::size_t slot = hash & mask; _slots[slot].spec != kEmpty; slot = (slot + 1) & mask) {
            if (_slots[slot].hash == hash && isWanted(_At(_slots[slot].spec).path)) {
                return slot;
            }
        }
        return kNone;
    }

    void _Place(const Slot& taken)
    {
        const std::size_t mask = _slots.size() - 1;
        std::size_t slot = taken.hash & mask;
        while (_slots[slot].spec != kEmpty) {
            slot = (slot + 1) & mask;
        }
        _slots[slot] = taken;
    }

    void _Grow()
    {
        std::vector<Slot> before(_slots.empty() ? 16 : 2 * _slots.size());
        before.swap(_slots);
        for (const Slot& slot : before) {
            if (slot.spec != kEmpty) {
                _Place(slot);
            }
        }
    }

    std::vector<Slot> _slots; // a power of two of them, at most half taken
    std::vector<std::unique_ptr<Spec[]>> _chunks;
    std::vector<std::uint32_t> _free; // places of erased specs
    std::uint32_t _count = 0;         // places that were ever taken
    std::size_t _size = 0;
};

class Sdf_SpecTable : public Sdf_SpecTableOf<Sdf_MemorySpec>
{
public:
    using Field = Sdf_MemorySpec::Field;
};

PXR_NAMESPACE_CLOSE_SCOPE
