#include "app/edit_menu.h"

#include <QAction>
#include <QMenu>
#include <QMenuBar>
#include <QTimer>
#include <algorithm>

#include "app/channel_names.h"
#include "app/history_dialog.h"
#include "app/text_undo.h"
#include "app/undo_commands.h"
#include "pages/form/form.h"

namespace tessavo {

namespace {

// A menu grows with its texts, but the name of a file may be wider than a screen.
constexpr int widestText = 560;
constexpr int keysGap = 32;
constexpr int borders = 60;

/// \param word with the letter that chooses it from the keyboard
QString entryText(const QString& word, std::string_view step, const QFontMetrics& metrics) {
    if (step.empty()) {
        return word;
    }
    QString text = metrics.elidedText(textOf(step).simplified(), Qt::ElideMiddle, widestText);
    text.replace(QLatin1Char('&'), QLatin1String("&&"));
    return word + QLatin1String(": ") + text;
}

}  // namespace

EditMenu::EditMenu(UndoCommands& commands, QMenuBar& bar)
    : commands_(commands), menu_(bar.addMenu(QStringLiteral("&Edit"))) {
    const auto add = [this](const QString& text, const QList<QKeySequence>& keys, auto act) {
        QAction* action = menu_->addAction(text);
        action->setShortcuts(keys);
        action->setShortcutContext(Qt::ApplicationShortcut);
        connect(action, &QAction::triggered, this, act);
        return action;
    };
    undo_ = add(QStringLiteral("&Undo"), {QKeySequence(Qt::CTRL | Qt::Key_Z)}, [this] { commands_.undo(); });
    redo_ = add(QStringLiteral("&Redo"),
                {QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_Z), QKeySequence(Qt::CTRL | Qt::Key_Y)},
                [this] { commands_.redo(); });
    add(QStringLiteral("&History..."), {}, [this] { showHistory(); });
    names_ = std::make_unique<ChannelNames>(commands_, *menu_);
    follow();
}

EditMenu::~EditMenu() {
    delete dialog_;
}

void EditMenu::follow() {
    connect(&commands_, &UndoCommands::historyChanged, this, [this] { showTexts(false); });
    connect(menu_, &QMenu::aboutToShow, this, [this] {
        showTexts(true);
        makeRoom();
    });
    // The menu closes before the entry that was chosen acts, which has to be enabled still.
    connect(menu_, &QMenu::aboutToHide, this,
            [this] { QTimer::singleShot(0, this, [this] { showTexts(false); }); });
    showTexts(false);
}

void EditMenu::showTexts(bool typingCounts) {
    const History& history = commands_.history();
    const auto show = [&](QAction& action, const QString& word, UndoDirection direction, bool can,
                          std::string_view step) {
        const bool isTyping = typingCounts && TextUndo::isDue(direction);
        action.setText(entryText(word, isTyping ? "Typing" : step, menu_->fontMetrics()));
        action.setEnabled(isTyping || can);
    };
    show(*undo_, QStringLiteral("&Undo"), UndoDirection::undo, history.canUndo(), history.undoText());
    show(*redo_, QStringLiteral("&Redo"), UndoDirection::redo, history.canRedo(), history.redoText());
}

// The toolkit puts the keys close behind the longest text.
void EditMenu::makeRoom() {
    const QFontMetrics metrics = menu_->fontMetrics();
    int texts = 0;
    int keys = 0;
    for (const QAction* action : menu_->actions()) {
        texts = std::max(texts, metrics.horizontalAdvance(action->text()));
        keys =
            std::max(keys, metrics.horizontalAdvance(action->shortcut().toString(QKeySequence::NativeText)));
    }
    menu_->setMinimumWidth(std::max(menu_->minimumWidth(), texts + keysGap + keys + borders));
}

void EditMenu::showHistory() {
    if (!dialog_) {
        dialog_ = new HistoryDialog(commands_, menu_->window());
        dialog_->setAttribute(Qt::WA_DeleteOnClose);
    }
    dialog_->show();
    dialog_->raise();
    dialog_->activateWindow();
}

}  // namespace tessavo
