#include "malformed_text.h"

#include <algorithm>

namespace sdf_tests {

std::string repeated(const std::string& text, size_t count)
{
    std::string result;
    result.reserve(text.size() * count);
    for (size_t i = 0; i < count; ++i) {
        result += text;
    }
    return result;
}

MalformedFile malformedFile(const std::string& before, const std::string& marked, const std::string& behind,
                            const std::string& found, const std::string& expected)
{
    std::string text = before + marked + behind;
    const size_t caret = text.find('^', before.size());
    text.erase(caret, 1);
    const auto begin = text.begin();
    const auto at = begin + static_cast<std::ptrdiff_t>(caret);
    const auto line = std::count(begin, at, '\n') + 1;
    const auto lineBegin = std::find(std::make_reverse_iterator(at), text.rend(), '\n').base();
    return {text, "<string>:" + std::to_string(line) + ":" + std::to_string(at - lineBegin + 1) + ": found " +
                      found + ", expected " + expected};
}

MalformedFile malformedStatement(const std::string& marked, const std::string& found,
                                 const std::string& expected)
{
    return malformedFile("#usda 1.0\ndef \"P\"\n{\n", marked, "\n}\n", found, expected);
}

std::vector<MalformedFile> malformedCorpus()
{
    std::vector<MalformedFile> files;
    const auto add = [&](const std::vector<Malformed>& table, const char* before, const char* behind) {
        for (const Malformed& row : table) {
            files.push_back(malformedFile(before, row.text, behind, row.found, row.expected));
        }
    };
    add(malformedValues(), "#usda 1.0\ndef \"P\"\n{\n", "\n}\n");
    add(malformedStatements(), "#usda 1.0\ndef \"P\"\n{\n", "\n}\n");
    add(malformedPrimMetadata(), "#usda 1.0\ndef \"P\" (\n", "\n)\n{\n}\n");
    add(malformedLayerMetadata(), "#usda 1.0\n(\n", "\n)\n");
    add(malformedFiles(), "", "");
    for (const std::vector<MalformedFile>& more : {malformedByRule(), malformedFromIssues()}) {
        files.insert(files.end(), more.begin(), more.end());
    }
    return files;
}

} // namespace sdf_tests
