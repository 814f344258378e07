#include "App/TalvoApp.h"
#include "Chat/ChatArchiveCoding.h"
#include "demo/DemoService.h"
#include "demo/SampleArchive.h"
#include "standins/FolderFileManager.h"
#include "standins/InMemoryItemOperations.h"

#include <QFile>
#include <QNetworkAccessManager>
#include <QNetworkProxy>
#include <QTemporaryDir>

#include <optional>

using namespace Talvo;

namespace {

AppServices demoServices(const std::shared_ptr<FileManager> &fileManager,
                         const LoopbackService &service)
{
    auto session = std::make_shared<QNetworkAccessManager>();
    session->setProxy(QNetworkProxy(QNetworkProxy::NoProxy));
    const KeychainStore keychain(std::make_shared<InMemoryItemOperations>());
    keychain.save(QStringLiteral("gsk_deneme"));

    AppServices services{{}, keychain};
    services.forModel.client = std::make_unique<GroqClient>(session, service.url());
    services.forModel.keychain = std::make_unique<KeychainStore>(keychain);
    services.forModel.archiveStore = std::make_unique<ChatArchiveStore>(fileManager);
    services.forModel.archiveStore->save(sampleArchive()).waitForFinished();
    return services;
}

} // namespace

int main(int argc, char **argv)
{
    const QTemporaryDir directory;
    const auto fileManager = std::make_shared<FolderFileManager>(directory.path());
    std::optional<LoopbackService> service;
    return TalvoApp::run(argc, argv, {directory.path(), [&] {
                                          service.emplace(demoAnswer);
                                          return demoServices(fileManager, *service);
                                      }});
}
