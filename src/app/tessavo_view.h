#pragma once

#include <QPointer>
#include <QScrollBar>
#include <QWidget>
#include <array>
#include <memory>
#include <vector>

#include "app/field_place.h"
#include "app/tab_pages.h"
#include "pages/form/form.h"
#include "pages/rows/header_rows.h"
#include "params/foreign_words.h"
#include "params/settings_commands.h"
#include "params/tuning_state.h"

class QLineEdit;
class QScrollArea;
class QStackedWidget;

namespace tessavo {

class CPlotDlg;
class IChartHost;
class SkinCheckBox;
class SkinComboBox;
class eqCTabCtrl;

/// The single view of the main frame: the controls that act on the whole program, the tabs with their pages,
/// the plot.
class CTessavoView : public QWidget, public ISettingsView {
    Q_OBJECT

 public:
    static constexpr int viewWidth = 1024;
    static constexpr int viewHeight = 680;
    /// Below header and tabs.
    static constexpr int pageTop = 84;

    /// \param chartHost asks and tells for the plot; outlives the view.
    /// \param makePage pages without content when empty
    CTessavoView(TuningState& tuning, IChartHost& chartHost, QWidget* parent = nullptr,
                 const PageFactory& makePage = {});
    ~CTessavoView() override;

    /// Fills the controls from the state and shows the first page. Called once.
    void initialUpdate();

    /// All pages in tab order. Those behind the first are made when the window has been painted, or when they
    /// are asked for, whichever comes first.
    [[nodiscard]] const std::vector<CTabDialog*>& pages();
    /// The plot window, made when it is asked for first; it shows the curve of the tab in front.
    [[nodiscard]] CPlotDlg& plot();

    /// Shows a page as a click on its tab does.
    void showPage(Page page);
    /// Chooses a set as the selector does.
    void showSet(std::uint32_t set);
    /// Chooses a filter method as its list does.
    void showFilterMode(std::uint32_t mode);
    /// Switches Live Mode on as its button does, which sends the current set; does nothing while it is on.
    void turnOnLiveMode();
    /// Goes to a control: chooses its set, its page and, on the page of the output equalizer, a channel that
    /// takes no part in edits yet, and gives it the focus. Writes nothing.
    void showPlace(const FieldPlace& place);

    /// Scrolls the page as far as one of its controls needs to be seen.
    void bringIntoSight(QWidget* control);

    /// The page scrolls up and down with this bar instead of its own; with its own again when null.
    void scrollPageWith(QScrollBar* bar);

    void checkChannelBox(int number, bool checked) override;
    void refreshPages() override;

    /// The tuning has changed: what stands beside the displays follows soon, once for all changes until then.
    void tuningChanged();

 Q_SIGNALS:
    void liveModeChanged(bool on);
    void filterModeChanged();
    /// The window has been painted for the first time; what can wait for that follows now.
    void firstPainted();
    /// The set, its name, or another thing that a person sees on the frame has changed.
    void currentSetChanged();

 protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

 private:
    void makeHeader();
    void makeTabs();
    [[nodiscard]] SkinComboBox& setSelector() const;
    [[nodiscard]] SkinComboBox& filterModes() const;
    [[nodiscard]] QLineEdit& setName() const;
    /// \param channel record channel
    [[nodiscard]] SkinCheckBox& channelFlag(std::size_t channel) const;
    void makePagesUpTo(std::size_t count);
    void showChannelFlags();
    void showChannelNames();
    void fillSetSelector();
    void markInvalidSets();
    void toggleLiveMode();
    void chooseSet(int index);
    void renameSet(const QString& text);
    void leaveSetName();
    void togglePlot();
    void setPlotShown(bool shown);
    void tabClicked(int index);
    void updatePlot();
    void showNotes();
    void markChannelFlags();
    [[nodiscard]] RecordChannel drawnChannel() const;
    [[nodiscard]] const PageEntry& entryInFront() const;

    TuningState& tuning_;
    IChartHost& chartHost_;
    PageFactory makePage_;
    Form header_;
    eqCTabCtrl* tabs_ = nullptr;
    QScrollArea* pageArea_ = nullptr;
    QPointer<QScrollBar> pageBar_;
    QStackedWidget* stack_ = nullptr;
    std::vector<CTabDialog*> pages_;
    QPointer<CPlotDlg> plot_;  ///< belongs to the window, so that it stays in front of it
    bool plotShown_ = false;
    bool painted_ = false;
    bool notesAreDue_ = false;
    std::array<QString, channelCount> channelNames_;  ///< as the tooltips of the flags tell them
    ForeignWordSearch foreignWords_;
};

}  // namespace tessavo
