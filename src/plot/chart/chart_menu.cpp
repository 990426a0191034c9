#include "plot/chart/chart_menu.h"

#include <QActionGroup>
#include <algorithm>
#include <functional>
#include <memory>
#include <span>
#include <vector>

#include "plot/chart/chart_view.h"

namespace tessavo {
namespace {

using LookEdit = std::function<void(AxisLook&, int)>;

/// Adds a submenu of numbers, the present one checked.
void addChoice(QMenu& menu, const QString& text, std::span<const int> offered, int current, CChart& chart,
               AxisSide side, const LookEdit& edit) {
    QMenu* const choices = menu.addMenu(text);
    auto* const group = new QActionGroup(choices);
    std::vector<int> values(offered.begin(), offered.end());
    if (std::ranges::find(values, current) == values.end()) {
        values.insert(std::ranges::upper_bound(values, current), current);
    }
    for (const int value : values) {
        QAction* const action =
            choices->addAction(value == 0 ? QStringLiteral("None") : QString::number(value));
        action->setCheckable(true);
        action->setChecked(value == current);
        group->addAction(action);
        QObject::connect(action, &QAction::triggered, &chart, [&chart, side, edit, value] {
            CAxis axis = chart.axis(side);
            AxisLook look = axis.look();
            edit(look, value);
            axis.setLook(look);
            chart.setAxis(axis);
        });
    }
}

int pixelSizeOf(const QFont& font) {
    return QFontInfo(font).pixelSize();
}

void addAxisMenu(QMenu& menu, CChart& chart, const CAxis& axis) {
    static constexpr std::array majorTicks{0, 3, 5, 7, 9, 10, 13};
    static constexpr std::array minorTicks{0, 1, 2, 3, 4, 5, 9};
    static constexpr std::array sizes{9, 10, 11, 12, 13, 15, 18, 24};
    QMenu& axisMenu = *menu.addMenu(axis.name());
    const AxisLook& look = axis.look();
    addChoice(axisMenu, QStringLiteral("Major ticks"), majorTicks, look.majorTicks, chart, axis.side(),
              [](AxisLook& changed, int count) { changed.majorTicks = count; });
    addChoice(axisMenu, QStringLiteral("Minor ticks"), minorTicks, look.minorTicks, chart, axis.side(),
              [](AxisLook& changed, int count) { changed.minorTicks = count; });
    addChoice(axisMenu, QStringLiteral("Title size"), sizes, pixelSizeOf(look.titleFont), chart, axis.side(),
              [](AxisLook& changed, int size) { changed.titleFont.setPixelSize(size); });
    addChoice(axisMenu, QStringLiteral("Label size"), sizes, pixelSizeOf(look.labelFont), chart, axis.side(),
              [](AxisLook& changed, int size) { changed.labelFont.setPixelSize(size); });
}

}  // namespace

std::unique_ptr<QMenu> makeChartMenu(CChart& chart, CChartView& view) {
    auto menu = std::make_unique<QMenu>(&view);
    QObject::connect(menu->addAction(QStringLiteral("Settings...")), &QAction::triggered, &view,
                     &CChartView::openSettings);
    QAction* const autoRange = menu->addAction(QStringLiteral("Auto range"));
    autoRange->setCheckable(true);
    autoRange->setChecked(chart.isAutoRange());
    QObject::connect(autoRange, &QAction::toggled, &chart, &CChart::setAutoRange);
    menu->addSeparator();
    for (const CAxis& axis : chart.axes()) {
        addAxisMenu(*menu, chart, axis);
    }
    menu->addSeparator();
    QObject::connect(menu->addAction(QStringLiteral("Copy as picture")), &QAction::triggered, &view,
                     &CChartView::copyPicture);
    QObject::connect(menu->addAction(QStringLiteral("Save as PNG...")), &QAction::triggered, &view,
                     &CChartView::savePicture);
    QAction* const save = menu->addAction(QStringLiteral("Save data..."));
    save->setEnabled(chart.hasData());
    QObject::connect(save, &QAction::triggered, &view, &CChartView::saveData);
    return menu;
}

}  // namespace tessavo
