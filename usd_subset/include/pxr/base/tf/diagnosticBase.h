#pragma once

/// What errors, warnings and status messages have in common.

#include <pxr/base/tf/callContext.h>
#include <pxr/base/tf/diagnosticLite.h>
#include <pxr/base/tf/enum.h>
#include <pxr/export.h>
#include <pxr/pxr.h>

#include <any>
#include <string>

PXR_NAMESPACE_OPEN_SCOPE

typedef std::any TfDiagnosticInfo;

class TfDiagnosticMgr;

/// A message with its code, its source position, and anything that the poster attached.
class TfDiagnosticBase
{
public:
    VESK_USD_API TfDiagnosticBase(TfEnum code, char const* codeString, TfCallContext const& context,
                                  const std::string& commentary, TfDiagnosticInfo info, bool quiet);

    const TfCallContext& GetContext() const { return _context; }
    std::string GetSourceFileName() const { return _context.GetFile() ? _context.GetFile() : ""; }
    size_t GetSourceLineNumber() const { return _context.GetLine(); }
    VESK_USD_API std::string GetSourceFunction() const;
    std::string const& GetCommentary() const { return _commentary; }
    /// Adds a line to the message.
    VESK_USD_API void AugmentCommentary(const std::string& text);
    TfEnum GetDiagnosticCode() const { return _code; }
    const std::string& GetDiagnosticCodeAsString() const { return _codeString; }
    template <typename T>
    const T* GetInfo() const
    {
        return std::any_cast<T>(&_info);
    }
    void SetInfo(TfDiagnosticInfo info) { _info = std::move(info); }
    bool GetQuiet() const { return _quiet; }
    bool IsFatal() const
    {
        return _code == TF_DIAGNOSTIC_FATAL_ERROR_TYPE || _code == TF_DIAGNOSTIC_FATAL_CODING_ERROR_TYPE;
    }
    bool IsCodingError() const
    {
        return _code == TF_DIAGNOSTIC_CODING_ERROR_TYPE || _code == TF_DIAGNOSTIC_FATAL_CODING_ERROR_TYPE;
    }

private:
    friend class TfDiagnosticMgr;

    TfCallContext _context;
    std::string _commentary;
    TfEnum _code;
    std::string _codeString;
    TfDiagnosticInfo _info;
    size_t _serial = 0;
    bool _quiet = false;
};

PXR_NAMESPACE_CLOSE_SCOPE
