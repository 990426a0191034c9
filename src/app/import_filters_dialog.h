#pragma once

#include <filesystem>
#include <string>

#include "app/compare_curves.h"
#include "app/import_list.h"
#include "controls/dialog_sk.h"
#include "params/tuning_state.h"

class QMimeData;

namespace tessavo {

class CColorControl;
class CReadOnlyEdit;
class CxSkinButton;
class IFileDialogs;
class ImportChart;
class ImportInto;
class ImportView;

/// "Import Filters": what becomes of every line of a filter text, and which channel and bands its filters go into. Changes
/// nothing itself: what Apply accepts is record(), for a whole-set write.
class ImportFiltersDialog : public CDialogSK {
    Q_OBJECT

 public:
    struct Dependencies {
        const TuningState& tuning;
        IFileDialogs& dialogs;
    };

    static constexpr QSize usualSize{880, 578};
    static constexpr QSize leastSize{780, 400};

    /// \param dependencies outlive the dialog
    explicit ImportFiltersDialog(const Dependencies& dependencies, QWidget* parent = nullptr);

    /// Reads a file, as "Open..." does with the one that is chosen. One that cannot be used changes nothing but the foot,
    /// which tells why.
    void openFile(const std::filesystem::path& path);
    /// Takes the text of the clipboard.
    void paste();
    /// Shows a text, or tells why none of it can be used.
    /// \param bytes of a file, or in UTF-8
    /// \param name where it comes from
    void takeText(const std::string& bytes, const QString& name);

    /// The channel that Apply writes.
    [[nodiscard]] RecordChannel channel() const;
    /// The current set with the filters.
    [[nodiscard]] ParameterSet record() const;

    [[nodiscard]] ImportView& view() { return *view_; }
    [[nodiscard]] ImportInto& into() { return *into_; }
    [[nodiscard]] ImportChart& chart() { return *chart_; }
    /// What stands at the foot.
    [[nodiscard]] QString message() const;

 protected:
    void paintBackground(QPainter& painter, QSize size) const override;
    void resizeEvent(QResizeEvent* event) override;
    void dragEnterEvent(QDragEnterEvent* event) override;
    void dropEvent(QDropEvent* event) override;

 private:
    void makeHead();
    void makeFoot();
    void setTabOrders();
    void chooseFile();
    void takeMime(const QMimeData& mime, const QString& name);
    void showTrouble(const QString& text);
    /// Shows another text, or another channel of it.
    void showText(FilterText text);
    void planAnew();
    void showFoot();
    [[nodiscard]] QString remarks() const;
    [[nodiscard]] QString whyNot() const;

    Dependencies dependencies_;
    std::string bytes_;
    FilterText text_;
    ImportPlan plan_;
    QString trouble_;
    ImportList list_;
    CurveMaker curves_;
    CReadOnlyEdit* file_ = nullptr;
    CxSkinButton* open_ = nullptr;
    CxSkinButton* paste_ = nullptr;
    ImportView* view_ = nullptr;
    ImportInto* into_ = nullptr;
    ImportChart* chart_ = nullptr;
    CColorControl* message_ = nullptr;
    CxSkinButton* apply_ = nullptr;
    CxSkinButton* cancel_ = nullptr;
};

}  // namespace tessavo
