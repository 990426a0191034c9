#pragma once

class QWidget;

namespace tessavo {

/// Lets assistive technology see the controls of this folder: role, name, value and value text. Each control
/// calls it before it names itself, for its first name settles how it is seen; only the first call does
/// something.
void installAccessibility();

/// Tells assistive technology that a control's value has changed.
void announceValue(QWidget& control, double value);

/// The same for its name, description or state in words.
void announceText(QWidget& control);

}  // namespace tessavo
