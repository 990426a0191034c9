#include "controls/scroll_body.h"

#include <QApplication>
#include <QScrollArea>

namespace tessavo {

QScrollArea* makeScrollBody(QWidget* content, QWidget* parent) {
    auto* const area = new QScrollArea(parent);
    area->setFrameShape(QFrame::NoFrame);
    area->setWidgetResizable(true);
    area->setFocusPolicy(Qt::NoFocus);
    area->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    area->setWidget(content);
    area->viewport()->setAutoFillBackground(false);
    content->setAutoFillBackground(false);
    // The area itself follows only the steps of the focus that begin within it.
    QObject::connect(qApp, &QApplication::focusChanged, area, [area, content](QWidget*, QWidget* now) {
        if (now != nullptr && content->isAncestorOf(now)) {
            area->ensureWidgetVisible(now, 0, 8);
        }
    });
    return area;
}

}  // namespace tessavo
