#pragma once

#include <QByteArrayList>
#include <QLocalServer>
#include <QString>
#include <functional>
#include <memory>

namespace tweenery {

/// Lets one process serve each user: the first one listens on a local socket, later ones hand it
/// their projects and end. Versions do not mix.
class SingleInstance {
 public:
    enum class Role {
        First,       // listens from now on
        HandedOver,  // another has taken the projects; end
        Alone,       // another is there and does not answer, or none can listen: go on without
    };
    static constexpr int kPatience = 2000;

    /// The socket of this user and version: in the runtime folder, or among temporary files.
    static QString standardSocket();

    /// `patience`: how long each step may take, in milliseconds.
    explicit SingleInstance(const QString& socket = standardSocket(), int patience = kPatience)
        : m_socket(socket), m_patience(patience) {}

    /// Hands `projects` (absolute paths, as the system has them; none: show yourself) to the first
    /// process, or becomes it. A socket that a dead process left is no obstacle.
    Role start(const QByteArrayList& projects);
    /// Of the first process: what later ones hand over. Needs an event loop; what comes before is
    /// kept until then.
    void setHandler(std::function<void(const QByteArrayList& projects)> handler);

 private:
    enum class Answer { NobodyThere, Taken, None };

    QString m_socket;
    int m_patience;
    std::unique_ptr<QLocalServer> m_server;
    std::function<void(const QByteArrayList&)> m_handler;

    Answer handOver(const QByteArrayList& projects) const;
    bool listen();
    void serve();
};

}  // namespace tweenery
