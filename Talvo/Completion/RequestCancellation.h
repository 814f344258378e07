#pragma once

#include <QObject>

namespace Talvo {

/// The one way to stop every call of a client, in whatever phase each is. GUI thread.
class RequestCancellation : public QObject
{
    Q_OBJECT

public:
    /// How often everything has been cancelled: a call that began at another count is cancelled.
    [[nodiscard]] quint64 count() const { return m_count; }

    /// Cancels every call that began before.
    void cancelAll()
    {
        ++m_count;
        Q_EMIT cancelled();
    }

Q_SIGNALS:
    /// Every call that began before has to end now.
    void cancelled();

private:
    quint64 m_count = 0;
};

} // namespace Talvo
