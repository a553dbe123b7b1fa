#pragma once

#include <vesk/renderers/picture/export.h>
#include <vesk/renderers/picture/film.h>
#include <vesk/renderers/picture/frame_settings.h>

#include <pxr/base/tf/token.h>
#include <vesk/framework/hydra_renderer/aov_buffer.h>

#include <optional>
#include <string>
#include <vector>

namespace vesk::renderers::picture {

/// The render outputs that renderers have.
enum class Output : std::uint8_t
{
    Color,
    Depth,
    LinearDepth,
    Normal,
    EyeNormal,
    PrimId,
    InstanceId,
    ElementId
};

/// The output of a Hydra name (color, depth, linearDepth or cameraDepth, normal, Neye, primId, instanceId,
/// elementId); nothing for another name.
VESK_RENDERERS_PICTURE_EXPORT std::optional<Output> outputOf(const PXR_NS::TfToken& aov);

/// The names of all outputs, for messages.
VESK_RENDERERS_PICTURE_EXPORT std::string knownOutputs();

/// What a film has to hold for some outputs. \param outputs none: the colour alone
VESK_RENDERERS_PICTURE_EXPORT FilmParts partsFor(const std::vector<Output>& outputs,
                                                 const FrameSettings& settings);

/// Whether selected and highlighted prims are marked in the colour.
VESK_RENDERERS_PICTURE_EXPORT bool showsMarks(const FrameSettings& settings);

/// Four floats: one pixel of an output as it is handed out.
struct OutputPixel
{
    float channel[4] = {0.0f, 0.0f, 0.0f, 1.0f};
};

/// One pixel of an output. Colour is encoded for display where colour correction is on, blended over the
/// clear colour, and not multiplied by its opacity. Where nothing is hit, depth is 1, linear depth infinite,
/// normals are 0 and ids -1.
VESK_RENDERERS_PICTURE_EXPORT OutputPixel readPixel(const Film& film, const FrameSettings& settings,
                                                    Output output, std::size_t pixel);

/// The colours of a film before they are encoded for display, multiplied by their opacity: the background
/// lies behind the samples.
class VESK_RENDERERS_PICTURE_EXPORT WorkingColors
{
public:
    WorkingColors(const Film& film, const FrameSettings& settings);
    OutputPixel at(std::size_t pixel) const;

private:
    const Film& m_film;
    Vec3 m_background;
    float m_behind; ///< the background's opacity
};

/// How many channels of an `OutputPixel` an output has.
VESK_RENDERERS_PICTURE_EXPORT int channelsOf(Output output);

/// Reads a whole output back: colour as 8 bits RGBA, ids as integers, the others as floats.
VESK_RENDERERS_PICTURE_EXPORT vesk::framework::hydra_renderer::AovBuffer
readBuffer(const Film& film, const FrameSettings& settings, Output output);

/// Draws the outlines of selected and highlighted prims into a film that holds what lies at its pixels.
/// \param marks one entry a pixel: 0 none, 1 selected, 2 highlighted
VESK_RENDERERS_PICTURE_EXPORT void drawOutlines(Film& film, const FrameSettings& settings,
                                                const std::vector<std::uint8_t>& marks);

/// Replaces a film's colours by the debug picture of what lies at its pixels.
VESK_RENDERERS_PICTURE_EXPORT void drawDebug(Film& film, const FrameSettings& settings);

} // namespace vesk::renderers::picture
