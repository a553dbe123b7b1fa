#pragma once

/// Catching errors.

#include <pxr/base/tf/diagnosticMgr.h>
#include <pxr/export.h>
#include <pxr/pxr.h>

PXR_NAMESPACE_OPEN_SCOPE

/// Keeps the errors that its thread posts from being reported, so that they can be looked at and cleared.
/// Those that are left when a thread's last mark ends are reported then. Thread: the one that made it.
class TfErrorMark
{
public:
    typedef TfDiagnosticMgr::ErrorIterator Iterator;

    VESK_USD_API TfErrorMark();
    VESK_USD_API ~TfErrorMark();
    TfErrorMark(const TfErrorMark&) = delete;
    TfErrorMark& operator=(const TfErrorMark&) = delete;

    /// Forgets what was posted so far.
    VESK_USD_API void SetMark();
    /// Returns whether nothing was posted since the mark.
    VESK_USD_API bool IsClean() const;
    /// Removes what was posted since the mark; returns whether there was anything.
    VESK_USD_API bool Clear() const;
    /// Returns the first error since the mark, and on demand how many there are.
    VESK_USD_API Iterator GetBegin(size_t* count = nullptr) const;
    VESK_USD_API Iterator GetEnd() const;
    Iterator begin() const { return GetBegin(); }
    Iterator end() const { return GetEnd(); }

private:
    size_t _mark;
};

/// Sets the mark, evaluates the expression, and says whether it posted errors.
#define TF_HAS_ERRORS(marker, expr) (marker.SetMark(), (expr), !marker.IsClean())

PXR_NAMESPACE_CLOSE_SCOPE
