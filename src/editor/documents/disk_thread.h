#pragma once

#include <QObject>
#include <functional>
#include <memory>
#include <mutex>

namespace tweenery {

/// A thread for what waits on a disk: does one piece of work after the other, and tells the thread
/// that made it of each result, by that thread's event loop. One that a disk does not let go is
/// left behind when this goes; its results reach nobody.
class DiskThread {
 public:
    /// How long the destructor waits for work that has begun, in milliseconds.
    static constexpr int kPatience = 2000;

    DiskThread();
    /// Waits for all work that was given.
    ~DiskThread();
    DiskThread(const DiskThread&) = delete;
    DiskThread& operator=(const DiskThread&) = delete;

    /// `work` runs on the thread and throws nothing. Before `done` has been called, no later one
    /// is.
    template <class Result>
    void run(std::function<Result()> work, std::function<void(Result)> done) {
        post([channel = m_channel, work = std::move(work), done = std::move(done)] {
            auto result = std::make_shared<Result>(work());
            channel->deliver([result, done] { done(std::move(*result)); });
        });
    }
    void post(std::function<void()> work);
    /// A parent for objects that live on the thread; to be used there, and gone when this is.
    QObject& context();

    /// Carries calls back to the thread that made the DiskThread, as long as that is there.
    class Channel {
     public:
        void deliver(std::function<void()> call);

     private:
        friend class DiskThread;
        std::mutex m_mutex;
        QObject* m_receiver = nullptr;  // null once nobody listens any more
    };
    const std::shared_ptr<Channel>& channel() const { return m_channel; }

 private:
    struct Worker;
    QObject m_receiver;
    std::shared_ptr<Channel> m_channel;
    Worker* m_worker;  // owned, unless it is left behind
};

}  // namespace tweenery
