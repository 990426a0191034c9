#include "app/text_box.h"

#include <QAbstractSpinBox>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QTextEdit>

namespace tessavo {

bool isTextBox(const QWidget& control) {
    return qobject_cast<const QLineEdit*>(&control) != nullptr ||
           qobject_cast<const QAbstractSpinBox*>(&control) != nullptr ||
           qobject_cast<const QTextEdit*>(&control) != nullptr ||
           qobject_cast<const QPlainTextEdit*>(&control) != nullptr;
}

}  // namespace tessavo
