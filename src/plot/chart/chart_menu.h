#pragma once

#include <QMenu>

#include "plot/chart/chart.h"

namespace tessavo {

class CChartView;

/// Context menu of a chart; its entries act on the chart and the view that it was made for.
[[nodiscard]] QMenu* makeChartMenu(CChart& chart, CChartView& view);

}  // namespace tessavo
