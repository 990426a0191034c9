#pragma once

#include <QLockFile>
#include <QString>

namespace tessavo {

/// Keeps a second program of the same user from running: two of them would fight over port and settings.
class InstanceGuard {
 public:
    /// \param folder where the lock file lies; the user's own run or temporary folder when empty
    explicit InstanceGuard(const QString& folder = {});

    /// False when another program holds the place. A place that cannot be written counts as free, and so does
    /// one where a pipe or a device lies.
    [[nodiscard]] bool isFirst() const { return first_; }

    /// The user's own run or temporary folder.
    [[nodiscard]] static QString usualFolder();

 private:
    [[nodiscard]] bool bearsOwnNumber() const;

    QLockFile lock_;
    bool first_ = true;
};

}  // namespace tessavo
