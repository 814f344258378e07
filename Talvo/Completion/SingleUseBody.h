#pragma once

#include <QByteArray>
#include <QIODevice>

namespace Talvo {

/// A request's body that can be read once, from front to back.
///
/// A network access manager whose connection closes without an answer sends the request up to three
/// times more; the service would bill and answer each. Before it does so it resets the body, and
/// gives up (QNetworkReply::ContentReSendError) when that fails. Here it always fails.
class SingleUseBody : public QIODevice
{
    Q_OBJECT

public:
    /// Open for reading, at its start. @param bytes all of it
    explicit SingleUseBody(QByteArray bytes, QObject *parent = nullptr);

    [[nodiscard]] qint64 size() const override { return m_bytes.size(); }
    /// Never: see the class.
    bool reset() override { return false; }
    /// Only to where the reader is already.
    bool seek(qint64 position) override { return position == pos(); }

protected:
    qint64 readData(char *data, qint64 maximumSize) override;
    qint64 writeData(const char *data, qint64 size) override;

private:
    QByteArray m_bytes;
    qint64 m_taken = 0;
};

} // namespace Talvo
