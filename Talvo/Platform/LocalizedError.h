#pragma once

#include <QException>
#include <QString>

namespace Talvo {

/// Base of everything this application throws: an error that carries the sentence the user sees.
///
/// It derives from QException, so that it crosses a worker thread (QtConcurrent, QFuture) and a
/// coroutine with its type intact. Concrete errors derive from TypedError instead.
class LocalizedError : public QException
{
public:
    /// @param description the sentence shown to the user, Turkish, complete with its full stop.
    explicit LocalizedError(QString description);

    /// The sentence shown to the user, exactly as given at construction. Any thread.
    [[nodiscard]] const QString &localizedDescription() const noexcept { return m_description; }

    /// The same sentence in UTF-8, for a debugger.
    [[nodiscard]] const char *what() const noexcept override { return m_utf8.constData(); }

    void raise() const override { throw *this; }
    [[nodiscard]] LocalizedError *clone() const override { return new LocalizedError(*this); }

private:
    QString m_description;
    QByteArray m_utf8;
};

/// Gives a concrete error the two members that carry it across threads by its own type.
///
/// Usage: `class StoreError : public TypedError<StoreError>`.
template <class Derived>
class TypedError : public LocalizedError
{
public:
    using LocalizedError::LocalizedError;

    void raise() const override { throw static_cast<const Derived &>(*this); }
    [[nodiscard]] LocalizedError *clone() const override
    {
        return new Derived(static_cast<const Derived &>(*this));
    }
};

/// The sentence to show for anything thrown: that of a LocalizedError, else a general one. Any
/// thread.
[[nodiscard]] QString localizedDescription(const std::exception &error);

} // namespace Talvo
