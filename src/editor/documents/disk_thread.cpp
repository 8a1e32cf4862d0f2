#include "editor/documents/disk_thread.h"

#include <QThread>

namespace tweenery {

void DiskThread::Channel::deliver(std::function<void()> call) {
    const std::lock_guard lock(m_mutex);
    if (!m_receiver) { return; }
    QMetaObject::invokeMethod(m_receiver, std::move(call), Qt::QueuedConnection);
}

struct DiskThread::Worker {
    QThread thread;
    QObject* context = new QObject;  // what is given to the thread goes to it

    Worker() {
        context->moveToThread(&thread);
        thread.start();
    }
};

DiskThread::DiskThread() : m_channel(std::make_shared<Channel>()), m_worker(new Worker) {
    m_channel->m_receiver = &m_receiver;
}

DiskThread::~DiskThread() {
    {
        const std::lock_guard lock(m_channel->m_mutex);
        m_channel->m_receiver = nullptr;
    }
    post([worker = m_worker] {
        worker->context->deleteLater();  // when the thread ends, on it
        worker->thread.quit();
    });
    if (m_worker->thread.wait(kPatience)) { delete m_worker; }
}

QObject& DiskThread::context() {
    return *m_worker->context;
}

void DiskThread::post(std::function<void()> work) {
    QMetaObject::invokeMethod(m_worker->context, std::move(work), Qt::QueuedConnection);
}

}  // namespace tweenery
