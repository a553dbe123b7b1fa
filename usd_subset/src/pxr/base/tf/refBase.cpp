#include <pxr/base/tf/refBase.h>

PXR_NAMESPACE_OPEN_SCOPE

TfRefBase::~TfRefBase() = default;
TfSimpleRefBase::~TfSimpleRefBase() = default;

PXR_NAMESPACE_CLOSE_SCOPE
