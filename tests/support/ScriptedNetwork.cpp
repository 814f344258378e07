#include "support/ScriptedNetwork.h"

#include <algorithm>

namespace Talvo::Testing {

ScriptedReply::ScriptedReply(const QNetworkRequest &request, const QByteArray &requestBody,
                             QObject *parent)
    : QNetworkReply(parent)
    , m_requestBody(requestBody)
{
    setRequest(request);
    setUrl(request.url());
    setOperation(QNetworkAccessManager::PostOperation);
    open(ReadOnly | Unbuffered);
}

void ScriptedReply::answer(int status, const QByteArray &body)
{
    m_answer = body;
    setAttribute(QNetworkRequest::HttpStatusCodeAttribute, status);
    setHeader(QNetworkRequest::ContentLengthHeader, body.size());
    Q_EMIT metaDataChanged();
    if (!body.isEmpty()) {
        Q_EMIT readyRead();
    }
    if (status >= 400) {
        setError(UnknownServerError, QStringLiteral("HTTP %1").arg(status));
        Q_EMIT errorOccurred(UnknownServerError);
    }
    finishNow();
}

void ScriptedReply::fail(NetworkError error)
{
    setError(error, QStringLiteral("scripted"));
    Q_EMIT errorOccurred(error);
    finishNow();
}

void ScriptedReply::abort()
{
    if (!isFinished()) {
        fail(OperationCanceledError);
    }
}

void ScriptedReply::finishNow()
{
    setFinished(true);
    Q_EMIT finished();
}

qint64 ScriptedReply::bytesAvailable() const
{
    return m_answer.size() - m_position + QNetworkReply::bytesAvailable();
}

qint64 ScriptedReply::readData(char *data, qint64 maxSize)
{
    const qint64 count = std::min<qint64>(maxSize, m_answer.size() - m_position);
    std::copy_n(m_answer.constData() + m_position, count, data);
    m_position += count;
    return count;
}

QNetworkReply *ScriptedNetwork::createRequest(Operation, const QNetworkRequest &request,
                                              QIODevice *body)
{
    auto *reply = new ScriptedReply(request, body ? body->readAll() : QByteArray(), this);
    m_replies.emplace_back(reply);
    return reply;
}

} // namespace Talvo::Testing
