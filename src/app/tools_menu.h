#pragma once

#include <QObject>
#include <QString>
#include <functional>

class QAction;
class QMenu;
class QMenuBar;

namespace tessavo {

/// The menu "Tools". Whoever does what an entry is for hands its functions in; an entry without one is not there. Its
/// keys also work while another window of the program is in front. User-interface thread.
class ToolsMenu : public QObject {
    Q_OBJECT

 public:
    /// Adds the menu, empty, behind those that the bar has.
    /// \param bar outlives this object
    explicit ToolsMenu(QMenuBar& bar);

    /// For entries that stand above those of the two sides.
    [[nodiscard]] QMenu& menu() { return *menu_; }

    /// What a person chooses of the two sides that are compared.
    struct Sides {
        std::function<void()> store;
        std::function<void()> switchSides;
        std::function<void(bool)> setLevelMatched;
    };
    /// Adds "Store A", "Switch to B" and "Level Matched".
    void addSides(Sides sides);
    /// Names the side that is heard and the other one in these entries.
    void showSides(QChar heard, QChar other, bool isLevelMatched);

 private:
    QAction* add(const QString& text, const QKeySequence& keys, const std::function<void()>& act);

    QMenu* menu_;
    QAction* store_ = nullptr;
    QAction* switch_ = nullptr;
    QAction* levelMatched_ = nullptr;
};

}  // namespace tessavo
