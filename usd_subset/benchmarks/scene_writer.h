#pragma once

#include <string>

/// Writes a generated scene as text. Throws: std::runtime_error for an unknown kind or an unwritable file.
/// \param kind "prims-N": about N prims, groups of moved cubes and small meshes; "points-N": a mesh of N
/// points
void writeScene(const std::string& kind, const std::string& path);
