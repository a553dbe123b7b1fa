#pragma once

#include <pxr/base/vt/dictionary.h>
#include <pxr/pxr.h>
#include <pxr/usd/sdf/layerOffset.h>
#include <pxr/usd/sdf/path.h>

PXR_NAMESPACE_OPEN_SCOPE

struct Usd_ClipSetDefinition;

/// Fills in asset paths, active clips and times of a set that names its files by a pattern with `#` for the
/// digits of their times: those files that are there.
/// @param info the composed entry of the set in the prim's clips
/// @param offset from the time of the layer with the pattern to the stage's
/// @param prim the prim of the stage, for warnings
/// Logs: one warning when the pattern, the stride or the range makes no sense; nothing is filled in then.
void Usd_DeriveClips(const VtDictionary& info, const SdfLayerOffset& offset, const SdfPath& prim,
                     Usd_ClipSetDefinition* definition);

PXR_NAMESPACE_CLOSE_SCOPE
