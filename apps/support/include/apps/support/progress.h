#pragma once

#include <chrono>
#include <string>

namespace vesk::apps {

/// One line on the terminal that shows how far a job is; nothing where stderr is no terminal.
///
/// The line is rewritten in place at most ten times a second and erased when the object dies.
/// Thread: one thread.
class Progress
{
public:
    Progress();
    ~Progress();
    Progress(const Progress&) = delete;
    Progress& operator=(const Progress&) = delete;

    /// Shows a step of the job.
    /// \param text what is being done
    /// \param done,total steps; a total of 0 shows no bar
    void show(const std::string& text, int done, int total);

    /// Erases the line, so that a result or an error stands alone.
    void clear();

private:
    bool m_terminal;
    bool m_shown = false;
    std::chrono::steady_clock::time_point m_last{};
};

/// The text of a progress line, at most `width` characters: "[=====>    ] 5/10 text".
std::string progressLine(const std::string& text, int done, int total, int width);

} // namespace vesk::apps
