#include <pxr/base/tf/diagnosticMgr.h>
#include <pxr/base/tf/registryManager.h>
#include <pxr/base/tf/stringUtils.h>

#include <algorithm>
#include <atomic>
#include <cstdio>
#include <cstdlib>
#include <iterator>
#include <mutex>
#include <shared_mutex>
#include <thread>
#include <vector>

#include <errno.h>

PXR_NAMESPACE_OPEN_SCOPE

namespace {

struct Shared
{
    std::shared_mutex mutex;
    std::vector<TfDiagnosticMgr::Delegate*> delegates;
    std::atomic<bool> quiet{false};
    std::atomic<size_t> nextSerial{0};
    const std::thread::id mainThread = std::this_thread::get_id();

    static Shared& Get()
    {
        static Shared* const shared = new Shared;
        return *shared;
    }
};

struct PerThread
{
    TfDiagnosticMgr::ErrorList errors;
    size_t marks = 0;
    bool delivering = false;
};

PerThread& Mine()
{
    thread_local PerThread mine;
    return mine;
}

/// Marks the thread as inside delivery; what it posts meanwhile is not delivered.
class DeliveryScope
{
public:
    DeliveryScope() : m_entered(!Mine().delivering) { Mine().delivering = true; }
    ~DeliveryScope()
    {
        if (m_entered) {
            Mine().delivering = false;
        }
    }
    bool entered() const { return m_entered; }

private:
    const bool m_entered;
};

/// Calls each delegate; returns whether there is any.
template <class Fn>
bool Deliver(Fn const& issue)
{
    Shared& shared = Shared::Get();
    const std::shared_lock<std::shared_mutex> lock(shared.mutex);
    for (TfDiagnosticMgr::Delegate* delegate : shared.delegates) {
        issue(*delegate);
    }
    return !shared.delegates.empty();
}

void Print(TfDiagnosticBase const& diagnostic)
{
    if (diagnostic.GetQuiet() || Shared::Get().quiet.load(std::memory_order_relaxed)) {
        return;
    }
    const std::string text =
        TfDiagnosticMgr::FormatDiagnostic(diagnostic.GetDiagnosticCode(), diagnostic.GetContext(),
                                          diagnostic.GetCommentary(), TfDiagnosticInfo());
    std::fputs(text.c_str(), stderr);
}

// Forces the main thread's id to be taken while the main thread loads the library.
const bool s_mainThreadKnown = (Shared::Get(), true);

} // namespace

TF_REGISTRY_FUNCTION(TfEnum)
{
    TF_ADD_ENUM_NAME(TF_DIAGNOSTIC_CODING_ERROR_TYPE, "Coding Error");
    TF_ADD_ENUM_NAME(TF_DIAGNOSTIC_FATAL_CODING_ERROR_TYPE, "Fatal Coding Error");
    TF_ADD_ENUM_NAME(TF_DIAGNOSTIC_RUNTIME_ERROR_TYPE, "Runtime Error");
    TF_ADD_ENUM_NAME(TF_DIAGNOSTIC_FATAL_ERROR_TYPE, "Fatal Error");
    TF_ADD_ENUM_NAME(TF_DIAGNOSTIC_NONFATAL_ERROR_TYPE, "Error");
    TF_ADD_ENUM_NAME(TF_DIAGNOSTIC_WARNING_TYPE, "Warning");
    TF_ADD_ENUM_NAME(TF_DIAGNOSTIC_STATUS_TYPE, "Status");
    TF_ADD_ENUM_NAME(TF_APPLICATION_EXIT_TYPE, "Application Exit");
}

TfDiagnosticMgr::Delegate::~Delegate() = default;

void TfDiagnosticMgr::Delegate::_UnhandledAbort() const { std::abort(); }

TfDiagnosticMgr& TfDiagnosticMgr::GetInstance()
{
    static TfDiagnosticMgr* const manager = new TfDiagnosticMgr;
    return *manager;
}

std::string TfDiagnosticMgr::GetCodeName(const TfEnum& code)
{
    std::string name = TfEnum::GetDisplayName(code);
    return !name.empty() ? name : TfStringPrintf("(%s)%d", code.GetType().name(), code.GetValueAsInt());
}

std::string TfDiagnosticMgr::FormatDiagnostic(const TfEnum& code, const TfCallContext& context,
                                              const std::string& message, const TfDiagnosticInfo&)
{
    const std::string name = GetCodeName(code);
    const char* where = std::this_thread::get_id() == Shared::Get().mainThread ? "" : " (secondary thread)";
    if (context.IsHidden() || !context) {
        return TfStringPrintf("%s%s: %s [%s]\n", name.c_str(), where, message.c_str(),
                              program_invocation_short_name);
    }
    return TfStringPrintf("%s%s: in %s at line %zu of %s -- %s\n", name.c_str(), where, context.GetFunction(),
                          context.GetLine(), context.GetFile(), message.c_str());
}

void TfDiagnosticMgr::AddDelegate(Delegate* delegate)
{
    if (delegate) {
        Shared& shared = Shared::Get();
        const std::unique_lock<std::shared_mutex> lock(shared.mutex);
        shared.delegates.push_back(delegate);
    }
}

void TfDiagnosticMgr::RemoveDelegate(Delegate* delegate)
{
    Shared& shared = Shared::Get();
    const std::unique_lock<std::shared_mutex> lock(shared.mutex);
    auto& all = shared.delegates;
    all.erase(std::remove(all.begin(), all.end(), delegate), all.end());
}

void TfDiagnosticMgr::SetQuiet(bool quiet) { Shared::Get().quiet.store(quiet, std::memory_order_relaxed); }

TfDiagnosticMgr::ErrorIterator TfDiagnosticMgr::GetErrorBegin() { return Mine().errors.begin(); }
TfDiagnosticMgr::ErrorIterator TfDiagnosticMgr::GetErrorEnd() { return Mine().errors.end(); }
bool TfDiagnosticMgr::HasActiveErrorMark() { return Mine().marks > 0; }

TfDiagnosticMgr::ErrorIterator TfDiagnosticMgr::EraseError(ErrorIterator i)
{
    return i == GetErrorEnd() ? i : Mine().errors.erase(i);
}

TfDiagnosticMgr::ErrorIterator TfDiagnosticMgr::EraseRange(ErrorIterator first, ErrorIterator last)
{
    return Mine().errors.erase(first, last);
}

void TfDiagnosticMgr::AppendError(TfError const& error)
{
    if (!HasActiveErrorMark()) {
        _ReportError(error);
    } else {
        Mine().errors.push_back(error);
        Mine().errors.back()._serial = _NextSerial();
    }
}

void TfDiagnosticMgr::PostError(TfEnum code, const char* codeString, TfCallContext const& context,
                                const std::string& commentary, TfDiagnosticInfo info, bool quiet)
{
    AppendError(TfError(code, codeString, context, commentary, std::move(info), quiet));
}

void TfDiagnosticMgr::PostError(const TfDiagnosticBase& d)
{
    PostError(d._code, d._codeString.c_str(), d._context, d._commentary, d._info, d._quiet);
}

void TfDiagnosticMgr::_ReportError(TfError const& error) const
{
    const DeliveryScope scope;
    if (scope.entered() && !Deliver([&](Delegate& delegate) { delegate.IssueError(error); })) {
        Print(error);
    }
}

void TfDiagnosticMgr::PostWarning(TfEnum code, const char* codeString, TfCallContext const& context,
                                  std::string const& commentary, TfDiagnosticInfo info, bool quiet) const
{
    const DeliveryScope scope;
    if (!scope.entered()) {
        return;
    }
    const TfWarning warning(code, codeString, context, commentary, std::move(info), quiet);
    if (!Deliver([&](Delegate& delegate) { delegate.IssueWarning(warning); })) {
        Print(warning);
    }
}

void TfDiagnosticMgr::PostWarning(const TfDiagnosticBase& d) const
{
    PostWarning(d._code, d._codeString.c_str(), d._context, d._commentary, d._info, d._quiet);
}

void TfDiagnosticMgr::PostStatus(TfEnum code, const char* codeString, TfCallContext const& context,
                                 std::string const& commentary, TfDiagnosticInfo info, bool quiet) const
{
    const DeliveryScope scope;
    if (!scope.entered()) {
        return;
    }
    const TfStatus status(code, codeString, context, commentary, std::move(info), quiet);
    if (!Deliver([&](Delegate& delegate) { delegate.IssueStatus(status); })) {
        Print(status);
    }
}

void TfDiagnosticMgr::PostStatus(const TfDiagnosticBase& d) const
{
    PostStatus(d._code, d._codeString.c_str(), d._context, d._commentary, d._info, d._quiet);
}

void TfDiagnosticMgr::PostFatal(TfCallContext const& context, TfEnum code, std::string const& message) const
{
    {
        const DeliveryScope scope;
        if (scope.entered()) {
            Deliver([&](Delegate& delegate) { delegate.IssueFatalError(context, message); });
        }
    }
    const char* kind = code == TF_DIAGNOSTIC_CODING_ERROR_TYPE ? "Fatal coding error" : "Fatal error";
    std::fprintf(stderr, "%s: %s [%s], in %s(), %s:%zu\n", kind, message.c_str(),
                 program_invocation_short_name, context.GetFunction() ? context.GetFunction() : "",
                 context.GetFile() ? context.GetFile() : "", context.GetLine());
    if (code == TF_DIAGNOSTIC_RUNTIME_ERROR_TYPE) {
        std::exit(1);
    }
    std::abort();
}

size_t TfDiagnosticMgr::_NextSerial()
{
    return Shared::Get().nextSerial.fetch_add(1, std::memory_order_relaxed);
}

size_t TfDiagnosticMgr::_CurrentSerial() { return Shared::Get().nextSerial.load(std::memory_order_relaxed); }

TfDiagnosticMgr::ErrorIterator TfDiagnosticMgr::_GetErrorMarkBegin(size_t mark, size_t* count)
{
    ErrorList& errors = Mine().errors;
    const auto begin =
        std::find_if(errors.begin(), errors.end(), [&](TfError const& e) { return e._serial >= mark; });
    if (count) {
        *count = std::distance(begin, errors.end());
    }
    return begin;
}

void TfDiagnosticMgr::_CreateErrorMark() { ++Mine().marks; }

void TfDiagnosticMgr::_DestroyErrorMark(size_t mark)
{
    if (--Mine().marks > 0) {
        return;
    }
    ErrorList left;
    ErrorList& errors = Mine().errors;
    left.splice(left.end(), errors, _GetErrorMarkBegin(mark, nullptr), errors.end());
    for (TfError const& error : left) {
        _ReportError(error);
    }
}

PXR_NAMESPACE_CLOSE_SCOPE
