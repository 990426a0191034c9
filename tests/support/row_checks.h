#pragma once

#include <QWidget>
#include <vector>

#include "pages/rows/control_row.h"

namespace tessavo::test {

/// Every row has become a control of its kind with its number, rectangle and name; the page has no numbered
/// control beside those of the rows.
/// \param page as large as in the window
void expectControlsOfRows(const QWidget& page, const ControlRows& rows);

/// No two rows share a number or a pixel, but for groups around their controls and the lines behind them, and
/// each lies wholly in the group or page that it begins in.
/// \param stacked rows that lie above each other by design
void expectRowsApart(const ControlRows& rows, const std::vector<int>& stacked = {});

}  // namespace tessavo::test
