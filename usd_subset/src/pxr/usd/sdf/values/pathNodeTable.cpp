#include "pxr/usd/sdf/values/pathNodeTable.h"

#include <memory>

PXR_NAMESPACE_OPEN_SCOPE

Sdf_PathNodeTable& Sdf_PathNodeTable::Get()
{
    static Sdf_PathNodeTable* const table = new Sdf_PathNodeTable;
    return *table;
}

size_t Sdf_PathNodeTable::_Hash(const Node* parent, const Element& element)
{
    return TfHash::Combine(static_cast<const void*>(parent), element.kind, element.name, element.variant,
                           element.target);
}

Sdf_PathNode* Sdf_PathNodeTable::_FindIn(Shard& shard, const Node* parent, const Element& element,
                                         size_t hash)
{
    Node* node = _BucketOf(shard, hash);
    while (node && (node->m_hash != hash || node->m_parent != parent || !(node->m_element == element))) {
        node = node->m_next;
    }
    if (node) {
        node->count.fetch_add(1, std::memory_order_relaxed);
    }
    return node;
}

const Sdf_PathNode* Sdf_PathNodeTable::Find(const Node* parent, const Element& element)
{
    const size_t hash = _Hash(parent, element);
    Shard& shard = _ShardOf(hash);
    const std::lock_guard<std::mutex> lock(shard.mutex);
    return _FindIn(shard, parent, element, hash);
}

const Sdf_PathNode* Sdf_PathNodeTable::FindOrCreate(const Node* parent, const Element& element)
{
    const size_t hash = _Hash(parent, element);
    Shard& shard = _ShardOf(hash);
    const std::lock_guard<std::mutex> lock(shard.mutex);
    if (Node* found = _FindIn(shard, parent, element, hash)) {
        return found;
    }
    if (2 * shard.size >= shard.buckets.size()) {
        _Grow(shard);
    }
    Node* made = new Node(parent, element, parent->m_isAbsolute);
    made->m_hash = hash;
    Node*& bucket = _BucketOf(shard, hash);
    made->m_next = bucket;
    bucket = made;
    ++shard.size;
    parent->count.fetch_add(1, std::memory_order_relaxed);
    return made;
}

bool Sdf_PathNodeTable::ReleaseLast(const Node* node)
{
    Shard& shard = _ShardOf(node->m_hash);
    const std::lock_guard<std::mutex> lock(shard.mutex);
    if (node->count.fetch_sub(1, std::memory_order_acq_rel) != 1) {
        return false;
    }
    Node** link = &_BucketOf(shard, node->m_hash);
    while (*link != node) {
        link = &(*link)->m_next;
    }
    *link = node->m_next;
    --shard.size;
    return true;
}

void Sdf_PathNodeTable::Destroy(const Node* node, SdfPath* target)
{
    Node* mutableNode = const_cast<Node*>(node);
    *target = std::move(mutableNode->m_element.target);
    delete mutableNode;
}

void Sdf_PathNodeTable::_Grow(Shard& shard)
{
    std::vector<Node*> old(2 * shard.buckets.size(), nullptr);
    old.swap(shard.buckets);
    for (Node* node : old) {
        while (node) {
            Node* next = node->m_next;
            Node*& bucket = _BucketOf(shard, node->m_hash);
            node->m_next = bucket;
            bucket = node;
            node = next;
        }
    }
}

PXR_NAMESPACE_CLOSE_SCOPE
