#include "pages/form/channel_titles.h"

namespace tessavo {

QString channelNumber(RecordChannel channel) {
    return QStringLiteral("Channel %1").arg(pagePositionOf(channel).value + 1);
}

QString channelFlagNumber(RecordChannel channel) {
    return QStringLiteral("Ch %1").arg(channelCheckBoxMap.at(channel.value));
}

QString channelNameText(const FileNotes& notes, RecordChannel channel) {
    return QString::fromStdU16String(channelName(notes, channel));
}

QString channelTitle(const FileNotes& notes, RecordChannel channel) {
    const QString name = channelNameText(notes, channel);
    return name.isEmpty() ? channelNumber(channel) : channelNumber(channel) + QStringLiteral(" · ") + name;
}

ElidedTitle elidedChannelTitle(const FileNotes& notes, RecordChannel channel, const QFontMetrics& metrics,
                               int width) {
    const QString whole = channelTitle(notes, channel);
    const QString shown = metrics.elidedText(whole, Qt::ElideRight, width);
    const QString named = channelToolTip(notes, channel);
    return {shown, shown == whole ? QString() : named.isEmpty() ? whole : named};
}

// The toolkit looks for mark-up in the first line only, and a name may look like some.
QString channelToolTip(const FileNotes& notes, RecordChannel channel) {
    const QString name = channelNameText(notes, channel);
    return name.isEmpty() ? QString()
                          : channelNumber(channel) + QStringLiteral(", ") + channelFlagNumber(channel) +
                                QLatin1Char('\n') + name;
}

}  // namespace tessavo
