#pragma once

#include <pxr/base/tf/notice.h>
#include <pxr/export.h>
#include <pxr/pxr.h>
#include <pxr/usd/sdf/changeList.h>
#include <pxr/usd/sdf/path.h>
#include <pxr/usd/usd/common.h>
#include <pxr/usd/usd/object.h>

#include <cstddef>
#include <iterator>
#include <map>
#include <string>
#include <vector>

PXR_NAMESPACE_OPEN_SCOPE

/// The notices that a stage sends, on the thread that edits it.
class UsdNotice
{
public:
    /// What all notices of a stage have in common.
    class VESK_USD_API StageNotice : public TfNotice
    {
    public:
        explicit StageNotice(const UsdStageWeakPtr& stage);
        ~StageNotice() override;
        const UsdStageWeakPtr& GetStage() const { return _stage; }

    private:
        UsdStageWeakPtr _stage;
    };

    /// Something changed; sent after each ObjectsChanged and after a change that replaced everything.
    class VESK_USD_API StageContentsChanged : public StageNotice
    {
    public:
        explicit StageContentsChanged(const UsdStageWeakPtr& stage) : StageNotice(stage) {}
        ~StageContentsChanged() override;
    };

    /// Which objects changed: resynced (composed anew, all below included) or changed in value or metadata
    /// only.
    class VESK_USD_API ObjectsChanged : public StageNotice
    {
        using _PathsToChangesMap = std::map<SdfPath, std::vector<const SdfChangeList::Entry*>>;
        friend class Usd_ChangeProcessor;

        ObjectsChanged(const UsdStageWeakPtr& stage, const _PathsToChangesMap* resyncChanges,
                       const _PathsToChangesMap* infoChanges, const _PathsToChangesMap* assetPathChanges)
            : StageNotice(stage),
              _resyncChanges(resyncChanges),
              _infoChanges(infoChanges),
              _assetPathChanges(assetPathChanges)
        {}

    public:
        ~ObjectsChanged() override;

        bool AffectedObject(const UsdObject& obj) const
        {
            return ResyncedObject(obj) || ResolvedAssetPathsResynced(obj) || ChangedInfoOnly(obj);
        }
        bool ResyncedObject(const UsdObject& obj) const;
        bool ResolvedAssetPathsResynced(const UsdObject& obj) const;
        bool ChangedInfoOnly(const UsdObject& obj) const;

        /// Paths in order; valid while the notice is delivered.
        class PathRange
        {
        public:
            class iterator
            {
                using _UnderlyingIterator = _PathsToChangesMap::const_iterator;

            public:
                using iterator_category = std::forward_iterator_tag;
                using value_type = const SdfPath&;
                using reference = const SdfPath&;
                using pointer = const SdfPath*;
                using difference_type = std::ptrdiff_t;

                iterator() = default;
                reference operator*() const { return _underlyingIterator->first; }
                pointer operator->() const { return &_underlyingIterator->first; }
                iterator& operator++()
                {
                    ++_underlyingIterator;
                    return *this;
                }
                iterator operator++(int)
                {
                    iterator before = *this;
                    ++_underlyingIterator;
                    return before;
                }
                bool operator==(const iterator& other) const
                {
                    return _underlyingIterator == other._underlyingIterator;
                }
                bool operator!=(const iterator& other) const { return !(*this == other); }

                /// The fields that changed at this path, as the layers reported them.
                VESK_USD_API TfTokenVector GetChangedFields() const;
                VESK_USD_API bool HasChangedFields() const;
                _UnderlyingIterator base() const { return _underlyingIterator; }

            private:
                friend class PathRange;
                explicit iterator(_UnderlyingIterator underlyingIterator)
                    : _underlyingIterator(underlyingIterator)
                {}
                _UnderlyingIterator _underlyingIterator;
            };
            using const_iterator = iterator;

            PathRange() = default;
            explicit operator SdfPathVector() const { return SdfPathVector(begin(), end()); }
            bool empty() const { return size() == 0; }
            size_t size() const { return _changes ? _changes->size() : 0; }
            iterator begin() const { return iterator(_Changes().cbegin()); }
            const_iterator cbegin() const { return begin(); }
            iterator end() const { return iterator(_Changes().cend()); }
            const_iterator cend() const { return end(); }
            const_iterator find(const SdfPath& path) const { return iterator(_Changes().find(path)); }

        private:
            friend class ObjectsChanged;
            explicit PathRange(const _PathsToChangesMap* changes) : _changes(changes) {}
            VESK_USD_API const _PathsToChangesMap& _Changes() const;
            const _PathsToChangesMap* _changes = nullptr;
        };

        PathRange GetResyncedPaths() const;
        PathRange GetChangedInfoOnlyPaths() const;
        PathRange GetResolvedAssetPathsResyncedPaths() const;

        TfTokenVector GetChangedFields(const UsdObject& obj) const;
        TfTokenVector GetChangedFields(const SdfPath& path) const;
        bool HasChangedFields(const UsdObject& obj) const;
        bool HasChangedFields(const SdfPath& path) const;

    private:
        const _PathsToChangesMap* _resyncChanges;
        const _PathsToChangesMap* _infoChanges;
        const _PathsToChangesMap* _assetPathChanges;
    };

    /// The stage's edit target is another one now.
    class VESK_USD_API StageEditTargetChanged : public StageNotice
    {
    public:
        explicit StageEditTargetChanged(const UsdStageWeakPtr& stage) : StageNotice(stage) {}
        ~StageEditTargetChanged() override;
    };

    /// Layers were muted or unmuted.
    class VESK_USD_API LayerMutingChanged : public StageNotice
    {
    public:
        LayerMutingChanged(const UsdStageWeakPtr& stage, const std::vector<std::string>& mutedLayers,
                           const std::vector<std::string>& unmutedLayers)
            : StageNotice(stage), _mutedLayers(mutedLayers), _unmutedLayers(unmutedLayers)
        {}
        ~LayerMutingChanged() override;
        const std::vector<std::string>& GetMutedLayers() const { return _mutedLayers; }
        const std::vector<std::string>& GetUnmutedLayers() const { return _unmutedLayers; }

    private:
        std::vector<std::string> _mutedLayers;
        std::vector<std::string> _unmutedLayers;
    };
};

PXR_NAMESPACE_CLOSE_SCOPE
