#pragma once

#include <QWidget>

#include "params/records.h"

namespace tessavo {

class TuningState;

/// Why a set's record is not valid; empty when it is.
[[nodiscard]] QString recordTrouble(const ParameterSet& set);

/// Stands beside the set selector as long as the record of a set is not valid, and tells of each such set
/// why. Red when the current set is one of them.
class RecordMark : public QWidget {
    Q_OBJECT

 public:
    static constexpr int markSize = 16;

    /// \param tuning outlives the mark
    RecordMark(int controlId, const TuningState& tuning, QWidget* parent = nullptr);

    /// Shows or hides itself, as the records are now.
    void showState();

 protected:
    bool event(QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

 private:
    const TuningState& tuning_;
    bool current_ = false;
};

}  // namespace tessavo
