#pragma once

#include <QCoreApplication>
#include <QEvent>
#include <QObject>
#include <string>
#include <vector>

#include "controls/transfer_line.h"

namespace tessavo::test {

/// Writes down every text that a transfer line shows in turn, whether or not it was painted.
class LineWatcher : public QObject {
 public:
    explicit LineWatcher(const TransferLine& line) : line_(line) {
        QCoreApplication::instance()->installEventFilter(this);
    }
    ~LineWatcher() override { QCoreApplication::instance()->removeEventFilter(this); }

    /// Each text once for each time that it came up; the newest is read now.
    std::vector<std::string> texts() {
        look();
        return texts_;
    }
    [[nodiscard]] const std::vector<int>& blocks() const { return blocks_; }

 protected:
    // What comes from the exchange's thread comes in calls, one event each; what the one before has left on
    // the line is read in front of the next, whichever object takes it.
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

    const TransferLine& line_;
    std::vector<std::string> texts_;
    std::vector<int> blocks_;
};

}  // namespace tessavo::test
