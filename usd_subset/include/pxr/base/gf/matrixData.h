#pragma once

/// Storage of the matrix classes.

#include <pxr/pxr.h>

PXR_NAMESPACE_OPEN_SCOPE

/// Rows x Columns values, row after row.
template <class T, int Rows, int Columns>
class GfMatrixData
{
public:
    T* operator[](int row) { return _data + (row * Columns); }
    T const* operator[](int row) const { return _data + (row * Columns); }
    T* GetData() { return _data; }
    T const* GetData() const { return _data; }

private:
    T _data[Rows * Columns];
};

PXR_NAMESPACE_CLOSE_SCOPE
