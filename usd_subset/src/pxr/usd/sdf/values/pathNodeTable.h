#pragma once

#include "pxr/usd/sdf/values/pathNode.h"

#include <mutex>
#include <vector>

PXR_NAMESPACE_OPEN_SCOPE

/// The table of all nodes, in shards so that threads seldom meet.
class Sdf_PathNodeTable
{
public:
    using Node = Sdf_PathNode;
    using Element = Sdf_PathNode::Element;

    static Sdf_PathNodeTable& Get();

    const Node* Find(const Node* parent, const Element& element);
    const Node* FindOrCreate(const Node* parent, const Element& element);
    /// Drops a reference that may be the last; then the node leaves the table and belongs to the caller.
    bool ReleaseLast(const Node* node);
    /// Frees a node that left the table. Its target, when it has one, goes to the caller.
    static void Destroy(const Node* node, SdfPath* target);

private:
    struct Shard
    {
        std::mutex mutex;
        std::vector<Node*> buckets = std::vector<Node*>(64, nullptr);
        size_t size = 0;
    };
    static constexpr size_t kShardBits = 7;

    static size_t _Hash(const Node* parent, const Element& element);
    Shard& _ShardOf(size_t hash) { return m_shards[hash >> (8 * sizeof(hash) - kShardBits)]; }
    static Node*& _BucketOf(Shard& shard, size_t hash)
    {
        return shard.buckets[hash & (shard.buckets.size() - 1)];
    }
    static Node* _FindIn(Shard& shard, const Node* parent, const Element& element, size_t hash);
    static void _Grow(Shard& shard);

    Shard m_shards[size_t(1) << kShardBits];
};

PXR_NAMESPACE_CLOSE_SCOPE
