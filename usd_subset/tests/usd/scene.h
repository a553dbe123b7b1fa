#pragma once

#include "../on_lines.h"

#include <pxr/base/tf/diagnosticMgr.h>
#include <pxr/base/tf/errorMark.h>
#include <pxr/base/tf/notice.h>
#include <pxr/base/tf/weakBase.h>
#include <pxr/usd/sdf/layer.h>
#include <pxr/usd/usd/attribute.h>
#include <pxr/usd/usd/notice.h>
#include <pxr/usd/usd/prim.h>
#include <pxr/usd/usd/primRange.h>
#include <pxr/usd/usd/relationship.h>
#include <pxr/usd/usd/stage.h>

#include <stdexcept>
#include <string>
#include <vector>

/// Small scenes from text, and what a stage says while tests work on it.
namespace usd_tests {

PXR_NAMESPACE_USING_DIRECTIVE

/// An anonymous layer with the content of a text file; the header line is added, and the line ends that braces
/// want.
inline SdfLayerRefPtr layer(const std::string& text, const std::string& name = "test.usda")
{
    const SdfLayerRefPtr result = SdfLayer::CreateAnonymous(name);
    return result->ImportFromString("#usda 1.0\n" + onLines(text)) ? result : SdfLayerRefPtr();
}

/// A stage on such a layer.
inline UsdStageRefPtr stage(const std::string& text) { return UsdStage::Open(SdfLayerHandle(layer(text))); }

/// The root of a stage: sublayers, strongest first, above the given text.
inline SdfLayerRefPtr layerWithSublayers(const std::vector<SdfLayerRefPtr>& sublayers,
                                         const std::string& text = "",
                                         const std::vector<SdfLayerOffset>& offsets = {})
{
    const SdfLayerRefPtr root = layer(text, "root.usda");
    for (size_t i = 0; i != sublayers.size(); ++i) {
        root->InsertSubLayerPath(sublayers[i]->GetIdentifier());
        if (i < offsets.size()) {
            root->SetSubLayerOffset(offsets[i], static_cast<int>(i));
        }
    }
    return root;
}

inline UsdPrim prim(const UsdStageRefPtr& stage, const char* path)
{
    return stage->GetPrimAtPath(SdfPath(path));
}

inline UsdAttribute attribute(const UsdStageRefPtr& stage, const char* path)
{
    return stage->GetAttributeAtPath(SdfPath(path));
}

/// The value as a T; a test that asks for a value that is not there fails on the exception.
template <class T>
T valueOf(const UsdAttribute& attribute, UsdTimeCode time = UsdTimeCode::Default())
{
    T value{};
    if (!attribute.Get(&value, time)) {
        throw std::runtime_error("no value at " + attribute.GetPath().GetString());
    }
    return value;
}

inline std::vector<std::string> pathsOf(const UsdPrimRange& range)
{
    std::vector<std::string> paths;
    for (const UsdPrim& each : range) {
        paths.push_back(each.GetPath().GetString());
    }
    return paths;
}

template <class Tokens>
std::vector<std::string> texts(const Tokens& tokens)
{
    return std::vector<std::string>(tokens.begin(), tokens.end());
}

/// Keeps the errors that are posted on this thread and takes them away.
class Errors
{
public:
    std::vector<std::string> take()
    {
        std::vector<std::string> result;
        for (const TfError& error : m_mark) {
            result.push_back(error.GetCommentary());
        }
        m_mark.Clear();
        return result;
    }

private:
    TfErrorMark m_mark;
};

/// Keeps the warnings that are posted while it lives.
class Warnings : public TfDiagnosticMgr::Delegate
{
public:
    Warnings() { TfDiagnosticMgr::GetInstance().AddDelegate(this); }
    ~Warnings() override { TfDiagnosticMgr::GetInstance().RemoveDelegate(this); }
    void IssueError(const TfError&) override {}
    void IssueFatalError(const TfCallContext&, const std::string&) override {}
    void IssueStatus(const TfStatus&) override {}
    void IssueWarning(const TfWarning& warning) override { texts.push_back(warning.GetCommentary()); }

    std::vector<std::string> texts;
};

/// Writes down what a stage's notices say: "resynced /A", "changed /A.x", "edit target".
class NoticeLog : public TfWeakBase
{
public:
    explicit NoticeLog(const UsdStageRefPtr& stage)
    {
        const UsdStageWeakPtr sender(stage);
        m_keys.push_back(TfNotice::Register(TfCreateWeakPtr(this), &NoticeLog::_onObjects, sender));
        m_keys.push_back(TfNotice::Register(TfCreateWeakPtr(this), &NoticeLog::_onEditTarget, sender));
        m_keys.push_back(TfNotice::Register(TfCreateWeakPtr(this), &NoticeLog::_onMuting, sender));
    }
    ~NoticeLog()
    {
        for (TfNotice::Key& key : m_keys) {
            TfNotice::Revoke(key);
        }
    }

    std::vector<std::string> take()
    {
        std::vector<std::string> result;
        result.swap(m_lines);
        return result;
    }

private:
    void _onObjects(const UsdNotice::ObjectsChanged& notice)
    {
        for (const SdfPath& path : notice.GetResyncedPaths()) {
            m_lines.push_back("resynced " + path.GetString());
        }
        for (const SdfPath& path : notice.GetChangedInfoOnlyPaths()) {
            m_lines.push_back("changed " + path.GetString());
        }
    }
    void _onEditTarget(const UsdNotice::StageEditTargetChanged&) { m_lines.push_back("edit target"); }
    void _onMuting(const UsdNotice::LayerMutingChanged& notice)
    {
        m_lines.push_back("muted " + std::to_string(notice.GetMutedLayers().size()) + " unmuted " +
                          std::to_string(notice.GetUnmutedLayers().size()));
    }

    TfNotice::Keys m_keys;
    std::vector<std::string> m_lines;
};

} // namespace usd_tests
