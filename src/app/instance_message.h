#pragma once

#include <QByteArray>
#include <QString>
#include <cstdint>

namespace tessavo {

/// Longest path that is handed to the window that is open, in bytes of UTF-8.
inline constexpr qsizetype longestHandedPath = 32768;

/// What a second start sends: four bytes with the length of the path, the lowest first, then the path in
/// UTF-8. An empty path asks for the window only.
/// \return empty when the path is too long
[[nodiscard]] QByteArray messageWithPath(const QString& path);

enum class MessageVerdict : std::uint8_t { incomplete, whole, refused };

struct MessageReading {
    MessageVerdict verdict = MessageVerdict::incomplete;
    QString path;  ///< absolute or empty; only of a whole message
};

/// Judges what has arrived so far. Refused is whatever cannot become a path: too long a length, bytes behind
/// the end, wrong UTF-8, a zero within, a path that depends on a folder.
[[nodiscard]] MessageReading readMessage(const QByteArray& received);

/// The answer to a path that was taken; there is no other.
inline constexpr char pathTaken = '\x06';

}  // namespace tessavo
