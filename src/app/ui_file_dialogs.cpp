#include "app/ui_file_dialogs.h"

#include <QApplication>
#include <QDir>
#include <QFileInfo>
#include <QRegularExpression>
#include <string>

#include "app/skin_file_dialog.h"
#include "params/set_text.h"

namespace tessavo {

namespace {

QString utf8(std::string_view text) {
    return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
}

QString extensionOf(const FileFilter& filter) {
    return utf8(filter.defaultExtension);
}

// "csv" of "Tables (*.csv)"; empty where the entry stands for several.
QString onlyExtensionOf(const QString& nameFilter) {
    static const QRegularExpression one(QStringLiteral(R"(\(\*\.(\w+)\)$)"));
    return one.match(nameFilter).captured(1);
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
    const QStringList names = nameFilters(filter.filter);
    dialog.setNameFilters(names);
    dialog.setDefaultSuffix(extensionOf(filter));
    if (names.size() > 1) {
        QObject::connect(&dialog, &QFileDialog::filterSelected, &dialog, [&dialog](const QString& chosen) {
            if (const QString extension = onlyExtensionOf(chosen); !extension.isEmpty()) {
                dialog.setDefaultSuffix(extension);
            }
        });
    }
    return dialog.exec() == QDialog::Accepted ? remembered(dialog.selectedFiles().value(0)) : std::nullopt;
}

std::optional<std::filesystem::path> UiFileDialogs::askNewFolder(std::string_view title,
                                                                 std::string_view proposedName) {
    SkinFileDialog dialog(owner(), profile_.lastFolder());
    dialog.setWindowTitle(utf8(title));
    dialog.setAcceptMode(QFileDialog::AcceptSave);
    dialog.setFileMode(QFileDialog::AnyFile);
    // A name that is there already is gone into, as every folder is.
    dialog.setFilter(QDir::AllDirs | QDir::NoDotAndDotDot);
    dialog.setNameFilters({QStringLiteral("Folders (*)")});
    dialog.setLabelText(QFileDialog::FileName, QStringLiteral("New folder:"));
    dialog.selectFile(utf8(proposedName));
    return dialog.exec() == QDialog::Accepted ? remembered(dialog.selectedFiles().value(0)) : std::nullopt;
}

std::optional<std::filesystem::path> UiFileDialogs::askFolder(std::string_view title) {
    SkinFileDialog dialog(owner(), profile_.lastFolder());
    dialog.setWindowTitle(utf8(title));
    dialog.setAcceptMode(QFileDialog::AcceptOpen);
    dialog.setFileMode(QFileDialog::Directory);
    dialog.setOption(QFileDialog::ShowDirsOnly);
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

QString folderText(const std::filesystem::path& folder) {
    return textOf(folder.has_filename() ? folder.filename() : folder.parent_path().filename());
}

}  // namespace tessavo
