#include "arguments.h"

#include <apps/support/errors.h>

#include <algorithm>
#include <cmath>
#include <limits>

PXR_NAMESPACE_USING_DIRECTIVE

namespace vesk::cli::replay {
namespace {

using apps::Json;
using apps::UsageError;

[[noreturn]] void refuse(const std::string& name, const char* meant)
{
    throw UsageError("argument '" + name + "' must be " + meant);
}

const std::string& readText(const Json& value, const std::string& what)
{
    if (!value.is_string()) refuse(what, "a text");
    return value.get_ref<const std::string&>();
}

bool readFlag(const Json& value, const std::string& what)
{
    if (!value.is_boolean()) refuse(what, "true or false");
    return value.get<bool>();
}

int readInteger(const Json& value, const std::string& what)
{
    // Every whole number of 32 bits is a double; some writers of JSON give them a point.
    const double number = value.is_number() ? value.get<double>() : 0.5;
    if (std::trunc(number) != number) refuse(what, "a whole number");
    if (number < std::numeric_limits<int>::min() || number > std::numeric_limits<int>::max())
        refuse(what, "a whole number of 32 bits");
    return static_cast<int>(number);
}

GfVec4f readColor(const Json& value, const std::string& what)
{
    const std::vector<double> n = readNumbers(value, 4, what);
    return GfVec4f(static_cast<float>(n[0]), static_cast<float>(n[1]), static_cast<float>(n[2]),
                   static_cast<float>(n[3]));
}

const Json& requireObject(const Json& value, const std::string& what)
{
    if (!value.is_object()) refuse(what, "an object");
    return value;
}

const Json& requireArray(const Json& value, const std::string& what)
{
    if (!value.is_array()) refuse(what, "an array");
    return value;
}

void requireKnownKeys(const Json& object, std::initializer_list<const char*> known, const char* what)
{
    for (const auto& item : object.items()) {
        const auto isKey = [&](const char* key) { return item.key() == key; };
        if (std::none_of(known.begin(), known.end(), isKey))
            throw UsageError(std::string(what) + " has no field '" + item.key() + "'");
    }
}

GfMatrix4d readMatrix(const Json& value, const std::string& what)
{
    if (!value.is_array() || value.size() != 4) refuse(what, "four rows of four numbers");
    GfMatrix4d matrix(1);
    for (int r = 0; r < 4; ++r) {
        const std::vector<double> row = readNumbers(value[static_cast<std::size_t>(r)], 4, what);
        for (int c = 0; c < 4; ++c)
            matrix[r][c] = row[static_cast<std::size_t>(c)];
    }
    return matrix;
}

std::vector<GfVec4f> readPlanes(const Json& value, const std::string& what)
{
    std::vector<GfVec4f> planes;
    for (const Json& plane : requireArray(value, what))
        planes.push_back(readColor(plane, what));
    return planes;
}

/// Sets one field of a camera; false for a key that a camera does not have.
bool setCameraField(GfCamera& camera, const std::string& key, const Json& value, const std::string& what)
{
    const auto number = [&] { return static_cast<float>(readNumber(value, what)); };
    if (key == "transform")
        camera.SetTransform(readMatrix(value, what));
    else if (key == "projection") {
        const std::string& text = readText(value, what);
        if (text != "perspective" && text != "orthographic")
            refuse(what, "\"perspective\" or \"orthographic\"");
        camera.SetProjection(text == "perspective" ? GfCamera::Perspective : GfCamera::Orthographic);
    } else if (key == "horizontalAperture")
        camera.SetHorizontalAperture(number());
    else if (key == "verticalAperture")
        camera.SetVerticalAperture(number());
    else if (key == "horizontalApertureOffset")
        camera.SetHorizontalApertureOffset(number());
    else if (key == "verticalApertureOffset")
        camera.SetVerticalApertureOffset(number());
    else if (key == "focalLength")
        camera.SetFocalLength(number());
    else if (key == "fStop")
        camera.SetFStop(number());
    else if (key == "focusDistance")
        camera.SetFocusDistance(number());
    else if (key == "clippingRange") {
        const std::vector<double> range = readNumbers(value, 2, what);
        camera.SetClippingRange(GfRange1f(static_cast<float>(range[0]), static_cast<float>(range[1])));
    } else if (key == "clippingPlanes")
        camera.SetClippingPlanes(readPlanes(value, what));
    else
        return false;
    return true;
}

VtValue readSetting(const Json& value, const std::string& what)
{
    if (value.is_boolean()) return VtValue(value.get<bool>());
    if (value.is_number_integer()) return VtValue(readInteger(value, what));
    if (value.is_number()) return VtValue(value.get<double>());
    return VtValue(readText(value, what));
}

} // namespace

double readNumber(const Json& value, const std::string& what)
{
    if (value.is_number()) return value.get<double>();
    if (value == "nan") return std::numeric_limits<double>::quiet_NaN();
    if (value == "inf") return std::numeric_limits<double>::infinity();
    if (value == "-inf") return -std::numeric_limits<double>::infinity();
    refuse(what, "a number, \"nan\", \"inf\" or \"-inf\"");
}

std::vector<double> readNumbers(const Json& value, std::size_t count, const std::string& what)
{
    if (!value.is_array() || value.size() != count) {
        refuse(what, ("an array of " + std::to_string(count) + " numbers").c_str());
    }
    std::vector<double> numbers;
    for (const Json& element : value)
        numbers.push_back(readNumber(element, what));
    return numbers;
}

const Json& Arguments::_require(const char* name) const
{
    const auto found = m_step.find(name);
    if (found == m_step.end()) throw UsageError(std::string("argument '") + name + "' is missing");
    return *found;
}

double Arguments::number(const char* name) const { return readNumber(_require(name), name); }

int Arguments::integer(const char* name) const { return readInteger(_require(name), name); }

bool Arguments::flag(const char* name, bool otherwise) const
{
    return has(name) ? readFlag(m_step[name], name) : otherwise;
}

std::string Arguments::text(const char* name) const { return readText(_require(name), name); }

std::string Arguments::optionalText(const char* name) const
{
    return has(name) ? readText(m_step[name], name) : std::string();
}

std::optional<double> Arguments::optionalNumber(const char* name) const
{
    if (!has(name) || m_step[name].is_null()) return std::nullopt;
    return readNumber(m_step[name], name);
}

std::array<int, 2> Arguments::size(const char* name) const
{
    const Json& value = _require(name);
    if (!value.is_array() || value.size() != 2) refuse(name, "an array of width and height");
    return {readInteger(value[0], name), readInteger(value[1], name)};
}

std::vector<std::string> Arguments::texts(const char* name) const
{
    std::vector<std::string> texts;
    if (!has(name)) return texts;
    for (const Json& element : requireArray(m_step[name], name))
        texts.push_back(readText(element, name));
    return texts;
}

std::vector<SdfPath> Arguments::paths(const char* name) const
{
    std::vector<SdfPath> paths;
    for (const std::string& text : texts(name))
        paths.push_back(text.empty() ? SdfPath() : SdfPath(text));
    return paths;
}

GfVec4f Arguments::color(const char* name) const { return readColor(_require(name), name); }

std::optional<GfVec4f> Arguments::optionalColor(const char* name) const
{
    if (!has(name) || m_step[name].is_null()) return std::nullopt;
    return readColor(m_step[name], name);
}

GfVec4i Arguments::window(const char* name) const
{
    const Json& value = _require(name);
    if (!value.is_array() || value.size() != 4) refuse(name, "an array of x, y, width and height");
    return GfVec4i(readInteger(value[0], name), readInteger(value[1], name), readInteger(value[2], name),
                   readInteger(value[3], name));
}

GfCamera Arguments::camera(const char* name) const
{
    GfCamera camera;
    const Json& object = requireObject(_require(name), name);
    for (const auto& item : object.items()) {
        const std::string what = std::string(name) + "." + item.key();
        if (!setCameraField(camera, item.key(), item.value(), what)) {
            throw UsageError("a camera has no field '" + item.key() + "'");
        }
    }
    return camera;
}

framework::usd_viewport::LightingModel Arguments::lighting(const char* name) const
{
    framework::usd_viewport::LightingModel lighting;
    const Json& object = requireObject(_require(name), name);
    for (const auto& item : object.items()) {
        const std::string what = std::string(name) + "." + item.key();
        const Json& value = item.value();
        if (item.key() == "domeLightTexturePath")
            lighting.setDomeLightTexturePath(readText(value, what));
        else if (item.key() == "lightingRotationDegrees") {
            lighting.setLightingRotationDegrees(static_cast<float>(readNumber(value, what)));
        } else if (item.key() == "lightingExposure") {
            lighting.setLightingExposure(static_cast<float>(readNumber(value, what)));
        } else if (item.key() == "defaultLightingEnabled")
            lighting.setDefaultLightingEnabled(readFlag(value, what));
        else if (item.key() == "sceneLightingEnabled")
            lighting.setSceneLightingEnabled(readFlag(value, what));
        else
            throw UsageError("the lighting has no field '" + item.key() + "'");
    }
    return lighting;
}

std::vector<framework::hydra_renderer::AovCaptureRequest> Arguments::captureRequests(const char* name) const
{
    std::vector<framework::hydra_renderer::AovCaptureRequest> requests;
    for (const Json& element : requireArray(_require(name), name)) {
        const Arguments fields(requireObject(element, name));
        requireKnownKeys(element, {"path", "aov", "clearColor", "samples"}, "a capture request");
        framework::hydra_renderer::AovCaptureRequest request;
        request.path = fields.text("path");
        request.aov = TfToken(fields.text("aov"));
        request.clearColor = fields.optionalColor("clearColor");
        request.samples = fields.has("samples") ? fields.integer("samples") : 0;
        requests.push_back(std::move(request));
    }
    return requests;
}

framework::hydra_renderer::RenderParameters Arguments::renderParameters(const char* name) const
{
    framework::hydra_renderer::RenderParameters parameters;
    if (!has(name)) return parameters;
    const Json& object = requireObject(m_step[name], name);
    requireKnownKeys(object, {"samples", "untilConverged", "aovs"}, "a set of render parameters");
    const Arguments fields(object);
    if (fields.has("samples")) parameters.samples = fields.integer("samples");
    parameters.untilConverged = fields.flag("untilConverged", true);
    for (const std::string& aov : fields.texts("aovs"))
        parameters.aovs.emplace_back(aov);
    return parameters;
}

std::unordered_set<usd::model::Selector, usd::model::SelectorHash>
Arguments::selectors(const char* name) const
{
    std::unordered_set<usd::model::Selector, usd::model::SelectorHash> selectors;
    for (const SdfPath& path : paths(name))
        selectors.insert(usd::model::Selector(path));
    return selectors;
}

std::vector<usd::utils::Param<VtValue>> Arguments::settings(const char* name) const
{
    std::vector<usd::utils::Param<VtValue>> settings;
    if (!has(name)) return settings;
    for (const Json& element : requireArray(m_step[name], name)) {
        requireKnownKeys(requireObject(element, name), {"name", "value"}, "a renderer's setting");
        const Arguments fields(element);
        settings.push_back({fields.text("name"), readSetting(fields.value("value"), name)});
    }
    return settings;
}

} // namespace vesk::cli::replay
