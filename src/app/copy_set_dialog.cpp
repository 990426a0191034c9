#include "app/copy_set_dialog.h"

#include <QVBoxLayout>

#include "app/compare_side.h"
#include "controls/color_control.h"
#include "controls/skin_button.h"
#include "controls/skin_check_box.h"
#include "plot/chart/dialog_parts.h"

namespace tessavo {

CopySetDialog::CopySetDialog(const ParameterStore& store, std::uint32_t from, QWidget* parent)
    : CDialogSK(parent) {
    setObjectName(QStringLiteral("copySet"));
    setWindowTitle(QStringLiteral("Copy Set To"));
    auto* const body = new QVBoxLayout(this);
    body->setContentsMargins(16, 14, 16, 14);
    body->setSpacing(6);
    body->addWidget(makeLabel(QStringLiteral("Copy %1 to:").arg(nameOfSet(store.sets.at(from), from)), this));
    auto* const copies = makeButton(QStringLiteral("Copy"), this);
    for (std::uint32_t set = 0; set < setCount; ++set) {
        if (set == from) {
            continue;
        }
        // In a caption this sign would stand for a key.
        QString name = nameOfSet(store.sets[set], set);
        name.replace(QLatin1Char('&'), QStringLiteral("&&"));
        auto* const box = makeCheck(QStringLiteral("%1  %2").arg(set + 1).arg(name), this);
        targets_.push_back({set, box});
        body->addWidget(box);
        connect(box, &QAbstractButton::toggled, copies,
                [this, copies] { copies->setEnabled(!targets().empty()); });
    }
    body->addSpacing(8);
    withName_ = makeCheck(QStringLiteral("With its name"), this);
    withName_->setToolTip(QStringLiteral("Otherwise the sets keep their names"));
    body->addWidget(withName_);
    body->addSpacing(8);
    copies->setAccented(true);
    copies->setDefault(true);
    copies->setEnabled(false);
    auto* const cancels = makeButton(QStringLiteral("Cancel"), this);
    auto* const foot = new QHBoxLayout;
    foot->setSpacing(8);
    foot->addStretch(1);
    foot->addWidget(copies);
    foot->addWidget(cancels);
    body->addLayout(foot);
    setTabOrder(withName_, copies);
    connect(copies, &QPushButton::clicked, this, &QDialog::accept);
    connect(cancels, &QPushButton::clicked, this, &QDialog::reject);
    setMinimumWidth(280);
    targets_.front().box->setFocus(Qt::TabFocusReason);
}

std::vector<std::uint32_t> CopySetDialog::targets() const {
    std::vector<std::uint32_t> sets;
    for (const Target& target : targets_) {
        if (target.box->isChecked()) {
            sets.push_back(target.set);
        }
    }
    return sets;
}

bool CopySetDialog::withName() const {
    return withName_->isChecked();
}

}  // namespace tessavo
