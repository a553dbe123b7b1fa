#pragma once

/// Read access to the children of a spec, in their order.

#include <pxr/base/tf/token.h>
#include <pxr/pxr.h>
#include <pxr/usd/sdf/api.h>
#include <pxr/usd/sdf/declareHandles.h>
#include <pxr/usd/sdf/path.h>
#include <pxr/usd/sdf/spec.h>

#include <cstddef>
#include <iterator>
#include <memory>
#include <string>
#include <vector>

PXR_NAMESPACE_OPEN_SCOPE

/// The kinds of named children that a spec can have.
enum class Sdf_ChildKind
{
    Prim,
    Property,
    Attribute,
    Relationship,
    VariantSet,
    Variant
};

/// The names of one spec's children of one kind, looked up in the layer at each call.
class SDF_API Sdf_ChildNames
{
public:
    Sdf_ChildNames() = default;
    Sdf_ChildNames(const SdfLayerHandle& layer, const SdfPath& parent, Sdf_ChildKind kind)
        : _layer(layer), _parent(parent), _kind(kind)
    {}

    bool IsValid() const;
    /// Returns the names in order; attributes and relationships leave the other kind of property out.
    std::vector<TfToken> Names() const;
    /// Returns the path of the child of this name.
    SdfPath ChildPath(const TfToken& name) const;
    /// Returns the child of this name, or a null handle.
    SdfSpecHandle Child(const TfToken& name) const;
    bool Has(const TfToken& name) const;

    const SdfLayerHandle& GetLayer() const { return _layer; }
    const SdfPath& GetParent() const { return _parent; }
    bool operator==(const Sdf_ChildNames& other) const
    {
        return _layer == other._layer && _parent == other._parent && _kind == other._kind;
    }

private:
    SdfLayerHandle _layer;
    SdfPath _parent;
    Sdf_ChildKind _kind = Sdf_ChildKind::Prim;
};

/// Names the handle type of a kind of children.
template <Sdf_ChildKind Kind, class Spec>
struct Sdf_ChildPolicy
{
    static constexpr Sdf_ChildKind kind = Kind;
    typedef std::string KeyType;
    typedef SdfHandle<Spec> ValueType;
};
typedef Sdf_ChildPolicy<Sdf_ChildKind::Prim, SdfPrimSpec> Sdf_PrimChildPolicy;
typedef Sdf_ChildPolicy<Sdf_ChildKind::Property, SdfPropertySpec> Sdf_PropertyChildPolicy;
typedef Sdf_ChildPolicy<Sdf_ChildKind::Attribute, SdfAttributeSpec> Sdf_AttributeChildPolicy;
typedef Sdf_ChildPolicy<Sdf_ChildKind::Relationship, SdfRelationshipSpec> Sdf_RelationshipChildPolicy;
typedef Sdf_ChildPolicy<Sdf_ChildKind::VariantSet, SdfVariantSetSpec> Sdf_VariantSetChildPolicy;
typedef Sdf_ChildPolicy<Sdf_ChildKind::Variant, SdfVariantSpec> Sdf_VariantChildPolicy;

/// The children of one kind as a sequence of handles that can also be looked up by name. An iterator keeps
/// the names that there were when it was made, so that children may be removed while one walks over them.
template <class ChildPolicy>
class SdfChildrenView
{
public:
    typedef std::string key_type;
    typedef typename ChildPolicy::ValueType value_type;
    typedef std::size_t size_type;
    typedef std::ptrdiff_t difference_type;

    /// Steps over the children by index.
    class const_iterator
    {
    public:
        typedef std::random_access_iterator_tag iterator_category;
        typedef typename ChildPolicy::ValueType value_type;
        typedef value_type reference;
        typedef std::ptrdiff_t difference_type;
        struct pointer
        {
            value_type value;
            value_type* operator->() { return &value; }
        };

        const_iterator() = default;
        reference operator*() const { return SdfChildrenView::_Cast(_names.Child((*_list)[_pos])); }
        pointer operator->() const { return pointer{**this}; }
        reference operator[](difference_type n) const { return *(*this + n); }
        const_iterator& operator++() { return *this += 1; }
        const_iterator& operator--() { return *this += -1; }
        const_iterator operator++(int)
        {
            const_iterator before(*this);
            ++*this;
            return before;
        }
        const_iterator operator--(int)
        {
            const_iterator before(*this);
            --*this;
            return before;
        }
        const_iterator& operator+=(difference_type n)
        {
            _pos += static_cast<size_type>(n);
            return *this;
        }
        const_iterator& operator-=(difference_type n) { return *this += -n; }
        const_iterator operator+(difference_type n) const { return const_iterator(*this) += n; }
        const_iterator operator-(difference_type n) const { return const_iterator(*this) += -n; }
        difference_type operator-(const const_iterator& other) const
        {
            return static_cast<difference_type>(_pos) - static_cast<difference_type>(other._pos);
        }
        bool operator==(const const_iterator& other) const { return _pos == other._pos; }
        bool operator!=(const const_iterator& other) const { return _pos != other._pos; }
        bool operator<(const const_iterator& other) const { return _pos < other._pos; }
        bool operator>(const const_iterator& other) const { return _pos > other._pos; }
        bool operator<=(const const_iterator& other) const { return _pos <= other._pos; }
        bool operator>=(const const_iterator& other) const { return _pos >= other._pos; }

    private:
        friend class SdfChildrenView;
        const_iterator(const Sdf_ChildNames& names, std::shared_ptr<const std::vector<TfToken>> list,
                       size_type pos)
            : _names(names), _list(std::move(list)), _pos(pos)
        {}
        Sdf_ChildNames _names;
        std::shared_ptr<const std::vector<TfToken>> _list;
        size_type _pos = 0;
    };
    typedef const_iterator iterator;
    typedef std::reverse_iterator<const_iterator> const_reverse_iterator;
    typedef const_reverse_iterator reverse_iterator;

    SdfChildrenView() = default;
    SdfChildrenView(const SdfLayerHandle& layer, const SdfPath& path) : _names(layer, path, ChildPolicy::kind)
    {}

    const_iterator begin() const { return const_iterator(_names, _Snapshot(), 0); }
    const_iterator end() const { return const_iterator(_names, nullptr, size()); }
    const_reverse_iterator rbegin() const
    {
        auto list = _Snapshot();
        return const_reverse_iterator(const_iterator(_names, list, list->size()));
    }
    const_reverse_iterator rend() const { return const_reverse_iterator(begin()); }

    size_type size() const { return _names.Names().size(); }
    bool empty() const { return _names.Names().empty(); }
    value_type operator[](size_type n) const { return begin()[static_cast<difference_type>(n)]; }
    value_type front() const { return *begin(); }
    value_type back() const { return *rbegin(); }

    const_iterator find(const key_type& name) const { return _Find(TfToken(name)); }
    const_iterator find(const value_type& child) const { return has(child) ? _Find(_Name(child)) : end(); }
    key_type key(const const_iterator& i) const { return (*i._list)[i._pos].GetString(); }
    key_type key(const value_type& child) const { return _Name(child).GetString(); }
    bool has(const key_type& name) const { return _names.Has(TfToken(name)); }
    bool has(const value_type& child) const { return child && _names.Child(_Name(child)) == child; }
    size_type count(const key_type& name) const { return has(name) ? 1 : 0; }
    value_type get(const key_type& name) const { return _Cast(_names.Child(TfToken(name))); }
    value_type get(const key_type& name, const value_type& fallback) const
    {
        return has(name) ? get(name) : fallback;
    }
    value_type operator[](const key_type& name) const { return get(name); }

    std::vector<value_type> values() const { return std::vector<value_type>(begin(), end()); }
    template <typename V>
    V values_as() const
    {
        V result;
        for (const value_type& child : *this) {
            result.insert(result.end(), child);
        }
        return result;
    }
    std::vector<key_type> keys() const
    {
        std::vector<key_type> result;
        for (const TfToken& name : _names.Names()) {
            result.push_back(name.GetString());
        }
        return result;
    }
    template <typename Dict>
    Dict items_as() const
    {
        Dict result;
        for (const TfToken& name : _names.Names()) {
            result.insert({name.GetString(), _Cast(_names.Child(name))});
        }
        return result;
    }

    bool IsValid() const { return _names.IsValid(); }
    explicit operator bool() const { return IsValid(); }
    bool operator==(const SdfChildrenView& other) const { return _names == other._names; }
    bool operator!=(const SdfChildrenView& other) const { return !(*this == other); }

    const Sdf_ChildNames& GetNames() const { return _names; }

private:
    static value_type _Cast(const SdfSpecHandle& spec)
    {
        return spec ? TfStatic_cast<value_type>(spec) : value_type();
    }
    static TfToken _Name(const value_type& child) { return child ? child->GetNameToken() : TfToken(); }
    std::shared_ptr<const std::vector<TfToken>> _Snapshot() const
    {
        return std::make_shared<const std::vector<TfToken>>(_names.Names());
    }
    const_iterator _Find(const TfToken& name) const
    {
        auto list = _Snapshot();
        size_type pos = 0;
        while (pos < list->size() && (*list)[pos] != name) {
            ++pos;
        }
        return const_iterator(_names, list, pos);
    }

    Sdf_ChildNames _names;
};

PXR_NAMESPACE_CLOSE_SCOPE
