#ifndef PXR_PXR_H
#define PXR_PXR_H
#define PXR_VERSION 2308
#endif
