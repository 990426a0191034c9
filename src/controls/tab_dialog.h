#pragma once

#include <QWidget>
#include <cstdint>

namespace tessavo {

/// One page of the main view. Pages hold no parameter values: they show and edit the current set.
class CTabDialog : public QWidget {
    Q_OBJECT

 public:
    explicit CTabDialog(QWidget* parent = nullptr);

    /// Reads every control of the page again from the current set. Called on every page, in tab order, after
    /// a settings file was loaded or a set received.
    virtual void refresh() {}

    /// The current set is now another one. Called on every page, in tab order.
    virtual void changeSet(std::uint32_t setIndex);

 protected:
    void paintEvent(QPaintEvent* event) override;
};

}  // namespace tessavo
