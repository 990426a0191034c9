#pragma once

#include <functional>

#include "app/compare_source.h"
#include "controls/skin_combo_box.h"
#include "history/history.h"
#include "params/tuning_state.h"

namespace tessavo {

class IFileDialogs;

/// What a side of a comparison shows: one of the program's own sets as it is at the time, or a set that was read once.
struct ComparedSet {
    enum class Kind {
        current,  ///< whichever of the five sets is current
        own,      ///< one of the five sets
        read,     ///< read from elsewhere, and stays as it was read
    };
    Kind kind = Kind::current;
    std::uint32_t set = 0;  ///< of an own one, 0 to 4
    ParameterSet record{};  ///< of one that was read
    QString title;          ///< of one that was read
};

/// "Type 1", or "Set 2" where the name is empty.
[[nodiscard]] QString nameOfSet(const ParameterSet& set, std::uint32_t index);

/// The list of a side. It opens with all sets that there are at the time: the current set, the five sets, a set of a
/// settings file, what others offer, and the last steps of the history. It opens by keys too: nothing is chosen, and no
/// file is asked for, by passing over it.
class CompareSide : public SkinComboBox {
    Q_OBJECT

 public:
    struct Dependencies {
        const TuningState& tuning;
        const History& history;
        IFileDialogs& dialogs;
        CompareSources sources = {};
        /// Set that the history means, and that has what a set of the target does not hold; 0 to 4.
        std::function<std::uint32_t()> baseSet = {};
    };

    /// \param dependencies outlive the list
    CompareSide(Dependencies dependencies, const QString& name, QWidget* parent);

    [[nodiscard]] const ComparedSet& shown() const { return shown_; }
    void setShown(const ComparedSet& set);
    /// The set's bytes as they are now.
    [[nodiscard]] const ParameterSet& record() const;
    /// Its name for a sentence: "Type 1", "Backup 2026-03-14 18:02".
    [[nodiscard]] QString title() const;
    /// Index of the set that can be written; nothing for a set that was read.
    [[nodiscard]] std::optional<std::uint32_t> writable() const;
    /// Shows the names as they are now.
    void follow();

    void showPopup() override;

 Q_SIGNALS:
    /// A person has chosen another set.
    void chosen();
    /// A set that was chosen could not be had.
    void failed(const QString& trouble);

 protected:
    void keyPressEvent(QKeyEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;

 private:
    /// What the closed list needs; its other entries are added when it drops down.
    void fill();
    void showWidth();
    void addSets();
    void addSources();
    void addHistory();
    /// Begins another group of entries.
    void part();
    void add(const QString& text, std::function<CompareReading(const ParameterSet&)> read);
    /// Which of the five sets is meant where a source needs one of them.
    [[nodiscard]] std::uint32_t baseSet() const;
    void add(const QString& text, ComparedSet set);
    void choose(int index);
    [[nodiscard]] QString shownText() const;
    [[nodiscard]] CompareReading readFile();
    [[nodiscard]] CompareReading readStep(std::size_t position, const QString& title) const;
    [[nodiscard]] CompareReading askStep();

    /// Gives what an entry stands for.
    using Chooser = std::function<CompareReading(const ParameterSet&)>;
    struct Entry {
        ComparedSet set;
        Chooser read;  ///< empty for one of the program's own sets
    };

    Dependencies dependencies_;
    ComparedSet shown_;
    std::vector<Entry> entries_;
};

}  // namespace tessavo
