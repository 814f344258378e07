// How much memory loading and saving an archive take at their peak, above the records themselves.
//
//   ArchiveMemory FOLDER    FOLDER/Talvo/chat-archive.json is loaded, and saved again
//
// Prints {"file": bytes, "records": bytes, "load": bytes, "save": bytes}.

#include "Chat/ChatArchiveStore.h"
#include "standins/FolderFileManager.h"

#include <QFile>
#include <QFileInfo>
#include <QJsonDocument>
#include <QJsonObject>

#include <cstdio>
#include <malloc.h>
#include <optional>

using namespace Talvo;

namespace {

/// A line of /proc/self/status in bytes.
qint64 statusBytes(const char *name)
{
    QFile status(QStringLiteral("/proc/self/status"));
    if (!status.open(QIODevice::ReadOnly)) {
        return 0;
    }
    for (const QByteArray &line : status.readAll().split('\n')) {
        if (line.startsWith(name)) {
            return line.mid(line.indexOf(':') + 1).simplified().split(' ').first().toLongLong() *
                   1024;
        }
    }
    return 0;
}

/// From now on VmHWM counts from what is resident now.
void resetPeak()
{
    QFile file(QStringLiteral("/proc/self/clear_refs"));
    if (!file.open(QIODevice::WriteOnly | QIODevice::Unbuffered) || file.write("5") != 1) {
        qFatal("The peak of memory cannot be reset");
    }
}

} // namespace

int main(int argc, char **argv)
{
    if (argc != 2) {
        std::fprintf(stderr, "See the head of ArchiveMemory.cpp.\n");
        return 2;
    }
    const QString folder = QFileInfo(QString::fromLocal8Bit(argv[1])).absoluteFilePath();
    ChatArchiveStore store(std::make_shared<FolderFileManager>(folder));
    const qint64 before = statusBytes("VmRSS");
    std::optional<ChatArchive> archive;
    {
        QFuture<std::optional<ChatArchive>> loading = store.load();
        loading.waitForFinished();
        archive = loading.takeResult();
    }
    const qint64 loadPeak = statusBytes("VmHWM");
    malloc_trim(0);
    const qint64 records = statusBytes("VmRSS");
    resetPeak();
    QFuture<void> saving = store.save(*archive);
    saving.waitForFinished();
    const qint64 savePeak = statusBytes("VmHWM");
    const QJsonObject result{
        {QStringLiteral("file"), QFileInfo(store.fileURL()).size()},
        {QStringLiteral("records"), records - before},
        {QStringLiteral("load"), loadPeak - records},
        {QStringLiteral("save"), savePeak - records},
    };
    std::printf("%s\n", QJsonDocument(result).toJson(QJsonDocument::Compact).constData());
    return 0;
}
