#pragma once

#include <QProgressBar>
#include <QString>
#include <string_view>

#include "controls/color_control.h"
#include "copies/copy_watch.h"

namespace tessavo {

// What the dialogs about copies of the target have in common.

/// A label that breaks its lines, in the size of message texts.
[[nodiscard]] CColorControl* makeMessage(QWidget* parent);
/// Puts a text into such a label, and tells it to screen readers.
void tell(CColorControl& label, const QString& text, bool isTrouble);

/// A groove without text that fills from exchange to exchange.
[[nodiscard]] QProgressBar* makeProgressBar(QWidget* parent);
/// Blue while it runs, red where it stopped before its end, green at it.
enum class BarState { running, stopped, done };
void showBarState(QProgressBar& bar, BarState state);
/// "Reading set 3, exchange 3 of 7", and the groove filled as far as exchanges are behind.
void showProgress(const CopyProgress& progress, CColorControl& label, QProgressBar& bar);

/// A text of the core with a capital first letter.
[[nodiscard]] QString sentenceStart(std::string_view text);

}  // namespace tessavo
