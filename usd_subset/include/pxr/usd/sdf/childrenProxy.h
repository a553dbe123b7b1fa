#pragma once

/// The children of a spec as a map from name to handle, from which children can be erased.

#include <pxr/pxr.h>
#include <pxr/usd/sdf/changeBlock.h>
#include <pxr/usd/sdf/childrenView.h>

#include <map>
#include <string>
#include <utility>
#include <vector>

PXR_NAMESPACE_OPEN_SCOPE

/// Removes a named child, its subtree included.
SDF_API bool Sdf_EraseChild(const Sdf_ChildNames& names, const TfToken& name);

/// A map from name to handle over a children view.
template <class View>
class SdfChildrenProxy
{
public:
    typedef std::string key_type;
    typedef typename View::value_type mapped_type;
    typedef std::pair<const key_type, mapped_type> value_type;
    typedef std::map<key_type, mapped_type> map_type;
    typedef std::vector<mapped_type> mapped_vector_type;
    typedef std::size_t size_type;

    /// Steps over the children; it dereferences to a pair by value.
    class const_iterator
    {
    public:
        typedef std::forward_iterator_tag iterator_category;
        typedef std::pair<const key_type, mapped_type> value_type;
        typedef value_type reference;
        typedef std::ptrdiff_t difference_type;
        struct pointer
        {
            value_type value;
            value_type* operator->() { return &value; }
        };

        const_iterator() = default;
        reference operator*() const { return value_type(View().key(_pos), *_pos); }
        pointer operator->() const { return pointer{**this}; }
        const_iterator& operator++()
        {
            ++_pos;
            return *this;
        }
        bool operator==(const const_iterator& other) const { return _pos == other._pos; }
        bool operator!=(const const_iterator& other) const { return _pos != other._pos; }

    private:
        friend class SdfChildrenProxy;
        explicit const_iterator(typename View::const_iterator pos) : _pos(pos) {}
        typename View::const_iterator _pos;
    };
    typedef const_iterator iterator;

    SdfChildrenProxy() = default;
    explicit SdfChildrenProxy(const View& view) : _view(view) {}

    operator mapped_vector_type() const { return _view.values(); }
    map_type items() const { return _view.template items_as<map_type>(); }
    const_iterator begin() const { return const_iterator(_view.begin()); }
    const_iterator end() const { return const_iterator(_view.end()); }
    size_type size() const { return _view.size(); }
    bool empty() const { return _view.empty(); }
    const_iterator find(const key_type& key) const { return const_iterator(_view.find(key)); }
    size_type count(const key_type& key) const { return _view.count(key); }
    mapped_type operator[](const key_type& key) const { return _view.get(key); }
    size_type erase(const key_type& key) { return Sdf_EraseChild(_view.GetNames(), TfToken(key)) ? 1 : 0; }
    void erase(iterator pos) { erase(pos->first); }
    void clear()
    {
        for (const key_type& key : _view.keys()) {
            erase(key);
        }
    }
    bool operator==(const SdfChildrenProxy& other) const { return _view == other._view; }
    bool operator!=(const SdfChildrenProxy& other) const { return !(*this == other); }
    explicit operator bool() const { return _view.IsValid(); }

private:
    View _view;
};

PXR_NAMESPACE_CLOSE_SCOPE
