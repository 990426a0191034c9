#pragma once

#include <QWidget>

namespace tessavo {

/// A line beside a display that shows something else than what is in force: a sign and a few words tell what
/// is. It is hidden when there is nothing to tell; its room stays empty then, so that the display does not
/// move.
class NoteMark : public QWidget {
    Q_OBJECT

 public:
    static constexpr int markHeight = 18;  ///< in pixels
    /// \param controlId see setControlId()
    /// \param parent owns the widget
    /// \param side the end of its room at which the line stands: Qt::AlignLeft or Qt::AlignRight
    explicit NoteMark(int controlId, QWidget* parent = nullptr, Qt::Alignment side = Qt::AlignLeft);

    /// Shows a line, shortened where it does not fit. The tooltip and screen readers get all of it.
    /// \param line empty to hide the mark
    /// \param whole the same in full sentences; the line itself when empty
    void setNote(const QString& line, const QString& whole = {});
    [[nodiscard]] const QString& line() const { return line_; }

    /// The line as it is drawn, shortened if it needs more than the widget's width.
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
