#pragma once

#include <apps/support/image_file.h>

#include <string>
#include <vector>

namespace vesk::apps {

/// One picture of a contact sheet and the line under it.
struct SheetEntry
{
    Image image;
    std::string caption;
};

/// Puts pictures into a grid, each scaled to fit its cell and with its caption under it.
/// \param entries in reading order; at least one
/// \param columns cells in a row, at least 1
/// \param cellWidth,cellHeight size of a picture's cell in pixels, without its caption
Image makeContactSheet(const std::vector<SheetEntry>& entries, int columns, int cellWidth, int cellHeight);

} // namespace vesk::apps
