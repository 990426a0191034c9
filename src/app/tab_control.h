#pragma once

#include "app/tab_pages.h"
#include "controls/skin_tab_bar.h"

class QStackedWidget;

namespace tessavo {

/// The row of tabs; it creates the pages, in tab order.
class eqCTabCtrl : public SkinTabBar {
    Q_OBJECT

 public:
    using SkinTabBar::SkinTabBar;

    /// Creates the page of a tab inside `stack`, which owns it.
    ///
    /// \param makePage a page without content when empty
    CTabDialog* createPage(QStackedWidget* stack, Page page, const PageFactory& makePage = {});
};

}  // namespace tessavo
