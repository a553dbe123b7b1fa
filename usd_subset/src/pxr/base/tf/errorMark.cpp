#include <pxr/base/tf/errorMark.h>

PXR_NAMESPACE_OPEN_SCOPE

TfErrorMark::TfErrorMark() : _mark(TfDiagnosticMgr::_CurrentSerial())
{
    TfDiagnosticMgr::GetInstance()._CreateErrorMark();
}

TfErrorMark::~TfErrorMark() { TfDiagnosticMgr::GetInstance()._DestroyErrorMark(_mark); }

void TfErrorMark::SetMark() { _mark = TfDiagnosticMgr::_CurrentSerial(); }

bool TfErrorMark::IsClean() const { return GetBegin() == GetEnd(); }

bool TfErrorMark::Clear() const
{
    const Iterator first = GetBegin();
    const Iterator last = GetEnd();
    const bool any = first != last;
    TfDiagnosticMgr::GetInstance().EraseRange(first, last);
    return any;
}

TfErrorMark::Iterator TfErrorMark::GetBegin(size_t* count) const
{
    return TfDiagnosticMgr::GetInstance()._GetErrorMarkBegin(_mark, count);
}

TfErrorMark::Iterator TfErrorMark::GetEnd() const { return TfDiagnosticMgr::GetInstance().GetErrorEnd(); }

PXR_NAMESPACE_CLOSE_SCOPE
