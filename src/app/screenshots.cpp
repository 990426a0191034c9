#include "app/screenshots.h"

#include <QApplication>
#include <QDir>
#include <QPixmap>

#include "app/main_frame.h"
#include "app/screenshot_states.h"
#include "app/tessavo_view.h"
#include "plot/chart/plot_dlg.h"

namespace tessavo {

namespace {

QString saveWidget(QWidget& widget, const QString& path) {
    QApplication::processEvents();
    if (!widget.grab().save(path, "PNG")) {
        return QStringLiteral("%1 could not be written").arg(path);
    }
    return {};
}

}  // namespace

QString takeScreenshots(CMainFrame& frame, const QString& folder, const QString& suffix) {
    const QDir dir(folder);
    if (!dir.mkpath(QStringLiteral("."))) {
        return QStringLiteral("%1 could not be made").arg(folder);
    }
    const auto pathOf = [&](const char* name) {
        return dir.filePath(QLatin1String(name) + suffix + QStringLiteral(".png"));
    };
    // The whole window, however small the screen is.
    frame.setFixedSize(CMainFrame::clientWidth, CMainFrame::clientHeight);
    for (const PageEntry& each : pageTable()) {
        frame.view().showPage(each.page);
        if (QString problem = saveWidget(frame, pathOf(each.picture)); !problem.isEmpty()) {
            return problem;
        }
    }
    frame.view().showPage(Page::outputEqualizer);
    if (QString problem = saveWidget(frame.view().plot(), pathOf("plot")); !problem.isEmpty()) {
        return problem;
    }
    return takeStatePictures(
        [&](QWidget& window, const char* name) { return saveWidget(window, pathOf(name)); });
}

}  // namespace tessavo
