#pragma once

#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <QPointer>

#include <vector>

namespace Talvo::Testing {

/// One request that waits until the test answers it.
class ScriptedReply : public QNetworkReply
{
    Q_OBJECT

public:
    ScriptedReply(const QNetworkRequest &request, const QByteArray &requestBody, QObject *parent);

    [[nodiscard]] const QByteArray &requestBody() const { return m_requestBody; }

    /// Answers with a status and a body, complete.
    void answer(int status, const QByteArray &body);
    /// Ends with a failure of the transfer.
    void fail(NetworkError error);

    void abort() override;
    [[nodiscard]] qint64 bytesAvailable() const override;
    [[nodiscard]] bool isSequential() const override { return true; }

protected:
    qint64 readData(char *data, qint64 maxSize) override;

private:
    void finishNow();

    QByteArray m_requestBody;
    QByteArray m_answer;
    qint64 m_position = 0;
};

/// A network on which every request is recorded and answered by the test, one step at a time.
class ScriptedNetwork : public QNetworkAccessManager
{
    Q_OBJECT

public:
    using QNetworkAccessManager::QNetworkAccessManager;

    /// All requests so far, oldest first; a reply that was deleted since is null.
    [[nodiscard]] const std::vector<QPointer<ScriptedReply>> &replies() const { return m_replies; }
    [[nodiscard]] std::size_t count() const { return m_replies.size(); }

protected:
    QNetworkReply *createRequest(Operation operation, const QNetworkRequest &request,
                                 QIODevice *body) override;

private:
    std::vector<QPointer<ScriptedReply>> m_replies;
};

} // namespace Talvo::Testing
