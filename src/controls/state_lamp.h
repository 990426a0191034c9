#pragma once

#include <QWidget>

namespace tessavo {

/// Small lamp beside a sentence that tells the same ("Surround is ON"). Three pixels larger than its disc on
/// every side, for the glow.
class StateLamp : public QWidget {
    Q_OBJECT

 public:
    /// Width that the glow adds to the disc's diameter.
    static constexpr int glow = 6;

    StateLamp(int diameter, int controlId, QWidget* parent = nullptr);

    void setLit(bool lit);
    [[nodiscard]] bool isLit() const { return lit_; }

 protected:
    void paintEvent(QPaintEvent* event) override;

 private:
    bool lit_ = false;
};

}  // namespace tessavo
