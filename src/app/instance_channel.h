#pragma once

#include <QString>
#include <chrono>
#include <cstdint>
#include <functional>
#include <memory>

namespace tessavo {

/// Where the program that holds the place hears what a second start of the same user wants: a local socket,
/// on Windows a named pipe. Nothing but a path can arrive; see instance_message.h.
///
/// Lives on the user-interface thread and never waits there: who is slow, sends something else or is another
/// user is sent away. What cannot be opened leaves second starts without an answer.
class InstanceChannel {
 public:
    /// Called on the user-interface thread with an absolute path, or an empty one for the window only.
    /// \return whether it is taken, which the second start is told
    using Taker = std::function<bool(const QString& path)>;
    /// How long somebody may take to send a path.
    static constexpr std::chrono::milliseconds usualPatience{2000};

    /// The user that this program runs as, as the system writes it: a number, on Windows an S-1-… name. Empty
    /// when the system does not tell; then nobody is let in.
    [[nodiscard]] static QString thisUser();

    /// \param folder that of the InstanceGuard, whose place this program holds
    /// \param take called for each path that arrives whole
    /// \param patience how long somebody may take to send one
    /// \param user whose programs are heard
    InstanceChannel(const QString& folder, Taker take, std::chrono::milliseconds patience = usualPatience,
                    const QString& user = thisUser());
    ~InstanceChannel();
    InstanceChannel(const InstanceChannel&) = delete;
    InstanceChannel& operator=(const InstanceChannel&) = delete;

    [[nodiscard]] bool isOpen() const;

    enum class Answer : std::uint8_t {
        accepted,
        refused,  ///< or none in time
        nobody    ///< no program of `user` listens
    };
    /// Hands a path to the program that listens, for a start that is the second one. Any thread.
    /// \param folder that of the InstanceGuard, whose place the other program holds
    /// \param path absolute, or empty for the window only
    /// \param limit for the whole of it
    /// \param user who the other program must run as to be told anything
    [[nodiscard]] static Answer handOver(const QString& folder, const QString& path,
                                         std::chrono::milliseconds limit, const QString& user = thisUser());

    /// Name of the socket or pipe that belongs to a folder.
    [[nodiscard]] static QString endpoint(const QString& folder);

 private:
    struct Native;
    std::unique_ptr<Native> native_;
};

}  // namespace tessavo
