#pragma once

#include <QString>
#include <QWidget>

#include "platform/desktop.h"

namespace tessavo {

/// What the first pane tells about the target.
struct TargetStatus {
    enum class Light { off, sending, confirmed, trouble };

    Light light = Light::off;
    QString port;  ///< name of the port; empty when the list is empty
    bool liveMode = false;
    QString state;  ///< a few words with the time, or empty

    friend bool operator==(const TargetStatus&, const TargetStatus&) = default;
};

/// The frame's status bar: the target in the first pane, then the three key states.
class StatusLine : public QWidget {
    Q_OBJECT

 public:
    static constexpr int paneCount = 4;
    static constexpr int barHeight = 28;

    explicit StatusLine(QWidget* parent = nullptr);

    void setTarget(const TargetStatus& status);
    [[nodiscard]] const TargetStatus& target() const { return target_; }
    void setKeyStates(const KeyStates& states);

    /// Text of a pane, 0 to 3: the whole sentence of the first, "CAP", "NUM", "SCRL" of the others.
    [[nodiscard]] QString paneText(int pane) const;
    [[nodiscard]] bool keyLit(int pane) const;

 protected:
    void paintEvent(QPaintEvent* event) override;

 private:
    /// Pixels that the first pane takes; the key states have the rest, if there is one.
    [[nodiscard]] int targetWidth() const;
    void paintTarget(QPainter& painter) const;
    void paintLight(QPainter& painter, QPointF centre) const;
    void paintKeys(QPainter& painter) const;

    TargetStatus target_;
    KeyStates keys_;
};

}  // namespace tessavo
