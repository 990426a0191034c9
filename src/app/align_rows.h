#pragma once

#include <QString>
#include <QWidget>
#include <array>
#include <optional>

#include "measure/alignment.h"
#include "measure/alignment_text.h"
#include "params/tuning_state.h"

namespace tessavo {

class CColorControl;
class NumberEdit;

/// What a person typed for the eight channels, by page position.
using AlignTexts = std::array<QString, channelCount>;

/// The table of an alignment: a box for the distance or time of every channel, a bar of what its sound's way takes, and what
/// becomes of it. It reads the boxes and shows results; it works nothing out.
class AlignRows : public QWidget {
    Q_OBJECT

 public:
    static constexpr int headHeight = 24;
    static constexpr int rowPitch = 34;
    static constexpr QSize usualSize{828, headHeight + rowPitch* static_cast<int>(channelCount) + 4};
    /// Where on a bar the farthest one ends.
    static constexpr int seatLeft = 242 + 218;

    /// \param tuning names the channels
    explicit AlignRows(const TuningState& tuning, QWidget* parent = nullptr);

    /// Shows texts in a unit; this is no edit.
    void showTexts(const AlignTexts& texts, AlignmentUnit unit);
    [[nodiscard]] AlignTexts texts() const;
    /// The numbers in the boxes; an empty box has none.
    /// \return nothing where a text is no number, or not 0 to mostToldOfPlace
    [[nodiscard]] std::optional<ArrivalTimes> values() const;
    /// The first channel whose text is no such number.
    [[nodiscard]] std::optional<PagePosition> firstWrong() const;

    /// \param times on which the alignment rests
    void showAlignment(const Alignment& alignment, const ArrivalTimes& times, double celsius);

    [[nodiscard]] NumberEdit& box(PagePosition position) const { return *rows_.at(position.value).told; }
    /// The name of a channel in a sentence: its own, or its number.
    [[nodiscard]] QString nameOf(PagePosition position) const;

 Q_SIGNALS:
    /// A person typed in a box.
    void changed();

 protected:
    void paintEvent(QPaintEvent* event) override;

 private:
    struct Row {
        CColorControl* name = nullptr;
        NumberEdit* told = nullptr;
        CColorControl* unit = nullptr;
        CColorControl* needs = nullptr;
        CColorControl* group = nullptr;
        CColorControl* channel = nullptr;
        CColorControl* result = nullptr;
    };

    void makeHead();
    void makeRow(std::uint8_t position);
    void stepBox(NumberEdit& box, int steps, bool coarse);
    void warnOf(NumberEdit& box) const;
    void paintBar(QPainter& painter, std::uint8_t position, double top) const;

    const TuningState& tuning_;
    AlignmentUnit unit_ = AlignmentUnit::centimeters;
    CColorControl* toldTitle_ = nullptr;
    std::array<Row, channelCount> rows_{};
    Alignment alignment_{};
    ArrivalTimes times_{};
};

/// A number that a person typed, within limits; nothing for any other text.
[[nodiscard]] std::optional<double> numberWithin(const QString& text, double least, double most);

}  // namespace tessavo
