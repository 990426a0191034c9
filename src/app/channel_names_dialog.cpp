#include "app/channel_names_dialog.h"

#include <QGridLayout>
#include <QPlainTextEdit>
#include <QScrollArea>

#include "controls/screen_room.h"
#include "controls/scroll_body.h"
#include "controls/theme.h"
#include "pages/form/channel_titles.h"
#include "pages/form/source_names.h"

namespace tessavo {

namespace {

constexpr QSize usualSize(480, 488);
constexpr int nameWidth = 200;
constexpr int lowestNote = 72;

QString colorName(QRgb color) {
    return QColor::fromRgb(color).name();
}

// The edge shows where the keyboard is.
QString noteSheet() {
    return QStringLiteral(
               "QPlainTextEdit { background: %1; color: %2; border: 1px solid %3; border-radius: 4px;"
               " padding: 1px; selection-background-color: %4; selection-color: %5; }"
               "QPlainTextEdit:focus { border: 2px solid %6; padding: 0; }")
        .arg(colorName(theme::sunk), colorName(theme::text), colorName(theme::edge),
             colorName(theme::selected), colorName(theme::white), colorName(theme::focus));
}

CColorControl* coloredLabel(const QString& text, QRgb color, QWidget* parent) {
    CColorControl* const label = makeLabel(text, parent);
    label->setColors(QColor::fromRgb(color));
    return label;
}

// What is cut in the middle of a character loses all of it.
std::u16string textIn(const QString& text) {
    QString whole = text;
    if (!whole.isEmpty() && whole.back().isHighSurrogate()) {
        whole.chop(1);
    }
    return whole.toStdU16String();
}

}  // namespace

ChannelNamesDialog::ChannelNamesDialog(TuningState& tuning, QWidget* parent)
    : SettingsDialog(QStringLiteral("Channel Names"), parent), tuning_(tuning) {
    setObjectName(QStringLiteral("channelNames"));
    // On a low screen the rows scroll, and the buttons stay in sight.
    auto* const content = new QWidget;
    auto* const column = new QVBoxLayout(content);
    column->setContentsMargins(4, 4, 4, 4);
    auto* const grid = new QGridLayout;
    grid->setHorizontalSpacing(14);
    grid->setVerticalSpacing(6);
    grid->setColumnStretch(3, 1);
    addRows(*grid);
    column->addLayout(grid);
    addNote(*column);
    body().setSizeConstraint(QLayout::SetDefaultConstraint);
    body().addWidget(makeScrollBody(content, this), 1);
    addFoot(false);
    resize(usualSize.boundedTo(roomOnScreen(parent)));
    names_.front()->setFocus();
}

void ChannelNamesDialog::addRows(QGridLayout& grid) {
    const FileNotes& notes = tuning_.notes();
    for (std::uint8_t position = 0; position < channelCount; ++position) {
        const RecordChannel channel = recordChannelAt({position});
        const QString source = sourceName(tuning_.currentParameterSet().routerSource.at(channel.value));
        TextEditBox* const name =
            makeEdit(QStringLiteral("Name of %1, %2, %3")
                         .arg(channelNumber(channel), channelFlagNumber(channel), source),
                     this);
        namesBefore_.at(position) = channelNameText(notes, channel);
        name->setMaxLength(static_cast<int>(channelNameLimit));
        name->setText(namesBefore_.at(position));
        name->setCursorPosition(0);
        name->setMinimumWidth(nameWidth);
        names_.at(position) = name;
        grid.addWidget(coloredLabel(channelNumber(channel), theme::text, this), position, 0);
        grid.addWidget(coloredLabel(channelFlagNumber(channel), theme::text2, this), position, 1);
        grid.addWidget(coloredLabel(source, theme::text2, this), position, 2);
        grid.addWidget(name, position, 3);
    }
}

void ChannelNamesDialog::addNote(QBoxLayout& column) {
    noteBefore_ = QString::fromStdU16String(noteText(tuning_.notes()));
    note_ = new QPlainTextEdit(noteBefore_, this);
    note_->setAccessibleName(QStringLiteral("Note"));
    note_->setStyleSheet(noteSheet());
    note_->setFont(theme::font(12));
    note_->setTabChangesFocus(true);
    note_->setMinimumHeight(lowestNote);
    length_ = coloredLabel({}, theme::text2, this);
    length_->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
    auto* const head = new QHBoxLayout;
    head->addWidget(coloredLabel(QStringLiteral("Note"), theme::text, this));
    head->addWidget(length_, 1);
    column.addSpacing(4);
    column.addLayout(head);
    column.addWidget(note_, 1);
    connect(note_, &QPlainTextEdit::textChanged, this, &ChannelNamesDialog::showLength);
    showLength();
}

void ChannelNamesDialog::showLength() {
    const qsizetype length = note_->toPlainText().size();
    const bool isTooLong = length > static_cast<qsizetype>(noteLimit);
    length_->setText(QStringLiteral("%1 of %2 characters").arg(length).arg(noteLimit));
    length_->setColors(QColor::fromRgb(isTooLong ? theme::trouble : theme::text2));
    note_->setAccessibleDescription(length_->text());
}

bool ChannelNamesDialog::apply() {
    const QString note = note_->toPlainText();
    if (note.size() > static_cast<qsizetype>(noteLimit)) {
        note_->setFocus();
        return false;
    }
    // What was left alone stays, also where a file has brought something else meanwhile.
    FileNotes notes = tuning_.notes();
    for (std::uint8_t position = 0; position < channelCount; ++position) {
        const QString name = names_.at(position)->text();
        if (name != namesBefore_.at(position)) {
            setChannelName(notes, recordChannelAt({position}), textIn(name));
        }
    }
    if (note != noteBefore_) {
        setNoteText(notes, note.toStdU16String());
    }
    if (notes != tuning_.notes()) {
        tuning_.setNotes(notes);
    }
    return true;
}

}  // namespace tessavo
