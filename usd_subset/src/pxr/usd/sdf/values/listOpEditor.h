#pragma once

#include <pxr/base/tf/token.h>
#include <pxr/usd/sdf/path.h>

#include <functional>
#include <iterator>
#include <list>
#include <map>
#include <vector>

PXR_NAMESPACE_OPEN_SCOPE

/// How list ops tell items apart; quick orders where one exists.
template <class T>
struct Sdf_ListOpItemLess
{
    using Type = std::less<T>;
};
template <>
struct Sdf_ListOpItemLess<TfToken>
{
    using Type = TfTokenFastArbitraryLessThan;
};
template <>
struct Sdf_ListOpItemLess<SdfPath>
{
    using Type = SdfPath::FastLessThan;
};

/// A list under edit, with the place of each item. Of items that the list starts with twice the last one
/// counts.
template <class T>
class Sdf_ListOpEditor
{
public:
    using Items = std::vector<T>;

    Sdf_ListOpEditor() = default;
    explicit Sdf_ListOpEditor(const Items& items) : m_list(items.begin(), items.end())
    {
        for (auto i = m_list.begin(); i != m_list.end(); ++i) {
            m_places[*i] = i;
        }
    }

    Items items() const { return Items(m_list.begin(), m_list.end()); }

    void addMissing(const Items& items)
    {
        for (const T& item : items) {
            if (!m_places.count(item)) {
                m_places[item] = m_list.insert(m_list.end(), item);
            }
        }
    }

    void remove(const Items& items)
    {
        for (const T& item : items) {
            const auto found = m_places.find(item);
            if (found != m_places.end()) {
                m_list.erase(found->second);
                m_places.erase(found);
            }
        }
    }

    void prepend(const Items& items)
    {
        for (auto i = items.rbegin(); i != items.rend(); ++i) {
            _placeAt(m_list.begin(), *i);
        }
    }

    void append(const Items& items)
    {
        for (const T& item : items) {
            _placeAt(m_list.end(), item);
        }
    }

    /// Each item named in the order takes along the items behind it up to the next one that is named; what
    /// comes before the first of them stays in front.
    void reorder(const Items& order)
    {
        std::map<T, bool, Less> placed;
        for (const T& item : order) {
            placed[item] = false;
        }
        if (placed.empty()) {
            return;
        }
        List rest;
        rest.swap(m_list);
        for (const T& item : order) {
            const auto found = m_places.find(item);
            bool& done = placed[item];
            if (found == m_places.end() || done) {
                continue;
            }
            done = true;
            auto end = std::next(found->second);
            while (end != rest.end() && !placed.count(*end)) {
                ++end;
            }
            m_list.splice(m_list.end(), rest, found->second, end);
        }
        m_list.splice(m_list.begin(), rest);
    }

private:
    using List = std::list<T>;
    using Less = typename Sdf_ListOpItemLess<T>::Type;

    void _placeAt(typename List::iterator position, const T& item)
    {
        const auto found = m_places.find(item);
        if (found == m_places.end()) {
            m_places[item] = m_list.insert(position, item);
        } else if (found->second != position) {
            m_list.splice(position, m_list, found->second);
        }
    }

    List m_list;
    std::map<T, typename List::iterator, Less> m_places;
};

PXR_NAMESPACE_CLOSE_SCOPE
