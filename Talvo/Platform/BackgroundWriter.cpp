#include "Platform/BackgroundWriter.h"

#include <QtConcurrentRun>

#include <utility>

namespace Talvo {

BackgroundWriter::BackgroundWriter(std::function<void(QByteArrayView)> write)
    : m_write(std::move(write))
{
    m_thread.setMaxThreadCount(1);
}

BackgroundWriter::~BackgroundWriter()
{
    m_thread.waitForDone();
}

void BackgroundWriter::write(QByteArrayView piece)
{
    finish();
    m_piece.resize(0); // unlike clear(), keeps the room
    m_piece.append(piece);
    m_writing = QtConcurrent::run(&m_thread, [this] { m_write(m_piece); });
}

void BackgroundWriter::finish()
{
    m_writing.waitForFinished();
}

} // namespace Talvo
