#pragma once

/// Where diagnostics go.

#include <pxr/base/tf/callContext.h>
#include <pxr/base/tf/diagnostic.h>
#include <pxr/base/tf/diagnosticBase.h>
#include <pxr/base/tf/error.h>
#include <pxr/base/tf/nullPtr.h>
#include <pxr/base/tf/refBase.h>
#include <pxr/base/tf/refPtr.h>
#include <pxr/base/tf/registryManager.h>
#include <pxr/base/tf/status.h>
#include <pxr/base/tf/stringUtils.h>
#include <pxr/base/tf/warning.h>
#include <pxr/base/tf/weakBase.h>
#include <pxr/base/tf/weakPtr.h>
#include <pxr/export.h>
#include <pxr/pxr.h>

#include <list>
#include <string>

PXR_NAMESPACE_OPEN_SCOPE

class TfErrorMark;

/// Takes all diagnostics. Errors posted while an error mark exists on the thread wait there; all others, and
/// warnings and status messages always, go to the delegates at once, or to stderr when there are none.
/// Thread: any; error lists are the threads' own.
class TfDiagnosticMgr
{
public:
    typedef TfDiagnosticMgr This;
    typedef std::list<TfError> ErrorList;
    typedef ErrorList::iterator ErrorIterator;

    /// Receives diagnostics on the thread that posts them; what it posts itself while it is called is dropped
    /// from delivery.
    class Delegate
    {
    public:
        VESK_USD_API virtual ~Delegate() = 0;
        virtual void IssueError(TfError const& error) = 0;
        /// The process ends when it returns.
        virtual void IssueFatalError(TfCallContext const& context, std::string const& message) = 0;
        virtual void IssueStatus(TfStatus const& status) = 0;
        virtual void IssueWarning(TfWarning const& warning) = 0;

    protected:
        /// Ends the process.
        [[noreturn]] VESK_USD_API void _UnhandledAbort() const;
    };

    VESK_USD_API static This& GetInstance();

    /// Returns the name of a code, as in "Coding Error".
    VESK_USD_API static std::string GetCodeName(const TfEnum& code);
    /// Returns the line that goes to stderr.
    VESK_USD_API static std::string FormatDiagnostic(const TfEnum& code, const TfCallContext& context,
                                                     const std::string& message,
                                                     const TfDiagnosticInfo& info);

    VESK_USD_API void AddDelegate(Delegate* delegate);
    /// Removes the delegate; when it returns, no thread is in it or will enter it. Not from inside a
    /// delegate.
    VESK_USD_API void RemoveDelegate(Delegate* delegate);
    /// Turns stderr off for what no delegate takes.
    VESK_USD_API void SetQuiet(bool quiet);

    /// \name The errors of the calling thread that wait at its marks
    /// @{
    VESK_USD_API ErrorIterator GetErrorBegin();
    VESK_USD_API ErrorIterator GetErrorEnd();
    VESK_USD_API ErrorIterator EraseError(ErrorIterator i);
    VESK_USD_API ErrorIterator EraseRange(ErrorIterator first, ErrorIterator last);
    VESK_USD_API void AppendError(TfError const& error);
    VESK_USD_API bool HasActiveErrorMark();
    /// @}

    VESK_USD_API void PostError(TfEnum code, const char* codeString, TfCallContext const& context,
                                const std::string& commentary, TfDiagnosticInfo info, bool quiet);
    VESK_USD_API void PostError(const TfDiagnosticBase& diagnostic);
    VESK_USD_API void PostWarning(TfEnum code, const char* codeString, TfCallContext const& context,
                                  std::string const& commentary, TfDiagnosticInfo info, bool quiet) const;
    VESK_USD_API void PostWarning(const TfDiagnosticBase& diagnostic) const;
    VESK_USD_API void PostStatus(TfEnum code, const char* codeString, TfCallContext const& context,
                                 std::string const& commentary, TfDiagnosticInfo info, bool quiet) const;
    VESK_USD_API void PostStatus(const TfDiagnosticBase& diagnostic) const;
    [[noreturn]] VESK_USD_API void PostFatal(TfCallContext const& context, TfEnum code,
                                             std::string const& message) const;

    TfDiagnosticMgr(const TfDiagnosticMgr&) = delete;
    TfDiagnosticMgr& operator=(const TfDiagnosticMgr&) = delete;

private:
    friend class TfErrorMark;

    TfDiagnosticMgr() = default;
    static size_t _NextSerial();
    static size_t _CurrentSerial();
    /// Returns the first error of this thread that was posted since the mark.
    ErrorIterator _GetErrorMarkBegin(size_t mark, size_t* count);
    void _CreateErrorMark();
    void _DestroyErrorMark(size_t mark);
    void _ReportError(TfError const& error) const;
};

PXR_NAMESPACE_CLOSE_SCOPE
