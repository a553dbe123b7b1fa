#include "targets.h"

#include <pxr/base/gf/bbox3d.h>
#include <pxr/base/tf/diagnosticMgr.h>
#include <pxr/base/tf/error.h>
#include <pxr/base/tf/errorMark.h>
#include <pxr/base/vt/value.h>
#include <pxr/usd/sdf/layer.h>
#include <pxr/usd/sdf/path.h>
#include <pxr/usd/usd/attribute.h>
#include <pxr/usd/usd/prim.h>
#include <pxr/usd/usd/primRange.h>
#include <pxr/usd/usd/relationship.h>
#include <pxr/usd/usd/stage.h>
#include <pxr/usd/usdGeom/bboxCache.h>
#include <pxr/usd/usdGeom/tokens.h>

#include <cstdio>
#include <cstdlib>
#include <fcntl.h>
#include <memory>
#include <string>
#include <unistd.h>

PXR_NAMESPACE_USING_DIRECTIVE

namespace vesk::fuzz {

namespace {

// Ends the process where a reader did what it must not.
void require(bool condition, const char* what)
{
    if (!condition) {
        std::fprintf(stderr, "fuzz target: %s\n", what);
        std::abort();
    }
}

// Keeps diagnostics off the terminal; errors are still counted by marks.
class Silence : public TfDiagnosticMgr::Delegate
{
public:
    Silence() { TfDiagnosticMgr::GetInstance().AddDelegate(this); }
    void IssueError(const TfError&) override {}
    void IssueFatalError(const TfCallContext&, const std::string& message) override
    {
        std::fprintf(stderr, "fatal: %s\n", message.c_str());
    }
    void IssueStatus(const TfStatus&) override {}
    void IssueWarning(const TfWarning&) override {}
};

void silence()
{
    static Silence* const silence = new Silence;
    static_cast<void>(silence);
}

// Takes the errors of a mark; there must be `expected` of them.
void requireErrors(TfErrorMark& mark, size_t expected, const char* what)
{
    size_t count = 0;
    for (const TfError& error : mark) {
        if (++count > expected) {
            std::fprintf(stderr, "error %zu: %s\n", count, error.GetCommentary().c_str());
        }
    }
    mark.Clear();
    require(count == expected, what);
}

// A file with the bytes that is gone with the object. Its folder lies in memory where the system has one.
class TemporaryFile
{
public:
    TemporaryFile(std::string_view bytes, const std::string& extension)
    {
        const char* const folder = access("/dev/shm", W_OK) == 0 ? "/dev/shm" : "/tmp";
        m_path = std::string(folder) + "/vesk_fuzz_XXXXXX" + extension;
        const int file = mkostemps(m_path.data(), static_cast<int>(extension.size()), O_CLOEXEC);
        require(file >= 0, "no temporary file could be made");
        require(write(file, bytes.data(), bytes.size()) == static_cast<ssize_t>(bytes.size()),
                "the temporary file could not be written");
        close(file);
    }
    TemporaryFile(const TemporaryFile&) = delete;
    TemporaryFile& operator=(const TemporaryFile&) = delete;
    ~TemporaryFile() { unlink(m_path.c_str()); }
    const std::string& path() const { return m_path; }

private:
    std::string m_path;
};

// Crate files give values when they are asked for, so all are.
void readEveryField(const SdfLayerRefPtr& layer)
{
    layer->Traverse(SdfPath::AbsoluteRootPath(), [&](const SdfPath& path) {
        for (const TfToken& field : layer->ListFields(path)) {
            static_cast<void>(layer->GetField(path, field).GetHash());
        }
    });
    for (const double time : layer->ListAllTimeSamples()) {
        static_cast<void>(time);
    }
    std::string text;
    layer->ExportToString(&text);
}

void readFile(std::string_view bytes, const std::string& extension)
{
    silence();
    const TemporaryFile file(bytes, extension);
    TfErrorMark mark;
    const SdfLayerRefPtr layer = SdfLayer::OpenAsAnonymous(file.path());
    // A binary layer may open although some of its values are bad; each of them is an error then.
    if (!layer) {
        requireErrors(mark, 1, "a file that cannot be read is not one error");
    }
    if (layer) {
        readEveryField(layer);
        mark.Clear();
    }
}

std::string textOf(const SdfLayerRefPtr& layer)
{
    std::string text;
    layer->ExportToString(&text);
    return text;
}

} // namespace

void readTextLayer(std::string_view bytes)
{
    silence();
    TfErrorMark mark;
    const SdfLayerRefPtr layer = SdfLayer::CreateAnonymous("fuzz.usda");
    const bool read = layer->ImportFromString(std::string(bytes));
    requireErrors(mark, read ? 0 : 1, "a text is neither a layer nor one error");
    if (!read) {
        return;
    }
    // Lists that edit nothing are left out by the first writing; from then on the text stays.
    const SdfLayerRefPtr copy = SdfLayer::CreateAnonymous("copy.usda");
    require(copy->ImportFromString(textOf(layer)), "what was written cannot be read");
    const std::string text = textOf(copy);
    require(copy->ImportFromString(text) && textOf(copy) == text, "what was written reads as something else");
    mark.Clear();
}

void readPathText(std::string_view bytes)
{
    silence();
    TfErrorMark mark;
    const std::string text(bytes);
    std::string why;
    const bool valid = SdfPath::IsValidPathString(text, &why);
    const SdfPath path(text);
    require(valid == !path.IsEmpty(), "a path is valid and cannot be made, or the other way round");
    require(valid == why.empty(), "a path is refused without a reason");
    mark.Clear();
    if (!valid) {
        return;
    }
    require(SdfPath(path.GetString()) == path, "a path's text gives another path");
    require(path.GetPathElementCount() == path.GetPrefixes().size() || !path.IsAbsolutePath(),
            "a path has as many prefixes as elements");
    const SdfPath absolute = path.MakeAbsolutePath(SdfPath("/a/b"));
    if (!absolute.IsEmpty()) {
        const SdfPath relative = absolute.MakeRelativePath(SdfPath("/a/c"));
        require(relative.MakeAbsolutePath(SdfPath("/a/c")) == absolute || absolute.ContainsTargetPath(),
                "a path made relative and absolute again is another");
    }
    SdfPathVector inside;
    path.GetAllTargetPathsRecursively(&inside);
    static_cast<void>(path.StripAllVariantSelections().ReplacePrefix(SdfPath("/a"), SdfPath("/b")));
    mark.Clear();
}

void readCrateFile(std::string_view bytes) { readFile(bytes, ".usdc"); }

void readPackage(std::string_view bytes) { readFile(bytes, ".usdz"); }

void openTextStage(std::string_view bytes)
{
    silence();
    TfErrorMark mark;
    const SdfLayerRefPtr layer = SdfLayer::CreateAnonymous("fuzz.usda");
    if (!layer->ImportFromString(std::string(bytes))) {
        mark.Clear();
        return;
    }
    const UsdStageRefPtr stage = UsdStage::Open(layer);
    if (stage) {
        for (const UsdPrim& prim : stage->Traverse(UsdTraverseInstanceProxies())) {
            for (const UsdAttribute& attribute : prim.GetAttributes()) {
                VtValue value;
                attribute.Get(&value, UsdTimeCode(1.0));
            }
            for (const UsdRelationship& relationship : prim.GetRelationships()) {
                SdfPathVector targets;
                relationship.GetForwardedTargets(&targets);
            }
        }
        UsdGeomBBoxCache bounds(UsdTimeCode::Default(), {UsdGeomTokens->default_});
        static_cast<void>(bounds.ComputeWorldBound(stage->GetPseudoRoot()));
    }
    mark.Clear();
}

const std::vector<Target>& targets()
{
    static const std::vector<Target> all = {{"text_layer", &readTextLayer},
                                            {"path_text", &readPathText},
                                            {"crate_file", &readCrateFile},
                                            {"package", &readPackage},
                                            {"text_stage", &openTextStage}};
    return all;
}

} // namespace vesk::fuzz
