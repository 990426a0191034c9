#pragma once

#include <QTabBar>
#include <QVector>

#include "controls/tracked_widget.h"

namespace tessavo {

using SkinTabBarBase = FocusTracked<WheelWithFocus<QTabBar>>;

/// Row of page tabs. The chosen tab has a bar at its top and no edge at its bottom, so that it opens into the
/// page below.
class SkinTabBar : public SkinTabBarBase {
    Q_OBJECT

 public:
    static constexpr int rowHeight = 34;  ///< in pixels
    static constexpr int gap = 2;         ///< between two tabs, in pixels

    explicit SkinTabBar(int controlId, QWidget* parent = nullptr);

    /// Adds a tab. Its width is fixed, so that no tab moves when the chosen one is written bolder.
    /// \return its index
    int addFixedTab(const QString& text, int width);

    /// The rectangle that is painted of a tab, without the gap behind it.
    [[nodiscard]] QRect tabBody(int index) const;
    /// Width that a tab needs for its text, in pixels.
    [[nodiscard]] int neededWidth(int index) const;

 protected:
    [[nodiscard]] QSize tabSizeHint(int index) const override;
    [[nodiscard]] QSize minimumTabSizeHint(int index) const override { return tabSizeHint(index); }
    bool event(QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

 private:
    QVector<int> widths_;
    int hovered_ = -1;
};

}  // namespace tessavo
