#pragma once

#include <QFileDialog>

namespace tessavo {

/// The toolkit's file dialog in the program's look, large enough for what it shows, with the program's own
/// boxes for what it asks and tells. User-interface thread.
class SkinFileDialog : public QFileDialog {
    Q_OBJECT

 public:
    SkinFileDialog(QWidget* parent, const QString& folder);

 protected:
    /// Asks before a file is replaced, and tells when the one to open is not there.
    void accept() override;
    void showEvent(QShowEvent* event) override;

 private:
    void giveRoom();
};

}  // namespace tessavo
