// ThreadSanitizer and a Qt that was not built for it: every hand-over from one thread to another
// inside the library (a job given to a pool, a result put into a future, an event posted) is
// invisible to it, and all that both threads touch would be reported as a race.
//
// Here the hand-overs are told to it. Calls of this project's code into Qt are redirected by the
// linker (--wrap, see CMakeLists.txt beside this file) to the functions below, which call the real
// ones. Jobs and futures are told one by one. Events have one place in common: whoever is given an
// event knows of all that was done before any event was posted, which is a little more than Qt
// promises. What a thread does to another's data without such a hand-over stays a race and is
// reported.

#include <QCoreApplication>
#include <QFutureInterface>
#include <QMetaObject>
#include <QRunnable>
#include <QThreadPool>

#include <cstring>
#include <functional>
#include <memory>
#include <sanitizer/tsan_interface.h>

namespace {

char eventsPosted; // only its address counts

/// The part that all copies of one future share: the member behind the table of virtual functions.
void *sharedPart(const QFutureInterfaceBase *future)
{
    void *part = nullptr;
    static_assert(sizeof(QFutureInterfaceBase) == 2 * sizeof(void *));
    std::memcpy(&part, reinterpret_cast<const char *>(future) + sizeof(void *), sizeof(part));
    return part;
}

/// Takes what another thread has handed over, at its end: also when the real function throws.
class TakenAtEnd
{
public:
    explicit TakenAtEnd(void *place)
        : m_place(place)
    {
    }
    ~TakenAtEnd() { __tsan_acquire(m_place); }
    Q_DISABLE_COPY_MOVE(TakenAtEnd)

private:
    void *m_place;
};

/// A job of a pool that knows of all that was done before it was given to the pool.
class HandedOverJob : public QRunnable
{
public:
    HandedOverJob(QThreadPool *pool, std::function<void()> job)
        : m_pool(pool)
        , m_job(std::move(job))
    {
        __tsan_release(this);
    }

    void run() override
    {
        __tsan_acquire(this);
        m_job();
        m_job = {};
        __tsan_release(m_pool);
    }

private:
    QThreadPool *m_pool;
    std::function<void()> m_job;
};

std::function<void()> jobOf(QRunnable *runnable)
{
    return [runnable] {
        const bool isMine = runnable->autoDelete();
        runnable->run();
        if (isMine) {
            delete runnable;
        }
    };
}

} // namespace

// NOLINTBEGIN: the names are the linker's
extern "C" {

#define TALVO_REDIRECTED(RESULT, SYMBOL, ...)                                                      \
    RESULT __real_##SYMBOL(__VA_ARGS__);                                                           \
    RESULT __wrap_##SYMBOL(__VA_ARGS__);                                                           \
    RESULT __wrap_##SYMBOL(__VA_ARGS__)

// QThreadPool::start(QRunnable *, int)
TALVO_REDIRECTED(void, _ZN11QThreadPool5startEP9QRunnablei, QThreadPool *pool, QRunnable *runnable,
                 int priority)
{
    __real__ZN11QThreadPool5startEP9QRunnablei(pool, new HandedOverJob(pool, jobOf(runnable)),
                                               priority);
}

// QThreadPool::start(std::function<void()>, int); an object that is not trivial goes by its address
TALVO_REDIRECTED(void, _ZN11QThreadPool5startESt8functionIFvvEEi, QThreadPool *pool,
                 std::function<void()> *job, int priority)
{
    __real__ZN11QThreadPool5startEP9QRunnablei(pool, new HandedOverJob(pool, std::move(*job)),
                                               priority);
}

// QThreadPool::tryStart(std::function<void()>)
TALVO_REDIRECTED(bool, _ZN11QThreadPool8tryStartESt8functionIFvvEE, QThreadPool *pool,
                 std::function<void()> *job)
{
    auto handedOver = std::make_unique<HandedOverJob>(pool, std::move(*job));
    if (!pool->tryStart(handedOver.get())) {
        return false;
    }
    handedOver.release(); // the pool deletes it
    return true;
}

// QThreadPool::waitForDone(int)
TALVO_REDIRECTED(bool, _ZN11QThreadPool11waitForDoneEi, QThreadPool *pool, int milliseconds)
{
    const bool isDone = __real__ZN11QThreadPool11waitForDoneEi(pool, milliseconds);
    __tsan_acquire(pool);
    return isDone;
}

// QFutureInterfaceBase::reportFinished()
TALVO_REDIRECTED(void, _ZN20QFutureInterfaceBase14reportFinishedEv, QFutureInterfaceBase *future)
{
    __tsan_release(sharedPart(future));
    __tsan_release(&eventsPosted);
    __real__ZN20QFutureInterfaceBase14reportFinishedEv(future);
}

// QFutureInterfaceBase::waitForFinished()
TALVO_REDIRECTED(void, _ZN20QFutureInterfaceBase15waitForFinishedEv, QFutureInterfaceBase *future)
{
    const TakenAtEnd taken(sharedPart(future));
    __real__ZN20QFutureInterfaceBase15waitForFinishedEv(future);
}

// QFutureInterfaceBase::waitForResult(int)
TALVO_REDIRECTED(void, _ZN20QFutureInterfaceBase13waitForResultEi, QFutureInterfaceBase *future,
                 int index)
{
    const TakenAtEnd taken(sharedPart(future));
    __real__ZN20QFutureInterfaceBase13waitForResultEi(future, index);
}

// QFutureInterfaceBase::isFinished() const
TALVO_REDIRECTED(bool, _ZNK20QFutureInterfaceBase10isFinishedEv, const QFutureInterfaceBase *future)
{
    const bool is = __real__ZNK20QFutureInterfaceBase10isFinishedEv(future);
    __tsan_acquire(sharedPart(future));
    return is;
}

// QFutureInterfaceBase::queryState(State) const
TALVO_REDIRECTED(bool, _ZNK20QFutureInterfaceBase10queryStateENS_5StateE,
                 const QFutureInterfaceBase *future, int state)
{
    const bool is = __real__ZNK20QFutureInterfaceBase10queryStateENS_5StateE(future, state);
    __tsan_acquire(sharedPart(future));
    return is;
}

// QFutureInterfaceBase::derefT() const: whoever is the last to let go of a future frees its results
TALVO_REDIRECTED(bool, _ZNK20QFutureInterfaceBase6derefTEv, const QFutureInterfaceBase *future)
{
    void *part = sharedPart(future);
    __tsan_release(part);
    const bool isShared = __real__ZNK20QFutureInterfaceBase6derefTEv(future);
    if (!isShared) {
        __tsan_acquire(part);
    }
    return isShared;
}

// QMetaObject::activate(QObject *, const QMetaObject *, int, void **): every signal of this project
TALVO_REDIRECTED(void, _ZN11QMetaObject8activateEP7QObjectPKS_iPPv, QObject *sender,
                 const QMetaObject *type, int signal, void **arguments)
{
    __tsan_release(&eventsPosted);
    __real__ZN11QMetaObject8activateEP7QObjectPKS_iPPv(sender, type, signal, arguments);
}

// QMetaObject::invokeMethodImpl(QObject *, QtPrivate::QSlotObjectBase *, Qt::ConnectionType, void
// *)
TALVO_REDIRECTED(
    bool,
    _ZN11QMetaObject16invokeMethodImplEP7QObjectPN9QtPrivate15QSlotObjectBaseEN2Qt14ConnectionTypeEPv,
    QObject *receiver, void *slot, int type, void *result)
{
    __tsan_release(&eventsPosted);
    const bool isInvoked =
        __real__ZN11QMetaObject16invokeMethodImplEP7QObjectPN9QtPrivate15QSlotObjectBaseEN2Qt14ConnectionTypeEPv(
            receiver, slot, type, result);
    __tsan_acquire(&eventsPosted); // a blocking call has come back from the other thread
    return isInvoked;
}

// QThread::quit(): the thread delivers what is left before it ends
TALVO_REDIRECTED(void, _ZN7QThread4quitEv, QThread *thread)
{
    __tsan_release(&eventsPosted);
    __real__ZN7QThread4quitEv(thread);
}

// QCoreApplication::notify(QObject *, QEvent *): the test's application object calls it
TALVO_REDIRECTED(bool, _ZN16QCoreApplication6notifyEP7QObjectP6QEvent,
                 QCoreApplication *application, QObject *receiver, QEvent *event)
{
    __tsan_acquire(&eventsPosted);
    const bool isHandled =
        __real__ZN16QCoreApplication6notifyEP7QObjectP6QEvent(application, receiver, event);
    __tsan_release(&eventsPosted);
    return isHandled;
}

} // extern "C"
// NOLINTEND
