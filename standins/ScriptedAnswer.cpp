#include "standins/ScriptedAnswer.h"

namespace Talvo {

ScriptedAnswer ScriptedAnswer::http(int status, const QByteArray &body, const Headers &headers)
{
    Headers all{{"Content-Type", "application/json"},
                {"Content-Length", QByteArray::number(body.size())}};
    all.insert(all.end(), headers.begin(), headers.end());
    return head(status, all).sending(body);
}

ScriptedAnswer ScriptedAnswer::head(int status, const Headers &headers)
{
    QByteArray bytes = "HTTP/1.1 " + QByteArray::number(status) + " Scripted\r\n";
    for (const auto &[name, value] : headers) {
        bytes += name + ": " + value + "\r\n";
    }
    return ScriptedAnswer().sending(bytes + "\r\n");
}

ScriptedAnswer ScriptedAnswer::sending(const QByteArray &bytes, qint64 repetitions) const
{
    ScriptedAnswer longer = *this;
    longer.m_steps.push_back({std::chrono::milliseconds(0), bytes, repetitions});
    return longer;
}

ScriptedAnswer ScriptedAnswer::dripping(const QByteArray &bytes, qsizetype size,
                                        std::chrono::milliseconds pause) const
{
    ScriptedAnswer longer = *this;
    for (qsizetype at = 0; at < bytes.size(); at += size) {
        longer.m_steps.push_back({pause, bytes.mid(at, size), 1});
    }
    return longer;
}

ScriptedAnswer ScriptedAnswer::pausing(std::chrono::milliseconds pause) const
{
    ScriptedAnswer longer = *this;
    longer.m_steps.push_back({pause, {}, 0});
    return longer;
}

ScriptedAnswer ScriptedAnswer::then(End end) const
{
    ScriptedAnswer ended = *this;
    ended.m_end = end;
    return ended;
}

} // namespace Talvo
