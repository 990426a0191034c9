#include "app/tools_menu.h"

#include <QAction>
#include <QMenu>
#include <QMenuBar>
#include <utility>

namespace tessavo {

ToolsMenu::ToolsMenu(QMenuBar& bar) : menu_(bar.addMenu(QStringLiteral("&Tools"))) {}

QAction* ToolsMenu::add(const QString& text, const QKeySequence& keys, const std::function<void()>& act) {
    QAction* action = menu_->addAction(text);
    action->setShortcut(keys);
    action->setShortcutContext(Qt::ApplicationShortcut);
    connect(action, &QAction::triggered, this, [act] { act(); });
    return action;
}

void ToolsMenu::addSides(Sides sides) {
    if (!menu_->isEmpty()) {
        menu_->addSeparator();
    }
    store_ = add(QStringLiteral("&Store A"), QKeySequence(Qt::Key_F8), sides.store);
    switch_ = add(QStringLiteral("S&witch to B"), QKeySequence(Qt::Key_F9), sides.switchSides);
    levelMatched_ = menu_->addAction(QStringLiteral("&Level Matched"));
    levelMatched_->setCheckable(true);
    connect(levelMatched_, &QAction::triggered, this, std::move(sides.setLevelMatched));
}

void ToolsMenu::showSides(QChar heard, QChar other, bool isLevelMatched) {
    store_->setText(QStringLiteral("&Store %1").arg(heard));
    switch_->setText(QStringLiteral("S&witch to %1").arg(other));
    levelMatched_->setChecked(isLevelMatched);
}

}  // namespace tessavo
