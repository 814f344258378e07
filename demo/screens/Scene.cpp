#include "demo/screens/Scene.h"

#include "demo/screens/Conversations.h"

namespace Talvo {

namespace {

constexpr QSize usual{980, 700};
constexpr QSize smallest{760, 520};
constexpr QSize wide{1920, 1080};
/// Room for a whole reply with every construct of Markdown.
constexpr QSize tall{980, 1340};

const QString storedKey = QStringLiteral("gsk_ornek0anahtar0yalnizca0resim0icin0");
const QString question = QStringLiteral("Yanına hangi çorba gider?");

Stage::Setting conversationOf(ChatArchive archive, QSize size = usual)
{
    Stage::Setting setting;
    setting.size = size;
    setting.archive = std::move(archive);
    setting.key = storedKey;
    return setting;
}

Stage::Setting waitingForEver()
{
    Stage::Setting setting = conversationOf(shortConversation());
    setting.answers = {ScriptedAnswer().then(ScriptedAnswer::End::hang)};
    return setting;
}

Stage::Setting refusing(const QByteArray &message)
{
    Stage::Setting setting = conversationOf(shortConversation());
    setting.answers = {ScriptedAnswer::http(429, R"({"error":{"message":")" + message + R"("}})")};
    return setting;
}

Stage::Setting withoutKey()
{
    Stage::Setting setting = conversationOf(shortConversation());
    setting.key.reset();
    return setting;
}

void think(Stage &stage)
{
    stage.send(question);
    stage.waitUntil([&] { return stage.model().isAwaitingResponse(); }, "the request");
}

void fail(Stage &stage)
{
    stage.send(question);
    stage.waitUntil([&] { return stage.model().errorMessage().has_value(); }, "the failure");
}

void writeLongDraft(Stage &stage)
{
    stage.model().setDraft(QStringLiteral(
        "Pazar listesi:\n- kabak\n- dereotu\n- süzme yoğurt\n- yumurta\n- taze soğan\n- nane"));
}

void deleteOnlyChat(Stage &stage)
{
    stage.click(QStringLiteral("Sohbeti sil"));
    stage.waitUntil([&] { return !stage.model().selectedChatID(); }, "the deletion");
}

void openModels(Stage &stage)
{
    stage.open(QStringLiteral("Groq modeli"));
    stage.waitUntil([&] { return stage.shows(ChatModel::availableModels().constLast()); },
                    "the list of models");
}

void rename(Stage &stage)
{
    stage.click(QStringLiteral("Sohbeti yeniden adlandır"));
    stage.waitUntil([&] { return stage.shows(QStringLiteral("Sohbeti Yeniden Adlandır")); },
                    "the dialog");
}

void openSettings(Stage &stage)
{
    const auto callsBefore = stage.keychain().calls().size();
    stage.click(QStringLiteral("API Ayarları"));
    stage.waitUntil([&] { return stage.keychain().calls().size() > callsBefore; }, "the key");
}

void saveKey(Stage &stage)
{
    openSettings(stage);
    stage.enter(QStringLiteral("gsk_…"), storedKey);
    stage.click(QStringLiteral("Kaydet"));
    const auto isSaved = [&] {
        return stage.shows(QStringLiteral("API anahtarı güvenle kaydedildi."));
    };
    stage.waitUntil(isSaved, "the saved key");
}

void failToLoadKey(Stage &stage)
{
    using Operation = InMemoryItemOperations::Operation;
    stage.keychain().script(Operation::copyMatching, KeychainStatuses::interactionNotAllowed);
    openSettings(stage);
    const QString text =
        KeychainStore::KeychainError::unhandled(KeychainStatuses::interactionNotAllowed)
            .localizedDescription();
    stage.waitUntil([&] { return stage.shows(text); }, "the keychain's failure");
}

} // namespace

std::vector<Scene> allScenes()
{
    const QByteArray longRefusal =
        QByteArray("Bu model için dakikadaki istek sınırına ulaşıldı: sınır 30, kullanılan 30. ")
            .repeated(24);
    return {
        {QStringLiteral("first-start"), 1, {}, {}},
        {QStringLiteral("conversation"), 1, conversationOf(longConversation()), {}},
        {QStringLiteral("plan"), 1, conversationOf(weekendPlan()), {}},
        {QStringLiteral("markdown"), 1, conversationOf(everyMarkdownConstruct(), tall), {}},
        {QStringLiteral("thinking"), 1, waitingForEver(), think},
        {QStringLiteral("long-draft"), 1, conversationOf(shortConversation()), writeLongDraft},
        {QStringLiteral("empty"), 1, {}, deleteOnlyChat},
        {QStringLiteral("model-choice"), 1, conversationOf(shortConversation()), openModels},
        {QStringLiteral("rename"), 1, conversationOf(longConversation()), rename},
        {QStringLiteral("error"), 1, withoutKey(), fail},
        {QStringLiteral("error-long"), 1, refusing(longRefusal), fail},
        {QStringLiteral("settings-no-key"), 1, withoutKey(), openSettings},
        {QStringLiteral("settings-key"), 1, conversationOf(shortConversation()), openSettings},
        {QStringLiteral("settings-saved"), 1, withoutKey(), saveKey},
        {QStringLiteral("settings-failure"), 1, withoutKey(), failToLoadKey},
        {QStringLiteral("narrowest"), 1, conversationOf(longConversation(), smallest), {}},
        {QStringLiteral("widest"), 1, conversationOf(longConversation(), wide), {}},
        {QStringLiteral("scale-200"), 2, conversationOf(longConversation()), {}},
    };
}

} // namespace Talvo
