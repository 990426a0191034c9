#include "app/ui_file_dialogs.h"

#include <QApplication>
#include <QDir>
#include <QFileInfo>
#include <string>

#include "app/skin_file_dialog.h"
#include "params/set_text.h"

namespace tessavo {

namespace {

QString extensionOf(const FileFilter& filter) {
    return QString::fromUtf8(filter.defaultExtension.data(),
                             static_cast<qsizetype>(filter.defaultExtension.size()));
}

}  // namespace

std::optional<std::filesystem::path> UiFileDialogs::askOpenPath(const FileFilter& filter) {
    SkinFileDialog dialog(owner(), profile_.lastFolder());
    dialog.setAcceptMode(QFileDialog::AcceptOpen);
    dialog.setFileMode(QFileDialog::ExistingFile);
    dialog.setNameFilters(nameFilters(filter.filter));
    dialog.setDefaultSuffix(extensionOf(filter));
    return dialog.exec() == QDialog::Accepted ? remembered(dialog.selectedFiles().value(0)) : std::nullopt;
}

std::optional<std::filesystem::path> UiFileDialogs::askSavePath(const FileFilter& filter) {
    SkinFileDialog dialog(owner(), profile_.lastFolder());
    dialog.setAcceptMode(QFileDialog::AcceptSave);
    dialog.setNameFilters(nameFilters(filter.filter));
    dialog.setDefaultSuffix(extensionOf(filter));
    return dialog.exec() == QDialog::Accepted ? remembered(dialog.selectedFiles().value(0)) : std::nullopt;
}

QWidget* UiFileDialogs::owner() const {
    return owner_ != nullptr ? owner_ : QApplication::activeWindow();
}

std::optional<std::filesystem::path> UiFileDialogs::remembered(const QString& chosen) {
    if (!chosen.isEmpty()) {
        profile_.setLastFolder(QDir::toNativeSeparators(QFileInfo(chosen).absolutePath()));
    }
    return pathOf(chosen);
}

QStringList nameFilters(std::string_view filter) {
    const QStringList pieces =
        QString::fromUtf8(filter.data(), static_cast<qsizetype>(filter.size())).split(QLatin1Char('|'));
    QStringList names;
    for (qsizetype i = 0; i + 1 < pieces.size() && !pieces[i].isEmpty(); i += 2) {
        names.append(pieces[i]);
    }
    return names;
}

std::filesystem::path pathOf(const QString& text) {
    using Native = std::filesystem::path::string_type;
    Native native;
    if constexpr (sizeof(Native::value_type) == sizeof(char16_t)) {
        // A name of this system need not be text: half a surrogate pair stays what it is.
        for (const QChar unit : text) {
            native.push_back(static_cast<Native::value_type>(unit.unicode()));
        }
    } else {
        const std::string bytes = utf8FromUtf16(text.toStdU16String());
        native.assign(bytes.begin(), bytes.end());
    }
    return native;
}

QString textOf(const std::filesystem::path& path) {
    return QDir::toNativeSeparators(QString::fromStdString(utf8FromPath(path)));
}

}  // namespace tessavo
