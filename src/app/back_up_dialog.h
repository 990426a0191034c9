#pragma once

#include <QStringList>

#include "controls/dialog_sk.h"
#include "copies/copy_watch.h"

class QProgressBar;

namespace tessavo {

class CColorControl;
class CxSkinButton;

/// "Back Up Target": how far the backup is, with Cancel between two exchanges. Modal from show() on.
class BackUpDialog : public CDialogSK {
    Q_OBJECT

 public:
    explicit BackUpDialog(QWidget* parent = nullptr);

    /// Shows what is read, and lets it go on until cancel().
    [[nodiscard]] CopyWatch watch();
    /// From the next gap between two exchanges on nothing more is read.
    void cancel();
    [[nodiscard]] bool cancelled() const { return cancelled_; }
    /// Only what came of it is shown: closing loses nothing.
    [[nodiscard]] bool finished() const { return finished_; }

    /// All is read, the folder is written: there is nothing to cancel any more.
    void showWriting();
    /// Names what the backup has not, and waits until the dialog is closed.
    void showMissing(const QString& text, const QStringList& missing);

    /// While it reads, Escape and the cross cancel; later they close it.
    void reject() override;

 private:
    CColorControl* message_;
    CColorControl* missing_;
    QProgressBar* bar_;
    CxSkinButton* button_;
    bool reading_ = true;
    bool cancelled_ = false;
    bool finished_ = false;
};

}  // namespace tessavo
