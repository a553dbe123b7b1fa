#include <pxr/usd/sdf/path.h>

#include "pxr/usd/sdf/values/pathNode.h"

#include <pxr/base/tf/diagnostic.h>

#include <algorithm>
#include <vector>

PXR_NAMESPACE_OPEN_SCOPE

using Node = Sdf_PathNode;
using Kind = Sdf_PathNode::Kind;

namespace {

/// Returns the nodes above `count` elements down to the node, the last one first.
std::vector<const Node*> NodesAbove(const Node* node, uint32_t count)
{
    std::vector<const Node*> nodes;
    nodes.reserve(node->GetCount() - count);
    for (; node->GetCount() > count; node = node->GetParent()) {
        nodes.push_back(node);
    }
    return nodes;
}

/// Appends elements, given last first, until one does not fit.
SdfPath AppendAll(SdfPath path, const std::vector<const Node*>& nodes)
{
    for (size_t i = nodes.size(); i-- > 0 && !path.IsEmpty();) {
        path = Sdf_PathAccess::Append(path, nodes[i]->GetElement());
    }
    return path;
}

} // namespace

SdfPath SdfPath::ReplaceName(TfToken const& newName) const
{
    if (IsPrimPath()) {
        return GetParentPath().AppendChild(newName);
    }
    if (IsPrimPropertyPath()) {
        return GetParentPath().AppendProperty(newName);
    }
    if (IsRelationalAttributePath()) {
        return GetParentPath().AppendRelationalAttribute(newName);
    }
    TF_CODING_ERROR("%s is not a prim, property, or relational attribute path", GetAsString().c_str());
    return SdfPath();
}

SdfPath SdfPath::StripAllVariantSelections() const
{
    if (!ContainsPrimVariantSelection()) {
        return *this;
    }
    std::vector<const Node*> kept;
    for (const Node* node : NodesAbove(_node, 0)) {
        if (node->GetKind() != Kind::VariantSelection) {
            kept.push_back(node);
        }
    }
    return AppendAll(Sdf_PathAccess::Share(_node->GetAncestor(0)), kept);
}

SdfPath SdfPath::ReplacePrefix(const SdfPath& oldPrefix, const SdfPath& newPrefix, bool fixTargetPaths) const
{
    if (IsEmpty() || oldPrefix == newPrefix) {
        return *this;
    }
    if (oldPrefix.IsEmpty() || newPrefix.IsEmpty()) {
        return SdfPath();
    }
    const bool matches = HasPrefix(oldPrefix);
    if (!matches && !(fixTargetPaths && ContainsTargetPath())) {
        return *this;
    }
    const uint32_t keptCount = matches ? oldPrefix._node->GetCount() : 0;
    SdfPath result = matches ? newPrefix : Sdf_PathAccess::Share(_node->GetAncestor(0));
    const std::vector<const Node*> nodes = NodesAbove(_node, keptCount);
    for (size_t i = nodes.size(); i-- > 0 && !result.IsEmpty();) {
        const Node::Element element = nodes[i]->GetElement();
        const SdfPath target = fixTargetPaths && !element.target.IsEmpty()
                                   ? element.target.ReplacePrefix(oldPrefix, newPrefix, true)
                                   : element.target;
        result = Sdf_PathAccess::Append(result, {element.kind, element.name, element.variant, target});
    }
    return result;
}

SdfPath SdfPath::GetCommonPrefix(const SdfPath& path) const
{
    if (IsEmpty() || path.IsEmpty()) {
        TF_WARN("GetCommonPrefix(): invalid path.");
        return SdfPath();
    }
    const uint32_t count = std::min(_node->GetCount(), path._node->GetCount());
    const Node* a = _node->GetAncestor(count);
    const Node* b = path._node->GetAncestor(count);
    while (a != b) {
        a = a->GetParent();
        b = b->GetParent();
    }
    return Sdf_PathAccess::Share(a);
}

std::pair<SdfPath, SdfPath> SdfPath::RemoveCommonSuffix(const SdfPath& otherPath, bool stopAtRootPrim) const
{
    if (IsEmpty() || otherPath.IsEmpty() ||
        ContainsPropertyElements() != otherPath.ContainsPropertyElements()) {
        return {*this, otherPath};
    }
    const Node* a = _node;
    const Node* b = otherPath._node;
    const auto sameElement = [&] {
        return a->IsInProperty() == b->IsInProperty() && a->GetElement() == b->GetElement();
    };
    // Properties go whole or as far as they agree; of prims one stays, unless the root prims may go too.
    while (a->IsInProperty() && b->IsInProperty() && sameElement()) {
        a = a->GetParent();
        b = b->GetParent();
    }
    if (!a->IsInProperty() && !b->IsInProperty()) {
        while (a->GetCount() > 1 && b->GetCount() > 1 && sameElement()) {
            a = a->GetParent();
            b = b->GetParent();
        }
        if (!stopAtRootPrim && (a->GetCount() == 1 || b->GetCount() == 1) && !a->IsRoot() && !b->IsRoot() &&
            sameElement()) {
            a = a->GetParent();
            b = b->GetParent();
        }
    }
    return {Sdf_PathAccess::Share(a), Sdf_PathAccess::Share(b)};
}

SdfPath SdfPath::ReplaceTargetPath(const SdfPath& newTargetPath) const
{
    if (IsEmpty()) {
        return SdfPath();
    }
    if (newTargetPath.IsEmpty()) {
        TF_WARN("ReplaceTargetPath(): invalid new target path.");
        return SdfPath();
    }
    switch (_node->GetKind()) {
    case Kind::Target:
        return GetParentPath().AppendTarget(newTargetPath);
    case Kind::Mapper:
        return GetParentPath().AppendMapper(newTargetPath);
    case Kind::RelationalAttribute:
    case Kind::MapperArg:
    case Kind::Expression:
        return Sdf_PathAccess::Append(GetParentPath().ReplaceTargetPath(newTargetPath), _node->GetElement());
    default:
        return *this;
    }
}

namespace {

/// Returns whether a path can anchor others; says why not.
bool CheckAnchor(const SdfPath& anchor, const char* function)
{
    if (anchor.IsEmpty()) {
        TF_WARN("%s(): anchor is the empty path.", function);
    } else if (!anchor.IsAbsolutePath()) {
        TF_WARN("%s() requires an absolute path as an argument.", function);
    } else if (!anchor.IsAbsoluteRootOrPrimPath() && !anchor.IsPrimVariantSelectionPath()) {
        TF_WARN(
            "%s() requires a prim, prim variant selection, or absolute root path as an anchor (got '%s').",
            function, anchor.GetAsString().c_str());
    } else {
        return true;
    }
    return false;
}

} // namespace

SdfPath SdfPath::MakeAbsolutePath(const SdfPath& anchor) const
{
    if (!CheckAnchor(anchor, "MakeAbsolutePath") || IsEmpty()) {
        return SdfPath();
    }
    SdfPath result = IsAbsolutePath() ? *this : AppendAll(anchor, NodesAbove(_node, 0));
    const SdfPath target = result.GetTargetPath();
    if (!target.IsEmpty()) {
        result = result.ReplaceTargetPath(target.MakeAbsolutePath(result.GetPrimPath()));
    }
    return result;
}

SdfPath SdfPath::MakeRelativePath(const SdfPath& anchor) const
{
    if (!CheckAnchor(anchor, "MakeRelativePath") || IsEmpty()) {
        return SdfPath();
    }
    if (!IsAbsolutePath()) {
        return MakeAbsolutePath(anchor).MakeRelativePath(anchor);
    }
    // The properties stay what they are; prims meet at the last common one.
    const Node* prim = _node->GetPrimPart();
    const uint32_t count = std::min(prim->GetCount(), anchor._node->GetCount());
    const Node* a = prim->GetAncestor(count);
    const Node* b = anchor._node->GetAncestor(count);
    while (a != b) {
        a = a->GetParent();
        b = b->GetParent();
    }
    SdfPath result = ReflexiveRelativePath();
    for (uint32_t up = anchor._node->GetCount(); up > b->GetCount(); --up) {
        result = result.GetParentPath();
    }
    return AppendAll(result, NodesAbove(_node, a->GetCount()));
}

PXR_NAMESPACE_CLOSE_SCOPE
