#pragma once

/// The kinds of diagnostics, fatal errors and axioms: what low-level headers need.

#include <pxr/base/tf/callContext.h>
#include <pxr/export.h>
#include <pxr/pxr.h>

#include <string>

PXR_NAMESPACE_OPEN_SCOPE

enum TfDiagnosticType : int
{
    TF_DIAGNOSTIC_INVALID_TYPE = 0,
    TF_DIAGNOSTIC_CODING_ERROR_TYPE,
    TF_DIAGNOSTIC_FATAL_CODING_ERROR_TYPE,
    TF_DIAGNOSTIC_RUNTIME_ERROR_TYPE,
    TF_DIAGNOSTIC_FATAL_ERROR_TYPE,
    TF_DIAGNOSTIC_NONFATAL_ERROR_TYPE,
    TF_DIAGNOSTIC_WARNING_TYPE,
    TF_DIAGNOSTIC_STATUS_TYPE,
    TF_APPLICATION_EXIT_TYPE,
};

/// Reports the message as a fatal error to the delegates (else to stderr) and aborts the process.
[[noreturn]] VESK_USD_API void Tf_IssueFatalError(TfCallContext const& context, TfDiagnosticType type,
                                                  std::string const& message);
[[noreturn]] VESK_USD_API void Tf_IssueFatalErrorf(TfCallContext const& context, TfDiagnosticType type,
                                                   char const* format, ...)
    __attribute__((format(printf, 3, 4)));
[[noreturn]] inline void Tf_IssueFatalErrorf(TfCallContext const& context, TfDiagnosticType type,
                                             std::string const& message)
{
    Tf_IssueFatalError(context, type, message);
}

[[noreturn]] VESK_USD_API void Tf_FailedAxiom(TfCallContext const& context, char const* condition);
[[noreturn]] VESK_USD_API void Tf_PostNullSmartPtrDereferenceFatalError(TfCallContext const& context,
                                                                        char const* pointerType);

#define TF_FATAL_ERROR(...)                                                                                  \
    PXR_NS::Tf_IssueFatalErrorf(TF_CALL_CONTEXT, PXR_NS::TF_DIAGNOSTIC_FATAL_ERROR_TYPE, __VA_ARGS__)
#define TF_FATAL_CODING_ERROR(...)                                                                           \
    PXR_NS::Tf_IssueFatalErrorf(TF_CALL_CONTEXT, PXR_NS::TF_DIAGNOSTIC_CODING_ERROR_TYPE, __VA_ARGS__)

/// Ends the process with a report unless the condition holds.
#define TF_AXIOM(cond)                                                                                       \
    (static_cast<bool>(cond) ? true : (PXR_NS::Tf_FailedAxiom(TF_CALL_CONTEXT, #cond), false))
#ifdef NDEBUG
#define TF_DEV_AXIOM(cond) (true)
#else
#define TF_DEV_AXIOM(cond) TF_AXIOM(cond)
#endif

#define TF_UNUSED(x) (void)x

PXR_NAMESPACE_CLOSE_SCOPE
