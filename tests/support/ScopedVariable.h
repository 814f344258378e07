#pragma once

#include <QByteArray>

#include <optional>

namespace Talvo {

/// Sets an environment variable, or unsets it, and restores it when this object goes.
class ScopedVariable
{
public:
    ScopedVariable(const char *name, const std::optional<QByteArray> &value)
        : m_name(name)
        , m_before(qEnvironmentVariableIsSet(name) ? std::optional(qgetenv(name)) : std::nullopt)
    {
        set(value);
    }
    ~ScopedVariable() { set(m_before); }
    Q_DISABLE_COPY_MOVE(ScopedVariable)

private:
    void set(const std::optional<QByteArray> &value) const
    {
        value ? qputenv(m_name, *value) : qunsetenv(m_name);
    }

    const char *m_name;
    std::optional<QByteArray> m_before;
};

} // namespace Talvo
