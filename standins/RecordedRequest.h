#pragma once

#include <QByteArray>
#include <QByteArrayView>
#include <QList>

#include <optional>
#include <utility>

namespace Talvo {

/// One HTTP request as the loopback service received it.
struct RecordedRequest
{
    /// The number of its connection, counted from 0 in the order they were accepted.
    int connection = 0;
    QByteArray method;
    /// What stands behind the method: the path.
    QByteArray target;
    QList<std::pair<QByteArray, QByteArray>> headers;
    QByteArray body;

    /// The value of a header, its name in any case; absent when the request has none. The first
    /// one if there are more.
    [[nodiscard]] std::optional<QByteArray> header(QByteArrayView name) const;

    /// Reads a header block, from the request line to the line before the empty one.
    [[nodiscard]] static RecordedRequest parsed(const QByteArray &head);
};

} // namespace Talvo
