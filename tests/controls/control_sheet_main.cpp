// Draws every control in every state into PNG files: tessavo_control_sheet FOLDER

#include <QApplication>
#include <QDir>
#include <cstdio>

#include "controls/application_theme.h"
#include "controls/control_sheet.h"

int main(int argc, char** argv) {
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM")) {
        qputenv("QT_QPA_PLATFORM", "offscreen");
    }
    QApplication application(argc, argv);
    if (argc != 2) {
        std::fprintf(stderr, "usage: tessavo_control_sheet FOLDER\n");
        return 2;
    }
    tessavo::applyTheme();
    tessavo::test::ControlSheet sheet;
    const QDir folder(QString::fromLocal8Bit(argv[1]));
    for (const auto& [name, scale] : {std::pair{"controls-1x.png", 1.0}, std::pair{"controls-1.5x.png", 1.5},
                                      std::pair{"controls-2x.png", 2.0}}) {
        const QString path = folder.filePath(QString::fromLatin1(name));
        if (!sheet.picture(scale).save(path)) {
            std::fprintf(stderr, "cannot write %s\n", qPrintable(path));
            return 1;
        }
    }
    return 0;
}
