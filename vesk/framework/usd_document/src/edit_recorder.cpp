#include "edit_recorder.h"

#include <algorithm>
#include <atomic>
#include <thread>

#include <pxr/usd/sdf/abstractData.h>
#include <pxr/usd/sdf/layerStateDelegate.h>

PXR_NAMESPACE_USING_DIRECTIVE

namespace vesk::framework::usd_document {

/// What a recorder shares with its delegates, which may outlive it on a layer for a moment.
struct EditRecorder::Recording
{
    std::atomic<std::thread::id> thread{};
    EditList edits;

    bool isOn() const { return thread.load(std::memory_order_relaxed) == std::this_thread::get_id(); }
};

/// Told of each primitive edit of its layer while the old state can still be read.
class EditRecorder::Delegate final : public SdfLayerStateDelegateBase
{
public:
    static TfRefPtr<Delegate> make(std::shared_ptr<Recording> recording)
    {
        return TfCreateRefPtr(new Delegate(std::move(recording)));
    }

    void restoreDirty(bool dirty) { m_dirty = dirty; }

private:
    explicit Delegate(std::shared_ptr<Recording> recording) : m_recording(std::move(recording)) {}

    bool _IsDirty() override { return m_dirty; }
    void _MarkCurrentStateAsClean() override { m_dirty = false; }
    void _MarkCurrentStateAsDirty() override { m_dirty = true; }
    void _OnSetLayer(const SdfLayerHandle&) override {}

    void _OnSetField(const SdfPath& path, const TfToken& field, const VtValue&) override
    {
        noteField(path, field);
    }
    void _OnSetField(const SdfPath& path, const TfToken& field, const SdfAbstractDataConstValue&) override
    {
        noteField(path, field);
    }
    void _OnSetFieldDictValueByKey(const SdfPath& path, const TfToken& field, const TfToken&,
                                   const VtValue&) override
    {
        noteField(path, field);
    }
    void _OnSetFieldDictValueByKey(const SdfPath& path, const TfToken& field, const TfToken&,
                                   const SdfAbstractDataConstValue&) override
    {
        noteField(path, field);
    }
    void _OnSetTimeSample(const SdfPath& path, double time, const VtValue&) override
    {
        noteSample(path, time);
    }
    void _OnSetTimeSample(const SdfPath& path, double time, const SdfAbstractDataConstValue&) override
    {
        noteSample(path, time);
    }
    void _OnCreateSpec(const SdfPath& path, SdfSpecType, bool inert) override
    {
        if (touch()) note(SpecAppeared{path, inert});
    }
    void _OnDeleteSpec(const SdfPath& path, bool inert) override
    {
        if (touch()) note(SpecsWere{copySpecs(path), inert});
    }
    void _OnMoveSpec(const SdfPath& oldPath, const SdfPath& newPath) override
    {
        if (touch()) note(SpecMoved{oldPath, newPath});
    }
    void _OnPushChild(const SdfPath& parent, const TfToken& field, const TfToken& child) override
    {
        if (touch()) note(ChildPushed{parent, field, child});
    }
    void _OnPushChild(const SdfPath& parent, const TfToken& field, const SdfPath& child) override
    {
        if (touch()) note(ChildPushed{parent, field, child});
    }
    void _OnPopChild(const SdfPath& parent, const TfToken& field, const TfToken& child) override
    {
        if (touch()) note(ChildPopped{parent, field, child});
    }
    void _OnPopChild(const SdfPath& parent, const TfToken& field, const SdfPath& child) override
    {
        if (touch()) note(ChildPopped{parent, field, child});
    }

    /// The layer is about to change; true when that is recorded.
    bool touch()
    {
        m_dirty = true;
        return m_recording->isOn();
    }

    template <class Change>
    void note(Change change)
    {
        m_recording->edits.add(LayerEdit{_GetLayer(), std::move(change)});
    }

    void noteField(const SdfPath& path, const TfToken& field)
    {
        if (!touch() || m_recording->edits.knowsField(_GetLayer(), path, field)) return;
        note(FieldWas{path, field, _GetLayer()->GetField(path, field)});
    }

    void noteSample(const SdfPath& path, double time)
    {
        if (!touch() || m_recording->edits.knowsTimeSample(_GetLayer(), path, time)) return;
        VtValue sample;
        _GetLayer()->QueryTimeSample(path, time, &sample);
        note(TimeSampleWas{path, time, std::move(sample)});
    }

    std::vector<SpecsWere::Spec> copySpecs(const SdfPath& root) const
    {
        const SdfLayerHandle layer = _GetLayer();
        std::vector<SpecsWere::Spec> specs;
        layer->Traverse(root, [&](const SdfPath& path) {
            SpecsWere::Spec spec;
            spec.path = path;
            spec.type = layer->GetSpecType(path);
            for (const TfToken& field : layer->ListFields(path))
                spec.fields.emplace_back(field, layer->GetField(path, field));
            specs.push_back(std::move(spec));
        });
        std::sort(specs.begin(), specs.end(), [](const auto& a, const auto& b) { return a.path < b.path; });
        return specs;
    }

    const std::shared_ptr<Recording> m_recording;
    bool m_dirty = false;
};

EditRecorder::EditRecorder() : m_recording(std::make_shared<Recording>()) {}

EditRecorder::~EditRecorder()
{
    for (const auto& [layer, delegate] : m_delegates)
        if (layer && get_pointer(layer->GetStateDelegate()) == get_pointer(delegate))
            layer->SetStateDelegate(SdfSimpleLayerStateDelegate::New());
}

void EditRecorder::watch(const UsdStageRefPtr& stage, const SdfLayerHandle& layer)
{
    for (const SdfLayerHandle& local : stage->GetLayerStack())
        _watch(local);
    if (layer) _watch(layer);
}

void EditRecorder::_watch(const SdfLayerHandle& layer)
{
    TfRefPtr<Delegate>& delegate = m_delegates[layer];
    if (!delegate) delegate = Delegate::make(m_recording);
    if (get_pointer(layer->GetStateDelegate()) == get_pointer(delegate)) return;
    // The layer carries its dirty state over only when it asked for it since its last change.
    const bool dirty = layer->IsDirty();
    layer->SetStateDelegate(delegate);
    delegate->restoreDirty(dirty);
}

void EditRecorder::begin()
{
    m_recording->edits = EditList();
    m_recording->thread.store(std::this_thread::get_id());
}

EditList EditRecorder::end()
{
    m_recording->thread.store(std::thread::id());
    return std::exchange(m_recording->edits, EditList());
}

} // namespace vesk::framework::usd_document
