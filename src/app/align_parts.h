#pragma once

#include <QColor>
#include <QPointF>
#include <QString>
#include <QWidget>
#include <array>

class QPainter;
class QRectF;

namespace tessavo {

class CColorControl;

/// Colours of the parts of a sound's way in an alignment.
namespace align_color {
inline constexpr QRgb path = 0xFF66727F;
inline constexpr QRgb group = 0xFF6F63B8;
}  // namespace align_color

/// Draws the sign of a channel that is in line, or of one that is not, into 16 by 16 pixels.
void paintAlignSign(QPainter& painter, QPointF corner, bool isInLine);

/// Draws what is missing: four slats.
void paintMissing(QPainter& painter, const QRectF& place);

/// Says what the colours of the bars are.
class AlignLegend : public QWidget {
    Q_OBJECT

 public:
    static constexpr QSize usualSize{328, 20};

    explicit AlignLegend(QWidget* parent = nullptr);

 protected:
    void paintEvent(QPaintEvent* event) override;
};

/// What is to be told of all channels together, in two lines: red where something cannot be reached.
class AlignVerdict : public QWidget {
    Q_OBJECT

 public:
    explicit AlignVerdict(QWidget* parent = nullptr);

    void showText(const QString& first, const QString& second, bool isShortfall);
    [[nodiscard]] bool isShortfall() const { return isShortfall_; }
    /// Both lines, also where a label cuts them.
    [[nodiscard]] QString text() const;

 protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

 private:
    void layOut();

    std::array<CColorControl*, 2> lines_;
    std::array<QString, 2> texts_;
    bool isShortfall_ = false;
};

}  // namespace tessavo
