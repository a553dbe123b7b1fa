#pragma once

#include <vesk/renderers/picture/export.h>
#include <vesk/renderers/picture/outputs.h>

#include <filesystem>

namespace vesk::renderers::picture {

/// Checks that an output can be written to a file of that name, before anything is rendered.
/// Throws: `Exception` with one sentence that says what is wrong and what to do: an unknown output, a name
/// that no image format has, a missing folder, a folder in place of a file, a name with a NUL character.
VESK_RENDERERS_PICTURE_EXPORT void checkTarget(const std::filesystem::path& path, const PXR_NS::TfToken& aov);

/// Writes an output to a file: PNG (8 bits RGBA) for colour, EXR (32-bit floats) for any output.
/// The file is written beside its place and moved there when it is whole; a failure leaves nothing behind.
/// Throws: `Exception` with one sentence.
VESK_RENDERERS_PICTURE_EXPORT void writeImage(const std::filesystem::path& path, const Film& film,
                                              const FrameSettings& settings, Output output);

} // namespace vesk::renderers::picture
