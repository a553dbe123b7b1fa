#pragma once

/// Notices that layers send.

#include <pxr/base/tf/notice.h>
#include <pxr/base/tf/token.h>
#include <pxr/pxr.h>
#include <pxr/usd/sdf/api.h>
#include <pxr/usd/sdf/changeList.h>
#include <pxr/usd/sdf/declareHandles.h>
#include <pxr/usd/sdf/types.h>

#include <algorithm>
#include <string>

PXR_NAMESPACE_OPEN_SCOPE

/// The notices of layers. Thread: each is delivered on the thread that edited, loaded or saved.
class SdfNotice
{
public:
    class SDF_API Base : public TfNotice
    {
    public:
        ~Base() override;
    };

    /// Layers and their changes, with a number that grows from one round of notices to the next.
    class SDF_API BaseLayersDidChange
    {
    public:
        BaseLayersDidChange(const SdfLayerChangeListVec& changeVec, size_t serialNumber)
            : _vec(&changeVec), _serialNumber(serialNumber)
        {}

        using const_iterator = SdfLayerChangeListVec::const_iterator;
        using iterator = const_iterator;

        SdfLayerHandleVector GetLayers() const;
        const SdfLayerChangeListVec& GetChangeListVec() const { return *_vec; }
        const_iterator begin() const { return _vec->begin(); }
        const_iterator cbegin() const { return _vec->cbegin(); }
        const_iterator end() const { return _vec->end(); }
        const_iterator cend() const { return _vec->cend(); }
        const_iterator find(SdfLayerHandle const& layer) const
        {
            return std::find_if(begin(), end(), [&layer](auto const& p) { return p.first == layer; });
        }
        bool count(SdfLayerHandle const& layer) const { return find(layer) != end(); }
        size_t GetSerialNumber() const { return _serialNumber; }

    private:
        const SdfLayerChangeListVec* _vec;
        const size_t _serialNumber;
    };

    /// Sent once for each changed layer, with the layer as its sender.
    class SDF_API LayersDidChangeSentPerLayer : public Base, public BaseLayersDidChange
    {
    public:
        LayersDidChangeSentPerLayer(const SdfLayerChangeListVec& changeVec, size_t serialNumber)
            : BaseLayersDidChange(changeVec, serialNumber)
        {}
        ~LayersDidChangeSentPerLayer() override;
    };

    /// Sent once for all changed layers, with no sender.
    class SDF_API LayersDidChange : public Base, public BaseLayersDidChange
    {
    public:
        LayersDidChange(const SdfLayerChangeListVec& changeVec, size_t serialNumber)
            : BaseLayersDidChange(changeVec, serialNumber)
        {}
        ~LayersDidChange() override;
    };

    /// Sent for each field of the layer itself that changed.
    class SDF_API LayerInfoDidChange : public Base
    {
    public:
        LayerInfoDidChange(const TfToken& key) : _key(key) {}
        ~LayerInfoDidChange() override;
        const TfToken& key() const { return _key; }

    private:
        TfToken _key;
    };

    class SDF_API LayerIdentifierDidChange : public Base
    {
    public:
        LayerIdentifierDidChange(const std::string& oldIdentifier, const std::string& newIdentifier)
            : _oldId(oldIdentifier), _newId(newIdentifier)
        {}
        ~LayerIdentifierDidChange() override;
        const std::string& GetOldIdentifier() const { return _oldId; }
        const std::string& GetNewIdentifier() const { return _newId; }

    private:
        std::string _oldId;
        std::string _newId;
    };

    /// Sent after the whole content was exchanged.
    class SDF_API LayerDidReplaceContent : public Base
    {
    public:
        ~LayerDidReplaceContent() override;
    };

    /// Sent after the content was read anew from its file.
    class SDF_API LayerDidReloadContent : public LayerDidReplaceContent
    {
    public:
        ~LayerDidReloadContent() override;
    };

    class SDF_API LayerDidSaveLayerToFile : public Base
    {
    public:
        ~LayerDidSaveLayerToFile() override;
    };

    /// Sent when a layer becomes dirty or clean.
    class SDF_API LayerDirtinessChanged : public Base
    {
    public:
        ~LayerDirtinessChanged() override;
    };
};

PXR_NAMESPACE_CLOSE_SCOPE
