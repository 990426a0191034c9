#pragma once

#include <QDialog>
#include <QStringList>

namespace tessavo {

class CxSkinButton;

/// Modal message with a title bar of its own, an icon and one to three buttons.
///
/// The text may hold several lines, parted by "\n" or "\r\n". The first button is the default one. Escape and
/// the title bar's cross mean "Cancel", or "OK" where that is the only button.
class SkinMessageBox : public QDialog {
    Q_OBJECT

 public:
    enum class Icon { none, stop, info };
    enum class Buttons { ok, okCancel, yesNo, yesNoCancel };
    enum class Answer { ok, cancel, yes, no };

    SkinMessageBox(const QString& title, const QString& text, Icon icon, Buttons buttons,
                   QWidget* parent = nullptr);

    [[nodiscard]] const QString& text() const { return text_; }
    /// The button that closed the box; `cancel` before.
    [[nodiscard]] Answer answer() const { return answer_; }
    [[nodiscard]] QList<CxSkinButton*> buttons() const { return buttons_; }

    /// Shows the box and waits for the answer.
    Answer ask();

 protected:
    void paintEvent(QPaintEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void showEvent(QShowEvent* event) override;

 private:
    void addButton(const QString& caption, Answer answer);
    void layOutAll();
    void setCloseHovered(bool hovered);
    [[nodiscard]] QRect closeRect() const;
    [[nodiscard]] QRect body() const;

    QString text_;
    QStringList lines_;
    Icon icon_;
    Answer answer_ = Answer::cancel;
    QList<CxSkinButton*> buttons_;
    QPoint grabbedAt_;
    bool moving_ = false;
    bool closeHovered_ = false;
};

}  // namespace tessavo
