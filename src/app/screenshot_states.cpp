#include "app/screenshot_states.h"

#include <QAbstractButton>
#include <QApplication>
#include <QMouseEvent>
#include <QTemporaryDir>
#include <algorithm>

#include "app/align_dialog.h"
#include "app/comm_link.h"
#include "app/compare_commands.h"
#include "app/compare_dialog.h"
#include "app/import_filters_dialog.h"
#include "app/import_rows.h"
#include "app/main_frame.h"
#include "app/page_factory.h"
#include "app/skin_chart_host.h"
#include "app/tessavo_view.h"
#include "controls/bitmap_slider.h"
#include "history/history.h"
#include "pages/rows/output_eq_rows.h"

namespace tessavo {

namespace {

// By page position: "Channel 1", "Channel 2", "Channel 5".
constexpr std::array<std::size_t, 3> tickedChannels{0, 1, 4};
constexpr int draggedSlider = output_eq_id::bands[4].sliders[1].slider;  // gain
constexpr int dragPixels = -34;
constexpr int comparedFields = 4;
constexpr int clampedLine = 4;

/// A line for every verdict.
constexpr std::string_view filterTextExample =
    "Equalizer settings, front left, 2026-03-14\n"
    "Filter  1: ON  LSC Fc    90.0 Hz  Gain   3.5 dB  Q 0.70\n"
    "Filter  2: ON  PK  Fc   170.0 Hz  Gain  -6.0 dB  Q 2.00\n"
    "Filter  3: ON  PK  Fc   641.5 Hz  Gain  -2.5 dB  Q 1.40\n"
    "Filter  4: ON  PK  Fc  1250.0 Hz  Gain  21.0 dB  Q 0.90\n"
    "Filter  5: OFF PK  Fc  3150.0 Hz  Gain  -5.5 dB  Q 3.60\n"
    "Filter  6: ON  None\n"
    "Filter  7: ON  NO  Fc  4800.0 Hz  Q 8.00\n"
    "Filter  8: ON  PK  Fc  7200.0 Hz  Gain  -4.0 dB  Q 1.50\n"
    "Filter  9: ON  PK  Fc  9000.0 Hz  Gain   0.3 dB  Q 0.70\n"
    "Filter 10: ON  HP  Fc    60.0 Hz\n"
    "Filter 11: ON  PK  Fc    12k5 Hz  Gain   1.0 dB  Q 2.00\n";

class AgreeingBoxes : public IMessageBox {
 public:
    BoxAnswer show(std::string_view, BoxIcon, BoxButtons) override { return BoxAnswer::ok; }
};

class NoDialogs : public IFileDialogs {
 public:
    std::optional<std::filesystem::path> askOpenPath(const FileFilter&) override { return {}; }
    std::optional<std::filesystem::path> askSavePath(const FileFilter&) override { return {}; }
};

struct BandExample {
    std::uint8_t off;
    std::uint8_t type;
    std::uint16_t frequencyHz;
    float gainDb;
    float q;
};

constexpr std::array<BandExample, bandCount> bandExamples{{{0, 1, 90, 3.5F, 0.7F},
                                                           {0, 2, 170, -4.0F, 2.2F},
                                                           {0, 2, 640, -2.5F, 1.4F},
                                                           {0, 2, 1250, 1.5F, 1.0F},
                                                           {0, 2, 3150, -5.5F, 3.6F},
                                                           {1, 2, 6000, 0.0F, 1.0F},
                                                           {0, 0, 9000, 2.5F, 0.7F},
                                                           {1, 2, 16000, 0.0F, 1.0F}}};

struct GroupExample {
    float gainDb;
    std::uint32_t gainGroup;
    float delayMs;
    std::uint32_t delayGroup;
};

/// By page position.
constexpr std::array<std::u16string_view, channelCount> nameExamples{
    u"Mid left",     u"Mid right",     u"Rear left", u"Rear right",
    u"Tweeter left", u"Tweeter right", u"Center",    u"Subwoofer"};

/// By slider position.
constexpr std::array<GroupExample, channelCount> groupExamples{{{1.5F, 0, 0.4F, 0},
                                                                {1.5F, 0, 0.6F, 0},
                                                                {-2.0F, 1, 1.2F, 1},
                                                                {-1.0F, 1, 1.2F, 1},
                                                                {3.0F, 2, 0.0F, 2},
                                                                {3.0F, 2, 0.0F, 2},
                                                                {0.0F, 3, 1.7F, 5},
                                                                {4.5F, 4, 0.9F, 6}}};

/// By page position: one that is nearer than the delays reach.
constexpr std::array<int, channelCount> distanceExamples{112, 142, 116, 138, 124, 148, 96, 245};

void fillExamples(TuningState& tuning) {
    for (std::size_t band = 0; band < bandCount; ++band) {
        const BandExample& example = bandExamples[band];
        tuning.setBandOff(band, example.off);
        tuning.setBandType(band, example.type);
        tuning.setBandFrequency(band, example.frequencyHz, true);
        tuning.setBandGainOrQ(band, BandValue::gain, example.gainDb, true);
        tuning.setBandGainOrQ(band, BandValue::q, example.q, true);
    }
    tuning.setCrossoverFrequency(0, 80, true);
    tuning.setCrossover(0, 0, 4, 1);
    tuning.setVolume(2.5F, true);
    FileNotes notes;
    for (std::size_t p = 0; p < channelCount; ++p) {
        setChannelName(notes, recordChannelAt({static_cast<std::uint8_t>(p)}), nameExamples[p]);
    }
    tuning.setNotes(notes);
    constexpr std::array<std::uint8_t, channelCount> sources{1, 2, 4, 5, 1, 2, 3, 6};
    for (std::size_t p = 0; p < channelCount; ++p) {
        tuning.setRouterSource(recordChannelAt({static_cast<std::uint8_t>(p)}), sources[p]);
        const RecordChannel channel{groupSliderMap[p]};
        tuning.setGroupGain(channel, groupExamples[p].gainDb);
        tuning.setGainGroup(channel, groupExamples[p].gainGroup);
        tuning.setGroupDelay(channel, groupExamples[p].delayMs);
        tuning.setDelayGroup(channel, groupExamples[p].delayGroup);
    }
}

/// A window like the program's, with a state of its own that ends with it.
class ExampleWindow {
 public:
    ExampleWindow()
        : profile_(folder_.filePath(QStringLiteral("profile.ini"))),
          tuning_(boxes_),
          link_(tuning_, boxes_),
          chartHost_(boxes_, dialogs_) {
        tuning_.start();
        fillExamples(tuning_);
        history_ = std::make_unique<History>(tuning_);
        frame_ = std::make_unique<CMainFrame>(
            CMainFrame::Dependencies{tuning_, *history_, boxes_, dialogs_, profile_, link_, chartHost_,
                                     pageFactory({tuning_,
                                                  boxes_,
                                                  dialogs_,
                                                  profile_,
                                                  link_,
                                                  [] { return std::vector<std::string>(); },
                                                  {},
                                                  [this] { frame_->view().refreshPages(); }})});
        frame_->setAttribute(Qt::WA_DontShowOnScreen);
        frame_->show();
        // The whole window, however small the screen is.
        frame_->setFixedSize(CMainFrame::clientWidth, CMainFrame::clientHeight);
    }
    ~ExampleWindow() { link_.shutDown(); }
    ExampleWindow(const ExampleWindow&) = delete;
    ExampleWindow& operator=(const ExampleWindow&) = delete;

    [[nodiscard]] CMainFrame& frame() { return *frame_; }
    [[nodiscard]] TuningState& tuning() { return tuning_; }
    [[nodiscard]] IFileDialogs& dialogs() { return dialogs_; }

    void showPage(Page page) {
        frame_->view().showPage(page);
        page_ = frame_->view().pages()[static_cast<std::size_t>(page)];
    }
    /// A control of the page that was shown last.
    template <typename Control>
    [[nodiscard]] Control& control(int id) {
        return *page_->findChild<Control*>(QStringLiteral("id%1").arg(id));
    }

 private:
    QTemporaryDir folder_;
    Profile profile_;
    AgreeingBoxes boxes_;
    NoDialogs dialogs_;
    TuningState tuning_;
    std::unique_ptr<History> history_;
    CommLink link_;
    SkinChartHost chartHost_;
    std::unique_ptr<CMainFrame> frame_;
    CTabDialog* page_ = nullptr;
};

void sendMouse(QWidget& target, QEvent::Type type, const QPointF& point) {
    const bool release = type == QEvent::MouseButtonRelease;
    QMouseEvent event(type, point, target.mapToGlobal(point),
                      type == QEvent::MouseMove ? Qt::NoButton : Qt::LeftButton,
                      release ? Qt::NoButton : Qt::LeftButton, {});
    QApplication::sendEvent(&target, &event);
}

Notice recoveryExample() {
    return {.text = QStringLiteral("Tessavo ended without saving at 10:21"),
            .kind = Notice::Kind::warning,
            .buttons = {{QStringLiteral("Restore"), {}}, {QStringLiteral("Discard"), {}}},
            .dismissible = false,
            .stays = true};
}

Notice undoneExample() {
    return {.text = QStringLiteral("Undone: Channel 7, Filter 3 gain -4.5 dB"),
            .buttons = {{QStringLiteral("Show"), {}}}};
}

/// What the first pane of the status bar tells besides the target.
QString takeStatusPictures(CMainFrame& frame, const PictureTaker& take) {
    StatusLine& status = frame.statusLine();
    status.setDocument({QStringLiteral("front_stage.eqs"), {}, true});
    if (QString problem = take(frame, "document_modified"); !problem.isEmpty()) {
        return problem;
    }
    status.setMuted(QStringLiteral("muted: 1, 3"));
    status.showNotice(undoneExample());
    if (QString problem = take(frame, "notice_muted"); !problem.isEmpty()) {
        return problem;
    }
    status.setMuted({});
    status.showNotice(recoveryExample());
    return take(frame, "notice");
}

// The first fields of a channel, on their way from the second set into the first.
QString takeComparePicture(CMainFrame& frame, const PictureTaker& take) {
    frame.compareCommands().showCompare();
    auto* const comparison = frame.findChild<CompareDialog*>();
    // The whole of it, however small the screen is.
    comparison->setFixedSize(CompareDialog::usualSize);
    CompareModel& model = comparison->model();
    for (int row = 0; row < model.rowCount(); ++row) {
        const QModelIndex group = model.index(row, 0);
        if (model.groupOf(group)->kind != CompareGroupKind::channel) {
            continue;
        }
        for (int line = 0; line < comparedFields; ++line) {
            model.setData(model.index(line, 0, group), Qt::Checked, Qt::CheckStateRole);
        }
        comparison->tree().setCurrentIndex(model.index(comparedFields, 0, group));
        break;
    }
    QString problem = take(*comparison, "compare");
    comparison->close();
    return problem;
}

// The dialog is modal, so it is shown without the command that would wait for it.
QString takeImportPicture(ExampleWindow& window, const PictureTaker& take) {
    ImportFiltersDialog dialog({window.tuning(), window.dialogs()}, &window.frame());
    dialog.setFixedSize(ImportFiltersDialog::usualSize);
    dialog.setAttribute(Qt::WA_DontShowOnScreen);
    dialog.takeText(std::string(filterTextExample), QStringLiteral("front_left_eq.txt"));
    dialog.view().setCurrentIndex(dialog.view().model()->index(clampedLine, 0));
    dialog.show();
    return take(dialog, "import_filters");
}

QString takeAlignPicture(ExampleWindow& window, const PictureTaker& take) {
    AlignInputs inputs;
    std::ranges::transform(distanceExamples, inputs.distances.begin(),
                           [](int centimeters) { return QString::number(centimeters); });
    AlignDialog dialog(window.tuning(), inputs, &window.frame());
    dialog.setFixedSize(AlignDialog::usualSize);
    dialog.setAttribute(Qt::WA_DontShowOnScreen);
    dialog.show();
    return take(dialog, "align");
}

}  // namespace

QString takeStatePictures(const PictureTaker& take) {
    ExampleWindow window;
    window.showPage(Page::outputEqualizer);
    if (QString problem = take(window.frame(), "output_eq_single"); !problem.isEmpty()) {
        return problem;
    }

    auto& slider = window.control<CBitmapSlider>(draggedSlider);
    const QPointF thumb(slider.width() / 2.0,
                        slider.track().pixelOf(slider.position(), slider.minimum(), slider.maximum()));
    const QPointF target = thumb + QPointF(0, dragPixels);
    sendMouse(slider, QEvent::MouseButtonPress, thumb);
    sendMouse(slider, QEvent::MouseMove, target);
    QString problem = take(window.frame(), "output_eq_drag");
    sendMouse(slider, QEvent::MouseButtonRelease, target);
    if (!problem.isEmpty()) {
        return problem;
    }

    window.control<QAbstractButton>(selection_id::assign).click();
    for (const std::size_t position : tickedChannels) {
        window.control<QAbstractButton>(selection_id::checks[position]).click();
    }
    if (QString failed = take(window.frame(), "output_eq_multi"); !failed.isEmpty()) {
        return failed;
    }

    window.showPage(Page::outputGroup);
    if (QString failed = take(window.frame(), "output_group_linked"); !failed.isEmpty()) {
        return failed;
    }
    if (QString failed = takeComparePicture(window.frame(), take); !failed.isEmpty()) {
        return failed;
    }
    if (QString failed = takeImportPicture(window, take); !failed.isEmpty()) {
        return failed;
    }
    if (QString failed = takeAlignPicture(window, take); !failed.isEmpty()) {
        return failed;
    }
    return takeStatusPictures(window.frame(), take);
}

}  // namespace tessavo
