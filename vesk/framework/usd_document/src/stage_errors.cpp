#include "stage_errors.h"

#include <pxr/base/tf/error.h>

PXR_NAMESPACE_USING_DIRECTIVE

namespace vesk::framework::usd_document {

std::string onOneLine(const std::string& text)
{
    std::string line;
    bool space = false;
    for (const char c : text) {
        if (c == '\n' || c == '\r' || c == '\t' || c == ' ') {
            space = !line.empty();
            continue;
        }
        if (space) line += ' ';
        space = false;
        line += c;
    }
    return line;
}

std::vector<std::string> takeStageErrors(TfErrorMark& mark)
{
    std::vector<std::string> errors;
    for (const TfError& error : mark)
        errors.push_back(onOneLine(error.GetCommentary()));
    mark.Clear();
    return errors;
}

std::vector<std::string> collectStageErrors(const std::function<void()>& call)
{
    TfErrorMark mark;
    call();
    return takeStageErrors(mark);
}

} // namespace vesk::framework::usd_document
