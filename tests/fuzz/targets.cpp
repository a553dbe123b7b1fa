#include "targets.h"

#include <pxr/base/gf/bbox3d.h>
#include <pxr/base/tf/diagnosticMgr.h>
#include <pxr/base/tf/error.h>
#include <pxr/base/tf/errorMark.h>
#include <pxr/base/vt/dictionary.h>
#include <pxr/base/vt/value.h>
#include <pxr/usd/sdf/layer.h>
#include <pxr/usd/sdf/path.h>
#include <pxr/usd/sdf/variableExpression.h>
#include <pxr/usd/usd/attribute.h>
#include <pxr/usd/usd/prim.h>
#include <pxr/usd/usd/primRange.h>
#include <pxr/usd/usd/relationship.h>
#include <pxr/usd/usd/stage.h>
#include <pxr/usd/usdGeom/bboxCache.h>
#include <pxr/usd/usdGeom/tokens.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <fcntl.h>
#include <iterator>
#include <memory>
#include <regex>
#include <string>
#include <unistd.h>
#include <vector>

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

// Takes the texts of a mark's errors.
std::vector<std::string> takeErrors(TfErrorMark& mark)
{
    std::vector<std::string> texts;
    for (const TfError& error : mark) {
        texts.push_back(error.GetCommentary());
    }
    mark.Clear();
    return texts;
}

void require(bool condition, const char* what, const std::vector<std::string>& errors)
{
    for (size_t i = 0; !condition && i < errors.size(); ++i) {
        std::fprintf(stderr, "error %zu: %s\n", i + 1, errors[i].c_str());
    }
    require(condition, what);
}

// A fault is told at its line and column, or at its byte; a file's member or the whole file has no place.
bool tellsPlace(const std::string& error)
{
    static const std::regex place(":[1-9][0-9]*:[1-9][0-9]*: found |[ ,]byte [0-9]+: ");
    static const char* const whole[] = {"the package holds no file",
                                        "is no layer",
                                        "not text; let its name end in",
                                        "it is encrypted",
                                        "it is compressed",
                                        "SPECS section: there is no spec of the root",
                                        "packages that lie in more than"};
    return std::regex_search(error, place) ||
           std::any_of(std::begin(whole), std::end(whole),
                       [&error](const char* text) { return error.find(text) != std::string::npos; });
}

// Each error names the file and a place in it, and there are no two alike.
void requireClearErrors(std::vector<std::string> errors, const std::string& name)
{
    for (const std::string& error : errors) {
        require(error.find(name) != std::string::npos, "an error does not name the file", {error});
        require(tellsPlace(error), "an error does not tell where in the file it is", {error});
    }
    std::sort(errors.begin(), errors.end());
    require(std::adjacent_find(errors.begin(), errors.end()) == errors.end(), "an error is told twice",
            errors);
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

// Crate files give values when they are asked for, so all are. Returns how many of them are not there.
size_t readEveryField(const SdfLayerRefPtr& layer)
{
    size_t missing = 0;
    layer->Traverse(SdfPath::AbsoluteRootPath(), [&](const SdfPath& path) {
        for (const TfToken& field : layer->ListFields(path)) {
            const VtValue value = layer->GetField(path, field);
            missing += value.IsEmpty() ? 1 : 0;
            static_cast<void>(value.GetHash());
        }
    });
    for (const double time : layer->ListAllTimeSamples()) {
        static_cast<void>(time);
    }
    return missing;
}

std::string textOf(const SdfLayerRefPtr& layer)
{
    std::string text;
    layer->ExportToString(&text);
    return text;
}

void readFile(std::string_view bytes, const std::string& extension)
{
    silence();
    const TemporaryFile file(bytes, extension);
    TfErrorMark mark;
    // A binary layer may open although some of its values are bad; each of them is an error then.
    if (const SdfLayerRefPtr layer = SdfLayer::FindOrOpen(file.path())) {
        const size_t missing = readEveryField(layer);
        const std::vector<std::string> errors = takeErrors(mark);
        require(missing == 0 || !errors.empty(), "a value is missing without an error");
        requireClearErrors(errors, file.path());
        textOf(layer); // not all that a crate file can hold can be text
        mark.Clear();
        return;
    }
    const std::vector<std::string> errors = takeErrors(mark);
    require(errors.size() == 1, "a file that cannot be read is not one error", errors);
    requireClearErrors(errors, file.path());
    require(!SdfLayer::Find(file.path()), "a layer that cannot be read stays behind");
    require(SdfLayer::GetLoadedLayers().empty(), "a part of a layer that cannot be read stays behind");
}

} // namespace

void readTextLayer(std::string_view bytes)
{
    silence();
    TfErrorMark mark;
    const SdfLayerRefPtr layer = SdfLayer::CreateAnonymous("fuzz.usda");
    const bool read = layer->ImportFromString(std::string(bytes));
    const std::vector<std::string> errors = takeErrors(mark);
    require(errors.size() == (read ? 0 : 1), "a text is neither a layer nor one error", errors);
    if (!read) {
        requireClearErrors(errors, "<string>");
        require(layer->IsEmpty(), "a text that cannot be read leaves something in the layer");
        return;
    }
    // Lists that edit nothing are left out by the first writing; from then on the text stays.
    const SdfLayerRefPtr copy = SdfLayer::CreateAnonymous("copy.usda");
    require(copy->ImportFromString(textOf(layer)), "what was written cannot be read");
    const std::string text = textOf(copy);
    require(copy->ImportFromString(text) && textOf(copy) == text, "what was written reads as something else");
    mark.Clear();
}

void readTextFile(std::string_view bytes) { readFile(bytes, ".usda"); }

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

void evaluateExpression(std::string_view bytes)
{
    silence();
    TfErrorMark mark;
    static const VtDictionary variables{{"A", VtValue(std::string("a text"))},
                                        {"B", VtValue(true)},
                                        {"N", VtValue(int64_t(3))},
                                        {"E", VtValue(std::string("`${A}`"))},
                                        {"SELF", VtValue(std::string("`${SELF}`"))}};
    const SdfVariableExpression expression{std::string(bytes)};
    require(static_cast<bool>(expression) == expression.GetErrors().empty(),
            "an expression is refused without a reason, or has errors and is not refused");
    const SdfVariableExpression::Result result = expression.Evaluate(variables);
    require(expression || !result.errors.empty(), "an expression that is refused evaluates without an error");
    require(result.errors.empty() || result.value.IsEmpty(), "an expression has a value and errors");
    require(mark.IsClean(), "an expression posts an error", takeErrors(mark));
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
