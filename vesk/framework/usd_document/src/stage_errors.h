#pragma once

#include <functional>
#include <string>
#include <vector>

#include <pxr/base/tf/errorMark.h>
#include <pxr/pxr.h>

namespace vesk::framework::usd_document {

/// Takes what OpenUSD posted as errors on this thread since the mark was set, each as one line of text.
std::vector<std::string> takeStageErrors(PXR_NS::TfErrorMark& mark);

/// Runs the call and takes what OpenUSD posted as errors on this thread meanwhile, each as one line of text.
/// Nothing of it stays behind.
std::vector<std::string> collectStageErrors(const std::function<void()>& call);

/// The text on one line: line breaks and what surrounds them become one space.
std::string onOneLine(const std::string& text);

} // namespace vesk::framework::usd_document
