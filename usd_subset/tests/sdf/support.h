#pragma once

#include "../on_lines.h"

#include <pxr/base/tf/error.h>
#include <pxr/base/tf/errorMark.h>
#include <pxr/usd/sdf/layer.h>

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>
#include <vector>

PXR_NAMESPACE_USING_DIRECTIVE

namespace sdf_tests {

/// Gathers the errors that are posted while it lives.
class Errors
{
public:
    ~Errors() { _mark.Clear(); }
    std::vector<std::string> Take()
    {
        std::vector<std::string> texts;
        for (const TfError& error : _mark) {
            texts.push_back(error.GetCommentary());
        }
        _mark.Clear();
        return texts;
    }

private:
    TfErrorMark _mark;
};

/// A directory that is removed at the end.
class TemporaryDirectory
{
public:
    TemporaryDirectory()
    {
        std::string pattern = (std::filesystem::temp_directory_path() / "sdf_tests.XXXXXX").string();
        path = mkdtemp(pattern.data());
    }
    ~TemporaryDirectory()
    {
        std::error_code ignored;
        std::filesystem::permissions(path, std::filesystem::perms::owner_all, ignored);
        std::filesystem::remove_all(path, ignored);
    }
    std::string Write(const std::string& name, const std::string& content) const
    {
        const std::filesystem::path file = std::filesystem::path(path) / name;
        std::filesystem::create_directories(file.parent_path());
        std::ofstream(file, std::ios::binary) << content;
        return file.string();
    }
    std::string Read(const std::string& name) const
    {
        std::ifstream in(std::filesystem::path(path) / name, std::ios::binary);
        std::ostringstream text;
        text << in.rdbuf();
        return text.str();
    }
    std::string File(const std::string& name) const { return (std::filesystem::path(path) / name).string(); }

    std::string path;
};

/// Reads the body of a layer, to which the first line and the line ends that braces want are added; null
/// where that fails.
inline SdfLayerRefPtr Parse(const std::string& body)
{
    const SdfLayerRefPtr layer = SdfLayer::CreateAnonymous("test.usda");
    return layer->ImportFromString("#usda 1.0\n" + onLines(body)) ? layer : SdfLayerRefPtr();
}

/// Returns the errors of reading a text; empty where it can be read.
inline std::vector<std::string> ErrorsOf(const std::string& text)
{
    Errors errors;
    SdfLayer::CreateAnonymous("test.usda")->ImportFromString(text);
    return errors.Take();
}

inline std::string Text(const SdfLayerRefPtr& layer)
{
    std::string text;
    layer->ExportToString(&text);
    return text;
}

} // namespace sdf_tests
