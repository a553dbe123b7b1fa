#include "pxr/usd/sdf/crate/pathTreeReader.h"

#include <cstring>

PXR_NAMESPACE_OPEN_SCOPE

namespace {

enum ItemBits : uint8_t
{
    HasChild = 1,
    HasSibling = 2,
    IsProperty = 4
};

bool beginsWith(const std::string& text, const char* start)
{
    return text.compare(0, std::strlen(start), start) == 0;
}

// What brackets hold, as a path; empty where it is none.
SdfPath pathInside(const std::string& element, size_t begin)
{
    if (element.size() <= begin + 1 || element.back() != ']') {
        return SdfPath();
    }
    const std::string text = element.substr(begin, element.size() - begin - 1);
    return SdfPath::IsValidPathString(text) ? SdfPath(text) : SdfPath();
}

} // namespace

Sdf_CratePathTreeReader::Sdf_CratePathTreeReader(const Sdf_CrateFile& file, size_t maxDepth,
                                                 std::vector<SdfPath>* paths)
    : _file(file), _maxDepth(maxDepth), _paths(*paths), _kinds(file.GetTokenCount(), _NameUnknown)
{}

void Sdf_CratePathTreeReader::ReadTree(Sdf_CrateCursor* cursor, bool padded)
{
    if (_paths.empty()) {
        return;
    }
    for (;;) {
        if (padded) {
            cursor->Read<uint32_t>();
        }
        const uint32_t index = cursor->Read<uint32_t>();
        const uint32_t element = cursor->Read<uint32_t>();
        const uint32_t bits = cursor->Read<uint32_t>(); // one byte, the others are unused
        const SdfPath& path = _Place(index, element, (bits & IsProperty) != 0, *cursor);
        if ((bits & HasChild) != 0) {
            if ((bits & HasSibling) != 0) {
                _siblings.push_back({cursor->Read<uint64_t>(), _parent, _depth});
            }
            _Enter(path, *cursor);
        } else if ((bits & HasSibling) == 0) {
            uint64_t place = 0;
            if (!_NextSibling(&place)) {
                return;
            }
            cursor->Seek(place);
        }
    }
}

void Sdf_CratePathTreeReader::ReadLists(const Sdf_CrateCursor& at, const std::vector<uint32_t>& indices,
                                        const std::vector<int32_t>& elements,
                                        const std::vector<int32_t>& jumps)
{
    if (indices.empty()) {
        return;
    }
    for (uint64_t i = 0;;) {
        if (i >= indices.size()) {
            at.Fail("the tree of paths goes on behind its " + std::to_string(indices.size()) + " items");
        }
        const int64_t element = elements[i];
        const SdfPath& path =
            _Place(indices[i], static_cast<uint32_t>(element < 0 ? -element : element), element < 0, at);
        const int32_t jump = jumps[i];
        if (jump > 0 || jump == -1) {
            if (jump > 0) {
                _siblings.push_back({i + static_cast<uint64_t>(jump), _parent, _depth});
            }
            _Enter(path, at);
            ++i;
        } else if (jump == 0) {
            ++i;
        } else if (jump != -2) {
            at.Fail("item " + std::to_string(i) + " of the tree of paths has the jump " +
                    std::to_string(jump));
        } else if (!_NextSibling(&i)) {
            return;
        }
    }
}

void Sdf_CratePathTreeReader::_Enter(const SdfPath& path, const Sdf_CrateCursor& at)
{
    if (++_depth > _maxDepth) {
        at.Fail("paths of more than " + std::to_string(_maxDepth) + " elements are not read");
    }
    _parent = path;
}

bool Sdf_CratePathTreeReader::_NextSibling(uint64_t* place)
{
    if (_siblings.empty()) {
        return false;
    }
    *place = _siblings.back().place;
    _parent = std::move(_siblings.back().parent);
    _depth = _siblings.back().depth;
    _siblings.pop_back();
    return true;
}

const SdfPath& Sdf_CratePathTreeReader::_Place(uint32_t index, uint32_t element, bool isProperty,
                                               const Sdf_CrateCursor& at)
{
    _file.PathAt(index, at);
    SdfPath& path = _paths[index];
    if (!path.IsEmpty()) {
        at.Fail("path " + std::to_string(index) + " occurs twice in the tree of paths");
    }
    if (_depth == 0) {
        if (_hasRoot) {
            at.Fail("the root of the tree of paths has a sibling");
        }
        _hasRoot = true;
        path = SdfPath::AbsoluteRootPath();
        return path;
    }
    const TfToken& token = _file.TokenAt(element, at);
    path = _Append(token, element, isProperty);
    if (path.IsEmpty()) {
        at.Fail("the path <" + _parent.GetAsString() + "> cannot be continued by \"" + token.GetString() +
                "\"");
    }
    return path;
}

Sdf_CratePathTreeReader::_NameKind Sdf_CratePathTreeReader::_KindOf(uint32_t element,
                                                                    const TfToken& token) const
{
    _NameKind& kind = _kinds[element];
    if (kind == _NameUnknown) {
        kind = SdfPath::IsValidIdentifier(token.GetString())             ? _NameOfPrim
               : SdfPath::IsValidNamespacedIdentifier(token.GetString()) ? _NameOfProperty
                                                                         : _NameOther;
    }
    return kind;
}

SdfPath Sdf_CratePathTreeReader::_Append(const TfToken& token, uint32_t element, bool isProperty) const
{
    const _NameKind kind = _KindOf(element, token);
    const bool canHaveProperties = _parent.IsPrimOrPrimVariantSelectionPath();
    if (isProperty) {
        return canHaveProperties && kind != _NameOther ? _parent.AppendProperty(token) : SdfPath();
    }
    if (kind == _NameOfPrim) {
        return canHaveProperties || _parent.IsAbsoluteRootPath() ? _parent.AppendChild(token) : SdfPath();
    }
    return _AppendSpecial(token.GetString());
}

SdfPath Sdf_CratePathTreeReader::_AppendSpecial(const std::string& element) const
{
    if (beginsWith(element, "{") && element.back() == '}' && _parent.IsPrimOrPrimVariantSelectionPath()) {
        const size_t equals = element.find('=');
        if (equals == std::string::npos || equals < 2) {
            return SdfPath();
        }
        return _parent.AppendVariantSelection(element.substr(1, equals - 1),
                                              element.substr(equals + 1, element.size() - equals - 2));
    }
    if (beginsWith(element, "[") && _parent.IsPropertyPath()) {
        const SdfPath target = pathInside(element, 1);
        return target.IsEmpty() ? SdfPath() : _parent.AppendTarget(target);
    }
    if (beginsWith(element, ".mapper[") && _parent.IsPropertyPath()) {
        const SdfPath target = pathInside(element, 8);
        return target.IsEmpty() ? SdfPath() : _parent.AppendMapper(target);
    }
    if (element == ".expression" && _parent.IsPropertyPath()) {
        return _parent.AppendExpression();
    }
    const bool isName = beginsWith(element, ".") && SdfPath::IsValidNamespacedIdentifier(element.substr(1));
    const bool canFollow = _parent.IsTargetPath() || _parent.IsPrimOrPrimVariantSelectionPath() ||
                           (_parent.IsMapperPath() && SdfPath::IsValidIdentifier(element.substr(1)));
    return isName && canFollow ? _parent.AppendElementString(element) : SdfPath();
}

PXR_NAMESPACE_CLOSE_SCOPE
