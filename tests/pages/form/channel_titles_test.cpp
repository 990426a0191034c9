#include "pages/form/channel_titles.h"

#include <QFont>
#include <QTextDocument>
#include <array>
#include <gtest/gtest.h>

namespace tessavo::test {
namespace {

/// By record channel: its number on the pages, and that of its flag.
constexpr std::array<std::array<int, 2>, 8> numbers{
    {{3, 4}, {5, 8}, {7, 1}, {2, 5}, {4, 2}, {6, 6}, {8, 3}, {1, 7}}};

TEST(ChannelTitles, HaveBothNumbersAndTheName) {
    for (std::uint8_t c = 0; c < 8; ++c) {
        FileNotes notes;
        const QString number = QStringLiteral("Channel %1").arg(numbers.at(c)[0]);
        const QString flag = QStringLiteral("Ch %1").arg(numbers.at(c)[1]);
        EXPECT_EQ(channelNumber({c}), number);
        EXPECT_EQ(channelFlagNumber({c}), flag);
        EXPECT_EQ(channelNameText(notes, {c}), QString());
        EXPECT_EQ(channelTitle(notes, {c}), number);
        EXPECT_EQ(channelToolTip(notes, {c}), QString());
        setChannelName(notes, {c}, u"Mid L");
        EXPECT_EQ(channelNameText(notes, {c}), QStringLiteral("Mid L"));
        EXPECT_EQ(channelTitle(notes, {c}), number + QStringLiteral(" · Mid L"));
        EXPECT_EQ(channelToolTip(notes, {c}),
                  number + QStringLiteral(", ") + flag + QStringLiteral("\nMid L"));
    }
}

TEST(ChannelTitles, CutOnesTellTheWholeNameInTheTooltip) {
    const QFontMetrics metrics{QFont()};
    for (std::uint8_t c = 0; c < 8; ++c) {
        FileNotes notes;
        setChannelName(notes, {c}, u"Left <b>tweeter</b> in A");
        const QString whole = channelTitle(notes, {c});
        const int width = metrics.horizontalAdvance(whole);
        const ElidedTitle fits = elidedChannelTitle(notes, {c}, metrics, width);
        EXPECT_EQ(fits.text, whole);
        EXPECT_EQ(fits.toolTip, QString());
        const ElidedTitle cut = elidedChannelTitle(notes, {c}, metrics, width / 2);
        EXPECT_LE(metrics.horizontalAdvance(cut.text), width / 2);
        EXPECT_TRUE(cut.text.endsWith(QChar(0x2026))) << cut.text.toStdString();
        EXPECT_TRUE(cut.text.startsWith(QStringLiteral("Chan")));
        EXPECT_EQ(cut.toolTip, channelToolTip(notes, {c}));
        EXPECT_FALSE(Qt::mightBeRichText(cut.toolTip));
        const ElidedTitle nameless =
            elidedChannelTitle({}, {c}, metrics, metrics.horizontalAdvance(u'C') * 3);
        EXPECT_EQ(nameless.toolTip, channelNumber({c}));
    }
}

}  // namespace
}  // namespace tessavo::test
