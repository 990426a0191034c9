#include "app/choice_dialog.h"

#include <QListView>
#include <QStringListModel>
#include <QVBoxLayout>

#include "controls/screen_room.h"
#include "controls/skin_button.h"
#include "plot/chart/dialog_parts.h"

namespace tessavo {

namespace {

constexpr QSize usualSize(460, 340);
constexpr int rowHeight = 24;

}  // namespace

ChoiceDialog::ChoiceDialog(const QString& title, const QStringList& texts, int current, QWidget* parent)
    : CDialogSK(parent), list_(new QListView(this)), model_(new QStringListModel(texts, this)) {
    setObjectName(QStringLiteral("choice"));
    setWindowTitle(title);
    auto* const body = new QVBoxLayout(this);
    body->setContentsMargins(12, 12, 12, 12);
    body->setSpacing(10);
    list_->setAccessibleName(title);
    list_->setUniformItemSizes(true);
    list_->setStyleSheet(QStringLiteral("QListView::item { height: %1px; }").arg(rowHeight));
    list_->setEditTriggers(QAbstractItemView::NoEditTriggers);
    list_->setModel(model_);
    list_->setCurrentIndex(model_->index(current, 0));
    list_->scrollTo(list_->currentIndex());
    body->addWidget(list_);
    auto* const accepts = makeButton(QStringLiteral("OK"), this);
    accepts->setAccented(true);
    accepts->setDefault(true);
    auto* const cancels = makeButton(QStringLiteral("Cancel"), this);
    auto* const foot = new QHBoxLayout;
    foot->setSpacing(8);
    foot->addStretch(1);
    foot->addWidget(accepts);
    foot->addWidget(cancels);
    body->addLayout(foot);
    connect(accepts, &QPushButton::clicked, this, &QDialog::accept);
    connect(cancels, &QPushButton::clicked, this, &QDialog::reject);
    connect(list_, &QListView::doubleClicked, this, &QDialog::accept);
    resize(usualSize.boundedTo(roomOnScreen(parent)));
    list_->setFocus();
}

int ChoiceDialog::row() const {
    return list_->currentIndex().row();
}

std::optional<int> ChoiceDialog::ask(const QString& title, const QStringList& texts, int current,
                                     QWidget* parent) {
    ChoiceDialog dialog(title, texts, current, parent);
    if (dialog.exec() != QDialog::Accepted || dialog.row() < 0) {
        return std::nullopt;
    }
    return dialog.row();
}

}  // namespace tessavo
