#pragma once

#include <pxr/base/tf/token.h>
#include <pxr/usd/sdf/path.h>

#include <atomic>
#include <cstdint>
#include <string>

PXR_NAMESPACE_OPEN_SCOPE

/// One element of a path, interned: a parent has at most one node of each element. A node counts the handles
/// and children that refer to it; its own references are those to its parent and to its target. It fills a
/// line of the cache, since paths are found by reading nodes in no order.
class Sdf_PathNode : public Sdf_PathNodeHead
{
public:
    /// In the order in which siblings of different kinds sort.
    enum class Kind : uint8_t
    {
        Root,
        PrimProperty,
        Prim,
        VariantSelection,
        Target,
        RelationalAttribute,
        Mapper,
        MapperArg,
        Expression
    };

    /// What tells siblings apart; only looked at, as long as whoever has the parts lives.
    struct Element
    {
        Kind kind;
        const TfToken& name;    // of the prim, property or argument; the variant set
        const TfToken& variant; // of a variant selection
        const SdfPath& target;  // of a target or mapper

        bool operator==(const Element& o) const
        {
            return kind == o.kind && name == o.name && variant == o.variant && target == o.target;
        }
        bool operator<(const Element& o) const;
    };

    static const Sdf_PathNode* AbsoluteRoot();
    static const Sdf_PathNode* RelativeRoot();

    /// Returns the child with a new reference, null when it does not exist.
    static const Sdf_PathNode* Find(const Sdf_PathNode* parent, const Element& element);
    /// Returns the child with a new reference; makes it when it does not exist.
    static const Sdf_PathNode* FindOrCreate(const Sdf_PathNode* parent, const Element& element);
    /// Drops a reference, and with the last one the node, its parent's reference, and so on without
    /// recursion.
    static void Release(const Sdf_PathNode* node) noexcept;

    Kind GetKind() const { return m_kind; }
    Element GetElement() const { return {m_kind, m_name, m_variant, m_target}; }
    const Sdf_PathNode* GetParent() const { return m_parent; }
    const TfToken& GetName() const;
    /// Returns the number of elements from the root, which has none.
    uint32_t GetCount() const { return m_count; }
    bool IsAbsolute() const { return m_isAbsolute; }
    bool IsRoot() const { return GetKind() == Kind::Root; }
    /// Returns whether it is a property or something below one.
    bool IsInProperty() const { return m_inProperty; }
    bool ContainsVariantSelection() const { return m_hasVariant; }
    bool ContainsTarget() const { return m_hasTarget; }
    /// Returns whether it is "..".
    bool IsParentElement() const;

    /// Returns the nearest ancestor, itself included, that is not inside a property.
    const Sdf_PathNode* GetPrimPart() const
    {
        const Sdf_PathNode* node = this;
        while (node->m_inProperty) {
            node = node->m_parent;
        }
        return node;
    }
    const Sdf_PathNode* GetAncestor(uint32_t elements) const
    {
        const Sdf_PathNode* node = this;
        while (node->m_count > elements) {
            node = node->m_parent;
        }
        return node;
    }

    std::string GetElementText() const;
    std::string GetText() const;
    /// Returns the text as a token that lives as long as the node.
    const TfToken& GetToken() const;

private:
    friend class Sdf_PathNodeTable;

    Sdf_PathNode(const Sdf_PathNode* parent, const Element& element, bool isAbsolute);
    ~Sdf_PathNode();

    const Sdf_PathNode* const m_parent;
    TfToken m_name;
    TfToken m_variant;
    SdfPath m_target;
    Sdf_PathNode* m_next = nullptr; // in the same bucket
    mutable std::atomic<const TfToken*> m_token{nullptr};
    const uint32_t m_count;
    const Kind m_kind;
    const bool m_isAbsolute : 1;
    const bool m_inProperty : 1;
    const bool m_hasVariant : 1;
    const bool m_hasTarget : 1;
};

/// Lets the sources of SdfPath handle nodes.
class Sdf_PathAccess
{
public:
    /// Takes over a reference.
    static SdfPath Make(const Sdf_PathNode* node) { return SdfPath(node); }
    /// Adds a reference.
    static SdfPath Share(const Sdf_PathNode* node)
    {
        if (node) {
            node->count.fetch_add(1, std::memory_order_relaxed);
        }
        return SdfPath(node);
    }
    static const Sdf_PathNode* NodeOf(const SdfPath& path) { return path._node; }
    /// Gives up the path's reference without dropping it.
    static const Sdf_PathNode* Take(SdfPath* path) { return std::exchange(path->_node, nullptr); }

    /// Appends an element to a path by the operation of its kind; the empty path where that is ill-formed.
    static SdfPath Append(const SdfPath& path, const Sdf_PathNode::Element& element);
};

PXR_NAMESPACE_CLOSE_SCOPE
