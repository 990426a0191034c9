#include "controls/theme.h"

#include <QStringList>

namespace tessavo::theme {

QFont font(int pixelSize, QFont::Weight weight) {
    QFont font;
    font.setFamilies({QStringLiteral("Inter"), QStringLiteral("Segoe UI"), QStringLiteral("Noto Sans"),
                      QStringLiteral("DejaVu Sans")});
    font.setPixelSize(pixelSize);
    font.setWeight(weight);
    // Without hinting: hinted stems become wider, and light text on a dark ground then looks heavy.
    font.setHintingPreference(QFont::PreferNoHinting);
    return font;
}

QFont fixedFont(int pixelSize) {
    QFont font;
    font.setFamilies(
        {QStringLiteral("JetBrains Mono"), QStringLiteral("Consolas"), QStringLiteral("DejaVu Sans Mono")});
    font.setStyleHint(QFont::Monospace);
    font.setFixedPitch(true);
    font.setPixelSize(pixelSize);
    // Not that of the group around.
    font.setWeight(QFont::Normal);
    return font;
}

}  // namespace tessavo::theme
