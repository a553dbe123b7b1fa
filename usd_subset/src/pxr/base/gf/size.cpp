#include <pxr/base/gf/size2.h>
#include <pxr/base/gf/size3.h>

#include <ostream>

PXR_NAMESPACE_OPEN_SCOPE

std::ostream& operator<<(std::ostream& o, GfSize2 const& v)
{
    return o << "( " << v[0] << " " << v[1] << " )";
}

std::ostream& operator<<(std::ostream& o, GfSize3 const& v)
{
    return o << "( " << v[0] << " " << v[1] << " " << v[2] << " )";
}

PXR_NAMESPACE_CLOSE_SCOPE
