#pragma once

#include <QEvent>
#include <QObject>
#include <string>
#include <vector>

#include "controls/transfer_line.h"

namespace tessavo::testing {

/// Writes down every text that a transfer line shows in turn, whether or not it was painted.
class LineWatcher : public QObject {
 public:
    /// \param page the object that takes what comes from the exchange's thread, one event after the other
    LineWatcher(QObject& page, const TransferLine& line) : page_(page), line_(line) {
        page_.installEventFilter(this);
    }
    ~LineWatcher() override { page_.removeEventFilter(this); }

    /// Each text once for each time that it came up; the newest is read now.
    std::vector<std::string> texts() {
        look();
        return texts_;
    }
    [[nodiscard]] const std::vector<int>& blocks() const { return blocks_; }

 protected:
    // What the event before this one has left on the line is read in front of each event.
    bool eventFilter(QObject* /*watched*/, QEvent* event) override {
        if (event->type() == QEvent::MetaCall) {
            look();
        }
        return false;
    }

 private:
    void look() {
        const std::string text = line_.text().toStdString();
        if (texts_.empty() || texts_.back() != text) {
            texts_.push_back(text);
            blocks_.push_back(line_.blocksSent());
        }
    }

    QObject& page_;
    const TransferLine& line_;
    std::vector<std::string> texts_;
    std::vector<int> blocks_;
};

}  // namespace tessavo::testing
