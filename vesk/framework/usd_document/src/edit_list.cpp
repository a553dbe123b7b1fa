#include "edit_list.h"

#include <algorithm>
#include <functional>

#include <pxr/usd/sdf/changeBlock.h>
#include <pxr/usd/sdf/layerStateDelegate.h>

PXR_NAMESPACE_USING_DIRECTIVE

namespace vesk::framework::usd_document {

EditList::Key EditList::_key(const SdfLayerHandle& layer, const SdfPath& path, const TfToken& field,
                             double time)
{
    return Key{get_pointer(layer), path, field, time};
}

std::size_t EditList::KeyHash::operator()(const Key& key) const
{
    std::size_t hash = SdfPath::Hash()(key.path);
    hash = hash * 31 + TfToken::HashFunctor()(key.field);
    hash = hash * 31 + std::hash<double>()(key.time);
    return hash * 31 + std::hash<const void*>()(key.layer);
}

bool EditList::knowsField(const SdfLayerHandle& layer, const SdfPath& path, const TfToken& field) const
{
    return m_known.count(_key(layer, path, field, 0.0)) != 0;
}

bool EditList::knowsTimeSample(const SdfLayerHandle& layer, const SdfPath& path, double time) const
{
    return m_known.count(_key(layer, path, TfToken(), time)) != 0;
}

void EditList::add(LayerEdit edit)
{
    if (const auto* field = std::get_if<FieldWas>(&edit.change)) {
        if (!m_known.insert(_key(edit.layer, field->path, field->field, 0.0)).second) return;
    } else if (const auto* sample = std::get_if<TimeSampleWas>(&edit.change)) {
        if (!m_known.insert(_key(edit.layer, sample->path, TfToken(), sample->time)).second) return;
    } else {
        m_known.clear();
    }
    m_edits.push_back(std::move(edit));
}

void EditList::append(EditList&& later)
{
    for (LayerEdit& edit : later.m_edits)
        add(std::move(edit));
    later.m_edits.clear();
    later.m_known.clear();
}

std::vector<SdfLayerHandle> EditList::layers() const
{
    std::vector<SdfLayerHandle> found;
    for (const LayerEdit& edit : m_edits)
        if (edit.layer && std::find(found.begin(), found.end(), edit.layer) == found.end())
            found.push_back(edit.layer);
    return found;
}

namespace {

/// Makes the opposite of one edit on its layer.
class Reverter
{
public:
    explicit Reverter(const SdfLayerHandle& layer) : m_layer(layer), m_delegate(layer->GetStateDelegate()) {}

    void operator()(const FieldWas& was) const
    {
        if (m_layer->HasSpec(was.path)) m_delegate->SetField(was.path, was.field, was.value);
    }

    void operator()(const TimeSampleWas& was) const
    {
        if (m_layer->HasSpec(was.path)) m_delegate->SetTimeSample(was.path, was.time, was.value);
    }

    void operator()(const SpecAppeared& appeared) const
    {
        if (m_layer->HasSpec(appeared.path)) m_delegate->DeleteSpec(appeared.path, appeared.inert);
    }

    void operator()(const SpecsWere& were) const
    {
        for (const SpecsWere::Spec& spec : were.specs) {
            if (!m_layer->HasSpec(spec.path)) m_delegate->CreateSpec(spec.path, spec.type, were.inert);
            for (const auto& [field, value] : spec.fields)
                m_delegate->SetField(spec.path, field, value);
        }
    }

    void operator()(const SpecMoved& moved) const
    {
        if (m_layer->HasSpec(moved.to) && !m_layer->HasSpec(moved.from))
            m_delegate->MoveSpec(moved.to, moved.from);
    }

    void operator()(const ChildPushed& pushed) const
    {
        std::visit([&](const auto& child) { takeOff(pushed.parent, pushed.field, child); }, pushed.child);
    }

    void operator()(const ChildPopped& popped) const
    {
        if (!m_layer->HasSpec(popped.parent)) return;
        std::visit([&](const auto& child) { m_delegate->PushChild(popped.parent, popped.field, child); },
                   popped.child);
    }

private:
    template <class Child>
    void takeOff(const SdfPath& parent, const TfToken& field, const Child& child) const
    {
        auto children = m_layer->GetFieldAs<std::vector<Child>>(parent, field);
        if (!children.empty() && children.back() == child) {
            m_delegate->PopChild(parent, field, child);
            return;
        }
        // Something that was not recorded changed the list meanwhile.
        const auto found = std::find(children.begin(), children.end(), child);
        if (found == children.end()) return;
        children.erase(found);
        m_delegate->SetField(parent, field, VtValue(children));
    }

    const SdfLayerHandle& m_layer;
    const SdfLayerStateDelegateBasePtr m_delegate;
};

} // namespace

void EditList::revert() const
{
    // Sdf alone speaks here, so one block may gather all notices.
    const SdfChangeBlock block;
    for (auto edit = m_edits.rbegin(); edit != m_edits.rend(); ++edit)
        if (edit->layer) std::visit(Reverter(edit->layer), edit->change);
}

} // namespace vesk::framework::usd_document
