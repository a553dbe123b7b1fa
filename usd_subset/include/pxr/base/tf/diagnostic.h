#pragma once

/// Posting errors, warnings and status messages. Each macro takes a printf format and its arguments, or one
/// std::string.

#include <pxr/base/tf/callContext.h>
#include <pxr/base/tf/diagnosticHelper.h>
#include <pxr/base/tf/diagnosticLite.h>
#include <pxr/pxr.h>

/// Posts an error with a code, an enumerator: TF_ERROR(MY_CODE, "format", ...).
#define TF_ERROR(...) PXR_NS::Tf_PostErrorHelper(TF_CALL_CONTEXT, __VA_ARGS__)
#define TF_QUIET_ERROR(...) PXR_NS::Tf_PostQuietlyErrorHelper(TF_CALL_CONTEXT, __VA_ARGS__)

/// Posts an error of the calling program.
#define TF_CODING_ERROR(...)                                                                                 \
    PXR_NS::Tf_PostErrorHelper(TF_CALL_CONTEXT, PXR_NS::TF_DIAGNOSTIC_CODING_ERROR_TYPE, __VA_ARGS__)
/// Posts an error of the data or of the machine.
#define TF_RUNTIME_ERROR(...)                                                                                \
    PXR_NS::Tf_PostErrorHelper(TF_CALL_CONTEXT, PXR_NS::TF_DIAGNOSTIC_RUNTIME_ERROR_TYPE, __VA_ARGS__)

#define TF_WARN(...) PXR_NS::Tf_PostWarningHelper(TF_CALL_CONTEXT, __VA_ARGS__)
#define TF_CODING_WARNING(...)                                                                               \
    PXR_NS::Tf_PostWarningHelper(TF_CALL_CONTEXT, PXR_NS::TF_DIAGNOSTIC_CODING_ERROR_TYPE, __VA_ARGS__)
#define TF_STATUS(...) PXR_NS::Tf_PostStatusHelper(TF_CALL_CONTEXT, __VA_ARGS__)

/// Evaluates to whether the condition holds; posts a coding error, with an optional format, when not.
#define TF_VERIFY(cond, ...)                                                                                 \
    (static_cast<bool>(cond)                                                                                 \
         ? true                                                                                              \
         : PXR_NS::Tf_FailedVerify(TF_CALL_CONTEXT, #cond, PXR_NS::Tf_VerifyMessage(__VA_ARGS__)))

/// Returns the name of the calling function with its class.
#define TF_FUNC_NAME() PXR_NS::Tf_PrettierFunctionName(__func__, __PRETTY_FUNCTION__)
