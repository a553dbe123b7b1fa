#pragma once

#include <pxr/base/tf/diagnosticMgr.h>

#include <string>
#include <vector>

/// Takes all diagnostics while it lives and remembers their texts as "kind: text".
class RecordingDelegate : public PXR_NS::TfDiagnosticMgr::Delegate
{
public:
    RecordingDelegate() { PXR_NS::TfDiagnosticMgr::GetInstance().AddDelegate(this); }
    ~RecordingDelegate() override { PXR_NS::TfDiagnosticMgr::GetInstance().RemoveDelegate(this); }

    void IssueError(PXR_NS::TfError const& error) override
    {
        texts.push_back("error: " + error.GetCommentary());
    }
    void IssueFatalError(PXR_NS::TfCallContext const&, std::string const& message) override
    {
        texts.push_back("fatal: " + message);
    }
    void IssueStatus(PXR_NS::TfStatus const& status) override
    {
        texts.push_back("status: " + status.GetCommentary());
    }
    void IssueWarning(PXR_NS::TfWarning const& warning) override
    {
        texts.push_back("warning: " + warning.GetCommentary());
    }

    std::vector<std::string> texts;
};
