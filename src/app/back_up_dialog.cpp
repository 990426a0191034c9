#include "app/back_up_dialog.h"

#include <QVBoxLayout>

#include "app/copy_parts.h"
#include "controls/skin_button.h"
#include "plot/chart/dialog_parts.h"

namespace tessavo {

namespace {

constexpr int usualWidth = 460;

}  // namespace

BackUpDialog::BackUpDialog(QWidget* parent)
    : CDialogSK(parent),
      message_(makeMessage(this)),
      missing_(makeMessage(this)),
      bar_(makeProgressBar(this)),
      button_(makeButton(QStringLiteral("Cancel"), this)) {
    setObjectName(QStringLiteral("backUp"));
    setWindowFlags(Qt::Dialog | Qt::WindowTitleHint | Qt::WindowSystemMenuHint | Qt::WindowCloseButtonHint);
    setWindowTitle(QStringLiteral("Back Up Target"));
    setModal(true);
    auto* const body = new QVBoxLayout(this);
    body->setContentsMargins(12, 12, 12, 12);
    body->setSpacing(10);
    body->addWidget(message_);
    body->addWidget(bar_);
    body->addWidget(missing_);
    auto* const foot = new QHBoxLayout;
    foot->addStretch();
    foot->addWidget(button_);
    body->addLayout(foot);
    missing_->hide();
    tell(*message_, QStringLiteral("Looking at the folder"), false);
    setFixedWidth(usualWidth);
    connect(button_, &QPushButton::clicked, this, &BackUpDialog::reject);
}

CopyWatch BackUpDialog::watch() {
    return {.progress = [this](const CopyProgress& progress) { showProgress(progress, *message_, *bar_); },
            .mayGoOn = [this] { return !cancelled_; },
            .nothingSent = {}};
}

void BackUpDialog::cancel() {
    if (!reading_ || cancelled_) {
        return;
    }
    cancelled_ = true;
    button_->setEnabled(false);
    tell(*message_, QStringLiteral("Cancelled: waiting for the end of this exchange"), false);
}

void BackUpDialog::showWriting() {
    reading_ = false;
    button_->setEnabled(false);
    bar_->setValue(bar_->maximum());
    tell(*message_, QStringLiteral("Writing the folder"), false);
}

void BackUpDialog::showMissing(const QString& text, const QStringList& missing) {
    finished_ = true;
    button_->setText(QStringLiteral("Close"));
    button_->setEnabled(true);
    button_->setAccented(true);
    button_->setAutoDefault(true);
    button_->setFocus();
    bar_->hide();
    tell(*message_, text, false);
    missing_->show();
    tell(*missing_, missing.join(QLatin1Char('\n')), true);
    adjustSize();
    exec();
}

void BackUpDialog::reject() {
    if (reading_) {
        cancel();
    } else if (finished_) {
        CDialogSK::reject();
    }
}

}  // namespace tessavo
