#pragma once

#include <QWidget>
#include <cstdint>

namespace tessavo {

/// One page of the main view. A page holds no parameter values of its own: it shows and edits the current
/// set.
class CTabDialog : public QWidget {
    Q_OBJECT

 public:
    explicit CTabDialog(QWidget* parent = nullptr);

    /// Shows the current set in every control of the page. Called for every page, in tab order, after a
    /// settings file was loaded or a set received.
    virtual void refresh() {}

    /// Called for every page, in tab order, when another set has become the current one.
    /// \param setIndex the new current set, 0 to 4
    virtual void changeSet(std::uint32_t setIndex);

 protected:
    void paintEvent(QPaintEvent* event) override;
};

}  // namespace tessavo
