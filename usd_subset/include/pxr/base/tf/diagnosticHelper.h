#pragma once

/// The functions behind the macros of diagnostic.h.

#include <pxr/base/tf/diagnosticBase.h>
#include <pxr/export.h>
#include <pxr/pxr.h>

#include <string>

PXR_NAMESPACE_OPEN_SCOPE

#define TF_PRINTF(text, first) __attribute__((format(printf, text, first)))

VESK_USD_API void Tf_PostErrorHelper(const TfCallContext& context, const TfEnum& code,
                                     const std::string& message);
VESK_USD_API void Tf_PostErrorHelper(const TfCallContext& context, const TfEnum& code, const char* format,
                                     ...) TF_PRINTF(3, 4);
VESK_USD_API void Tf_PostErrorHelper(const TfCallContext& context, const TfDiagnosticInfo& info,
                                     const TfEnum& code, const std::string& message);
VESK_USD_API void Tf_PostErrorHelper(const TfCallContext& context, const TfDiagnosticInfo& info,
                                     const TfEnum& code, const char* format, ...) TF_PRINTF(4, 5);
VESK_USD_API void Tf_PostErrorHelper(const TfCallContext& context, TfDiagnosticType code,
                                     const std::string& message);
VESK_USD_API void Tf_PostErrorHelper(const TfCallContext& context, TfDiagnosticType code, const char* format,
                                     ...) TF_PRINTF(3, 4);

VESK_USD_API void Tf_PostQuietlyErrorHelper(const TfCallContext& context, const TfEnum& code,
                                            const std::string& message);
VESK_USD_API void Tf_PostQuietlyErrorHelper(const TfCallContext& context, const TfEnum& code,
                                            const char* format, ...) TF_PRINTF(3, 4);

VESK_USD_API void Tf_PostWarningHelper(const TfCallContext& context, const std::string& message);
VESK_USD_API void Tf_PostWarningHelper(const TfCallContext& context, const char* format, ...) TF_PRINTF(2, 3);
VESK_USD_API void Tf_PostWarningHelper(const TfCallContext& context, const TfEnum& code,
                                       const std::string& message);
VESK_USD_API void Tf_PostWarningHelper(const TfCallContext& context, const TfEnum& code, const char* format,
                                       ...) TF_PRINTF(3, 4);
VESK_USD_API void Tf_PostWarningHelper(const TfCallContext& context, const TfDiagnosticInfo& info,
                                       const TfEnum& code, const std::string& message);

VESK_USD_API void Tf_PostStatusHelper(const TfCallContext& context, const std::string& message);
VESK_USD_API void Tf_PostStatusHelper(const TfCallContext& context, const char* format, ...) TF_PRINTF(2, 3);
VESK_USD_API void Tf_PostStatusHelper(const TfCallContext& context, const TfEnum& code,
                                      const std::string& message);
VESK_USD_API void Tf_PostStatusHelper(const TfCallContext& context, const TfEnum& code, const char* format,
                                      ...) TF_PRINTF(3, 4);

/// Posts the coding error of a failed TF_VERIFY; returns false.
VESK_USD_API bool Tf_FailedVerify(const TfCallContext& context, const char* condition,
                                  const std::string& message);
inline std::string Tf_VerifyMessage() { return std::string(); }
inline std::string Tf_VerifyMessage(const std::string& message) { return message; }
VESK_USD_API std::string Tf_VerifyMessage(const char* format, ...) TF_PRINTF(1, 2);

VESK_USD_API std::string Tf_PrettierFunctionName(const char* function, const char* prettyFunction);

PXR_NAMESPACE_CLOSE_SCOPE
