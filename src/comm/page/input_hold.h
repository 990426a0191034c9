#pragma once

#include <QObject>

namespace tessavo {

/// While it lives, nothing in the program's windows can be clicked, typed or dropped, except in a message box
/// that is open; keyboard shortcuts rest too. Windows still paint, and can be asked to close. What is clicked
/// or typed meanwhile is lost, so that nothing starts by surprise afterwards.
///
/// User-interface thread.
class InputHold : public QObject {
    Q_OBJECT

 public:
    InputHold();
    ~InputHold() override;

 protected:
    bool eventFilter(QObject* watched, QEvent* event) override;
};

}  // namespace tessavo
