#pragma once

#include <cstddef>
#include <unordered_set>
#include <utility>
#include <variant>
#include <vector>

#include <pxr/base/tf/token.h>
#include <pxr/base/vt/value.h>
#include <pxr/pxr.h>
#include <pxr/usd/sdf/layer.h>
#include <pxr/usd/sdf/path.h>
#include <pxr/usd/sdf/types.h>

namespace vesk::framework::usd_document {

/// A field as it was; an empty value means that it was not there.
struct FieldWas
{
    PXR_NS::SdfPath path;
    PXR_NS::TfToken field;
    PXR_NS::VtValue value;
};

/// A time sample as it was; an empty value means that it was not there.
struct TimeSampleWas
{
    PXR_NS::SdfPath path;
    double time = 0.0;
    PXR_NS::VtValue value;
};

/// A spec appeared.
struct SpecAppeared
{
    PXR_NS::SdfPath path;
    bool inert = false;
};

/// A spec vanished with all that lay beneath it; ancestors come before descendants.
struct SpecsWere
{
    struct Spec
    {
        PXR_NS::SdfPath path;
        PXR_NS::SdfSpecType type = PXR_NS::SdfSpecTypeUnknown;
        std::vector<std::pair<PXR_NS::TfToken, PXR_NS::VtValue>> fields;
    };
    std::vector<Spec> specs;
    bool inert = false;
};

/// A spec moved.
struct SpecMoved
{
    PXR_NS::SdfPath from;
    PXR_NS::SdfPath to;
};

/// A name or path was appended to a list of children, or its last one taken off.
struct ChildPushed
{
    PXR_NS::SdfPath parent;
    PXR_NS::TfToken field;
    std::variant<PXR_NS::TfToken, PXR_NS::SdfPath> child;
};
struct ChildPopped
{
    PXR_NS::SdfPath parent;
    PXR_NS::TfToken field;
    std::variant<PXR_NS::TfToken, PXR_NS::SdfPath> child;
};

/// One edit of one layer, as it has to be taken back.
struct LayerEdit
{
    PXR_NS::SdfLayerHandle layer;
    std::variant<FieldWas, TimeSampleWas, SpecAppeared, SpecsWere, SpecMoved, ChildPushed, ChildPopped>
        change;
};

/// What is needed to take edits back, in the order in which they were made. Repeated edits of a field or a
/// time sample keep the first old value only, so that a long drag costs no more than its first step.
class EditList
{
public:
    bool isEmpty() const { return m_edits.empty(); }
    std::size_t size() const { return m_edits.size(); }

    void add(LayerEdit edit);

    /// Appends the edits of another list.
    void append(EditList&& later);

    /// The layers that the edits concern, each once; those that have gone are left out.
    std::vector<PXR_NS::SdfLayerHandle> layers() const;

    /// True when the old value of this field (of this time sample) is known already, and so need not be read.
    bool knowsField(const PXR_NS::SdfLayerHandle& layer, const PXR_NS::SdfPath& path,
                    const PXR_NS::TfToken& field) const;
    bool knowsTimeSample(const PXR_NS::SdfLayerHandle& layer, const PXR_NS::SdfPath& path, double time) const;

    /// Takes all edits back, newest first, through the layers' state delegates: whoever records them then
    /// gets the list that brings them back. Skips layers that have gone and specs that are no longer there.
    void revert() const;

private:
    struct Key
    {
        const void* layer;
        PXR_NS::SdfPath path;
        PXR_NS::TfToken field; ///< Empty for a time sample.
        double time;

        bool operator==(const Key& other) const
        {
            return layer == other.layer && path == other.path && field == other.field && time == other.time;
        }
    };
    struct KeyHash
    {
        std::size_t operator()(const Key& key) const;
    };
    static Key _key(const PXR_NS::SdfLayerHandle& layer, const PXR_NS::SdfPath& path,
                    const PXR_NS::TfToken& field, double time);

    std::vector<LayerEdit> m_edits;
    /// Fields and samples that were noted since the last edit of the layer's structure.
    std::unordered_set<Key, KeyHash> m_known;
};

} // namespace vesk::framework::usd_document
