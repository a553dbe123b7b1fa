#include <pxr/base/tf/diagnosticBase.h>
#include <pxr/base/tf/diagnosticHelper.h>

PXR_NAMESPACE_OPEN_SCOPE

TfDiagnosticBase::TfDiagnosticBase(TfEnum code, char const* codeString, TfCallContext const& context,
                                   const std::string& commentary, TfDiagnosticInfo info, bool quiet)
    : _context(context),
      _commentary(commentary),
      _code(code),
      _codeString(codeString ? codeString : ""),
      _info(std::move(info)),
      _quiet(quiet)
{}

std::string TfDiagnosticBase::GetSourceFunction() const
{
    return Tf_PrettierFunctionName(_context.GetFunction(), _context.GetPrettyFunction());
}

void TfDiagnosticBase::AugmentCommentary(const std::string& text)
{
    if (!_commentary.empty()) {
        _commentary += "\n";
    }
    _commentary += text;
}

PXR_NAMESPACE_CLOSE_SCOPE
