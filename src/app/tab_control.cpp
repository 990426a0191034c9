#include "app/tab_control.h"

#include <QStackedWidget>

namespace tessavo {

std::vector<CTabDialog*> eqCTabCtrl::createPages(QStackedWidget* stack, const PageFactory& makePage) {
    std::vector<CTabDialog*> pages;
    for (int i = 0; i < count(); ++i) {
        CTabDialog* page = makePage ? makePage(static_cast<Page>(i)) : new CTabDialog;
        page->setAccessibleName(tabText(i));
        stack->addWidget(page);
        pages.push_back(page);
    }
    return pages;
}

}  // namespace tessavo
