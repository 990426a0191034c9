#include "controls/theme.h"

#include <QStringList>

namespace tessavo::theme {

QFont font(int pixelSize, QFont::Weight weight) {
    QFont font;
    font.setFamilies({QStringLiteral("Inter"), QStringLiteral("Segoe UI"), QStringLiteral("Noto Sans"),
                      QStringLiteral("DejaVu Sans")});
    font.setPixelSize(pixelSize);
    font.setWeight(weight);
    // Stems as wide as they are drawn: hinted ones look heavy as light text on a dark ground.
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
