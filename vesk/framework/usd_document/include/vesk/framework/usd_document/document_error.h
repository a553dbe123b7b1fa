#pragma once

#include <memory>
#include <string>

#include <vesk/base/error_handling.h>
#include <vesk/framework/usd_document/export.h>

namespace vesk::framework::usd_document {

/// Why a document could not be opened, saved or edited.
enum class DocumentError : int
{
    FileNotFound = 1,     ///< "File not found"
    NotAFile = 2,         ///< "Not a file"
    FileNotReadable = 3,  ///< "File not readable"
    UnknownFormat = 4,    ///< "Unknown file format"
    InvalidScene = 5,     ///< "Invalid scene"
    Cancelled = 6,        ///< "Cancelled"
    FileNotWritable = 7,  ///< "File not writable"
    InvalidEditTarget = 8 ///< "Invalid edit target"
};

/// Carries a DocumentError; what() is one sentence for a person: the file, what is wrong and what to do.
class VESK_FRAMEWORK_USD_DOCUMENT_EXPORT DocumentException : public base::error_handling::Exception
{
public:
    /// Makes an exception of a code and the sentence that what() returns.
    DocumentException(DocumentError error, std::string sentence);
    DocumentException(const DocumentException&) = default;
    DocumentException& operator=(const DocumentException&) = default;
    ~DocumentException() override;

    /// The sentence.
    const char* what() const noexcept override;

private:
    // Shared text: copying an exception must not throw.
    std::shared_ptr<const std::string> m_sentence;
};

} // namespace vesk::framework::usd_document

namespace vesk::base::error_handling {
/// Named "DocumentError".
template <>
VESK_FRAMEWORK_USD_DOCUMENT_EXPORT const std::error_category&
getErrorCategory<vesk::framework::usd_document::DocumentError>();
} // namespace vesk::base::error_handling
