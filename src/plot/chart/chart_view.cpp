#include "plot/chart/chart_view.h"

#include <QAccessible>
#include <QApplication>
#include <QClipboard>
#include <QContextMenuEvent>
#include <QFocusEvent>
#include <QFontMetricsF>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QSaveFile>
#include <algorithm>
#include <cmath>

#include "base/saturate.h"
#include "controls/mem_dc.h"
#include "controls/skin_painter.h"
#include "controls/theme.h"
#include "plot/chart/chart_menu.h"
#include "plot/chart/image_chart.h"
#include "plot/chart/image_plot_settings_dialog.h"
#include "plot/chart/plot_settings_dialog.h"

namespace tessavo {
namespace {

QSize deviceSize(QSizeF size, double scale) {
    return {std::max(1, truncateTo<int>(std::ceil(size.width() * scale))),
            std::max(1, truncateTo<int>(std::ceil(size.height() * scale)))};
}

void drawReadout(QPainter& painter, const ChartReadout& readout, const QRectF& box) {
    const QFont font = theme::font(11);
    const QFontMetricsF metrics(font);
    const QSizeF size(metrics.horizontalAdvance(readout.text) + 14, metrics.height() + 8);
    QRectF frame(readout.point + QPointF(10, -10 - size.height()), size);
    if (frame.right() > box.right() - 2) {
        frame.moveRight(readout.point.x() - 10);
    }
    frame.moveTop(
        std::clamp(frame.top(), box.top() + 2, std::max(box.top() + 2, box.bottom() - 2 - size.height())));
    frame.moveLeft(std::max(frame.left(), box.left() + 2));

    painter.setRenderHint(QPainter::Antialiasing);
    painter.setClipRect(box);
    drawHairline(painter, {readout.point.x(), box.top()}, {readout.point.x(), box.bottom()}, theme::edge);
    // A mark on the edge of the box is drawn whole, so nothing is clipped; outside the box there is none.
    painter.setClipping(false);
    if (box.adjusted(-0.5, -0.5, 0.5, 0.5).contains(readout.point)) {
        painter.setPen(QPen(QColor(chart_colors::box), 2));
        painter.setBrush(QColor(theme::text));
        painter.drawEllipse(readout.point, 4, 4);
    }
    painter.setClipRect(box);
    painter.setPen(QPen(QColor(theme::edge), 1));
    painter.setBrush(QColor(theme::card));
    painter.drawRoundedRect(frame.toAlignedRect().toRectF().adjusted(0.5, 0.5, -0.5, -0.5), 4, 4);
    painter.setPen(QColor(theme::text));
    painter.setFont(font);
    painter.drawText(frame, Qt::AlignCenter, readout.text);
}

}  // namespace

CChartView::CChartView(CChart& chart, IChartHost& host, QWidget* parent)
    : FocusTracked<QWidget>(parent), chart_(chart), host_(host) {
    setAttribute(Qt::WA_OpaquePaintEvent);
    setMouseTracking(true);
    setFocusPolicy(Qt::StrongFocus);
    setAccessibleName(QStringLiteral("Chart"));
    connect(&chart, &CChart::dataChanged, this, [this] {
        dataAnnounced_ = false;
        update();
    });
    connect(&chart, &CChart::layoutChanged, this, [this] {
        frameIsFresh_ = false;
        update();
    });
}

QImage CChartView::picture() const {
    const double scale = devicePixelRatioF();
    QImage image(deviceSize(size(), scale), QImage::Format_ARGB32_Premultiplied);
    image.setDevicePixelRatio(scale);
    image.fill(QColor(theme::window));
    QPainter painter(&image);
    chart_.draw(painter, rect());
    return image;
}

void CChartView::renewFrame() {
    const double scale = devicePixelRatioF();
    const QSize wanted = deviceSize(size(), scale);
    if (frame_.size() != wanted || frame_.devicePixelRatio() != scale) {
        frame_ = QPixmap(wanted);
        frame_.setDevicePixelRatio(scale);
        frameIsFresh_ = false;
    }
    if (!frameIsFresh_) {
        frameIsFresh_ = true;
        dataAnnounced_ = false;
        layout_ = chart_.layoutFor(rect());
        frame_.fill(QColor(theme::window));
        QPainter painter(&frame_);
        chart_.drawStatic(painter, layout_);
    }
    if (!dataAnnounced_) {
        dataAnnounced_ = true;
        announceReadout();
    }
}

void CChartView::paintEvent(QPaintEvent* /*event*/) {
    renewFrame();
    SkinPainter painter(this);
    {
        CMemDC screen(painter, rect(), buffer_, QColor(theme::window));
        screen->drawPixmap(0, 0, frame_);
        chart_.drawData(screen.painter(), layout_);
        if (const auto shown = readout()) {
            drawReadout(screen.painter(), *shown, layout_.box);
        }
    }
    if (isRingShown()) {
        painter.focusRing(rect(), 6);
    }
}

void CChartView::resizeEvent(QResizeEvent* event) {
    QWidget::resizeEvent(event);
    frameIsFresh_ = false;
}

std::optional<ChartReadout> CChartView::readout() const {
    return pointer_ ? chart_.readoutAt(layout_, *pointer_) : std::nullopt;
}

QString CChartView::readoutText() const {
    const auto shown = pointer_ ? chart_.readoutAt(chart_.layoutFor(rect()), *pointer_) : std::nullopt;
    return shown ? shown->text : QString();
}

void CChartView::announceReadout() {
    const auto shown = readout();
    const QString text = shown ? shown->text : QString();
    if (text != accessibleDescription()) {
        setAccessibleDescription(text);
        QAccessibleEvent event(this, QAccessible::DescriptionChanged);
        QAccessible::updateAccessibility(&event);
    }
}

void CChartView::setPointer(std::optional<QPointF> pointer) {
    if (pointer_ != pointer) {
        pointer_ = pointer;
        announceReadout();
        update();
    }
}

void CChartView::mouseMoveEvent(QMouseEvent* event) {
    setPointer(event->position());
}

void CChartView::leaveEvent(QEvent* event) {
    QWidget::leaveEvent(event);
    setPointer(std::nullopt);
}

void CChartView::keyPressEvent(QKeyEvent* event) {
    const QRectF box = chart_.layoutFor(rect()).box;
    const double step = event->modifiers().testFlag(Qt::ControlModifier) ? 20 : 1;
    QPointF point = pointer_.value_or(box.center());
    if (event->key() == Qt::Key_F10 && event->modifiers() == Qt::ShiftModifier) {
        openMenu(mapToGlobal(point.toPoint()));
        return;
    }
    switch (event->key()) {
        case Qt::Key_Left:
            point.rx() -= step;
            break;
        case Qt::Key_Right:
            point.rx() += step;
            break;
        case Qt::Key_Home:
            point.setX(box.left());
            break;
        case Qt::Key_End:
            point.setX(box.right());
            break;
        default:
            QWidget::keyPressEvent(event);
            return;
    }
    setPointer(QPointF(std::clamp(point.x(), box.left(), box.right()),
                       std::clamp(point.y(), box.top(), box.bottom())));
}

void CChartView::contextMenuEvent(QContextMenuEvent* event) {
    openMenu(event->globalPos());
}

void CChartView::openMenu(QPoint globalPosition) {
    // The view is its parent from here on, and the menu deletes itself when it closes.
    QMenu* const menu = makeChartMenu(chart_, *this).release();
    menu->setAttribute(Qt::WA_DeleteOnClose);
    menu->popup(globalPosition);
}

void CChartView::openSettings() {
    QDialog* dialog = nullptr;
    if (auto* const image = qobject_cast<CImageChart*>(&chart_)) {
        dialog = new CImagePlotSettingsDialog(*image, host_, this);
    } else {
        dialog = new CPlotSettingsDialog(chart_, host_, this);
    }
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    dialog->open();
}

void CChartView::copyPicture() const {
    QGuiApplication::clipboard()->setImage(picture());
}

void CChartView::savePicture() {
    const auto path = host_.askSavePath(this, QStringLiteral("PNG pictures (*.png)"), QStringLiteral("png"));
    if (!path) {
        return;
    }
    QSaveFile file(*path);
    if (!file.open(QIODevice::WriteOnly) || !picture().save(&file, "PNG") || !file.commit()) {
        host_.showMessage(this, QStringLiteral("The picture cannot be saved: %1").arg(file.errorString()));
    }
}

void CChartView::saveData() {
    const auto path = host_.askSavePath(this, QStringLiteral("Text files (*.txt)"), QStringLiteral("txt"));
    if (!path) {
        return;
    }
    if (chart_.saveToFile(*path, [this](const QString& text) { host_.showMessage(this, text); }) == 0) {
        host_.showMessage(this, chart_.dataSets().empty() ? QStringLiteral("There is no data to save.")
                                                          : QStringLiteral("The data cannot be saved."));
    }
}

}  // namespace tessavo
