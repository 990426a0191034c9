#include "app/compare_commands.h"

#include <QAction>
#include <QClipboard>
#include <QGuiApplication>
#include <QMenu>
#include <QMimeData>
#include <algorithm>
#include <array>
#include <memory>
#include <span>

#include "app/compare_dialog.h"
#include "app/copy_set_dialog.h"
#include "compare/channel_clip.h"
#include "compare/channel_mirror.h"
#include "compare/copy_elements.h"
#include "history/element_words.h"
#include "pages/form/form.h"

namespace tessavo {

namespace {

QString pasteName() {
    return QStringLiteral("Paste Channel");
}
QString mirrorName() {
    return QStringLiteral("Mirror Left to Right");
}
QString copySetName() {
    return QStringLiteral("Copy Set To");
}

QString clipForm() {
    return QString::fromLatin1(channelClipMimeType.data(),
                               static_cast<qsizetype>(channelClipMimeType.size()));
}

QString channelText(RecordChannel channel) {
    return textOf(channelList(std::array<std::size_t, 1>{channel.value}));
}

QString selectedText(std::uint8_t mask) {
    std::vector<std::size_t> records;
    for (std::uint8_t position = 0; position < channelCount; ++position) {
        if ((mask & selectionBit({position})) != 0) {
            records.push_back(recordChannelAt({position}).value);
        }
    }
    std::ranges::sort(records);
    return textOf(channelList(records));
}

QString noChannelText(const QString& command) {
    return command + QStringLiteral(": no channel is chosen");
}

QString listOf(const QStringList& names) {
    return names.size() < 2 ? names.join(QString())
                            : names.mid(0, names.size() - 1).join(QStringLiteral(", ")) +
                                  QStringLiteral(" and ") + names.last();
}

}  // namespace

CompareCommands::CompareCommands(const Dependencies& dependencies)
    : dependencies_(dependencies),
      edits_({dependencies.tuning, dependencies.history, dependencies.undo, dependencies.view,
              dependencies.status}),
      groupTerms_({dependencies.tuning, dependencies.link, dependencies.undo, dependencies.status, edits_}),
      compare_(make(QStringLiteral("&Compare..."), &CompareCommands::showCompare)),
      copyChannel_(make(QStringLiteral("&Copy Channel"), &CompareCommands::copyChannel)),
      pasteChannel_(make(QStringLiteral("&Paste Channel"), &CompareCommands::pasteChannel)),
      mirror_(make(QStringLiteral("&Mirror Left to Right"), &CompareCommands::mirror)),
      copySetTo_(make(QStringLiteral("Copy &Set To..."), &CompareCommands::copySetTo)) {
    compare_->setShortcut(QKeySequence(Qt::CTRL | Qt::Key_D));
}

CompareCommands::~CompareCommands() {
    delete dialog_;
}

QAction* CompareCommands::make(const QString& text, void (CompareCommands::*act)()) {
    auto* const action = new QAction(text, this);
    connect(action, &QAction::triggered, this, act);
    return action;
}

void CompareCommands::addTo(QMenu& edit, QMenu& tools) const {
    tools.addAction(compare_);
    edit.addSeparator();
    edit.addActions({copyChannel_, pasteChannel_, mirror_});
    edit.addSeparator();
    edit.addAction(copySetTo_);
}

void CompareCommands::showCompare() {
    if (!dialog_) {
        Q_EMIT opened();
        const auto allSources = [this] {
            std::vector<CompareSource> all;
            for (const CompareSources& each : sources_) {
                std::ranges::move(each(), std::back_inserter(all));
            }
            return all;
        };
        dialog_ = new CompareDialog(
            {dependencies_.tuning, dependencies_.undo, dependencies_.dialogs, edits_, allSources},
            &dependencies_.window);
        dialog_->setAttribute(Qt::WA_DeleteOnClose);
    }
    dialog_->show();
    dialog_->raise();
    dialog_->activateWindow();
}

void CompareCommands::copyChannel() {
    const TuningState& tuning = dependencies_.tuning;
    const auto channel = lastSelected(tuning.selectionMask());
    if (!channel) {
        edits_.tell(noChannelText(QStringLiteral("Copy Channel")), true);
        return;
    }
    const ChannelClip clip = clipOf(tuning.currentParameterSet(), *channel);
    const std::vector<std::uint8_t> bytes = channelClipBytes(clip);
    auto data = std::make_unique<QMimeData>();
    data->setText(textOf(channelClipText(clip)));
    data->setData(clipForm(), QByteArray(reinterpret_cast<const char*>(bytes.data()),
                                         static_cast<qsizetype>(bytes.size())));
    QGuiApplication::clipboard()->setMimeData(data.release());
    edits_.tell(channelText(*channel) + QStringLiteral(" is on the clipboard"));
}

void CompareCommands::pasteChannel() {
    if (!edits_.mayWrite(pasteName())) {
        return;
    }
    const TuningState& tuning = dependencies_.tuning;
    const std::uint8_t mask = tuning.selectionMask();
    if (mask == 0) {
        edits_.tell(noChannelText(pasteName()), true);
        return;
    }
    const QMimeData* const data = QGuiApplication::clipboard()->mimeData();
    if (data == nullptr || !data->hasFormat(clipForm())) {
        edits_.tell(pasteName() + QStringLiteral(": the clipboard holds no channel"), true);
        return;
    }
    const QByteArray bytes = data->data(clipForm());
    const ChannelClipReading reading = readChannelClip(std::span(
        reinterpret_cast<const std::uint8_t*>(bytes.constData()), static_cast<std::size_t>(bytes.size())));
    if (!reading.clip) {
        edits_.tell(pasteName() + QStringLiteral(": ") + textOf(reading.trouble), true);
        return;
    }
    const std::array replacement{SetReplacement{
        tuning.currentSet(), tessavo::pasteChannel(tuning.currentParameterSet(), *reading.clip, mask)}};
    const QString text =
        QStringLiteral("Pasted %1 into %2").arg(channelText(reading.clip->channel), selectedText(mask));
    if (edits_.write(replacement, pasteName(), text) == SetEdits::Written::nothing) {
        edits_.tell(selectedText(mask) + QStringLiteral(": the same as the clipboard already"));
    }
}

void CompareCommands::mirror() {
    if (!edits_.mayWrite(mirrorName())) {
        return;
    }
    const TuningState& tuning = dependencies_.tuning;
    const std::uint32_t set = tuning.currentSet();
    const MirrorPlan plan = planMirror(tuning.currentParameterSet());
    std::string told;
    for (const std::string& each : plan.unpaired) {
        told.append("\n").append(each);
    }
    if (plan.pairs.empty()) {
        edits_.tell(mirrorName() + QStringLiteral(": no channel of the left has a partner on the right. ") +
                        textOf(told).simplified(),
                    true);
        return;
    }
    std::string pairs;
    for (const MirrorPair& pair : plan.pairs) {
        pairs.append("\n").append(pair.text);
    }
    const std::string question = "Mirror these channels? Those of the right are written over.\n" + pairs +
                                 (told.empty() ? "" : "\n") + told;
    if (dependencies_.boxes.show(question, BoxIcon::none, BoxButtons::yesNo) != BoxAnswer::yes) {
        return;
    }
    const std::array replacement{
        SetReplacement{set, mirrorChannels(tuning.store().sets.at(set), plan.pairs)}};
    if (edits_.write(replacement, mirrorName(), QStringLiteral("Mirrored left to right")) ==
        SetEdits::Written::nothing) {
        edits_.tell(mirrorName() + QStringLiteral(": both sides are the same already"));
    }
}

void CompareCommands::copySetTo() {
    if (!edits_.mayWrite(copySetName())) {
        return;
    }
    const TuningState& tuning = dependencies_.tuning;
    const std::uint32_t from = tuning.currentSet();
    CopySetDialog dialog(tuning.store(), from, &dependencies_.window);
    if (dialog.exec() != QDialog::Accepted) {
        return;
    }
    const ParameterSet& source = tuning.store().sets.at(from);
    std::vector<SetReplacement> replacements;
    QStringList names;
    for (const std::uint32_t set : dialog.targets()) {
        const ParameterSet& target = tuning.store().sets.at(set);
        replacements.push_back({set, copyWholeSet(target, source, dialog.withName())});
        names << nameOfSet(target, set);
    }
    const QString text = QStringLiteral("Copied %1 to %2").arg(nameOfSet(source, from), listOf(names));
    if (edits_.write(replacements, copySetName(), text) == SetEdits::Written::nothing) {
        edits_.tell(listOf(names) + QStringLiteral(": the same already"));
    }
}

}  // namespace tessavo
