#pragma once

#include <QObject>
#include <QString>
#include <filesystem>
#include <memory>
#include <optional>

#include "history/file_history.h"
#include "history/history.h"

class QAction;
class QMenu;
class QWidget;

namespace tessavo {

class IFileDialogs;
class StatusLine;
class UndoCommands;

/// What a person sees of the document and of the files that were written over: its name in the status bar,
/// "Save Again" and "Earlier Versions..." in the menu, and notices. User-interface thread.
class FileNewsDisplay : public QObject {
    Q_OBJECT

 public:
    struct Dependencies {
        TuningState& tuning;
        SettingsCommands& commands;
        UndoCommands& undo;
        IFileDialogs& dialogs;
        StatusLine& status;
        QWidget& window;               ///< in front of which the dialog stands
        std::filesystem::path folder;  ///< of the earlier versions; none are kept when empty
    };

    /// \param dependencies outlive this object
    explicit FileNewsDisplay(const Dependencies& dependencies);
    ~FileNewsDisplay() override;

    /// Adds its entries to the end of a menu.
    void addTo(QMenu& menu);

    [[nodiscard]] const FileHistory& files() const { return files_; }
    /// The document of an earlier run goes on, whose sets and steps are there again; see Document::resume().
    void resumeDocument(const std::filesystem::path& path, const std::optional<DocumentMemory>& memory);

 Q_SIGNALS:
    /// A settings file has become the document and its sets stand here; the step is not made yet.
    void opened();
    /// The sets stand in the document, by whatever command.
    void saved();
    /// Another file is the document, or the sets stand in it now.
    void documentChanged();
    /// The document was saved without a dialog.
    void savedAgain(const QString& path);

 private:
    void take(FileNews news, const std::filesystem::path& path);
    [[nodiscard]] bool isKept(const std::filesystem::path& path) const;
    void showDocument();
    void tellOfNotes(const std::filesystem::path& path, const char* words);
    void noteShortFile(bool isStep);
    void resumeShortFile();
    void showShortFile();
    void followHistory(HistoryEvent event);
    void takeBackShortFile();
    /// How many steps were done before the short file was opened; nothing where that is undone.
    [[nodiscard]] std::optional<std::size_t> stepsBeforeShortFile() const;
    void saveAgain();
    void overwrite();
    void showVersions();

    Dependencies dependencies_;
    FileHistory files_;
    QAction* saveAgain_ = nullptr;
    quint64 shortFileNotice_ = 0;
    bool hasShortFile_ = false;  ///< the document was too short, and was not saved since
    /// That opened the short file; null where the sets were the same before.
    std::shared_ptr<const Step> shortFileStep_;
    quint64 changedNotice_ = 0;
};

}  // namespace tessavo
