#include <pxr/usd/sdf/path.h>

#include "pxr/usd/sdf/values/pathNode.h"
#include "pxr/usd/sdf/values/pathNodeTable.h"

#include <pxr/base/tf/diagnostic.h>
#include <pxr/base/tf/stringUtils.h>

#include <vector>

PXR_NAMESPACE_OPEN_SCOPE

using Node = Sdf_PathNode;
using Kind = Sdf_PathNode::Kind;

namespace {

/// Returns the child that exists already; it needs no check. The parent may be the empty path.
SdfPath FindChild(const Node* parent, const Node::Element& element)
{
    return parent ? Sdf_PathAccess::Make(Node::Find(parent, element)) : SdfPath();
}

SdfPath MakeChild(const Node* parent, const Node::Element& element)
{
    return Sdf_PathAccess::Make(Node::FindOrCreate(parent, element));
}

} // namespace

SdfPath Sdf_PathAccess::Append(const SdfPath& path, const Sdf_PathNode::Element& element)
{
    switch (element.kind) {
    case Kind::Prim:
        return path.AppendChild(element.name);
    case Kind::PrimProperty:
        return path.AppendProperty(element.name);
    case Kind::VariantSelection:
        return path.AppendVariantSelection(element.name.GetString(), element.variant.GetString());
    case Kind::Target:
        return path.AppendTarget(element.target);
    case Kind::RelationalAttribute:
        return path.AppendRelationalAttribute(element.name);
    case Kind::Mapper:
        return path.AppendMapper(element.target);
    case Kind::MapperArg:
        return path.AppendMapperArg(element.name);
    case Kind::Expression:
        return path.AppendExpression();
    case Kind::Root:
        break;
    }
    return SdfPath();
}

SdfPath SdfPath::AppendPath(const SdfPath& newSuffix) const
{
    if (IsEmpty() || newSuffix.IsEmpty()) {
        TF_CODING_ERROR(IsEmpty() ? std::string("Cannot append to invalid path")
                                  : "Cannot append invalid path to <" + GetAsString() + ">");
        return SdfPath();
    }
    if (newSuffix.IsAbsolutePath()) {
        TF_WARN("Cannot append absolute path <%s> to another path <%s>.", newSuffix.GetAsString().c_str(),
                GetAsString().c_str());
        return SdfPath();
    }
    if (newSuffix == ReflexiveRelativePath()) {
        return *this;
    }
    if (_node->IsInProperty()) {
        TF_WARN("Cannot append a path to another path that is not a root or a prim path.");
        return SdfPath();
    }
    std::vector<const Node*> tail;
    for (const Node* node = newSuffix._node; !node->IsRoot(); node = node->GetParent()) {
        tail.push_back(node);
    }
    if (tail.back()->GetKind() == Kind::PrimProperty && IsAbsoluteRootPath()) {
        TF_WARN("Cannot append a property path to the absolute root path.");
        return SdfPath();
    }
    SdfPath result = *this;
    for (size_t i = tail.size(); i-- > 0 && !result.IsEmpty();) {
        result = Sdf_PathAccess::Append(result, tail[i]->GetElement());
    }
    return result;
}

SdfPath SdfPath::AppendChild(TfToken const& childName) const
{
    const Node::Element element{Kind::Prim, childName, {}, {}};
    const bool toParent = childName == "..";
    if (!toParent) {
        if (SdfPath found = FindChild(_node, element); !found.IsEmpty()) {
            return found;
        }
    }
    if (!IsAbsoluteRootOrPrimPath() && !IsPrimVariantSelectionPath()) {
        TF_WARN("Cannot append child '%s' to path '%s'.", childName.GetText(), GetAsString().c_str());
        return SdfPath();
    }
    if (toParent) {
        return GetParentPath();
    }
    if (!IsValidIdentifier(childName.GetString())) {
        TF_WARN("Invalid prim name '%s'", childName.GetText());
        return SdfPath();
    }
    return MakeChild(_node, element);
}

SdfPath SdfPath::AppendProperty(TfToken const& propName) const
{
    const Node::Element element{Kind::PrimProperty, propName, {}, {}};
    if (SdfPath found = FindChild(_node, element); !found.IsEmpty()) {
        return found;
    }
    if (!IsPrimOrPrimVariantSelectionPath()) {
        TF_WARN("Can only append a property '%s' to a prim path (%s)", propName.GetText(),
                GetAsString().c_str());
        return SdfPath();
    }
    // OpenUSD gives no warning for an ill-formed name.
    return IsValidNamespacedIdentifier(propName.GetString()) ? MakeChild(_node, element) : SdfPath();
}

SdfPath SdfPath::AppendVariantSelection(const std::string& variantSet, const std::string& variant) const
{
    if (!IsPrimOrPrimVariantSelectionPath()) {
        TF_CODING_ERROR(
            "Cannot append variant selection %s = %s to <%s>; can only append a variant selection to "
            "a prim or prim variant selection path.",
            variantSet.c_str(), variant.c_str(), GetAsString().c_str());
        return SdfPath();
    }
    return MakeChild(_node, {Kind::VariantSelection, TfToken(variantSet), TfToken(variant), {}});
}

SdfPath SdfPath::AppendTarget(const SdfPath& targetPath) const
{
    if (!IsPropertyPath()) {
        TF_WARN("Can only append a target to a property path.");
        return SdfPath();
    }
    if (targetPath.IsEmpty()) {
        TF_WARN("Target path cannot be invalid.");
        return SdfPath();
    }
    return MakeChild(_node, {Kind::Target, {}, {}, targetPath});
}

SdfPath SdfPath::AppendRelationalAttribute(TfToken const& attrName) const
{
    if (!IsValidNamespacedIdentifier(attrName.GetString())) {
        TF_WARN("Invalid property name.");
        return SdfPath();
    }
    if (!IsTargetPath()) {
        TF_WARN("Can only append a relational attribute to a target path.");
        return SdfPath();
    }
    return MakeChild(_node, {Kind::RelationalAttribute, attrName, {}, {}});
}

SdfPath SdfPath::AppendMapper(const SdfPath& targetPath) const
{
    if (!IsPropertyPath()) {
        TF_WARN("Cannot append mapper '%s' to non-property path <%s>.", targetPath.GetAsString().c_str(),
                GetAsString().c_str());
        return SdfPath();
    }
    if (targetPath.IsEmpty()) {
        TF_WARN("Cannot append an empty mapper target path to <%s>", GetAsString().c_str());
        return SdfPath();
    }
    return MakeChild(_node, {Kind::Mapper, {}, {}, targetPath});
}

SdfPath SdfPath::AppendMapperArg(TfToken const& argName) const
{
    if (!IsValidIdentifier(argName.GetString())) {
        TF_WARN("Invalid arg name.");
        return SdfPath();
    }
    if (!IsMapperPath()) {
        TF_WARN("Can only append a mapper arg to a mapper path.");
        return SdfPath();
    }
    return MakeChild(_node, {Kind::MapperArg, argName, {}, {}});
}

SdfPath SdfPath::AppendExpression() const
{
    if (!IsPropertyPath()) {
        TF_WARN("Can only append an expression to a property path.");
        return SdfPath();
    }
    return MakeChild(_node, {Kind::Expression, {}, {}, {}});
}

namespace {

/// Appends "{set=variant}" or "{set}".
SdfPath AppendSelectionText(const SdfPath& path, const std::string& element)
{
    const std::vector<std::string> parts = TfStringTokenize(element, "{=}");
    if (parts.empty() || parts.size() > 2) {
        return SdfPath();
    }
    return path.AppendVariantSelection(parts[0], parts.size() == 2 ? parts[1] : std::string());
}

/// Appends ".name", ".mapper[target]" or ".expression", whichever the path can have.
SdfPath AppendDottedText(const SdfPath& path, const std::string& element)
{
    static const std::string mapper = ".mapper[";
    if (path.IsPropertyPath() && element == ".expression") {
        return path.AppendExpression();
    }
    if (path.IsPropertyPath() && TfStringStartsWith(element, mapper)) {
        return path.AppendMapper(SdfPath(element.substr(mapper.size(), element.size() - mapper.size() - 1)));
    }
    const TfToken name(element.substr(1));
    if (path.IsMapperPath()) {
        return path.AppendMapperArg(name);
    }
    return path.IsTargetPath() ? path.AppendRelationalAttribute(name) : path.AppendProperty(name);
}

} // namespace

SdfPath SdfPath::AppendElementString(const std::string& element) const
{
    if (IsEmpty()) {
        TF_CODING_ERROR("Cannot append element '%s' to the EmptyPath.", element.c_str());
        return SdfPath();
    }
    switch (element.empty() ? '\0' : element[0]) {
    case '{':
        return AppendSelectionText(*this, element);
    case '[':
        return AppendTarget(SdfPath(element.substr(1, element.size() - 2)));
    case '.':
        return AppendDottedText(*this, element);
    default:
        return AppendChild(TfToken(element));
    }
}

SdfPath SdfPath::AppendElementToken(const TfToken& elementTok) const
{
    return AppendElementString(elementTok.GetString());
}

uint32_t Sdf_PathKey::GetHashOfProperty(const SdfPath& prim, const TfToken& name)
{
    return Sdf_PathNodeTable::Hash(prim._node, {Kind::PrimProperty, name, {}, {}});
}

bool Sdf_PathKey::IsProperty(const SdfPath& path, const SdfPath& prim, const TfToken& name)
{
    return path._node->GetParent() == prim._node && path._node->GetKind() == Kind::PrimProperty &&
           path._node->GetName() == name;
}

PXR_NAMESPACE_CLOSE_SCOPE
