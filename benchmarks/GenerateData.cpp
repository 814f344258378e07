// Writes generated data for the benchmarks that measure other processes.
//
//   GenerateData archive SESSIONS BYTES FIRST_COUNT FILE    an archive as the program reads it
//   GenerateData replies BYTES FILE                         replies as a JSON array of texts
//   GenerateData page MESSAGES FILE                         the messages of such an archive as a
//   page

#include "Chat/ChatArchiveCoding.h"
#include "support/CmarkHtml.h"
#include "support/SampleData.h"

#include <QCoreApplication>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QStringList>

#include <cstdio>

using namespace Talvo;
using namespace Talvo::Benchmarks;

namespace {

constexpr auto pageHead = R"(<!DOCTYPE html>
<html lang="tr"><head><meta charset="utf-8"><title>Talvo</title><style>
body { font: 14px sans-serif; margin: 0 auto; max-width: 812px; background: #fff; color: #1c1c1e }
.message { display: flex; margin: 14px 0; gap: 12px }
.user { justify-content: flex-end }
.bubble { padding: 11px 14px; border-radius: 14px; max-width: 640px; overflow-wrap: anywhere }
.user .bubble { background: #0a66d0; color: #fff; white-space: pre-wrap }
.assistant .bubble { background: #f0f0f3 }
table { border-collapse: collapse } td, th { border: 1px solid #ccc; padding: 8px }
code { background: #e4e4e8; font-family: monospace }
</style></head><body>
)";

QByteArray page(int messageCount)
{
    QByteArray html = pageHead;
    for (const ChatMessage &message : SampleData().messages(messageCount)) {
        const bool isReply = message.role == ChatMessage::Role::assistant;
        const QByteArray content =
            isReply ? cmarkHtml(message.content)
                    : QString::fromUtf8(message.content).toHtmlEscaped().toUtf8();
        html += QByteArray("<div class=\"message ") + (isReply ? "assistant" : "user") +
                "\"><div class=\"bubble\">" + content + "</div></div>\n";
    }
    return html + "</body></html>\n";
}

QByteArray replies(qsizetype bytes)
{
    QJsonArray texts;
    for (const QByteArray &reply : sampleReplies(bytes)) {
        texts.append(QString::fromUtf8(reply));
    }
    return QJsonDocument(texts).toJson(QJsonDocument::Compact);
}

QByteArray generated(const QStringList &arguments)
{
    const QString kind = arguments.value(1);
    if (kind == u"archive" && arguments.size() == 6) {
        return encodeArchive(SampleData().archive(arguments[2].toInt(), arguments[3].toLongLong(),
                                                  arguments[4].toInt()));
    }
    if (kind == u"replies" && arguments.size() == 4) {
        return replies(arguments[2].toLongLong());
    }
    if (kind == u"page" && arguments.size() == 4) {
        return page(arguments[2].toInt());
    }
    return {};
}

} // namespace

int main(int argc, char **argv)
{
    const QCoreApplication application(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    const QByteArray data = generated(arguments);
    QFile file(arguments.constLast());
    if (data.isEmpty() || !file.open(QIODevice::WriteOnly) || file.write(data) != data.size()) {
        std::fprintf(stderr, "Nothing was generated: see the head of GenerateData.cpp.\n");
        return 2;
    }
    return 0;
}
