#include <apps/support/interruption.h>

#include <apps/support/errors.h>

#include <atomic>

namespace vesk::apps {
namespace {

std::atomic<bool> g_requested{false};
static_assert(std::atomic<bool>::is_always_lock_free, "the signal handler may only touch lock-free state");

void onSignal(int) { g_requested.store(true); }

} // namespace

Interruption::Interruption()
{
    g_requested.store(false);
    struct sigaction action
    {};
    action.sa_handler = onSignal;
    // A second Ctrl-C ends the program at once: the handler is used up by the first.
    action.sa_flags = static_cast<int>(SA_RESETHAND);
    ::sigaction(SIGINT, &action, &m_formerInt);
    ::sigaction(SIGTERM, &action, &m_formerTerm);
}

Interruption::~Interruption()
{
    ::sigaction(SIGINT, &m_formerInt, nullptr);
    ::sigaction(SIGTERM, &m_formerTerm, nullptr);
}

bool Interruption::requested() { return g_requested.load(); }

void Interruption::check()
{
    if (requested()) throw JobError("interrupted; files that were not finished have not been written");
}

} // namespace vesk::apps
