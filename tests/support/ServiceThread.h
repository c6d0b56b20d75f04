#pragma once

#include <QObject>
#include <QThread>

#include <memory>

// A thread for stand-in D-Bus services in a test, so that a blocking call from the test's own
// thread still gets its answer. Objects made with make() live on the thread and go with it.
class ServiceThread
{
public:
    ServiceThread()
    {
        m_context.moveToThread(&m_thread);
        m_thread.start();
    }
    ~ServiceThread()
    {
        run([this] { m_objects.clear(); });
        m_thread.quit();
        m_thread.wait();
    }

    // Runs `work` on the thread and waits for it.
    template<typename Work>
    void run(Work work)
    {
        QMetaObject::invokeMethod(&m_context, work, Qt::BlockingQueuedConnection);
    }

    template<typename T>
    T *make()
    {
        T *object = nullptr;
        run([&] {
            m_objects.push_back(std::make_unique<T>());
            object = static_cast<T *>(m_objects.back().get());
        });
        return object;
    }

private:
    QThread m_thread;
    QObject m_context;
    std::vector<std::unique_ptr<QObject>> m_objects;
};
