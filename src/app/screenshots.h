#pragma once

#include <QString>

namespace tessavo {

class CMainFrame;

/// Draws every page, the plot and some pages in use into PNG files of a folder, at the scale that the program
/// runs at.
///
/// \param suffix stands behind each file's name: "" or "@2x"
/// \return empty, or what failed
[[nodiscard]] QString takeScreenshots(CMainFrame& frame, const QString& folder, const QString& suffix);

}  // namespace tessavo
