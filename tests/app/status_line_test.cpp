#include "app/status_line.h"

#include <QAccessible>
#include <QHelpEvent>
#include <QTest>
#include <QToolTip>
#include <vector>

#include "app/notice_line.h"
#include "controls/theme.h"
#include "support/frame_fixture.h"

// The first pane of the status bar: the document, what is muted, and where a notice stands.

namespace tessavo::test {
namespace {

const TargetStatus confirmed{TargetStatus::Light::confirmed, QStringLiteral("COM3"), true,
                             QStringLiteral("confirmed 14:32:07")};
const QString sentence = QStringLiteral("COM3, Live Mode on, confirmed 14:32:07");
const DocumentStatus unchanged{QStringLiteral("front_stage.eqs"), QStringLiteral("/home/a/front_stage.eqs"),
                               false};
const DocumentStatus modified{QStringLiteral("front_stage.eqs"), QStringLiteral("/home/a/front_stage.eqs"),
                              true};
const QString muted = QStringLiteral("muted: 1, 3");

Notice recovery() {
    return {.text = QStringLiteral("Tessavo ended without saving at 10:21"),
            .kind = Notice::Kind::warning,
            .buttons = {{QStringLiteral("Restore"), {}}, {QStringLiteral("Discard"), {}}},
            .dismissible = false,
            .stays = true};
}

Notice shortFile() {
    return {.text = QStringLiteral("car.eqs: 300 of 10600 bytes, the rest reads as zero"),
            .kind = Notice::Kind::warning,
            .buttons = {{QStringLiteral("Undo"), {}}}};
}

class StatusBar : public ::testing::Test {
 protected:
    StatusBar() {
        status.setTarget(confirmed);
        makeWide(1024);
        status.show();
    }
    void makeWide(int width) { status.setFixedWidth(width); }
    QImage picture() { return status.grab().toImage().convertToFormat(QImage::Format_RGB32); }
    /// Whether the pictures show the same in the columns from `left` to before `right`, in logical pixels.
    static bool sameColumns(const QImage& one, const QImage& other, int left, int right) {
        const qreal scale = one.devicePixelRatio();
        const QRect part(qRound(left * scale), 0, qRound((right - left) * scale), one.height());
        return one.copy(part) == other.copy(part);
    }
    /// The column of the first pixel of a colour, counted in logical pixels from `from`; -1 without one.
    double firstOf(QRgb color, int from = 0) {
        const QImage image = picture();
        const qreal scale = image.devicePixelRatio();
        for (int x = qRound(from * scale); x < image.width(); ++x) {
            for (int y = 0; y < image.height(); ++y) {
                if (image.pixel(x, y) == color) {
                    return x / scale;
                }
            }
        }
        return -1;
    }
    QRect placeOf(const QString& label) {
        for (auto* button : status.findChildren<QAbstractButton*>()) {
            if (button->isVisible() && (button->text() == label || button->accessibleName() == label)) {
                return {button->mapTo(&status, QPoint()), button->size()};
            }
        }
        return {};
    }
    QString toolTipAt(QPoint point) {
        // The tip of before would stay for a while.
        for (QWidget* window : QApplication::topLevelWidgets()) {
            if (window->inherits("QTipLabel")) {
                delete window;
            }
        }
        QHelpEvent asked(QEvent::ToolTip, point, status.mapToGlobal(point));
        QApplication::sendEvent(&status, &asked);
        return QToolTip::text();
    }
    NoticeLine& line() { return status.noticeLine(); }

    StatusLine status;
};

// ---- document

TEST_F(StatusBar, NamesTheDocumentAndMarksItWhenTheSetsDiffer) {
    EXPECT_EQ(status.shownDocument(), QString());
    const QImage nothing = picture();
    status.setDocument(unchanged);
    EXPECT_EQ(status.shownDocument(), QStringLiteral("front_stage.eqs"));
    const QImage plain = picture();
    status.setDocument(modified);
    EXPECT_EQ(status.shownDocument(), QStringLiteral("front_stage.eqs, modified"));
    const QImage marked = picture();
    EXPECT_FALSE(sameColumns(nothing, plain, 416, 501));
    EXPECT_TRUE(sameColumns(nothing, plain, 0, 415));
    EXPECT_FALSE(sameColumns(plain, marked, 416, 501)) << "stronger";
    // The dot, and nothing else in front of the name.
    const qreal scale = marked.devicePixelRatio();
    EXPECT_EQ(marked.pixel(qRound(405.5 * scale), qRound(14 * scale)), theme::text);
    EXPECT_EQ(plain.pixel(qRound(405.5 * scale), qRound(14 * scale)), theme::bars);
    EXPECT_TRUE(sameColumns(nothing, marked, 0, 401));
    status.setDocument({});
    EXPECT_EQ(picture(), nothing);
}

TEST_F(StatusBar, AModifiedNothingIsNothing) {
    const QImage nothing = picture();
    status.setDocument({.name = {}, .toolTip = {}, .modified = true});
    EXPECT_EQ(picture(), nothing);
    EXPECT_EQ(status.paneText(0), sentence);
}

TEST_F(StatusBar, DocumentAndWhatIsMutedStandAtTheirPlaces) {
    // The "f" of the name begins right at the edge of its label.
    const auto nameAt = [this](int from) {
        const QImage with = picture();
        DocumentStatus none;
        status.setDocument(none);
        const QImage without = picture();
        for (int x = from; x < 826; ++x) {
            if (!sameColumns(with, without, x, x + 1)) {
                return x;
            }
        }
        return -1;
    };
    status.setDocument(unchanged);
    EXPECT_NEAR(nameAt(396), 416, 1);
    status.setMuted(muted);
    status.setDocument(unchanged);
    EXPECT_NEAR(nameAt(396), 570, 1);
    EXPECT_NEAR(firstOf(theme::stop, 396), 402, 1);
    const QImage image = picture();
    const qreal scale = image.devicePixelRatio();
    for (const QPoint corner : {QPoint(404, 8), QPoint(413, 8), QPoint(404, 19), QPoint(413, 19)}) {
        EXPECT_EQ(image.pixel(corner * scale), theme::stop) << corner.x() << ' ' << corner.y();
    }
    EXPECT_NE(firstOf(theme::white, 402), -1);
    EXPECT_LT(firstOf(theme::white, 402), 416);
}

TEST_F(StatusBar, ALongNameIsCutInItsMiddle) {
    const QString longName =
        QStringLiteral("a_front_stage_with_a_name_that_takes_more_room_than_there_is_v12.eqs");
    for (const bool changed : {false, true}) {
        for (const QString& mutedText : {QString(), muted}) {
            status.setMuted(mutedText);
            status.setDocument({longName, QStringLiteral("/home/b/") + longName, changed});
            const QString shown = status.shownDocument();
            EXPECT_TRUE(shown.startsWith(QStringLiteral("a_front"))) << shown.toStdString();
            EXPECT_TRUE(shown.contains(QChar(0x2026)));
            EXPECT_TRUE(shown.endsWith(changed ? QStringLiteral(".eqs, modified") : QStringLiteral(".eqs")));
            const QFontMetrics metrics(theme::font(11, changed ? QFont::Medium : QFont::Normal));
            EXPECT_LE(metrics.horizontalAdvance(shown), mutedText.isEmpty() ? 250 + 60 : 826 - 570);
            EXPECT_TRUE(status.paneText(0).contains(longName));
        }
    }
}

TEST_F(StatusBar, TheWholePathIsInTheTooltipOfTheName) {
    status.setDocument(modified);
    EXPECT_EQ(toolTipAt({440, 14}), modified.toolTip);
    EXPECT_EQ(toolTipAt({404, 14}), modified.toolTip) << "the dot";
    for (const QPoint elsewhere : {QPoint(20, 14), QPoint(200, 14), QPoint(700, 14), QPoint(850, 14)}) {
        EXPECT_EQ(toolTipAt(elsewhere), QString()) << elsewhere.x();
    }
    status.setMuted(muted);
    EXPECT_EQ(toolTipAt({440, 14}), QString());
    EXPECT_EQ(toolTipAt({600, 14}), modified.toolTip);
    status.setDocument({QStringLiteral("<b>a.eqs"), QStringLiteral("/home/<b>a.eqs"), false});
    EXPECT_TRUE(toolTipAt({580, 14}).contains(QStringLiteral("/home/&lt;b&gt;a.eqs")));
}

TEST_F(StatusBar, AStateThatIsCutIsWholeInTheTooltip) {
    TargetStatus status_ = confirmed;
    status_.state = QStringLiteral("software image may be incomplete 10:21:07");
    status.setTarget(status_);
    EXPECT_EQ(toolTipAt({200, 14}), QString()) << "there is room for all of it";
    status.setDocument(unchanged);
    EXPECT_EQ(toolTipAt({200, 14}), status.paneText(0));
    const QImage with = picture();
    status.setDocument(modified);
    EXPECT_TRUE(sameColumns(with, picture(), 0, 396));
}

// ---- notice

TEST_F(StatusBar, ANoticeTakesTheMiddleOfTheFirstPaneAndNothingElseMoves) {
    TargetStatus silent = confirmed;
    silent.light = TargetStatus::Light::trouble;
    silent.state = QStringLiteral("no answer 14:32:07");
    const auto keys = std::to_array<KeyStates>({{}, {true, true, true}});
    for (const TargetStatus& target : {confirmed, silent, TargetStatus{}}) {
        for (const DocumentStatus& document : {DocumentStatus{}, unchanged, modified}) {
            for (const KeyStates& lit : keys) {
                status.setTarget(target);
                status.setDocument(document);
                status.setKeyStates(lit);
                const QImage before = picture();
                const quint64 identifier = status.showNotice(recovery());
                EXPECT_EQ(line().geometry(), QRect(396, 3, 430, 22));
                const QImage with = picture();
                EXPECT_TRUE(sameColumns(before, with, 0, 396));
                EXPECT_TRUE(sameColumns(before, with, 826, 1024));
                EXPECT_FALSE(sameColumns(before, with, 396, 826));
                status.withdrawNotice(identifier);
                EXPECT_EQ(picture(), before);
            }
        }
    }
}

TEST_F(StatusBar, ItsPartsStandAsDrawn) {
    // As designed, from the right end of the pane.
    status.showNotice(recovery());
    const QRect restore = placeOf(QStringLiteral("Restore"));
    const QRect discard = placeOf(QStringLiteral("Discard"));
    EXPECT_EQ(discard, QRect(1000 - 178 - 68, 4, 68, 20));
    EXPECT_EQ(restore, QRect(858 - 178, 4, 68, 20));
    EXPECT_EQ(firstOf(NoticeLine::warningColour, 390), 396);
    status.showNotice(shortFile());
    EXPECT_EQ(placeOf(QStringLiteral("Undo")), QRect(918 - 178, 4, 56, 20));
    EXPECT_EQ(placeOf(QStringLiteral("Dismiss")), QRect(980 - 178, 3, 22, 22));
    // The text begins at 428, between sign and buttons.
    const QImage image = picture();
    Notice silent = shortFile();
    silent.text = QStringLiteral(" ");
    status.showNotice(silent);
    const QImage without = picture();
    EXPECT_TRUE(sameColumns(image, without, 0, 428));
    EXPECT_FALSE(sameColumns(image, without, 428, 432));
    EXPECT_TRUE(sameColumns(image, without, 732, 1024)) << "clear of the button";
}

TEST_F(StatusBar, ANoticeStartsBehindWhatIsMutedAndNeverCoversIt) {
    for (const QString& text :
         {QStringLiteral("muted: 1"), muted, QStringLiteral("muted: 1, 2, 3, 4, 5, 6, 7, 8")}) {
        status.setMuted(text);
        const QImage before = picture();
        const int end = 423 + QFontMetrics(theme::font(11, QFont::Medium)).horizontalAdvance(text);
        const quint64 identifier = status.showNotice(recovery());
        EXPECT_GT(line().x(), end + 4);
        EXPECT_LT(line().x(), end + 14);
        EXPECT_EQ(line().geometry().right(), 825);
        EXPECT_TRUE(sameColumns(before, picture(), 0, end + 1));
        EXPECT_TRUE(sameColumns(before, picture(), 826, 1024));
        EXPECT_GE(line().shownText().size(), 10) << text.toStdString();
        for (const char* label : {"Restore", "Discard"}) {
            EXPECT_TRUE(line().geometry().contains(placeOf(QLatin1String(label)))) << label;
        }
        status.withdrawNotice(identifier);
    }
    // It makes room when something is muted while it stands.
    status.setMuted({});
    status.showNotice(recovery());
    EXPECT_EQ(line().x(), 396);
    status.setMuted(muted);
    EXPECT_GT(line().x(), 480);
    status.setMuted({});
    EXPECT_EQ(line().x(), 396);
}

TEST_F(StatusBar, InANarrowWindowANoticeMayCoverTheStateButNeverLightOrMuted) {
    for (const int width : {480, 577, 578, 600, 692, 792, 952, 1015}) {
        for (const QString& text : {QString(), muted, QStringLiteral("muted: 1, 2, 3, 4, 5, 6, 7, 8")}) {
            makeWide(width);
            status.setMuted(text);
            const QImage before = picture();
            const quint64 identifier = status.showNotice(recovery());
            const QImage with = picture();
            EXPECT_TRUE(sameColumns(before, with, 0, 36)) << width << ": the light";
            EXPECT_LE(line().geometry().right(), width - 1);
            EXPECT_GE(line().shownText().size(), 8) << width << ' ' << text.toStdString();
            QList<QRect> taken;
            for (const char* label : {"Restore", "Discard"}) {
                const QRect place = placeOf(QLatin1String(label));
                EXPECT_TRUE(line().geometry().contains(place)) << width << label;
                EXPECT_GE(place.width(), 42 + 12) << width << label;
                for (const QRect& other : taken) {
                    EXPECT_FALSE(other.intersects(place));
                }
                taken << place;
            }
            if (!text.isEmpty()) {
                const double mark = firstOf(theme::stop, 36);
                const int words = QFontMetrics(theme::font(11, QFont::Medium)).horizontalAdvance(text);
                EXPECT_GE(mark, 38);
                EXPECT_GT(line().x(), mark + 21 + words) << width;
            } else {
                EXPECT_GE(line().x(), 184) << width << ": only the state is covered";
            }
            status.withdrawNotice(identifier);
            EXPECT_EQ(picture(), before);
        }
    }
}

TEST_F(StatusBar, InANarrowWindowTheTargetIsWorthMoreThanTheDocument) {
    makeWide(480);
    const QImage before = picture();
    status.setDocument(modified);
    EXPECT_EQ(picture(), before);
    EXPECT_TRUE(status.paneText(0).contains(QStringLiteral("front_stage.eqs, modified")));
    makeWide(792);
    EXPECT_EQ(status.shownDocument(), QStringLiteral("front_stage.eqs, modified"));
}

// ---- what is told

TEST_F(StatusBar, TheFirstPaneIsToldAsOneSentence) {
    const auto told = [this] {
        QAccessibleInterface* seen = QAccessible::queryAccessibleInterface(&status);
        EXPECT_EQ(seen->text(QAccessible::Description), status.paneText(0));
        return status.paneText(0);
    };
    EXPECT_EQ(told(), sentence);
    status.setDocument(unchanged);
    EXPECT_EQ(told(), sentence + QStringLiteral(", front_stage.eqs"));
    status.setDocument(modified);
    EXPECT_EQ(told(), sentence + QStringLiteral(", front_stage.eqs, modified"));
    status.setMuted(muted);
    EXPECT_EQ(told(), sentence + QStringLiteral(", muted: 1, 3, front_stage.eqs, modified"));
    const quint64 identifier = status.showNotice(recovery());
    EXPECT_EQ(told(), sentence + QStringLiteral(", muted: 1, 3, front_stage.eqs, modified, "
                                                "Tessavo ended without saving at 10:21"));
    status.withdrawNotice(identifier);
    status.setMuted({});
    status.setDocument({});
    EXPECT_EQ(told(), sentence);
    for (const auto& [pane, text] : {std::pair(1, "CAP"), std::pair(2, "NUM"), std::pair(3, "SCRL")}) {
        EXPECT_EQ(status.paneText(pane), QLatin1String(text));
    }
    EXPECT_EQ(status.paneText(4), QString()) << "there are four panes";
}

TEST_F(StatusBar, IsOneToScreenReaders) {
    QAccessibleInterface* seen = QAccessible::queryAccessibleInterface(&status);
    ASSERT_NE(seen, nullptr);
    EXPECT_EQ(seen->role(), QAccessible::StatusBar);
    EXPECT_EQ(seen->text(QAccessible::Name), QStringLiteral("Status"));
}

}  // namespace
}  // namespace tessavo::test
