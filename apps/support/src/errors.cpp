#include <apps/support/errors.h>

namespace vesk::apps {

std::string oneLine(std::string text)
{
    std::string line;
    line.reserve(text.size());
    for (const char c : text) {
        const bool blank = c == '\n' || c == '\r' || c == '\t';
        if (!blank)
            line += c;
        else if (!line.empty() && line.back() != ' ')
            line += ' ';
    }
    while (!line.empty() && line.back() == ' ')
        line.pop_back();
    return line;
}

} // namespace vesk::apps
