#pragma once

#include <QColor>
#include <QWidget>
#include <optional>

#include "app/small_chart.h"

namespace tessavo {

/// A small chart of a channel's filters before and after an import, without its volume.
class ImportChart : public QWidget {
    Q_OBJECT

 public:
    explicit ImportChart(QWidget* parent = nullptr);

    /// \param color of the channel
    void show(const FineCurve& before, const FineCurve& after, const QColor& color);

    [[nodiscard]] const std::optional<FineCurve>& before() const { return before_; }
    [[nodiscard]] const std::optional<FineCurve>& after() const { return after_; }

 protected:
    void paintEvent(QPaintEvent* event) override;

 private:
    [[nodiscard]] SmallChart chart() const;
    void paintCurves(SkinPainter& painter, const SmallChart& chart) const;
    void paintHead(SkinPainter& painter) const;

    std::optional<FineCurve> before_;
    std::optional<FineCurve> after_;
    QColor color_;
};

}  // namespace tessavo
