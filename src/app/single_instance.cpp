#include "app/single_instance.h"

#include <unistd.h>

#include <QDataStream>
#include <QDeadlineTimer>
#include <QLocalSocket>
#include <QLockFile>
#include <QStandardPaths>
#include <QTimer>

namespace tweenery {

using namespace Qt::StringLiterals;

namespace {

constexpr char kTaken = 1;
// A message is one byte array: paths, each with a zero at its end. As a list, its first four bytes
// could ask for any memory.
constexpr qsizetype kLongestMessage = 4 << 20;

QByteArray encoded(const QByteArrayList& projects) {
    QByteArray paths("");  // the stream writes one that is null in another way
    for (const QByteArray& project : projects) {
        paths += project + '\0';
    }
    QByteArray message;
    QDataStream stream(&message, QIODevice::WriteOnly);
    stream.setVersion(QDataStream::Qt_6_4);
    stream << paths;
    return message;
}

// False until all of the message is there.
bool decode(QLocalSocket& socket, QByteArrayList& projects) {
    QByteArray paths;
    QDataStream stream(&socket);
    stream.setVersion(QDataStream::Qt_6_4);
    stream.startTransaction();
    stream >> paths;
    if (!stream.commitTransaction() || paths.isNull()) { return false; }
    projects = paths.split('\0');
    projects.removeLast();
    return true;
}

}  // namespace

QString SingleInstance::standardSocket() {
    QString folder = QStandardPaths::writableLocation(QStandardPaths::RuntimeLocation);
    if (folder.isEmpty()) {
        folder = QStandardPaths::writableLocation(QStandardPaths::TempLocation);
    }
    return folder + u"/tweenery-%1-"_s.arg(::getuid()) + QStringLiteral(TWEENERY_VERSION);
}

SingleInstance::Role SingleInstance::start(const QByteArrayList& projects) {
    // Of several that start at once, one becomes the first before the next one asks.
    QLockFile turn(m_socket + u".lock"_s);
    if (!turn.tryLock(m_patience)) { return Role::Alone; }
    switch (handOver(projects)) {
        case Answer::Taken:
            return Role::HandedOver;
        case Answer::None:
            return Role::Alone;
        case Answer::NobodyThere:
            break;
    }
    return listen() ? Role::First : Role::Alone;
}

SingleInstance::Answer SingleInstance::handOver(const QByteArrayList& projects) const {
    QLocalSocket socket;
    socket.connectToServer(m_socket);
    if (!socket.waitForConnected(m_patience)) {
        const bool isTimeout = socket.error() == QLocalSocket::SocketTimeoutError;
        return isTimeout ? Answer::None : Answer::NobodyThere;
    }
    socket.write(encoded(projects));
    QDeadlineTimer deadline(m_patience);
    while (socket.bytesAvailable() == 0 && !deadline.hasExpired()) {
        if (!socket.waitForReadyRead(static_cast<int>(deadline.remainingTime()))) { break; }
    }
    return socket.read(1) == QByteArray(1, kTaken) ? Answer::Taken : Answer::None;
}

bool SingleInstance::listen() {
    auto server = std::make_unique<QLocalServer>();
    server->setSocketOptions(QLocalServer::UserAccessOption);
    QLocalServer::removeServer(m_socket);
    if (!server->listen(m_socket)) { return false; }
    m_server = std::move(server);
    return true;
}

void SingleInstance::setHandler(std::function<void(const QByteArrayList&)> handler) {
    m_handler = std::move(handler);
    if (!m_server) { return; }
    QObject::connect(m_server.get(), &QLocalServer::newConnection, m_server.get(),
                     [this] { serve(); });
    serve();
}

void SingleInstance::serve() {
    while (QLocalSocket* socket = m_server->nextPendingConnection()) {
        const auto read = [this, socket] {
            QByteArrayList projects;
            if (!decode(*socket, projects)) {
                if (socket->bytesAvailable() > kLongestMessage) { socket->abort(); }
                return;
            }
            socket->write(&kTaken, 1);
            socket->disconnectFromServer();
            m_handler(projects);
        };
        QObject::connect(socket, &QLocalSocket::disconnected, socket, &QObject::deleteLater);
        QObject::connect(socket, &QLocalSocket::readyRead, socket, read);
        QTimer::singleShot(m_patience, socket, [socket] { socket->abort(); });
        read();
    }
}

}  // namespace tweenery
