#pragma once

#include <QRect>
#include <QString>
#include <QWidget>

#include "app/notice_line.h"
#include "platform/desktop.h"

namespace tessavo {

/// What the first pane tells about the target.
struct TargetStatus {
    enum class Light { off, sending, confirmed, trouble };

    Light light = Light::off;
    QString port;  ///< name of the port; empty when the list is empty
    bool liveMode = false;
    QString state;  ///< a few words with the time, or empty

    friend bool operator==(const TargetStatus&, const TargetStatus&) = default;
};

/// What the first pane tells about the settings file that the sets belong to.
struct DocumentStatus {
    QString name;     ///< without its folder; empty when there is no such file
    QString toolTip;  ///< the whole path
    bool modified = false;

    friend bool operator==(const DocumentStatus&, const DocumentStatus&) = default;
};

/// The frame's status bar. The first pane tells of the target, what is muted and the document; a notice takes
/// the document's place. Then come the three key states. User-interface thread.
class StatusLine : public QWidget {
    Q_OBJECT

 public:
    static constexpr int paneCount = 4;
    static constexpr int barHeight = 28;

    explicit StatusLine(QWidget* parent = nullptr);

    void setTarget(const TargetStatus& status);
    [[nodiscard]] const TargetStatus& target() const { return target_; }
    void setDocument(const DocumentStatus& document);
    [[nodiscard]] const DocumentStatus& document() const { return document_; }
    /// \param text such as "muted: 1, 3"; empty when nothing is. No notice covers it.
    void setMuted(const QString& text);
    void setKeyStates(const KeyStates& states);

    /// Shows a notice in place of the one that stands. It takes no focus: F6 goes to it and back.
    /// \return what withdrawNotice() knows it by; never 0
    quint64 showNotice(Notice notice);
    /// Takes a notice away without an answer; does nothing for one that has gone.
    void withdrawNotice(quint64 identifier);
    [[nodiscard]] NoticeLine& noticeLine() { return *notice_; }

    /// Text of a pane, 0 to 3: the whole sentence of the first, "CAP", "NUM", "SCRL" of the others.
    [[nodiscard]] QString paneText(int pane) const;
    [[nodiscard]] bool keyLit(int pane) const;
    /// The document's name as it is drawn, cut in its middle where it is too long; empty when it is not drawn.
    [[nodiscard]] QString shownDocument() const;

 Q_SIGNALS:
    /// A notice was shown for the first time.
    void noticeShown(const QString& text);

 protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    bool event(QEvent* event) override;

 private:
    /// Where things stand behind the target's columns.
    struct Middle {
        int left = 0;    ///< column at which they begin
        QRect muted;     ///< mark and words
        QRect document;  ///< dot and name
        QRect notice;
    };

    void changed();
    void followNotices();
    [[nodiscard]] QString documentText() const;
    [[nodiscard]] Middle middle() const;
    [[nodiscard]] int middleLeft(int right) const;
    /// Pixels that what is muted takes with the gap behind it.
    [[nodiscard]] int mutedRoom() const;
    /// Pixels without which what is muted and a notice could not be read.
    [[nodiscard]] int leastMiddle() const;
    /// Where the state column ends.
    [[nodiscard]] int stateRight(const Middle& middle) const;
    [[nodiscard]] QString toolTipAt(QPoint point) const;
    void paintMuted(QPainter& painter, const QRect& place) const;
    void paintDocument(QPainter& painter, const QRect& place) const;
    /// Pixels that the first pane takes; the key states have the rest, if there is one.
    [[nodiscard]] int targetWidth() const;
    void paintTarget(QPainter& painter, const Middle& middle) const;
    void paintLight(QPainter& painter, QPointF centre) const;
    void paintKeys(QPainter& painter) const;

    TargetStatus target_;
    DocumentStatus document_;
    QString muted_;
    KeyStates keys_;
    NoticeLine* notice_;
};

}  // namespace tessavo
