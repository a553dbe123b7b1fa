#include <vesk/framework/usd_document/document_error.h>

#include <array>
#include <string_view>
#include <utility>

namespace vesk::framework::usd_document {

DocumentException::DocumentException(DocumentError error, std::string sentence)
    : Exception(base::error_handling::makeErrorCode(error)),
      m_sentence(std::make_shared<const std::string>(std::move(sentence)))
{}

DocumentException::~DocumentException() = default;

const char* DocumentException::what() const noexcept { return m_sentence->c_str(); }

namespace {

constexpr std::array<std::pair<int, std::string_view>, 8> kMessages{{
    {static_cast<int>(DocumentError::FileNotFound), "File not found"},
    {static_cast<int>(DocumentError::NotAFile), "Not a file"},
    {static_cast<int>(DocumentError::FileNotReadable), "File not readable"},
    {static_cast<int>(DocumentError::UnknownFormat), "Unknown file format"},
    {static_cast<int>(DocumentError::InvalidScene), "Invalid scene"},
    {static_cast<int>(DocumentError::Cancelled), "Cancelled"},
    {static_cast<int>(DocumentError::FileNotWritable), "File not writable"},
    {static_cast<int>(DocumentError::InvalidEditTarget), "Invalid edit target"},
}};

class DocumentErrorCategory final : public std::error_category
{
public:
    const char* name() const noexcept override { return "DocumentError"; }
    std::string message(int code) const override
    {
        for (const auto& [value, text] : kMessages)
            if (value == code) return std::string(text);
        return "Unknown DocumentError error";
    }
};

} // namespace

} // namespace vesk::framework::usd_document

namespace vesk::base::error_handling {

template <>
const std::error_category& getErrorCategory<framework::usd_document::DocumentError>()
{
    // Never destroyed: error codes outlive everything.
    static const auto& category = *new framework::usd_document::DocumentErrorCategory;
    return category;
}

} // namespace vesk::base::error_handling
