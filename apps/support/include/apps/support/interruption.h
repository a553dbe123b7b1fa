#pragma once

#include <csignal>

namespace vesk::apps {

/// Turns Ctrl-C (SIGINT) and SIGTERM into a question that long work asks, so that no job leaves half a file.
///
/// One object at a time; it puts the former handlers back when it dies.
/// Thread: constructed and destroyed on the main thread; `requested()` may be asked from any thread.
class Interruption
{
public:
    Interruption();
    ~Interruption();
    Interruption(const Interruption&) = delete;
    Interruption& operator=(const Interruption&) = delete;

    /// Whether the user has asked to stop.
    static bool requested();

    /// Throws `JobError` ("interrupted ...") when the user has asked to stop.
    static void check();

private:
    struct sigaction m_formerInt
    {};
    struct sigaction m_formerTerm
    {};
};

} // namespace vesk::apps
