#pragma once

#include <QScrollArea>

class QScrollBar;

namespace tessavo {

class CTessavoView;

/// Shows the view in a window that may be narrower than it: header, tabs and page then scroll across as one,
/// and the page alone scrolls up and down as everywhere, with its bar at the edge of the window.
class NarrowView : public QScrollArea {
    Q_OBJECT

 public:
    /// \param view becomes a child of this
    NarrowView(CTessavoView* view, QWidget* parent);

    /// Scrolls across as far as a control of the view needs to be seen; of a row of tabs the one in front.
    void bringIntoSight(QWidget* control);

 protected:
    void resizeEvent(QResizeEvent* event) override;
    bool focusNextPrevChild(bool next) override;

 private:
    CTessavoView* view_;
    QScrollBar* down_;
};

}  // namespace tessavo
