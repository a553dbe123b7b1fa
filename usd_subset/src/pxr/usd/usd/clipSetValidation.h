#pragma once

#include <pxr/pxr.h>

#include <string>

PXR_NAMESPACE_OPEN_SCOPE

struct Usd_ClipSetDefinition;

/// Says in words what is wrong with the paths and times of a set of clips that has all that it needs; empty
/// when nothing is.
std::string Usd_FindFaultInClips(const Usd_ClipSetDefinition& definition);

PXR_NAMESPACE_CLOSE_SCOPE
