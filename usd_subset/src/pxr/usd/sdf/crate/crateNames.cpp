#include "pxr/usd/sdf/crate/crateNames.h"

#include <algorithm>

PXR_NAMESPACE_OPEN_SCOPE

namespace {

TfToken elementToken(const SdfPath& path)
{
    return path.IsPrimPropertyPath() ? path.GetNameToken() : path.GetElementToken();
}

} // namespace

// An index below 0 says that an element is a property, which index 0 cannot say. No element is empty.
Sdf_CrateNames::Sdf_CrateNames() { IndexOf(TfToken()); }

uint32_t Sdf_CrateNames::IndexOf(const TfToken& token)
{
    const auto added = _tokenIndices.emplace(token, static_cast<uint32_t>(_tokens.size()));
    if (added.second) {
        if (token.GetString().find('\0') != std::string::npos) {
            _fault = "a text holds a NUL byte: \"" + std::string(token.GetText()) + "...\"";
        }
        _tokens.push_back(token);
    }
    return added.first->second;
}

uint32_t Sdf_CrateNames::IndexOf(const std::string& text)
{
    const auto added = _stringIndices.emplace(text, static_cast<uint32_t>(_strings.size()));
    if (added.second) {
        _strings.push_back(IndexOf(TfToken(text)));
    }
    return added.first->second;
}

uint32_t Sdf_CrateNames::IndexOf(const SdfPath& path)
{
    const auto known = _pathIndices.find(path);
    if (known != _pathIndices.end()) {
        return known->second;
    }
    if (!path.IsEmpty() && !path.IsAbsolutePath()) {
        _fault = "the path <" + path.GetAsString() + "> is relative";
        return 0;
    }
    // The ancestors come first; a deep path must not recurse.
    std::vector<SdfPath> missing;
    for (SdfPath p = path; _pathIndices.count(p) == 0; p = p.GetParentPath()) {
        missing.push_back(p);
        if (p.IsEmpty() || p.IsAbsoluteRootPath()) {
            break;
        }
    }
    for (auto it = missing.rbegin(); it != missing.rend(); ++it) {
        if (it->IsTargetPath() || it->IsMapperPath()) {
            IndexOf(it->GetTargetPath());
        }
        if (!it->IsEmpty() && !it->IsAbsoluteRootPath()) {
            IndexOf(elementToken(*it));
        }
        _pathIndices.emplace(*it, static_cast<uint32_t>(_paths.size()));
        _paths.push_back(*it);
    }
    return _pathIndices.at(path);
}

int32_t Sdf_CrateNames::_ElementOf(const SdfPath& path) const
{
    if (path.IsAbsoluteRootPath()) {
        return 0;
    }
    const auto index = static_cast<int32_t>(_tokenIndices.at(elementToken(path)));
    return path.IsPrimPropertyPath() ? -index : index;
}

std::vector<std::vector<uint32_t>> Sdf_CrateNames::_ChildrenInOrder() const
{
    std::vector<std::vector<uint32_t>> children(_paths.size());
    for (uint32_t i = 0; i < _paths.size(); ++i) {
        if (!_paths[i].IsEmpty() && !_paths[i].IsAbsoluteRootPath()) {
            children[_pathIndices.at(_paths[i].GetParentPath())].push_back(i);
        }
    }
    for (std::vector<uint32_t>& siblings : children) {
        std::sort(siblings.begin(), siblings.end(),
                  [this](uint32_t a, uint32_t b) { return _paths[a] < _paths[b]; });
    }
    return children;
}

Sdf_CrateNames::Tree Sdf_CrateNames::MakeTree() const
{
    struct Place
    {
        uint32_t path;
        size_t nextChild;
        size_t item;
        bool hasSibling;
    };
    Tree tree;
    const std::vector<std::vector<uint32_t>> children = _ChildrenInOrder();
    std::vector<Place> open;
    const auto enter = [&](uint32_t path, bool hasSibling) {
        open.push_back({path, 0, tree.indices.size(), hasSibling});
        tree.indices.push_back(path);
        tree.elements.push_back(_ElementOf(_paths[path]));
        tree.jumps.push_back(!children[path].empty() ? -1 : hasSibling ? 0 : -2);
    };
    const auto root = _pathIndices.find(SdfPath::AbsoluteRootPath());
    if (root != _pathIndices.end()) {
        enter(root->second, false);
    }
    while (!open.empty()) {
        Place& place = open.back();
        const std::vector<uint32_t>& below = children[place.path];
        if (place.nextChild < below.size()) {
            const uint32_t child = below[place.nextChild++];
            enter(child, place.nextChild < below.size());
        } else {
            if (place.hasSibling && !below.empty()) {
                tree.jumps[place.item] = static_cast<int32_t>(tree.indices.size() - place.item);
            }
            open.pop_back();
        }
    }
    return tree;
}

PXR_NAMESPACE_CLOSE_SCOPE
