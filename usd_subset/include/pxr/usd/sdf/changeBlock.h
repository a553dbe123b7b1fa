#pragma once

/// Holds change notices back.

#include <pxr/pxr.h>
#include <pxr/usd/sdf/api.h>

PXR_NAMESPACE_OPEN_SCOPE

/// While a block is open, this thread's layer edits are gathered; closing the outermost one sends them at
/// once.
class SdfChangeBlock
{
public:
    SDF_API SdfChangeBlock();
    ~SdfChangeBlock()
    {
        if (_key) {
            _CloseChangeBlock(_key);
        }
    }
    SdfChangeBlock(const SdfChangeBlock&) = delete;
    SdfChangeBlock& operator=(const SdfChangeBlock&) = delete;

private:
    SDF_API void _CloseChangeBlock(void const* key) const;

    void const* _key;
};

PXR_NAMESPACE_CLOSE_SCOPE
