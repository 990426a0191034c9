#include "controls/control_id.h"

#include <QVariant>

namespace tessavo {
namespace {

constexpr char property[] = "controlId";

}  // namespace

void setControlId(QWidget& control, int controlId) {
    control.setProperty(property, controlId);
    control.setObjectName(QStringLiteral("id%1").arg(controlId));
}

int controlId(const QWidget& control) {
    const QVariant id = control.property(property);
    return id.isValid() ? id.toInt() : -1;
}

}  // namespace tessavo
