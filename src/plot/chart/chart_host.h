#pragma once

#include <QColor>
#include <QFont>
#include <QString>
#include <optional>

class QWidget;

namespace tessavo {

/// What a chart has to tell or ask a person; the window answers with its boxes, tests with lists. Used on the
/// user-interface thread.
class IChartHost {
 public:
    virtual ~IChartHost() = default;
    virtual void showMessage(QWidget* parent, const QString& text) = 0;
    /// Asks before an existing file is replaced.
    /// \param filter as "Text files (*.txt)" \param suffix added to a bare name \return nothing when
    /// cancelled
    virtual std::optional<QString> askSavePath(QWidget* parent, const QString& filter,
                                               const QString& suffix) = 0;
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
