#include <pxr/base/tf/diagnosticHelper.h>

#include "pxr/base/tf/demangle.h"

#include <pxr/base/tf/diagnosticMgr.h>
#include <pxr/base/tf/stringUtils.h>

#include <cstdarg>

// Formats the arguments behind `format` into a std::string named `message`.
#define TF_FORMAT_MESSAGE                                                                                    \
    va_list arguments;                                                                                       \
    va_start(arguments, format);                                                                             \
    const std::string message = TfVStringPrintf(format, arguments);                                          \
    va_end(arguments)

PXR_NAMESPACE_OPEN_SCOPE

namespace {

void PostError(const TfCallContext& context, const TfDiagnosticInfo& info, const TfEnum& code,
               const std::string& message, bool quiet)
{
    const std::string name = TfEnum::GetName(code);
    TfDiagnosticMgr::GetInstance().PostError(code, name.c_str(), context, message, info, quiet);
}

void PostWarning(const TfCallContext& context, const TfDiagnosticInfo& info, const TfEnum& code,
                 const std::string& message)
{
    const std::string name = TfEnum::GetName(code);
    TfDiagnosticMgr::GetInstance().PostWarning(code, name.c_str(), context, message, info, false);
}

void PostStatus(const TfCallContext& context, const TfEnum& code, const std::string& message)
{
    const std::string name = TfEnum::GetName(code);
    TfDiagnosticMgr::GetInstance().PostStatus(code, name.c_str(), context, message, TfDiagnosticInfo(),
                                              false);
}

} // namespace

void Tf_PostErrorHelper(const TfCallContext& context, const TfEnum& code, const std::string& message)
{
    PostError(context, TfDiagnosticInfo(), code, message, false);
}

void Tf_PostErrorHelper(const TfCallContext& context, const TfEnum& code, const char* format, ...)
{
    TF_FORMAT_MESSAGE;
    PostError(context, TfDiagnosticInfo(), code, message, false);
}

void Tf_PostErrorHelper(const TfCallContext& context, const TfDiagnosticInfo& info, const TfEnum& code,
                        const std::string& message)
{
    PostError(context, info, code, message, false);
}

void Tf_PostErrorHelper(const TfCallContext& context, const TfDiagnosticInfo& info, const TfEnum& code,
                        const char* format, ...)
{
    TF_FORMAT_MESSAGE;
    PostError(context, info, code, message, false);
}

void Tf_PostErrorHelper(const TfCallContext& context, TfDiagnosticType code, const std::string& message)
{
    PostError(context, TfDiagnosticInfo(), code, message, false);
}

void Tf_PostErrorHelper(const TfCallContext& context, TfDiagnosticType code, const char* format, ...)
{
    TF_FORMAT_MESSAGE;
    PostError(context, TfDiagnosticInfo(), code, message, false);
}

void Tf_PostQuietlyErrorHelper(const TfCallContext& context, const TfEnum& code, const std::string& message)
{
    PostError(context, TfDiagnosticInfo(), code, message, true);
}

void Tf_PostQuietlyErrorHelper(const TfCallContext& context, const TfEnum& code, const char* format, ...)
{
    TF_FORMAT_MESSAGE;
    PostError(context, TfDiagnosticInfo(), code, message, true);
}

void Tf_PostWarningHelper(const TfCallContext& context, const std::string& message)
{
    PostWarning(context, TfDiagnosticInfo(), TF_DIAGNOSTIC_WARNING_TYPE, message);
}

void Tf_PostWarningHelper(const TfCallContext& context, const char* format, ...)
{
    TF_FORMAT_MESSAGE;
    PostWarning(context, TfDiagnosticInfo(), TF_DIAGNOSTIC_WARNING_TYPE, message);
}

void Tf_PostWarningHelper(const TfCallContext& context, const TfEnum& code, const std::string& message)
{
    PostWarning(context, TfDiagnosticInfo(), code, message);
}

void Tf_PostWarningHelper(const TfCallContext& context, const TfEnum& code, const char* format, ...)
{
    TF_FORMAT_MESSAGE;
    PostWarning(context, TfDiagnosticInfo(), code, message);
}

void Tf_PostWarningHelper(const TfCallContext& context, const TfDiagnosticInfo& info, const TfEnum& code,
                          const std::string& message)
{
    PostWarning(context, info, code, message);
}

void Tf_PostStatusHelper(const TfCallContext& context, const std::string& message)
{
    PostStatus(context, TF_DIAGNOSTIC_STATUS_TYPE, message);
}

void Tf_PostStatusHelper(const TfCallContext& context, const char* format, ...)
{
    TF_FORMAT_MESSAGE;
    PostStatus(context, TF_DIAGNOSTIC_STATUS_TYPE, message);
}

void Tf_PostStatusHelper(const TfCallContext& context, const TfEnum& code, const std::string& message)
{
    PostStatus(context, code, message);
}

void Tf_PostStatusHelper(const TfCallContext& context, const TfEnum& code, const char* format, ...)
{
    TF_FORMAT_MESSAGE;
    PostStatus(context, code, message);
}

bool Tf_FailedVerify(const TfCallContext& context, const char* condition, const std::string& message)
{
    std::string text = TfStringPrintf("Failed verification: ' %s '", condition);
    if (!message.empty()) {
        text += " -- " + message;
    }
    PostError(context, TfDiagnosticInfo(), TF_DIAGNOSTIC_CODING_ERROR_TYPE, text, false);
    return false;
}

std::string Tf_VerifyMessage(const char* format, ...)
{
    TF_FORMAT_MESSAGE;
    return message;
}

void Tf_IssueFatalError(TfCallContext const& context, TfDiagnosticType type, std::string const& message)
{
    TfDiagnosticMgr::GetInstance().PostFatal(context, type, message);
}

void Tf_IssueFatalErrorf(TfCallContext const& context, TfDiagnosticType type, char const* format, ...)
{
    TF_FORMAT_MESSAGE;
    Tf_IssueFatalError(context, type, message);
}

void Tf_FailedAxiom(TfCallContext const& context, char const* condition)
{
    Tf_IssueFatalError(context, TF_DIAGNOSTIC_FATAL_ERROR_TYPE,
                       TfStringPrintf("Failed axiom: ' %s '", condition));
}

void Tf_PostNullSmartPtrDereferenceFatalError(TfCallContext const& context, char const* pointerType)
{
    Tf_IssueFatalError(context, TF_DIAGNOSTIC_FATAL_ERROR_TYPE,
                       "attempted member lookup on NULL " + Tf_Demangle(pointerType));
}

PXR_NAMESPACE_CLOSE_SCOPE
