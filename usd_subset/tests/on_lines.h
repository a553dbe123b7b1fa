#pragma once

#include <cstddef>
#include <string>

/// Puts the closing braces of a scene on lines of their own, as the text format wants them; so the scenes of
/// tests can stand on few lines. Strings, paths and asset paths stay as they are.
inline std::string onLines(const std::string& text)
{
    std::string result;
    for (size_t i = 0; i < text.size(); ++i) {
        const char c = text[i];
        const char closing = c == '<' ? '>' : c == '"' || c == '\'' || c == '@' ? c : '\0';
        const size_t end = closing ? text.find(closing, i + 1) : std::string::npos;
        if (end != std::string::npos) {
            result.append(text, i, end - i + 1);
            i = end;
            continue;
        }
        if (c != '}') {
            result += c;
            continue;
        }
        const size_t next = text.find_first_not_of(" \t", i + 1);
        const bool inList =
            next != std::string::npos && std::string(";,)]").find(text[next]) != std::string::npos;
        result += inList ? "\n}" : "\n}\n";
    }
    return result;
}
