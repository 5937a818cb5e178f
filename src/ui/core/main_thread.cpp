#include "ui/core/main_thread.h"

#include <QCoreApplication>
#include <QThread>
#include <utility>

namespace kelvane {

void postToMain(std::function<void()> work)
{
    if (QCoreApplication* const application = QCoreApplication::instance())
        QMetaObject::invokeMethod(application, std::move(work), Qt::QueuedConnection);
}

bool isMainThread()
{
    const QCoreApplication* const application = QCoreApplication::instance();
    return application == nullptr || QThread::currentThread() == application->thread();
}

}  // namespace kelvane
