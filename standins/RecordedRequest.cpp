#include "standins/RecordedRequest.h"

namespace Talvo {

std::optional<QByteArray> RecordedRequest::header(QByteArrayView name) const
{
    for (const auto &[headerName, value] : headers) {
        if (headerName.compare(name, Qt::CaseInsensitive) == 0) {
            return value;
        }
    }
    return std::nullopt;
}

RecordedRequest RecordedRequest::parsed(const QByteArray &head)
{
    RecordedRequest request;
    QList<QByteArray> lines = head.split('\n');
    const QList<QByteArray> requestLine = lines.takeFirst().trimmed().split(' ');
    request.method = requestLine.value(0);
    request.target = requestLine.value(1);
    for (const QByteArray &line : lines) {
        const qsizetype colon = line.indexOf(':');
        if (colon > 0) {
            request.headers.append({line.left(colon), line.mid(colon + 1).trimmed()});
        }
    }
    return request;
}

} // namespace Talvo
