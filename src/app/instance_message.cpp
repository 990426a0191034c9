#include "app/instance_message.h"

#include <QtEndian>
#include <filesystem>

namespace tessavo {

namespace {

constexpr qsizetype lengthSize = 4;

MessageReading verdict(MessageVerdict verdict) {
    return {verdict, {}};
}

bool isWholePath(const QString& path) {
    return path.isEmpty() ||
           (!path.contains(QChar(u'\0')) && std::filesystem::path(path.toStdU16String()).is_absolute());
}

}  // namespace

QByteArray messageWithPath(const QString& path) {
    const QByteArray text = path.toUtf8();
    if (text.size() > longestHandedPath) {
        return {};
    }
    QByteArray message(lengthSize, '\0');
    qToLittleEndian(static_cast<quint32>(text.size()), message.data());
    return message + text;
}

MessageReading readMessage(const QByteArray& received) {
    if (received.size() < lengthSize) {
        return verdict(MessageVerdict::incomplete);
    }
    const qsizetype length = qFromLittleEndian<quint32>(received.constData());
    const qsizetype size = lengthSize + length;
    if (length > longestHandedPath || received.size() > size) {
        return verdict(MessageVerdict::refused);
    }
    if (received.size() < size) {
        return verdict(MessageVerdict::incomplete);
    }
    const QByteArray text = received.mid(lengthSize);
    const QString path = QString::fromUtf8(text);
    if (path.toUtf8() != text || !isWholePath(path)) {
        return verdict(MessageVerdict::refused);
    }
    return {MessageVerdict::whole, path};
}

}  // namespace tessavo
