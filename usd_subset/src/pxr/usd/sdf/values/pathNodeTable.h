#pragma once

#include "pxr/base/tf/slabPool.h"
#include "pxr/usd/sdf/values/pathNode.h"

#include <memory>
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
    /// What a node referred to.
    struct Remains
    {
        const Node* parent = nullptr;
        TfToken name;
        TfToken variant;
        SdfPath target;
        std::unique_ptr<const TfToken> token;
    };
    /// Drops a reference that may be the last; then the node is gone, and what it referred to is the
    /// caller's.
    bool ReleaseLast(const Node* node, Remains* remains);

    static uint32_t Hash(const Node* parent, const Element& element);

private:
    struct Shard
    {
        std::mutex mutex;
        std::vector<Node*> buckets = std::vector<Node*>(64, nullptr);
        size_t size = 0;
        Tf_SlabPool nodes{sizeof(Node)};
    };
    static constexpr size_t kShardBits = 6;

    /// Siblings share a shard, so that they lie side by side.
    Shard& _ShardOfChildren(const Node* parent)
    {
        const uint64_t mixed = reinterpret_cast<uintptr_t>(parent) * uint64_t(0x9E3779B97F4A7C15u);
        return m_shards[mixed >> (64 - kShardBits)];
    }
    static Node*& _BucketOf(Shard& shard, uint32_t hash)
    {
        return shard.buckets[hash & (shard.buckets.size() - 1)];
    }
    static Node* _FindIn(Shard& shard, const Node* parent, const Element& element, uint32_t hash);
    static void _Grow(Shard& shard);

    Shard m_shards[size_t(1) << kShardBits];
};

PXR_NAMESPACE_CLOSE_SCOPE
