#include "app/skin_file_dialog.h"

#include <QFileInfo>
#include <QHeaderView>
#include <QSplitter>
#include <QTreeView>

#include "controls/screen_room.h"
#include "controls/skin_button.h"
#include "controls/skin_message_box.h"

namespace tessavo {
namespace {

constexpr QSize usualSize(820, 520);
constexpr int placesWidth = 150;

}  // namespace

SkinFileDialog::SkinFileDialog(QWidget* parent, const QString& folder)
    : QFileDialog(parent, QString(), folder) {
    setOption(QFileDialog::DontUseNativeDialog);
    // The toolkit's own question would wear another look.
    setOption(QFileDialog::DontConfirmOverwrite);
    resize(usualSize.boundedTo(roomOnScreen(parent)));
}

void SkinFileDialog::accept() {
    const QFileInfo chosen(selectedFiles().value(0));
    const bool named = !chosen.fileName().isEmpty();
    if (acceptMode() == AcceptSave && named && chosen.isFile()) {
        SkinMessageBox box(
            windowTitle(),
            QStringLiteral("\"%1\" exists already.\r\nDo you want to replace it?").arg(chosen.fileName()),
            SkinMessageBox::Icon::stop, SkinMessageBox::Buttons::okCancel, this);
        // A key pressed too often must not replace anything.
        const auto buttons = box.buttons();
        buttons.front()->setAccented(false);
        buttons.back()->setAccented(true);
        buttons.back()->setFocus(Qt::OtherFocusReason);
        if (box.ask() != SkinMessageBox::Answer::ok) {
            return;
        }
    }
    if (acceptMode() == AcceptOpen && named && !chosen.exists()) {
        SkinMessageBox(windowTitle(), QStringLiteral("There is no file \"%1\".").arg(chosen.fileName()),
                       SkinMessageBox::Icon::stop, SkinMessageBox::Buttons::ok, this)
            .ask();
        return;
    }
    QFileDialog::accept();
}

void SkinFileDialog::showEvent(QShowEvent* event) {
    giveRoom();
    QFileDialog::showEvent(event);
}

void SkinFileDialog::giveRoom() {
    if (auto* const details = findChild<QTreeView*>(QStringLiteral("treeView"))) {
        // Sizes, kinds and dates are read whole; names take what is left.
        QHeaderView& head = *details->header();
        head.setStretchLastSection(false);
        head.setSectionResizeMode(QHeaderView::ResizeToContents);
        head.setSectionResizeMode(0, QHeaderView::Stretch);
    }
    if (auto* const splitter = findChild<QSplitter*>(QStringLiteral("splitter"))) {
        splitter->setSizes({placesWidth, width() - placesWidth});
    }
}

}  // namespace tessavo
