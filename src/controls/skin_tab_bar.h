#pragma once

#include <QTabBar>
#include <QVector>

#include "controls/focus_ring.h"

namespace tessavo {

/// Row of page tabs, 34 pixels high, two pixels apart. The chosen one opens into the page below and wears a
/// bar.
class SkinTabBar : public QTabBar {
    Q_OBJECT

 public:
    static constexpr int rowHeight = 34;
    static constexpr int gap = 2;

    explicit SkinTabBar(int controlId, QWidget* parent = nullptr);

    /// Adds a tab of a fixed width, so that no tab moves when another is chosen.
    int addFixedTab(const QString& text, int width);

    /// The painted rectangle of a tab.
    [[nodiscard]] QRect tabBody(int index) const;
    [[nodiscard]] int neededWidth(int index) const;

 protected:
    [[nodiscard]] QSize tabSizeHint(int index) const override;
    [[nodiscard]] QSize minimumTabSizeHint(int index) const override { return tabSizeHint(index); }
    bool event(QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;
    void focusInEvent(QFocusEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;

 private:
    QVector<int> widths_;
    int hovered_ = -1;
    FocusRing ring_;
};

}  // namespace tessavo
