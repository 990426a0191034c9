#pragma once

#include <QColor>
#include <QFont>
#include <QString>
#include <optional>

class QWidget;

namespace tessavo {

/// What a chart tells and asks a person. The window implements it with its boxes and dialogs, tests with
/// lists and prepared answers. Used on the user-interface thread.
class IChartHost {
 public:
    virtual ~IChartHost() = default;
    /// Tells something and waits until it is read.
    virtual void showMessage(QWidget* parent, const QString& text) = 0;
    /// Asks for a file to write, and once more before an existing one is replaced.
    /// \param parent window that the dialog belongs to
    /// \param filter which files are offered, as "Text files (*.txt)"
    /// \param suffix added to a chosen name that has none
    /// \return nothing when the person cancelled
    virtual std::optional<QString> askSavePath(QWidget* parent, const QString& filter,
                                               const QString& suffix) = 0;
    /// Asks for a font, or below for a colour.
    /// \param parent window that the dialog belongs to
    /// \param current what the dialog shows at first
    /// \return nothing when the person cancelled
    virtual std::optional<QFont> askFont(QWidget* parent, const QFont& current) = 0;
    virtual std::optional<QRgb> askColor(QWidget* parent, QRgb current) = 0;
};

/// Asks for fonts and colours with the toolkit's dialogs.
class DialogChartHost : public IChartHost {
 public:
    std::optional<QFont> askFont(QWidget* parent, const QFont& current) override;
    std::optional<QRgb> askColor(QWidget* parent, QRgb current) override;
};

}  // namespace tessavo
