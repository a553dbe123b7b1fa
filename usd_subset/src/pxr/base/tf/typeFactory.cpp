// Factories derive from this class in other libraries, hence its vtable and type information leave this one.
#pragma GCC visibility push(default)
#include <pxr/base/tf/type.h>
#pragma GCC visibility pop

PXR_NAMESPACE_OPEN_SCOPE

TfType::FactoryBase::~FactoryBase() = default;

PXR_NAMESPACE_CLOSE_SCOPE
