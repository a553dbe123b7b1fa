#include <pxr/base/tf/stringUtils.h>
#include <pxr/base/tf/type.h>
#include <pxr/base/vt/streamOut.h>
#include <pxr/base/vt/value.h>

#include <ostream>

PXR_NAMESPACE_OPEN_SCOPE

std::ostream& Vt_StreamOutGeneric(std::type_info const& type, void const* object, std::ostream& stream)
{
    return stream << TfStringPrintf("<'%s' @ %p>", TfType::GetCanonicalTypeName(type).c_str(), object);
}

std::ostream& VtStreamOut(bool const& value, std::ostream& stream) { return stream << int(value); }
std::ostream& VtStreamOut(char const& value, std::ostream& stream) { return stream << int(value); }
std::ostream& VtStreamOut(unsigned char const& value, std::ostream& stream)
{
    return stream << unsigned(value);
}
std::ostream& VtStreamOut(signed char const& value, std::ostream& stream) { return stream << int(value); }
std::ostream& VtStreamOut(float const& value, std::ostream& stream) { return stream << TfStreamFloat(value); }
std::ostream& VtStreamOut(double const& value, std::ostream& stream)
{
    return stream << TfStreamDouble(value);
}

std::ostream& VtStreamOut(std::vector<VtValue> const& value, std::ostream& stream)
{
    auto next = value.begin();
    Vt_StreamOutElements(stream, value.size(), [&next](std::ostream& out) { out << *next++; });
    return stream;
}

void Vt_StreamOutElements(std::ostream& stream, size_t count, TfFunctionRef<void(std::ostream&)> streamNext)
{
    stream << '[';
    for (size_t i = 0; i != count; ++i) {
        if (i) {
            stream << ", ";
        }
        streamNext(stream);
    }
    stream << ']';
}

PXR_NAMESPACE_CLOSE_SCOPE
