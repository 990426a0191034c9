#pragma once

#include <QMenu>
#include <memory>

#include "plot/chart/chart.h"

namespace tessavo {

class CChartView;

/// Makes the context menu of a chart. Its entries act on the chart and on the view that shows it; the view is
/// the menu's parent.
[[nodiscard]] std::unique_ptr<QMenu> makeChartMenu(CChart& chart, CChartView& view);

}  // namespace tessavo
