#include "pxr/usd/sdf/values/pathNodeTable.h"

#include <new>

PXR_NAMESPACE_OPEN_SCOPE

Sdf_PathNodeTable& Sdf_PathNodeTable::Get()
{
    static Sdf_PathNodeTable* const table = new Sdf_PathNodeTable;
    return *table;
}

uint32_t Sdf_PathNodeTable::Hash(const Node* parent, const Element& element)
{
    const size_t hash = TfHash::Combine(static_cast<const void*>(parent), element.kind, element.name);
    const bool isPlain = element.variant.IsEmpty() && element.target.IsEmpty();
    return static_cast<uint32_t>(isPlain ? hash : TfHash::Combine(hash, element.variant, element.target));
}

Sdf_PathNode* Sdf_PathNodeTable::_FindIn(Shard& shard, const Node* parent, const Element& element,
                                         uint32_t hash)
{
    Node* node = _BucketOf(shard, hash);
    while (node && (node->hash != hash || node->m_parent != parent || !(node->GetElement() == element))) {
        node = node->m_next;
    }
    if (node) {
        node->count.fetch_add(1, std::memory_order_relaxed);
    }
    return node;
}

const Sdf_PathNode* Sdf_PathNodeTable::Find(const Node* parent, const Element& element)
{
    const uint32_t hash = Hash(parent, element);
    Shard& shard = _ShardOfChildren(parent);
    const std::lock_guard<std::mutex> lock(shard.mutex);
    return _FindIn(shard, parent, element, hash);
}

const Sdf_PathNode* Sdf_PathNodeTable::FindOrCreate(const Node* parent, const Element& element)
{
    const uint32_t hash = Hash(parent, element);
    Shard& shard = _ShardOfChildren(parent);
    const std::lock_guard<std::mutex> lock(shard.mutex);
    if (Node* found = _FindIn(shard, parent, element, hash)) {
        return found;
    }
    if (2 * shard.size >= shard.buckets.size()) {
        _Grow(shard);
    }
    static_assert(sizeof(Node) == 64);
    Node* made = new (shard.nodes.Allocate()) Node(parent, element, parent->m_isAbsolute);
    made->hash = hash;
    Node*& bucket = _BucketOf(shard, hash);
    made->m_next = bucket;
    bucket = made;
    ++shard.size;
    parent->count.fetch_add(1, std::memory_order_relaxed);
    return made;
}

bool Sdf_PathNodeTable::ReleaseLast(const Node* node, Remains* remains)
{
    Shard& shard = _ShardOfChildren(node->m_parent);
    const std::lock_guard<std::mutex> lock(shard.mutex);
    if (node->count.fetch_sub(1, std::memory_order_acq_rel) != 1) {
        return false;
    }
    Node** link = &_BucketOf(shard, node->hash);
    while (*link != node) {
        link = &(*link)->m_next;
    }
    Node* const dead = *link;
    *link = dead->m_next;
    --shard.size;
    // What the node refers to is dropped without the lock.
    remains->parent = dead->m_parent;
    remains->name.Swap(dead->m_name);
    remains->variant.Swap(dead->m_variant);
    swap(remains->target, dead->m_target);
    remains->token.reset(dead->m_token.exchange(nullptr, std::memory_order_acquire));
    dead->~Node();
    shard.nodes.Free(dead);
    return true;
}

void Sdf_PathNodeTable::_Grow(Shard& shard)
{
    std::vector<Node*> old(2 * shard.buckets.size(), nullptr);
    old.swap(shard.buckets);
    for (Node* node : old) {
        while (node) {
            Node* next = node->m_next;
            Node*& bucket = _BucketOf(shard, node->hash);
            node->m_next = bucket;
            bucket = node;
            node = next;
        }
    }
}

PXR_NAMESPACE_CLOSE_SCOPE
