#include <apps/support/progress.h>

#include <algorithm>
#include <cstdio>

#include <sys/ioctl.h>
#include <unistd.h>

namespace vesk::apps {
namespace {

constexpr int kBarWidth = 24;
constexpr std::chrono::milliseconds kInterval{100};

int terminalWidth()
{
    winsize size{};
    return ::ioctl(STDERR_FILENO, TIOCGWINSZ, &size) == 0 && size.ws_col > 0 ? size.ws_col : 80;
}

} // namespace

std::string progressLine(const std::string& text, int done, int total, int width)
{
    std::string line;
    if (total > 0) {
        const int filled = std::clamp(done * kBarWidth / total, 0, kBarWidth);
        line = "[" + std::string(static_cast<std::size_t>(filled), '=') +
               std::string(static_cast<std::size_t>(kBarWidth - filled), ' ') + "] " + std::to_string(done) +
               "/" + std::to_string(total) + " ";
    }
    line += text;
    if (static_cast<int>(line.size()) > width) line.resize(static_cast<std::size_t>(std::max(width, 0)));
    return line;
}

Progress::Progress() : m_terminal(::isatty(STDERR_FILENO) == 1) {}

Progress::~Progress() { clear(); }

void Progress::show(const std::string& text, int done, int total)
{
    if (!m_terminal) return;
    const auto now = std::chrono::steady_clock::now();
    if (m_shown && now - m_last < kInterval && done < total) return;
    m_last = now;
    m_shown = true;
    std::fprintf(stderr, "\r\033[K%s", progressLine(text, done, total, terminalWidth() - 1).c_str());
    std::fflush(stderr);
}

void Progress::clear()
{
    if (!m_shown) return;
    std::fputs("\r\033[K", stderr);
    std::fflush(stderr);
    m_shown = false;
}

} // namespace vesk::apps
