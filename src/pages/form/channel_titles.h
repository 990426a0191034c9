#pragma once

#include <QFontMetrics>
#include <QString>

#include "params/file_notes.h"

namespace tessavo {

/// "Channel 7": number of a channel on the page of the output equalizer.
[[nodiscard]] QString channelNumber(RecordChannel channel);

/// "Ch 1": number of the same channel among the flags, the rows of the channel selection and the output groups.
[[nodiscard]] QString channelFlagNumber(RecordChannel channel);

/// Name that a person gave a channel; empty where it has none.
[[nodiscard]] QString channelNameText(const FileNotes& notes, RecordChannel channel);

/// "Channel 7 · Mid L"; the number alone where the channel has no name.
[[nodiscard]] QString channelTitle(const FileNotes& notes, RecordChannel channel);

/// A text for a place that may be too narrow for it.
struct ElidedTitle {
    QString text;
    QString toolTip;  ///< tells the whole text; empty where it is not cut
};

/// The title of a channel, cut at its end where it is wider than this many logical pixels.
[[nodiscard]] ElidedTitle elidedChannelTitle(const FileNotes& notes, RecordChannel channel,
                                             const QFontMetrics& metrics, int width);

/// Both numbers of a channel on one line and its name on the next, whatever the name looks like; empty where it
/// has none.
[[nodiscard]] QString channelToolTip(const FileNotes& notes, RecordChannel channel);

}  // namespace tessavo
