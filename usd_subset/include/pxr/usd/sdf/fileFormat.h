#pragma once

/// Reads and writes one kind of layer file.

#include <pxr/base/tf/declarePtrs.h>
#include <pxr/base/tf/refBase.h>
#include <pxr/base/tf/token.h>
#include <pxr/base/tf/weakBase.h>
#include <pxr/pxr.h>
#include <pxr/usd/sdf/abstractData.h>
#include <pxr/usd/sdf/api.h>
#include <pxr/usd/sdf/declareHandles.h>

#include <iosfwd>
#include <map>
#include <set>
#include <string>
#include <vector>

PXR_NAMESPACE_OPEN_SCOPE

class SdfSchemaBase;
TF_DECLARE_WEAK_AND_REF_PTRS(SdfFileFormat);

/// A file format: `usda` (text), `usdc` (crate), `usdz` (package), and `usd`, which asks the file's first
/// bytes. Formats are made once a process and live for ever. Thread: any.
class SDF_API SdfFileFormat : public TfRefBase, public TfWeakBase
{
public:
    typedef std::map<std::string, std::string> FileFormatArguments;

    ~SdfFileFormat() override;
    SdfFileFormat(const SdfFileFormat&) = delete;
    SdfFileFormat& operator=(const SdfFileFormat&) = delete;

    const SdfSchemaBase& GetSchema() const;
    const TfToken& GetFormatId() const { return _formatId; }
    const TfToken& GetTarget() const { return _target; }
    const TfToken& GetVersionString() const { return _version; }
    /// Returns the first bytes of a file of this format, where it has some of its own.
    const std::string& GetFileCookie() const { return _cookie; }
    bool IsPrimaryFormatForExtensions() const { return true; }
    const std::vector<std::string>& GetFileExtensions() const { return _extensions; }
    const std::string& GetPrimaryFileExtension() const { return _extensions.front(); }
    /// Takes an extension, with or without its dot, or a path.
    bool IsSupportedExtension(const std::string& extension) const;
    virtual bool IsPackage() const;
    virtual std::string GetPackageRootLayerPath(const std::string& resolvedPath) const;
    virtual FileFormatArguments GetDefaultFileFormatArguments() const;
    virtual SdfAbstractDataRefPtr InitData(const FileFormatArguments& args) const;

    /// Says whether the file's content is of this format.
    virtual bool CanRead(const std::string& file) const = 0;
    /// Reads a file into a layer; posts one error and returns false, with the layer as it was, where it
    /// cannot.
    virtual bool Read(SdfLayer* layer, const std::string& resolvedPath, bool metadataOnly) const = 0;
    /// Writes a layer aside and puts the file in its place once it is whole.
    virtual bool WriteToFile(const SdfLayer& layer, const std::string& filePath,
                             const std::string& comment = std::string(),
                             const FileFormatArguments& args = FileFormatArguments()) const;
    /// Writes a layer to its own file, in the format that the file has.
    virtual bool SaveToFile(const SdfLayer& layer, const std::string& filePath,
                            const std::string& comment = std::string(),
                            const FileFormatArguments& args = FileFormatArguments()) const;
    virtual bool ReadFromString(SdfLayer* layer, const std::string& str) const;
    virtual bool WriteToStream(const SdfSpecHandle& spec, std::ostream& out, size_t indent) const;
    virtual bool WriteToString(const SdfLayer& layer, std::string* str,
                               const std::string& comment = std::string()) const;

    virtual bool SupportsReading() const;
    virtual bool SupportsWriting() const;
    virtual bool SupportsEditing() const;

    /// Returns the extension of a path, without its dot and in lower case.
    static std::string GetFileExtension(const std::string& s);
    static std::set<std::string> FindAllFileFormatExtensions();
    static bool FormatSupportsReading(const std::string& extension,
                                      const std::string& target = std::string());
    static bool FormatSupportsWriting(const std::string& extension,
                                      const std::string& target = std::string());
    static bool FormatSupportsEditing(const std::string& extension,
                                      const std::string& target = std::string());
    static SdfFileFormatConstPtr FindById(const TfToken& formatId);
    /// Finds the format of an extension or a path; null where no format claims it.
    static SdfFileFormatConstPtr FindByExtension(const std::string& path,
                                                 const std::string& target = std::string());
    static SdfFileFormatConstPtr FindByExtension(const std::string& path, const FileFormatArguments& args);

protected:
    SdfFileFormat(const TfToken& formatId, const TfToken& versionString, const TfToken& target,
                  const std::string& extension, const std::string& cookie = std::string());

    /// Gives a layer the data that was read, with change notices where the layer is already in use.
    static void _SetLayerData(SdfLayer* layer, SdfAbstractDataRefPtr& data);
    static SdfAbstractDataConstPtr _GetLayerData(const SdfLayer& layer);

private:
    const TfToken _formatId;
    const TfToken _version;
    const TfToken _target;
    const std::string _cookie;
    const std::vector<std::string> _extensions;
};

PXR_NAMESPACE_CLOSE_SCOPE
