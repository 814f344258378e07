// How long the controller holds the GUI thread at a time, during a load, a save and a send.
//
//   ModelStall SESSIONS BYTES
//
// Prints {"load": ms, "save": ms, "send": ms}, each the longest time that one event or call held
// the thread, in its processor time, and the median of several runs of that.

#include "Chat/ChatArchiveCoding.h"
#include "Controller/ChatModel.h"
#include "standins/FolderFileManager.h"
#include "standins/InMemoryItemOperations.h"
#include "support/BusyTime.h"
#include "support/LocalService.h"
#include "support/SampleData.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QJsonDocument>
#include <QJsonObject>
#include <QNetworkAccessManager>
#include <QTemporaryDir>

#include <cstdio>

using namespace Talvo;
using namespace Talvo::Benchmarks;

namespace {

constexpr int runs = 7;

/// Runs the event loop until a condition holds; the calls of `start` count like an event.
double longestHold(BusyApplication &application, const std::function<void()> &start,
                   const std::function<bool()> &isDone)
{
    application.reset();
    application.measure(start);
    while (!isDone()) {
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    }
    return application.longest() * 1000;
}

struct Holds
{
    std::vector<double> load;
    std::vector<double> save;
    std::vector<double> send;
};

void measureOnce(BusyApplication &application, const QString &folder, LocalService &service,
                 Holds &holds)
{
    ChatModel::Services services;
    services.client =
        std::make_unique<GroqClient>(std::make_shared<QNetworkAccessManager>(), service.url());
    services.keychain = std::make_unique<KeychainStore>(std::make_shared<InMemoryItemOperations>());
    services.keychain->save(QStringLiteral("gsk_olcum"));
    auto store = std::make_unique<ChatArchiveStore>(std::make_shared<FolderFileManager>(folder));
    ChatArchiveStore *const saves = store.get();
    services.archiveStore = std::move(store);
    ChatModel model(std::move(services));

    holds.load.push_back(longestHold(
        application, [&] { model.startLoadingArchive(); },
        [&] { return !model.isLoadingArchive(); }));
    // The store works in the order of the calls: a load that has ended says that the saves before
    // it have, too.
    const auto savesHaveEnded = [saves] {
        const auto barrier = std::make_shared<QFuture<std::optional<ChatArchive>>>(saves->load());
        return [barrier] { return barrier->isFinished(); };
    };
    const auto wait = [&](const std::function<bool()> &isDone) {
        while (!isDone()) {
            QCoreApplication::processEvents(QEventLoop::AllEvents, 10);
        }
    };
    wait(savesHaveEnded());
    // A rename does nothing but save.
    std::function<bool()> isSaved;
    const QUuid id = model.sessions().front().id;
    application.reset();
    application.measure([&] { model.renameChat(id, QStringLiteral("Yeni ad")); });
    wait(savesHaveEnded());
    holds.save.push_back(application.longest() * 1000);

    bool hasBegun = false;
    QObject::connect(&model, &ChatModel::isSendingChanged, &model, [&] { hasBegun = true; });
    holds.send.push_back(longestHold(
        application,
        [&] {
            model.setDraft(QStringLiteral("Bir soru"));
            model.startSending();
        },
        [&] { return hasBegun && !model.isSending(); }));
}

} // namespace

int main(int argc, char **argv)
{
    BusyApplication application(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    if (arguments.size() != 3) {
        std::fprintf(stderr, "See the head of ModelStall.cpp.\n");
        return 2;
    }
    const QTemporaryDir folder;
    const ChatArchive archive =
        SampleData().archive(arguments[1].toInt(), arguments[2].toLongLong(), 200);
    const QByteArray bytes = encodeArchive(archive);
    LocalService service(SampleData().reply(2'000));
    Holds holds;
    for (int i = 0; i < runs; ++i) {
        QDir(folder.path()).mkpath(QStringLiteral("Talvo"));
        QFile file(folder.filePath(QStringLiteral("Talvo/chat-archive.json")));
        if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size()) {
            qFatal("The archive cannot be written");
        }
        file.close();
        measureOnce(application, folder.path(), service, holds);
    }
    const QJsonObject result{{QStringLiteral("load"), median(holds.load)},
                             {QStringLiteral("save"), median(holds.save)},
                             {QStringLiteral("send"), median(holds.send)}};
    std::printf("%s\n", QJsonDocument(result).toJson(QJsonDocument::Compact).constData());
    return 0;
}
