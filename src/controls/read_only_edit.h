#pragma once

#include <QLineEdit>

namespace tessavo {

/// Edit box for display only: the program sets its text, a person can select and copy it and nothing else.
class CReadOnlyEdit : public QLineEdit {
    Q_OBJECT

 public:
    explicit CReadOnlyEdit(int controlId, QWidget* parent = nullptr);

 protected:
    bool event(QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
};

}  // namespace tessavo
