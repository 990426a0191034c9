#pragma once

#include <QObject>
#include <QString>
#include <QTimer>
#include <deque>

namespace tessavo {

class CMainFrame;
class CommLink;

/// What second starts have handed to the window: it comes to the front at once, and loads each file, in the
/// order in which they came, as soon as no box, drag or exchange is under way.
class HandedFiles : public QObject {
    Q_OBJECT

 public:
    /// How many may wait.
    static constexpr std::size_t mostWaiting = 16;

    /// Both outlive this object.
    HandedFiles(CMainFrame& frame, CommLink& link);

    /// \param path absolute; empty for the window only
    /// \return false when it is not taken: too many wait, or the window is about to close
    bool take(const QString& path);

 private:
    void bringToFront();
    [[nodiscard]] bool mayLoad() const;
    void loadNext();

    CMainFrame& frame_;
    CommLink& link_;
    std::deque<QString> waiting_;
    QTimer look_;
    bool loading_ = false;
};

}  // namespace tessavo
