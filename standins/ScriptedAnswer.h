#pragma once

#include <QByteArray>

#include <chrono>
#include <utility>
#include <vector>

namespace Talvo {

/// What the loopback service does in answer to one request: bytes and pauses in order, then the
/// fate of the connection.
///
/// Composed by chaining: `ScriptedAnswer::http(200, body).pausing(50ms).then(End::close)`.
class ScriptedAnswer
{
public:
    enum class End {
        keep,  ///< the connection stays open for the next request
        close, ///< closed in order once everything is sent
        reset, ///< torn down with a TCP reset
        hang,  ///< nothing more is ever sent, and the connection stays open
    };

    using Headers = std::vector<std::pair<QByteArray, QByteArray>>;

    /// One step: a pause, then `bytes` sent `repetitions` times, not faster than the peer reads.
    struct Step
    {
        std::chrono::milliseconds pause{0};
        QByteArray bytes;
        qint64 repetitions = 1;
    };

    /// Nothing at all; add to it.
    ScriptedAnswer() = default;

    /// A whole HTTP/1.1 answer with the body's true Content-Length; `headers` come on top.
    [[nodiscard]] static ScriptedAnswer http(int status, const QByteArray &body,
                                             const Headers &headers = {});

    /// Only the status line and headers, ending in the empty line.
    [[nodiscard]] static ScriptedAnswer head(int status, const Headers &headers);

    /// Sends bytes as they are.
    [[nodiscard]] ScriptedAnswer sending(const QByteArray &bytes, qint64 repetitions = 1) const;

    /// Sends bytes in pieces of `size` with a pause before each.
    [[nodiscard]] ScriptedAnswer dripping(const QByteArray &bytes, qsizetype size,
                                          std::chrono::milliseconds pause) const;

    /// Waits before whatever follows.
    [[nodiscard]] ScriptedAnswer pausing(std::chrono::milliseconds pause) const;

    /// The fate of the connection; `keep` unless told.
    [[nodiscard]] ScriptedAnswer then(End end) const;

    [[nodiscard]] const std::vector<Step> &steps() const { return m_steps; }
    [[nodiscard]] End end() const { return m_end; }

private:
    std::vector<Step> m_steps;
    End m_end = End::keep;
};

} // namespace Talvo
