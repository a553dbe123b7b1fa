#include "pxr/usd/sdf/values/pathNode.h"

#include "pxr/usd/sdf/values/pathNodeTable.h"

#include <memory>
#include <vector>

PXR_NAMESPACE_OPEN_SCOPE

namespace {

using Node = Sdf_PathNode;
using Kind = Node::Kind;

bool StartsProperty(Kind kind) { return kind == Kind::PrimProperty; }

/// The names of the elements that have no name of their own.
struct FixedNames
{
    const TfToken absoluteRoot{"/", TfToken::Immortal};
    const TfToken relativeRoot{".", TfToken::Immortal};
    const TfToken parent{"..", TfToken::Immortal};
    const TfToken expression{"expression", TfToken::Immortal};

    static const FixedNames& Get()
    {
        static const FixedNames* const names = new FixedNames;
        return *names;
    }
};

} // namespace

bool Sdf_PathNode::Element::operator<(const Element& o) const
{
    if (kind != o.kind) {
        return kind < o.kind;
    }
    if (name != o.name) {
        return name < o.name;
    }
    return variant != o.variant ? variant < o.variant : target < o.target;
}

Sdf_PathNode::Sdf_PathNode(const Sdf_PathNode* parent, const Element& element, bool isAbsolute)
    : m_parent(parent),
      m_name(element.name),
      m_variant(element.variant),
      m_target(element.target),
      m_count(parent ? parent->m_count + 1 : 0),
      m_kind(element.kind),
      m_isAbsolute(isAbsolute),
      m_inProperty((parent && parent->m_inProperty) || StartsProperty(element.kind)),
      m_hasVariant((parent && parent->m_hasVariant) || element.kind == Kind::VariantSelection),
      m_hasTarget((parent && parent->m_hasTarget) || element.kind == Kind::Target ||
                  element.kind == Kind::Mapper)
{}

Sdf_PathNode::~Sdf_PathNode() { delete m_token.load(std::memory_order_acquire); }

const Sdf_PathNode* Sdf_PathNode::AbsoluteRoot()
{
    static const Sdf_PathNode* const root = new Sdf_PathNode(nullptr, Element{Kind::Root, {}, {}, {}}, true);
    return root;
}

const Sdf_PathNode* Sdf_PathNode::RelativeRoot()
{
    static const Sdf_PathNode* const root = new Sdf_PathNode(nullptr, Element{Kind::Root, {}, {}, {}}, false);
    return root;
}

const Sdf_PathNode* Sdf_PathNode::Find(const Sdf_PathNode* parent, const Element& element)
{
    return Sdf_PathNodeTable::Get().Find(parent, element);
}

const Sdf_PathNode* Sdf_PathNode::FindOrCreate(const Sdf_PathNode* parent, const Element& element)
{
    return Sdf_PathNodeTable::Get().FindOrCreate(parent, element);
}

void Sdf_PathNode::Release(const Sdf_PathNode* node) noexcept
{
    std::vector<const Sdf_PathNode*> targets;
    while (node) {
        uint32_t count = node->count.load(std::memory_order_relaxed);
        while (count > 1 && !node->count.compare_exchange_weak(count, count - 1, std::memory_order_release,
                                                               std::memory_order_relaxed)) {
        }
        const Sdf_PathNode* next = nullptr;
        Sdf_PathNodeTable::Remains remains;
        if (count <= 1 && Sdf_PathNodeTable::Get().ReleaseLast(node, &remains)) {
            next = remains.parent;
            if (!remains.target.IsEmpty()) {
                targets.push_back(Sdf_PathAccess::Take(&remains.target));
            }
        }
        if (!next && !targets.empty()) {
            next = targets.back();
            targets.pop_back();
        }
        node = next;
    }
}

bool Sdf_PathNode::IsParentElement() const
{
    return GetKind() == Kind::Prim && m_name == FixedNames::Get().parent;
}

const TfToken& Sdf_PathNode::GetName() const
{
    switch (GetKind()) {
    case Kind::Root:
        return m_isAbsolute ? FixedNames::Get().absoluteRoot : FixedNames::Get().relativeRoot;
    case Kind::Expression:
        return FixedNames::Get().expression;
    case Kind::VariantSelection:
        return m_variant.IsEmpty() ? m_name : m_variant;
    default:
        return m_name;
    }
}

namespace {

/// A part of a text still to be written.
struct Pending
{
    enum class What
    {
        Path,
        Element,
        ClosingBracket
    };
    What what;
    const Node* node;
};

/// Appends the text of an element up to its target, whose path and closing bracket it leaves to the caller.
void AppendElement(const Node* node, std::string* text)
{
    const Node::Element element = node->GetElement();
    switch (node->GetKind()) {
    case Kind::Root:
        break;
    case Kind::Prim:
        *text += element.name.GetString();
        break;
    case Kind::VariantSelection:
        text->append("{").append(element.name.GetString()).append("=");
        text->append(element.variant.GetString()).append("}");
        break;
    case Kind::PrimProperty:
    case Kind::RelationalAttribute:
    case Kind::MapperArg:
        text->append(".").append(element.name.GetString());
        break;
    case Kind::Target:
        *text += "[";
        break;
    case Kind::Mapper:
        *text += ".mapper[";
        break;
    case Kind::Expression:
        *text += ".expression";
        break;
    }
}

bool HasTarget(const Node* node)
{
    return node->GetKind() == Kind::Target || node->GetKind() == Kind::Mapper;
}

/// Appends what stands between an element and the one before it.
void AppendSeparator(const Node* node, std::string* text)
{
    const Node* parent = node->GetParent();
    const bool childOfPrim = node->GetKind() == Kind::Prim && parent->GetKind() == Kind::Prim;
    const bool propertyOfParent = node->GetKind() == Kind::PrimProperty && parent->IsParentElement();
    if (childOfPrim || propertyOfParent) {
        *text += "/";
    }
}

/// Puts the elements of a path on the stack, the last one lowest.
void PushElements(const Node* node, std::vector<Pending>* pending)
{
    for (; !node->IsRoot(); node = node->GetParent()) {
        if (HasTarget(node)) {
            pending->push_back({Pending::What::ClosingBracket, nullptr});
            pending->push_back({Pending::What::Path, Sdf_PathAccess::NodeOf(node->GetElement().target)});
        }
        pending->push_back({Pending::What::Element, node});
    }
}

/// Appends the text of the path of a node; targets inside targets wait on an explicit stack.
void AppendPath(const Node* node, std::string* text)
{
    std::vector<Pending> pending{{Pending::What::Path, node}};
    while (!pending.empty()) {
        const Pending next = pending.back();
        pending.pop_back();
        switch (next.what) {
        case Pending::What::Path:
            if (next.node->IsAbsolute()) {
                *text += "/";
            } else if (next.node->IsRoot()) {
                *text += ".";
            }
            PushElements(next.node, &pending);
            break;
        case Pending::What::Element:
            AppendSeparator(next.node, text);
            AppendElement(next.node, text);
            break;
        case Pending::What::ClosingBracket:
            *text += "]";
            break;
        }
    }
}

} // namespace

std::string Sdf_PathNode::GetElementText() const
{
    std::string text;
    AppendElement(this, &text);
    if (HasTarget(this)) {
        AppendPath(Sdf_PathAccess::NodeOf(m_target), &text);
        text += "]";
    }
    return text;
}

std::string Sdf_PathNode::GetText() const
{
    std::string text;
    AppendPath(this, &text);
    return text;
}

const TfToken& Sdf_PathNode::GetToken() const
{
    const TfToken* token = m_token.load(std::memory_order_acquire);
    if (!token) {
        auto made = std::make_unique<const TfToken>(GetText());
        if (m_token.compare_exchange_strong(token, made.get(), std::memory_order_acq_rel)) {
            token = made.release();
        }
    }
    return *token;
}

PXR_NAMESPACE_CLOSE_SCOPE
