#pragma once

#include <vector>

#include "app/tab_pages.h"
#include "controls/skin_tab_bar.h"

class QStackedWidget;

namespace tessavo {

/// The row of tabs; it creates the pages.
class eqCTabCtrl : public SkinTabBar {
    Q_OBJECT

 public:
    using SkinTabBar::SkinTabBar;

    /// Creates one page for each tab, in tab order, inside `stack`, which owns them.
    ///
    /// \param makePage pages without content when empty
    std::vector<CTabDialog*> createPages(QStackedWidget* stack, const PageFactory& makePage = {});
};

}  // namespace tessavo
