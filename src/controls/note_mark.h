#pragma once

#include <QWidget>

namespace tessavo {

/// A quiet line that stands beside a display and tells what is in force where the display shows something
/// else: a sign and a few words. Hidden without words; the display does not move for it.
class NoteMark : public QWidget {
    Q_OBJECT

 public:
    static constexpr int markHeight = 18;

    /// \param side where the words stand in the mark's place: Qt::AlignLeft or Qt::AlignRight
    explicit NoteMark(int controlId, QWidget* parent = nullptr, Qt::Alignment side = Qt::AlignLeft);

    /// Shows a line, shortened where the room ends. Tooltip and screen readers get all of it.
    ///
    /// \param line empty to hide the mark
    /// \param whole the same in full sentences; the line itself when empty
    void setNote(const QString& line, const QString& whole = {});
    [[nodiscard]] const QString& line() const { return line_; }

    /// The line as it is drawn: shortened only where it needs more than the mark's width.
    [[nodiscard]] QString shownLine() const;
    /// Width that the whole line needs.
    [[nodiscard]] int neededWidth() const;

 protected:
    void paintEvent(QPaintEvent* event) override;

 private:
    QString line_;
    Qt::Alignment side_;
};

}  // namespace tessavo
