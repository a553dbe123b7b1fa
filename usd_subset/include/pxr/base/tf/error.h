#pragma once

/// Errors.

#include <pxr/base/tf/diagnostic.h>
#include <pxr/base/tf/diagnosticBase.h>
#include <pxr/base/tf/stringUtils.h>
#include <pxr/pxr.h>

PXR_NAMESPACE_OPEN_SCOPE

class TfError : public TfDiagnosticBase
{
public:
    TfEnum GetErrorCode() const { return GetDiagnosticCode(); }
    const std::string& GetErrorCodeAsString() const { return GetDiagnosticCodeAsString(); }

private:
    friend class TfDiagnosticMgr;
    using TfDiagnosticBase::TfDiagnosticBase;
};

PXR_NAMESPACE_CLOSE_SCOPE
