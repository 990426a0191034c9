#pragma once

#include <QString>
#include <QTextDocument>

namespace tessavo {

/// A text for a tooltip that shows it as it stands, also where a file's name looks like mark-up.
[[nodiscard]] inline QString plainToolTip(const QString& text) {
    return Qt::mightBeRichText(text) ? Qt::convertFromPlainText(text, Qt::WhiteSpaceNormal) : text;
}

}  // namespace tessavo
