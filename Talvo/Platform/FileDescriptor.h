#pragma once

#include <QtGlobal>

#include <cerrno>
#include <unistd.h>

namespace Talvo {

/// Calls a system function anew for as long as a signal interrupts it; its result is -1 with errno
/// on failure.
template <class Call>
auto uninterrupted(Call call)
{
    while (true) {
        const auto result = call();
        if (result != -1 || errno != EINTR) {
            return result;
        }
    }
}

/// Owns an open file of the system and closes it at the end.
class FileDescriptor
{
public:
    /// @param number an open descriptor, or -1 for none.
    explicit FileDescriptor(int number) noexcept
        : m_number(number)
    {
    }
    ~FileDescriptor()
    {
        if (isOpen()) {
            // A failed close cannot be made good: what must be on the disk was synced before.
            ::close(m_number);
        }
    }
    Q_DISABLE_COPY_MOVE(FileDescriptor)

    /// True unless made from -1.
    [[nodiscard]] bool isOpen() const noexcept { return m_number >= 0; }
    /// The descriptor, for system calls; it stays owned.
    [[nodiscard]] int number() const noexcept { return m_number; }

private:
    const int m_number;
};

} // namespace Talvo
