#include "app/tab_control.h"

#include <QStackedWidget>

namespace tessavo {

std::vector<CTabDialog*> eqCTabCtrl::createPages(QStackedWidget* stack) {
    std::vector<CTabDialog*> pages;
    for (int i = 0; i < count(); ++i) {
        auto* page = new CTabDialog;
        page->setAccessibleName(tabText(i));
        stack->addWidget(page);
        pages.push_back(page);
    }
    return pages;
}

}  // namespace tessavo
