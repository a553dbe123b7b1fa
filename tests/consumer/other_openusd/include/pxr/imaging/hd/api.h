#ifndef PXR_IMAGING_HD_API_H
#define PXR_IMAGING_HD_API_H
#include "pxr/base/arch/export.h"
#define HD_API ARCH_EXPORT
#endif
