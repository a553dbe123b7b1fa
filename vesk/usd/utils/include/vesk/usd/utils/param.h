#pragma once

#include <string>

namespace vesk::usd::utils {

/// One named setting, such as a setting of a renderer with a `VtValue`.
template <typename T>
struct Param
{
    std::string name; ///< the setting's name
    T value;          ///< its value; the reader of the setting decides which values it takes
};

template <typename T>
bool operator==(const Param<T>& left, const Param<T>& right)
{
    return left.name == right.name && left.value == right.value;
}

template <typename T>
bool operator!=(const Param<T>& left, const Param<T>& right)
{
    return !(left == right);
}

} // namespace vesk::usd::utils
