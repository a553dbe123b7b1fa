#pragma once

/// Status messages.

#include <pxr/base/tf/diagnosticBase.h>
#include <pxr/pxr.h>

PXR_NAMESPACE_OPEN_SCOPE

class TfStatus : public TfDiagnosticBase
{
private:
    friend class TfDiagnosticMgr;
    using TfDiagnosticBase::TfDiagnosticBase;
};

PXR_NAMESPACE_CLOSE_SCOPE
