#pragma once

#include <QFuture>
#include <QFutureWatcher>
#include <QObject>

#include <utility>

namespace Talvo {

/// Calls `handler` with a future once that has ended; not when `context` has gone by then. GUI
/// thread, on which `context` lives and `handler` is called.
///
/// QFuture::then() with a context promises the same. But in Qt 6.4 the thread that ends the future
/// looks at the context, which may be going at that moment; one that has gone ends a debug build.
template <class Result, class Handler>
void whenFinished(const QFuture<Result> &future, QObject *context, Handler handler)
{
    auto *const watcher = new QFutureWatcher<Result>(context);
    QObject::connect(watcher, &QFutureWatcherBase::finished, context,
                     [watcher, handler = std::move(handler)] {
                         watcher->deleteLater();
                         handler(watcher->future());
                     });
    watcher->setFuture(future);
}

} // namespace Talvo
