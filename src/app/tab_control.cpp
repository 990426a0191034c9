#include "app/tab_control.h"

#include <QStackedWidget>

namespace tessavo {

CTabDialog* eqCTabCtrl::createPage(QStackedWidget* stack, Page page, const PageFactory& makePage) {
    CTabDialog* created = makePage ? makePage(page) : new CTabDialog;
    created->setAccessibleName(tabText(static_cast<int>(page)));
    stack->addWidget(created);
    return created;
}

}  // namespace tessavo
