#include "Completion/SingleUseBody.h"

#include <algorithm>
#include <cstring>
#include <utility>

namespace Talvo {

SingleUseBody::SingleUseBody(QByteArray bytes, QObject *parent)
    : QIODevice(parent)
    , m_bytes(std::move(bytes))
{
    open(QIODevice::ReadOnly | QIODevice::Unbuffered);
}

qint64 SingleUseBody::readData(char *data, qint64 maximumSize)
{
    const qint64 count = std::min(maximumSize, m_bytes.size() - m_taken);
    if (count <= 0) {
        return 0;
    }
    std::memcpy(data, m_bytes.constData() + m_taken, static_cast<std::size_t>(count));
    m_taken += count;
    return count;
}

qint64 SingleUseBody::writeData(const char * /*data*/, qint64 /*size*/)
{
    return -1;
}

} // namespace Talvo
