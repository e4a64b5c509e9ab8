#pragma once

#include <QCoreApplication>
#include <QDeadlineTimer>
#include <QHostAddress>
#include <QTcpSocket>

namespace zelk {

/// What a server on this machine answers to those bytes until it closes the connection, ten seconds at most.
inline QByteArray rawExchange(quint16 port, const QByteArray &bytes) {
    QTcpSocket socket;
    socket.connectToHost(QHostAddress::LocalHost, port);
    socket.write(bytes);
    QByteArray received;
    const QDeadlineTimer deadline(10000);
    do {
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents | QEventLoop::AllEvents, 20);
        received += socket.readAll();
    } while (socket.state() != QAbstractSocket::UnconnectedState && !deadline.hasExpired());
    return received;
}

/// The status in an answer; 0 without one.
inline int statusOf(const QByteArray &answer) {
    return answer.startsWith("HTTP/1.1 ") ? answer.mid(9, 3).toInt() : 0;
}

} // namespace zelk
