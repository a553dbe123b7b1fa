#include "stage_loader.h"

#include <unistd.h>

#include <algorithm>
#include <deque>
#include <filesystem>
#include <set>
#include <system_error>
#include <vector>

#include <pxr/base/tf/error.h>
#include <pxr/base/tf/errorMark.h>
#include <pxr/usd/sdf/fileFormat.h>
#include <pxr/usd/sdf/layer.h>

#include <vesk/framework/usd_document/document_error.h>

#include "stage_errors.h"

PXR_NAMESPACE_USING_DIRECTIVE

namespace vesk::framework::usd_document {

namespace {

/// One load: what it reads is held until the stage holds it.
class Loader
{
public:
    Loader(const std::string& path, const OpenOptions& options) : m_path(path), m_options(options) {}

    UsdStageRefPtr load()
    {
        step(LoadProgress::Phase::Checking, 0, 0, m_path);
        checkFile();
        const SdfLayerRefPtr root = readRootLayer();
        readSublayers(root);
        const UsdStageRefPtr stage = compose(root);
        if (m_options.loadPayloads) loadPayloads(stage);
        step(LoadProgress::Phase::Finished, 1, 1, m_path);
        return stage;
    }

private:
    [[noreturn]] void fail(DocumentError error, const std::string& why) const
    {
        throw DocumentException(error, "Cannot open '" + onOneLine(m_path) + "': " + why);
    }

    void step(LoadProgress::Phase phase, std::size_t done, std::size_t total, const std::string& item) const
    {
        if (m_options.cancellation.isCancelled())
            fail(DocumentError::Cancelled, "the load was cancelled; open it again to see it.");
        if (m_options.progress) m_options.progress(LoadProgress{phase, done, total, item});
    }

    /// What can be said about the file without reading it, in words that OpenUSD does not find.
    void checkFile() const
    {
        namespace fs = std::filesystem;
        if (m_path.empty()) fail(DocumentError::FileNotFound, "the file name is empty; name a scene file.");
        if (m_path.find('\0') != std::string::npos)
            fail(DocumentError::FileNotFound, "the file name holds a NUL character; remove it.");
        std::error_code error;
        const fs::file_status status = fs::status(m_path, error);
        if (status.type() == fs::file_type::not_found)
            fail(DocumentError::FileNotFound, "there is no such file; check the path.");
        if (error)
            fail(DocumentError::FileNotReadable, error.message() + "; check the path and its permissions.");
        if (status.type() == fs::file_type::directory)
            fail(DocumentError::NotAFile, "it is a directory; name a scene file inside it.");
        if (status.type() != fs::file_type::regular)
            fail(DocumentError::NotAFile, "it is not a regular file; name a scene file.");
        if (access(m_path.c_str(), R_OK) != 0)
            fail(DocumentError::FileNotReadable, "it may not be read; check its permissions.");
        if (!SdfFileFormat::FindByExtension(m_path))
            fail(DocumentError::UnknownFormat,
                 "its name does not end as a scene's does; use a .usda, .usdc, .usd or .usdz file.");
    }

    SdfLayerRefPtr readRootLayer() const
    {
        step(LoadProgress::Phase::ReadingLayers, 0, 1, m_path);
        SdfLayerRefPtr root;
        const std::vector<std::string> errors =
            collectStageErrors([&] { root = SdfLayer::FindOrOpen(m_path); });
        if (root) return root;
        if (errors.empty()) fail(DocumentError::InvalidScene, "it holds no scene that can be read.");
        fail(DocumentError::InvalidScene, errors.front());
    }

    /// Reads sublayers ahead of composition, which would read them in one step. What fails here is reported
    /// by composition, so it is not reported now.
    void readSublayers(const SdfLayerRefPtr& root)
    {
        std::set<std::string> seen{root->GetIdentifier()};
        std::deque<SdfLayerRefPtr> pending{root};
        m_layers.push_back(root);
        std::size_t known = 1;
        while (!pending.empty()) {
            const SdfLayerRefPtr layer = pending.front();
            pending.pop_front();
            const std::vector<std::string> paths = layer->GetSubLayerPaths();
            known += paths.size();
            for (const std::string& sublayer : paths) {
                step(LoadProgress::Phase::ReadingLayers, m_layers.size(), known, sublayer);
                SdfLayerRefPtr read;
                collectStageErrors([&] { read = SdfLayer::FindOrOpenRelativeToLayer(layer, sublayer); });
                if (!read || !seen.insert(read->GetIdentifier()).second) continue;
                m_layers.push_back(read);
                pending.push_back(read);
            }
        }
    }

    UsdStageRefPtr compose(const SdfLayerRefPtr& root) const
    {
        step(LoadProgress::Phase::Composing, 0, 1, m_path);
        const UsdStageRefPtr stage = UsdStage::Open(SdfLayerHandle(root), UsdStage::LoadNone);
        if (!stage) fail(DocumentError::InvalidScene, "no stage can be made of it.");
        return stage;
    }

    /// Loads payloads in a few batches: each batch recomposes the stage once. Payloads can bring payloads.
    void loadPayloads(const UsdStageRefPtr& stage) const
    {
        constexpr std::size_t kBatches = 16;
        std::set<SdfPath> tried;
        std::size_t done = 0;
        for (;;) {
            std::vector<SdfPath> pending;
            for (const SdfPath& path : stage->FindLoadable())
                if (tried.insert(path).second) pending.push_back(path);
            if (pending.empty()) return;
            const std::size_t batch = (pending.size() + kBatches - 1) / kBatches;
            for (std::size_t first = 0; first < pending.size(); first += batch) {
                const std::size_t last = std::min(pending.size(), first + batch);
                step(LoadProgress::Phase::LoadingPayloads, done, tried.size(), pending[first].GetString());
                stage->LoadAndUnload(SdfPathSet(pending.begin() + first, pending.begin() + last),
                                     SdfPathSet());
                done += last - first;
            }
        }
    }

    const std::string& m_path;
    const OpenOptions& m_options;
    std::vector<SdfLayerRefPtr> m_layers;
};

} // namespace

UsdStageRefPtr loadStage(const std::string& path, const OpenOptions& options)
{
    return Loader(path, options).load();
}

} // namespace vesk::framework::usd_document
