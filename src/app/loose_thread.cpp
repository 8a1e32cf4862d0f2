#include "app/loose_thread.h"

#include <QCoreApplication>
#include <QObject>
#include <mutex>
#include <thread>

namespace tweenery {

struct LooseThread::Listener {
    std::mutex mutex;
    QObject* receiver = new QObject;  // null once nobody listens

    bool tell(const Call& call) {
        const std::lock_guard lock(mutex);
        return receiver && QMetaObject::invokeMethod(receiver, call, Qt::QueuedConnection);
    }
};

LooseThread::LooseThread(std::function<void(const Tell&)> work)
    : m_listener(std::make_shared<Listener>()) {
    std::thread([listener = m_listener, work = std::move(work)] {
        work([&listener](const Call& call) { return listener->tell(call); });
    }).detach();
}

LooseThread::~LooseThread() {
    const std::lock_guard lock(m_listener->mutex);
    QObject* receiver = std::exchange(m_listener->receiver, nullptr);
    // One of its calls may be what takes this away.
    QCoreApplication::removePostedEvents(receiver);
    receiver->deleteLater();
}

}  // namespace tweenery
