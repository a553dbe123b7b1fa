#include "pxr/usd/sdf/changeManager.h"
#include "pxr/usd/sdf/layerRegistry.h"

#include <pxr/base/tf/diagnostic.h>
#include <pxr/usd/ar/packageUtils.h>
#include <pxr/usd/ar/resolver.h>
#include <pxr/usd/sdf/changeBlock.h>
#include <pxr/usd/sdf/fileFormat.h>
#include <pxr/usd/sdf/layer.h>
#include <pxr/usd/sdf/layerUtils.h>
#include <pxr/usd/sdf/notice.h>

#include <cstdio>
#include <sys/stat.h>

PXR_NAMESPACE_OPEN_SCOPE

// What is known about a layer before it is looked up or opened.
struct SdfLayer::_Opening
{
    SdfFileFormatConstPtr fileFormat;
    FileFormatArguments args;
    std::string layerPath;
    std::string identifier;
    ArResolvedPath resolvedPath;
    bool isAnonymous = false;
};

namespace {

const char* const kArgumentsMark = ":SDF_FORMAT_ARGS:";

SdfFileFormatConstPtr textFormat() { return SdfFileFormat::FindById(TfToken("usda")); }

std::string baseName(const std::string& path) { return path.substr(path.rfind('/') + 1); }

std::string trim(const std::string& text)
{
    const size_t first = text.find_first_not_of(" \t\r\n");
    return first == std::string::npos ? std::string()
                                      : text.substr(first, text.find_last_not_of(" \t\r\n") + 1 - first);
}

std::string anonymousIdentifier(const void* address, const std::string& tag)
{
    char text[32];
    std::snprintf(text, sizeof text, "anon:%p", address);
    const std::string trimmed = trim(tag);
    return trimmed.empty() ? text : text + (":" + trimmed);
}

bool isDirectory(const std::string& path)
{
    struct stat status;
    return stat(path.c_str(), &status) == 0 && S_ISDIR(status.st_mode);
}

double modificationTime(const ArResolvedPath& path)
{
    const ArTimestamp time = ArGetResolver().GetModificationTimestamp(path.GetPathString(), path);
    return time.IsValid() ? time.GetTime() : 0.0;
}

std::string knownExtensions()
{
    std::string text;
    for (const std::string& extension : SdfFileFormat::FindAllFileFormatExtensions()) {
        text += (text.empty() ? "" : ", ") + extension;
    }
    return text;
}

std::string whyNoFormat(const std::string& path)
{
    if (isDirectory(path)) {
        return "it is a directory, and a layer is a file";
    }
    const std::string extension = ArGetResolver().GetExtension(path);
    return (extension.empty() ? std::string("its name has no extension")
                              : "no file format is known for the extension \"" + extension + "\"") +
           "; known are " + knownExtensions();
}

} // namespace

bool SdfLayer::SplitIdentifier(const std::string& identifier, std::string* layerPath,
                               FileFormatArguments* arguments)
{
    const size_t mark = identifier.find(kArgumentsMark);
    *layerPath = identifier.substr(0, mark);
    arguments->clear();
    size_t begin = mark == std::string::npos ? identifier.size() : mark + std::string(kArgumentsMark).size();
    while (begin < identifier.size()) {
        const size_t end = std::min(identifier.find('&', begin), identifier.size());
        const size_t equals = identifier.find('=', begin);
        if (equals >= end) {
            TF_CODING_ERROR("Invalid file format arguments: %s", identifier.substr(mark).c_str());
            return false;
        }
        (*arguments)[identifier.substr(begin, equals - begin)] =
            identifier.substr(equals + 1, end - equals - 1);
        begin = end + 1;
    }
    return true;
}

std::string SdfLayer::CreateIdentifier(const std::string& layerPath, const FileFormatArguments& arguments)
{
    std::string identifier = layerPath;
    const char* delimiter = kArgumentsMark;
    for (const auto& argument : arguments) {
        identifier += delimiter + argument.first + "=" + argument.second;
        delimiter = "&";
    }
    return identifier;
}

std::string SdfLayer::GetDisplayNameFromIdentifier(const std::string& identifier)
{
    std::string path;
    FileFormatArguments args;
    SplitIdentifier(identifier, &path, &args);
    if (IsAnonymousLayerIdentifier(path)) {
        const size_t second = path.find(':', 5);
        return second == std::string::npos ? std::string() : path.substr(second + 1);
    }
    if (ArIsPackageRelativePath(path)) {
        const std::pair<std::string, std::string> parts = ArSplitPackageRelativePathOuter(path);
        return ArJoinPackageRelativePath(baseName(parts.first), parts.second);
    }
    return baseName(path);
}

SdfLayerRefPtr SdfLayer::CreateNew(const std::string& identifier, const FileFormatArguments& args)
{
    return _CreateNew(SdfFileFormatConstPtr(), identifier, args, true);
}

SdfLayerRefPtr SdfLayer::CreateNew(const SdfFileFormatConstPtr& fileFormat, const std::string& identifier,
                                   const FileFormatArguments& args)
{
    return _CreateNew(fileFormat, identifier, args, true);
}

SdfLayerRefPtr SdfLayer::New(const SdfFileFormatConstPtr& fileFormat, const std::string& identifier,
                             const FileFormatArguments& args)
{
    return _CreateNew(fileFormat, identifier, args, false);
}

SdfLayerRefPtr SdfLayer::_CreateNew(SdfFileFormatConstPtr fileFormat, const std::string& identifier,
                                    const FileFormatArguments& args, bool save)
{
    const auto refuse = [&identifier](const std::string& why) {
        TF_CODING_ERROR("Cannot create new layer '%s': %s", identifier.c_str(), why.c_str());
        return SdfLayerRefPtr();
    };
    if (identifier.empty()) {
        return refuse("cannot use empty identifier.");
    }
    if (IsAnonymousLayerIdentifier(identifier)) {
        return refuse("cannot use anonymous layer identifier.");
    }
    if (identifier.find(kArgumentsMark) != std::string::npos) {
        return refuse("cannot use arguments in the identifier.");
    }
    const std::string absolute = ArGetResolver().CreateIdentifierForNewAsset(identifier);
    const ArResolvedPath path = ArGetResolver().ResolveForNewAsset(absolute);
    if (!fileFormat) {
        fileFormat = SdfFileFormat::FindByExtension(path, args);
    }
    if (!fileFormat) {
        return refuse(whyNoFormat(path));
    }
    if (fileFormat->IsPackage() || ArIsPackageRelativePath(identifier)) {
        return refuse("creating package layers is not allowed through this API.");
    }
    if (!fileFormat->SupportsWriting()) {
        return refuse("files of the format " + fileFormat->GetFormatId().GetString() +
                      " cannot be written; write usda instead");
    }
    const SdfLayerRefPtr layer = TfCreateRefPtr(new SdfLayer(fileFormat, absolute, path, args));
    // Nobody else may see the layer before it is whole, and no file is written over for a name that is taken.
    const std::string fileKey = Sdf_LayerRegistry::FileKey(path, args);
    const bool taken = static_cast<bool>(Sdf_LayerRegistry::Get().Find(absolute, fileKey));
    if (!taken && save && !layer->Save(true)) {
        return SdfLayerRefPtr();
    }
    layer->_initialized = true;
    if (taken || Sdf_LayerRegistry::Get().InsertOrFind(layer)) {
        TF_CODING_ERROR("A layer already exists with identifier '%s'", absolute.c_str());
        return SdfLayerRefPtr();
    }
    return layer;
}

SdfLayerRefPtr SdfLayer::CreateAnonymous(const std::string& tag, const FileFormatArguments& args)
{
    const SdfFileFormatConstPtr byTag = SdfFileFormat::FindByExtension(tag, args);
    return CreateAnonymous(tag, byTag && byTag->SupportsEditing() ? byTag : textFormat(), args);
}

SdfLayerRefPtr SdfLayer::CreateAnonymous(const std::string& tag, const SdfFileFormatConstPtr& format,
                                         const FileFormatArguments& args)
{
    if (!format) {
        TF_CODING_ERROR("Cannot create an anonymous layer without a file format");
        return SdfLayerRefPtr();
    }
    const SdfLayerRefPtr layer = TfCreateRefPtr(new SdfLayer(format, "anon:", ArResolvedPath(), args));
    layer->_identifier = anonymousIdentifier(get_pointer(layer), tag);
    layer->_initialized = true;
    Sdf_LayerRegistry::Get().InsertOrFind(layer);
    return layer;
}

bool SdfLayer::_ComputeOpening(const std::string& identifier, const FileFormatArguments& args, _Opening* info)
{
    if (identifier.empty() || !SplitIdentifier(identifier, &info->layerPath, &info->args) ||
        info->layerPath.empty()) {
        return false;
    }
    for (const auto& argument : args) {
        info->args[argument.first] = argument.second;
    }
    info->args.erase("target");
    info->isAnonymous = IsAnonymousLayerIdentifier(info->layerPath);
    if (!info->isAnonymous) {
        info->layerPath = ArGetResolver().CreateIdentifier(info->layerPath);
        info->resolvedPath = ArGetResolver().Resolve(info->layerPath);
    }
    info->fileFormat = SdfFileFormat::FindByExtension(
        info->resolvedPath.IsEmpty() ? info->layerPath : info->resolvedPath.GetPathString(), info->args);
    info->identifier = CreateIdentifier(info->layerPath, info->args);
    return true;
}

SdfLayerRefPtr SdfLayer::_Open(const _Opening& info, bool metadataOnly, const std::string* anonymousTag)
{
    if (!info.fileFormat || isDirectory(info.resolvedPath)) {
        TF_RUNTIME_ERROR("Cannot open layer @%s@: %s", info.identifier.c_str(),
                         whyNoFormat(info.resolvedPath).c_str());
        return SdfLayerRefPtr();
    }
    const SdfLayerRefPtr layer =
        anonymousTag
            ? TfCreateRefPtr(new SdfLayer(info.fileFormat, "anon:", ArResolvedPath(), info.args))
            : TfCreateRefPtr(new SdfLayer(info.fileFormat, info.identifier, info.resolvedPath, info.args));
    if (anonymousTag) {
        layer->_identifier = anonymousIdentifier(get_pointer(layer), *anonymousTag);
    }
    const double time = modificationTime(info.resolvedPath);
    if (!info.fileFormat->Read(get_pointer(layer), info.resolvedPath, metadataOnly)) {
        return SdfLayerRefPtr();
    }
    layer->_modificationTime = anonymousTag ? 0.0 : time;
    layer->_stateDelegate->_MarkCurrentStateAsClean();
    layer->_initialized = true;
    // Where two threads opened the same file, the first one to finish wins.
    const SdfLayerRefPtr other = Sdf_LayerRegistry::Get().InsertOrFind(layer);
    return other ? other : layer;
}

SdfLayerHandle SdfLayer::Find(const std::string& identifier, const FileFormatArguments& args)
{
    _Opening info;
    if (!_ComputeOpening(identifier, args, &info)) {
        return SdfLayerHandle();
    }
    return Sdf_LayerRegistry::Get().Find(info.identifier,
                                         Sdf_LayerRegistry::FileKey(info.resolvedPath, info.args));
}

SdfLayerRefPtr SdfLayer::FindOrOpen(const std::string& identifier, const FileFormatArguments& args)
{
    _Opening info;
    if (!_ComputeOpening(identifier, args, &info)) {
        return SdfLayerRefPtr();
    }
    const SdfLayerRefPtr found = Sdf_LayerRegistry::Get().Find(
        info.identifier, Sdf_LayerRegistry::FileKey(info.resolvedPath, info.args));
    if (found || info.isAnonymous || info.resolvedPath.IsEmpty()) {
        return found;
    }
    return _Open(info, false, nullptr);
}

SdfLayerHandle SdfLayer::FindRelativeToLayer(const SdfLayerHandle& anchor, const std::string& identifier,
                                             const FileFormatArguments& args)
{
    if (!anchor) {
        TF_CODING_ERROR("Anchor layer is invalid");
        return SdfLayerHandle();
    }
    return identifier.empty() ? SdfLayerHandle()
                              : Find(SdfComputeAssetPathRelativeToLayer(anchor, identifier), args);
}

SdfLayerRefPtr SdfLayer::FindOrOpenRelativeToLayer(const SdfLayerHandle& anchor,
                                                   const std::string& identifier,
                                                   const FileFormatArguments& args)
{
    if (!anchor) {
        TF_CODING_ERROR("Anchor layer is invalid");
        return SdfLayerRefPtr();
    }
    return identifier.empty() ? SdfLayerRefPtr()
                              : FindOrOpen(SdfComputeAssetPathRelativeToLayer(anchor, identifier), args);
}

SdfLayerRefPtr SdfLayer::OpenAsAnonymous(const std::string& layerPath, bool metadataOnly,
                                         const std::string& tag)
{
    _Opening info;
    if (!_ComputeOpening(layerPath, FileFormatArguments(), &info)) {
        return SdfLayerRefPtr();
    }
    if (info.isAnonymous || info.resolvedPath.IsEmpty()) {
        TF_RUNTIME_ERROR("Cannot open layer @%s@: no file is there", layerPath.c_str());
        return SdfLayerRefPtr();
    }
    return _Open(info, metadataOnly, &tag);
}

void SdfLayer::SetIdentifier(const std::string& identifier)
{
    std::string path;
    FileFormatArguments args;
    if (!SplitIdentifier(identifier, &path, &args)) {
        return;
    }
    if (args != _fileFormatArgs || path.empty() || IsAnonymousLayerIdentifier(path)) {
        TF_CODING_ERROR("Cannot change identifier to '%s': %s", identifier.c_str(),
                        args != _fileFormatArgs ? "its arguments differ from the layer's."
                        : path.empty()          ? "cannot use empty identifier."
                                                : "cannot use anonymous layer identifier.");
        return;
    }
    path = ArGetResolver().CreateIdentifierForNewAsset(path);
    const std::string newIdentifier = CreateIdentifier(path, args);
    ArResolvedPath newPath = ArGetResolver().Resolve(path);
    if (newPath.IsEmpty()) {
        newPath = ArGetResolver().ResolveForNewAsset(path);
    }
    SdfChangeBlock block;
    if (!Sdf_LayerRegistry::Get().Rename(this, newIdentifier, Sdf_LayerRegistry::FileKey(newPath, args))) {
        TF_CODING_ERROR("Layer with identifier '%s' exists.", newIdentifier.c_str());
        return;
    }
    const std::string oldIdentifier = std::exchange(_identifier, newIdentifier);
    const ArResolvedPath oldPath = std::exchange(_resolvedPath, newPath);
    if (oldIdentifier != _identifier) {
        Sdf_ChangeManager::DidChangeLayerIdentifier(_Self(), oldIdentifier);
    }
    if (oldPath != _resolvedPath) {
        _modificationTime = modificationTime(_resolvedPath);
        Sdf_ChangeManager::DidChangeLayerResolvedPath(_Self());
    }
}

bool SdfLayer::_Write(const std::string& fileName, const std::string& comment,
                      SdfFileFormatConstPtr fileFormat, const FileFormatArguments& args) const
{
    if (fileName.empty()) {
        return false;
    }
    const bool isSave = fileName == GetRealPath();
    if (isSave && !_permissionToSave) {
        TF_RUNTIME_ERROR("Cannot save layer @%s@, saving not allowed", fileName.c_str());
        return false;
    }
    if (!fileFormat) {
        fileFormat = SdfFileFormat::FindByExtension(fileName);
    }
    if (!fileFormat) {
        fileFormat = _fileFormat;
    }
    if (fileFormat->IsPackage() || ArIsPackageRelativePath(fileName) || !fileFormat->SupportsWriting()) {
        TF_CODING_ERROR("Cannot %s layer @%s@: writing %s layers is not possible; write usda or usdc instead",
                        isSave ? "save" : "export", fileName.c_str(), fileFormat->GetFormatId().GetText());
        return false;
    }
    if (!(isSave ? fileFormat->SaveToFile(*this, fileName, comment, args)
                 : fileFormat->WriteToFile(*this, fileName, comment, args))) {
        return false;
    }
    if (isSave) {
        _MarkCurrentStateAsClean();
    }
    return true;
}

bool SdfLayer::Save(bool force) const
{
    if (IsAnonymous()) {
        TF_CODING_ERROR("Cannot save anonymous layer @%s@", _identifier.c_str());
        return false;
    }
    struct stat status;
    if (!force && !IsDirty() && stat(GetRealPath().c_str(), &status) == 0) {
        return true;
    }
    if (!_Write(GetRealPath(), std::string(), _fileFormat, _fileFormatArgs)) {
        return false;
    }
    _modificationTime = modificationTime(_resolvedPath);
    SdfNotice::LayerDidSaveLayerToFile().Send(_Self());
    return true;
}

bool SdfLayer::Export(const std::string& filename, const std::string& comment,
                      const FileFormatArguments& args) const
{
    const bool own = _fileFormat->IsSupportedExtension(filename);
    return _Write(filename, comment, own ? _fileFormat : SdfFileFormatConstPtr(), args);
}

bool SdfLayer::ExportToString(std::string* result) const { return _fileFormat->WriteToString(*this, result); }

bool SdfLayer::ImportFromString(const std::string& string)
{
    return _fileFormat->ReadFromString(this, string);
}

bool SdfLayer::Import(const std::string& layerPath)
{
    const ArResolvedPath path = ArGetResolver().Resolve(layerPath);
    return !path.IsEmpty() && _fileFormat->Read(this, path, false);
}

SdfLayer::_ReloadResult SdfLayer::_Reload(bool force)
{
    SdfChangeBlock block;
    if (IsAnonymous()) {
        const SdfAbstractDataRefPtr initial = _fileFormat->InitData(_fileFormatArgs);
        if (_data->Equals(initial)) {
            return _ReloadSkipped;
        }
        _SetData(initial);
    } else {
        const ArResolvedPath path = ArGetResolver().Resolve(SdfLayer::GetIdentifier());
        const ArResolvedPath current = path.IsEmpty() ? _resolvedPath : path;
        if (_modificationTime == 0.0) {
            return _ReloadSkipped;
        }
        const double time = modificationTime(current);
        if (!force && !IsDirty() && time == _modificationTime) {
            return _ReloadSkipped;
        }
        if (!_fileFormat->Read(this, current, false)) {
            return _ReloadFailed;
        }
        _modificationTime = time;
    }
    _MarkCurrentStateAsClean();
    Sdf_ChangeManager::DidReloadLayerContent(_Self());
    return _ReloadSucceeded;
}

bool SdfLayer::Reload(bool force) { return _Reload(force) == _ReloadSucceeded; }

bool SdfLayer::ReloadLayers(const std::set<SdfLayerHandle>& layers, bool force)
{
    SdfChangeBlock block;
    bool done = true;
    for (const SdfLayerHandle& layer : layers) {
        done = (!layer || layer->_Reload(force) != _ReloadFailed) && done;
    }
    return done;
}

PXR_NAMESPACE_CLOSE_SCOPE
