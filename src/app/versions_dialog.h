#pragma once

#include <string>
#include <vector>

#include "controls/dialog_sk.h"
#include "history/kept_versions.h"

class QTreeWidget;

namespace tessavo {

class CColorControl;
class CxSkinButton;
class FileHistory;
class IFileDialogs;

/// "Earlier Versions": what settings files and exported images held before they were written over, newest
/// first. One can be brought back to its place, or its sets be opened; "Close" and Escape leave. What came of
/// it stands beside the buttons, and is told to screen readers.
class VersionsDialog : public CDialogSK {
    Q_OBJECT

 public:
    /// \param history, dialogs outlive this object. The dialogs ask for a place where it is no longer known.
    VersionsDialog(FileHistory& history, IFileDialogs& dialogs, QWidget* parent = nullptr);

    /// What is told beside the buttons; empty at first.
    [[nodiscard]] QString message() const;

 private:
    void makeList();
    void makeFoot();
    void fill(const std::string& chosen);
    void showChoice();
    void bringBack();
    void open();
    void tell(const QString& text, bool isTrouble);
    [[nodiscard]] const KeptVersion* chosen() const;

    FileHistory& history_;
    IFileDialogs& dialogs_;
    std::vector<KeptVersion> versions_;
    QTreeWidget* list_ = nullptr;
    CColorControl* message_ = nullptr;
    CxSkinButton* bringBack_ = nullptr;
    CxSkinButton* open_ = nullptr;
};

}  // namespace tessavo
