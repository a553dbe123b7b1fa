#include <pxr/usd/sdf/path.h>

#include "pxr/usd/sdf/values/pathNode.h"
#include "pxr/usd/sdf/values/pathParser.h"

#include <pxr/base/tf/diagnostic.h>
#include <pxr/base/tf/registryManager.h>
#include <pxr/base/tf/type.h>
#include <pxr/base/vt/array.h>

#include <algorithm>
#include <ostream>

PXR_NAMESPACE_OPEN_SCOPE

using Node = Sdf_PathNode;
using Kind = Sdf_PathNode::Kind;

TF_REGISTRY_FUNCTION(TfType)
{
    TfType::Define<SdfPath>();
    TfType::Define<SdfPathVector>().Alias(TfType::GetRoot(), "vector<SdfPath>");
    TfType::Define<VtArray<SdfPath>>();
}

const SdfPath& SdfPath::EmptyPath()
{
    static const SdfPath* const path = new SdfPath;
    return *path;
}

const SdfPath& SdfPath::AbsoluteRootPath()
{
    static const SdfPath* const path = new SdfPath(Sdf_PathAccess::Share(Node::AbsoluteRoot()));
    return *path;
}

const SdfPath& SdfPath::ReflexiveRelativePath()
{
    static const SdfPath* const path = new SdfPath(Sdf_PathAccess::Share(Node::RelativeRoot()));
    return *path;
}

SdfPath::SdfPath(const std::string& text)
{
    std::string error;
    if (!Sdf_ParsePath(text, this, &error)) {
        TF_WARN(error);
    }
}

void SdfPath::_Release(const Sdf_PathNode* node) noexcept { Node::Release(node); }

size_t SdfPath::GetPathElementCount() const { return _node ? _node->GetCount() : 0; }
bool SdfPath::IsAbsolutePath() const { return _node && _node->IsAbsolute(); }
bool SdfPath::IsAbsoluteRootPath() const { return _node && _node == Node::AbsoluteRoot(); }

bool SdfPath::IsPrimPath() const
{
    return _node && (_node->GetKind() == Kind::Prim || _node == Node::RelativeRoot());
}

bool SdfPath::IsAbsoluteRootOrPrimPath() const
{
    return _node && (_node->GetKind() == Kind::Prim || _node->IsRoot());
}

bool SdfPath::IsRootPrimPath() const
{
    return _node && !_node->IsInProperty() && _node->IsAbsolute() && _node->GetCount() == 1;
}

bool SdfPath::IsPropertyPath() const
{
    return _node && (_node->GetKind() == Kind::PrimProperty || _node->GetKind() == Kind::RelationalAttribute);
}

bool SdfPath::IsPrimPropertyPath() const { return _node && _node->GetKind() == Kind::PrimProperty; }

bool SdfPath::IsNamespacedPropertyPath() const
{
    return IsPropertyPath() && _node->GetName().GetString().find(':') != std::string::npos;
}

bool SdfPath::IsPrimVariantSelectionPath() const
{
    return _node && _node->GetKind() == Kind::VariantSelection;
}

bool SdfPath::IsPrimOrPrimVariantSelectionPath() const
{
    return IsPrimPath() || IsPrimVariantSelectionPath();
}
bool SdfPath::ContainsPrimVariantSelection() const { return _node && _node->ContainsVariantSelection(); }
bool SdfPath::ContainsPropertyElements() const { return _node && _node->IsInProperty(); }
bool SdfPath::ContainsTargetPath() const { return _node && _node->ContainsTarget(); }
bool SdfPath::IsRelationalAttributePath() const
{
    return _node && _node->GetKind() == Kind::RelationalAttribute;
}
bool SdfPath::IsTargetPath() const { return _node && _node->GetKind() == Kind::Target; }
bool SdfPath::IsMapperPath() const { return _node && _node->GetKind() == Kind::Mapper; }
bool SdfPath::IsMapperArgPath() const { return _node && _node->GetKind() == Kind::MapperArg; }
bool SdfPath::IsExpressionPath() const { return _node && _node->GetKind() == Kind::Expression; }

TfToken SdfPath::GetAsToken() const { return TfToken(GetAsString()); }
std::string SdfPath::GetAsString() const { return _node ? _node->GetText() : std::string(); }

TfToken const& SdfPath::GetToken() const
{
    static const TfToken* const empty = new TfToken;
    return _node ? _node->GetToken() : *empty;
}

const std::string& SdfPath::GetString() const { return GetToken().GetString(); }
const char* SdfPath::GetText() const { return GetToken().GetText(); }

SdfPathVector SdfPath::GetPrefixes() const { return GetPrefixes(size_t(0)); }

SdfPathVector SdfPath::GetPrefixes(size_t numPrefixes) const
{
    SdfPathVector prefixes;
    GetPrefixes(&prefixes, numPrefixes);
    return prefixes;
}

void SdfPath::GetPrefixes(SdfPathVector* prefixes) const { GetPrefixes(prefixes, size_t(0)); }

void SdfPath::GetPrefixes(SdfPathVector* prefixes, size_t numPrefixes) const
{
    const size_t all = GetPathElementCount();
    const size_t count = numPrefixes == 0 ? all : std::min(numPrefixes, all);
    prefixes->assign(count, SdfPath());
    const Node* node = _node;
    for (size_t i = count; i-- > 0; node = node->GetParent()) {
        (*prefixes)[i] = Sdf_PathAccess::Share(node);
    }
}

SdfPathAncestorsRange SdfPath::GetAncestorsRange() const { return SdfPathAncestorsRange(*this); }

SdfPathAncestorsRange::iterator SdfPathAncestorsRange::begin() const { return iterator(_path); }

SdfPathAncestorsRange::iterator& SdfPathAncestorsRange::iterator::operator++()
{
    const Node* node = Sdf_PathAccess::NodeOf(_path);
    if (node) {
        const Node* parent = node->GetParent();
        // The root is no ancestor here, except where a property lies on it directly.
        const bool ends = !parent || (parent->IsRoot() && !node->IsInProperty());
        _path = ends ? SdfPath() : Sdf_PathAccess::Share(parent);
    }
    return *this;
}

const TfToken& SdfPath::GetNameToken() const
{
    static const TfToken* const empty = new TfToken;
    return _node ? _node->GetName() : *empty;
}

const std::string& SdfPath::GetName() const { return GetNameToken().GetString(); }
std::string SdfPath::GetElementString() const { return _node ? _node->GetElementText() : std::string(); }
TfToken SdfPath::GetElementToken() const { return TfToken(GetElementString()); }

namespace {

/// Returns the innermost node, from this one up, that has a target; null for none.
const Node* TargetNodeOf(const Node* node)
{
    if (!node || !node->ContainsTarget()) {
        return nullptr;
    }
    while (node->GetKind() != Kind::Target && node->GetKind() != Kind::Mapper) {
        node = node->GetParent();
    }
    return node;
}

} // namespace

const SdfPath& SdfPath::GetTargetPath() const
{
    const Node* node = TargetNodeOf(_node);
    return node ? node->GetElement().target : EmptyPath();
}

void SdfPath::GetAllTargetPathsRecursively(SdfPathVector* result) const
{
    std::vector<const Node*> pending{TargetNodeOf(_node)};
    while (!pending.empty()) {
        const Node* node = pending.back();
        pending.pop_back();
        if (node) {
            result->push_back(node->GetElement().target);
            pending.push_back(TargetNodeOf(node->GetParent()));
            pending.push_back(TargetNodeOf(node->GetElement().target._node));
        }
    }
}

std::pair<std::string, std::string> SdfPath::GetVariantSelection() const
{
    if (!IsPrimVariantSelectionPath()) {
        return {};
    }
    return {_node->GetElement().name.GetString(), _node->GetElement().variant.GetString()};
}

bool SdfPath::HasPrefix(const SdfPath& prefix) const
{
    return _node && prefix._node && _node->GetCount() >= prefix._node->GetCount() &&
           _node->GetAncestor(prefix._node->GetCount()) == prefix._node;
}

SdfPath SdfPath::GetParentPath() const
{
    if (!_node) {
        return SdfPath();
    }
    // Above "." and ".." there is one more "..".
    if (_node == Node::RelativeRoot() || _node->IsParentElement()) {
        static const TfToken* const parent = new TfToken("..", TfToken::Immortal);
        return Sdf_PathAccess::Make(Node::FindOrCreate(_node, {Kind::Prim, *parent, {}, {}}));
    }
    return Sdf_PathAccess::Share(_node->GetParent());
}

SdfPath SdfPath::GetPrimPath() const
{
    const Node* node = _node;
    while (node && node->GetKind() != Kind::Prim) {
        node = node->GetParent();
    }
    return Sdf_PathAccess::Share(node);
}

SdfPath SdfPath::GetPrimOrPrimVariantSelectionPath() const
{
    const Node* node = _node;
    while (node && node->GetKind() != Kind::Prim && node->GetKind() != Kind::VariantSelection) {
        node = node->GetParent();
    }
    return Sdf_PathAccess::Share(node);
}

SdfPath SdfPath::GetAbsoluteRootOrPrimPath() const { return IsAbsoluteRootPath() ? *this : GetPrimPath(); }

bool SdfPath::IsValidPathString(const std::string& pathString, std::string* errMsg)
{
    return Sdf_ParsePath(pathString, nullptr, errMsg);
}

bool SdfPath::_LessThan(const SdfPath& left, const SdfPath& right)
{
    const Node *a = left._node, *b = right._node;
    if (a->IsAbsolute() != b->IsAbsolute()) {
        return a->IsAbsolute();
    }
    const uint32_t countA = a->GetCount(), countB = b->GetCount();
    const uint32_t count = std::min(countA, countB);
    a = a->GetAncestor(count);
    b = b->GetAncestor(count);
    if (a == b) {
        return countA < countB;
    }
    while (a->GetParent() != b->GetParent()) {
        a = a->GetParent();
        b = b->GetParent();
    }
    return a->GetElement() < b->GetElement();
}

std::ostream& operator<<(std::ostream& out, const SdfPath& path) { return out << path.GetAsString(); }

PXR_NAMESPACE_CLOSE_SCOPE
