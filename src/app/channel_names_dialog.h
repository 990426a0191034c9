#pragma once

#include <array>

#include "params/tuning_state.h"
#include "plot/chart/dialog_parts.h"

class QPlainTextEdit;

namespace tessavo {

/// "Channel Names": a name for each of the eight channels, and a note for the whole file. "OK" takes what was
/// changed into the tuning, "Cancel" and Escape change nothing.
class ChannelNamesDialog : public SettingsDialog {
    Q_OBJECT

 public:
    /// \param tuning outlives the dialog
    explicit ChannelNamesDialog(TuningState& tuning, QWidget* parent = nullptr);

 protected:
    /// \return false where the note is too long
    bool apply() override;

 private:
    void addRows(QGridLayout& grid);
    void addNote(QBoxLayout& column);
    void showLength();

    TuningState& tuning_;
    std::array<TextEditBox*, channelCount> names_{};  ///< by page position
    QPlainTextEdit* note_ = nullptr;
    CColorControl* length_ = nullptr;
    // As they stood when the dialog opened.
    std::array<QString, channelCount> namesBefore_;
    QString noteBefore_;
};

}  // namespace tessavo
