#pragma once

#include <QListView>
#include <QTimer>

#include "comm/page/log_model.h"

namespace tessavo {

/// The communication log on the page: eighteen rows, coloured by kind. The newest line is selected and in
/// view; many lines between two paints cost no more than one.
class LogView : public QListView {
    Q_OBJECT

 public:
    static constexpr int rowHeight = 18;

    explicit LogView(int controlId, QWidget* parent = nullptr);

    void append(LogKind kind, const QString& text);
    void clear();

    [[nodiscard]] int lineCount() const { return model_.rowCount(); }
    [[nodiscard]] const QString& line(int row) const { return model_.line(row); }
    /// All lines, or those that are selected, each with a line break behind it.
    [[nodiscard]] QString allText() const;
    [[nodiscard]] QString selectedText() const;

 signals:
    /// The context menu's item of that name was chosen.
    void saveAsked();

 protected:
    void contextMenuEvent(QContextMenuEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

 private:
    void followNewest();

    LogModel model_;
    QTimer following_;
};

}  // namespace tessavo
