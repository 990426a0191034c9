#pragma once

#include <QApplication>
#include <QClipboard>
#include <QMimeData>
#include <QTest>
#include <cstring>
#include <functional>
#include <memory>
#include <random>
#include <string>

#include "app/import_filters_dialog.h"
#include "app/import_into.h"
#include "app/import_list.h"
#include "app/import_rows.h"
#include "app/ui_file_dialogs.h"
#include "app/undo_fixture.h"
#include "compare/sets.h"
#include "controls/read_only_edit.h"
#include "params/set_text.h"

namespace tessavo::test {

/// A line for every verdict, a crossover, and one that the target cannot do.
inline constexpr std::string_view everyVerdictText =
    "Equalizer settings, front left\n"
    "Filter  1: ON  PK  Fc  9000.0 Hz  Gain   0.3 dB  Q 0.70\n"
    "Filter  2: ON  PK  Fc   170.0 Hz  Gain  -6.0 dB  Q 2.00\n"
    "Filter  3: ON  PK  Fc  1250.0 Hz  Gain  21.0 dB  Q 0.90\n"
    "Filter  4: OFF PK  Fc  3150.0 Hz  Gain  -5.5 dB  Q 3.60\n"
    "Filter  5: ON  None\n"
    "Filter  6: ON  NO  Fc  4800.0 Hz  Q 8.00\n"
    "Filter  7: ON  HP  Fc    60.0 Hz\n"
    "Filter  8: ON  PK  Fc     x.y Hz  Gain   1.0 dB  Q 2.00\n";

/// So many peaks, each of which does more than the one before.
inline std::string peaks(int count) {
    std::string text;
    for (int i = 1; i <= count; ++i) {
        text.append("Filter ")
            .append(std::to_string(i))
            .append(": ON PK Fc ")
            .append(std::to_string(100 * i))
            .append(" Hz Gain ")
            .append(std::to_string(i))
            .append(" dB Q 1.00\n");
    }
    return text;
}

/// The window with two sets in which no two channels are alike, and the dialog that imports filters.
class ImportTest : public UndoTest {
 protected:
    ImportTest() {
        std::mt19937_64 random(91);
        for (std::uint32_t index = 0; index < setCount; ++index) {
            ParameterSet filled = randomSet(random);
            filled.recordSize = parameterSetSize;
            writeSetText(filled.setName, u"Filled");
            for (OutputChannelParams& each : filled.channels) {
                each.volumeDb = 0.0F;
                each.groupGainDb = 0.0F;
                each.crossovers[0] = crossoverOf({FilterShape::highPass, 80, 0, 0, 2}, false);
                each.crossovers[1] = crossoverOf({FilterShape::lowPass, 3000, 0, 0, 4}, true);
                for (EqBandParams& band : each.bands) {
                    band.type = 2;
                    band.off = 0;
                    band.gainDb = 2.0F;
                    band.q = 1.5F;
                    band.frequencyHz = 1000;
                }
            }
            tuning.replaceSet(index, filled);
        }
        history->commit("filled");
        view().refreshPages();
    }

    [[nodiscard]] const ParameterSet& set() const { return tuning.currentParameterSet(); }
    [[nodiscard]] const OutputChannelParams& channelAt(std::uint8_t position) const {
        return set().channels.at(recordChannelAt({position}).value);
    }
    static bool same(const OutputChannelParams& one, const OutputChannelParams& other) {
        return std::memcmp(&one, &other, sizeof one) == 0;
    }
    using UndoTest::same;

    static QClipboard& clipboard() { return *QGuiApplication::clipboard(); }
    std::filesystem::path textFile(const std::string& name, std::string_view text) {
        writeFile(folder / name, {text.begin(), text.end()});
        return folder / name;
    }
    template <typename Control>
    static Control& named(QWidget& parent, const QString& name) {
        for (Control* each : parent.findChildren<Control*>()) {
            if (each->accessibleName() == name || each->property("text").toString() == name) {
                return *each;
            }
        }
        throw std::logic_error("no control " + name.toStdString());
    }
    static CxSkinButton& button(QWidget& dialog, const char* name) {
        return named<CxSkinButton>(dialog, QLatin1String(name));
    }
    static SkinComboBox& combo(QWidget& dialog, const char* name) {
        return named<SkinComboBox>(dialog, QLatin1String(name));
    }
    static SkinCheckBox& bandBox(QWidget& dialog, std::size_t band) {
        return named<SkinCheckBox>(dialog, QStringLiteral("Band %1").arg(band + 1));
    }
    static SkinCheckBox* preampBox(QWidget& dialog) {
        for (SkinCheckBox* each : dialog.findChildren<SkinCheckBox*>()) {
            if (each->text().startsWith(QStringLiteral("Preamp"))) {
                return each;
            }
        }
        return nullptr;
    }
    static QString cell(ImportFiltersDialog& dialog, int row, int column) {
        return dialog.view().model()->index(row, column).data().toString();
    }
    static QVariant cellData(ImportFiltersDialog& dialog, int row, int column, int role) {
        return dialog.view().model()->index(row, column).data(role);
    }
    static int rows(ImportFiltersDialog& dialog) { return dialog.view().model()->rowCount(); }

    /// The dialog by itself, shown; nothing is written by it.
    ImportFiltersDialog& showAlone() {
        alone_ = std::make_unique<ImportFiltersDialog>(ImportFiltersDialog::Dependencies{tuning, dialogs},
                                                       frame.get());
        alone_->open();
        alone_->activateWindow();
        EXPECT_TRUE(QTest::qWaitFor([this] { return QApplication::activeWindow() == alone_.get(); }));
        return *alone_;
    }
    /// A person chooses the entry of the menu and does something with the dialog, which closes at the latest then.
    void importWith(std::function<void(ImportFiltersDialog&)> act) {
        withDialog(QStringLiteral("Tools"), QStringLiteral("Import Filters..."), std::move(act));
    }
    static void paste(ImportFiltersDialog& dialog, std::string_view text) {
        clipboard().setText(QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size())));
        QTest::mouseClick(&button(dialog, "Paste"), Qt::LeftButton);
    }
    static void apply(ImportFiltersDialog& dialog) {
        QTest::mouseClick(&button(dialog, "Apply"), Qt::LeftButton);
    }
    std::string noticeText() {
        const Notice* const notice = frame->statusLine().noticeLine().standing();
        return notice == nullptr ? std::string() : notice->text.toStdString();
    }

    std::unique_ptr<ImportFiltersDialog> alone_;
};

}  // namespace tessavo::test
