#pragma once

class QWidget;

namespace tessavo {

/// Lets assistive technology see the controls of this folder: role, name, value and value text. Each control
/// calls it before it is given a name, because the toolkit decides at a control's first name how to present
/// it. Only the first call does something.
void installAccessibility();

/// Tells assistive technology that a control's value has changed, in the unit that the control reports.
void announceValue(QWidget& control, double value);

/// Tells assistive technology that a control's name, description or state in words has changed.
void announceText(QWidget& control);

}  // namespace tessavo
