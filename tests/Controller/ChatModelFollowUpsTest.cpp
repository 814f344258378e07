#include "Controller/ControllerFixture.h"

using namespace Talvo;
using namespace Talvo::Testing;

namespace {

class ChatModelFollowUps : public ControllerTest
{
protected:
    ChatModelFollowUps()
    {
        load();
        storeKey(QStringLiteral("gsk"));
    }

    /// A whole exchange with these answers; an empty optional makes the request fail.
    void exchange(const std::optional<QString> &title, const std::optional<QString> &memory)
    {
        const std::size_t first = network->count();
        const bool asksForTitle = model->sessions()[0].title == QStringLiteral("Yeni Sohbet");
        beginSend(QStringLiteral("soru"));
        answer(request(first), QStringLiteral("yanıt"));
        std::size_t next = first + 1;
        if (asksForTitle) {
            answerOrFail(request(next++), title);
        }
        answerOrFail(request(next), memory);
        waitUntilIdle();
    }

    static void answerOrFail(ScriptedReply *reply, const std::optional<QString> &text)
    {
        if (text) {
            answer(reply, *text);
        } else {
            reply->answer(500, "bozuk");
        }
    }
};

const auto titleInstruction = QStringLiteral(
    "Bu konuşmanın ana konusunu özetleyen kısa bir Türkçe sohbet başlığı üret. Başlık 2-6 kelime "
    "olsun. Yalnızca başlığı yaz; tırnak, noktalama, açıklama veya \"Başlık:\" ön eki kullanma.");
const auto memoryInstruction = QStringLiteral(
    "Kullanıcı için kalıcı bir hafıza kaydı tutuyorsun. Yalnızca gelecekte gerçekten yararlı "
    "olacak "
    "açık kullanıcı bilgilerini, tercihleri, hedefleri ve devam eden işleri sakla. Geçici "
    "soruları, "
    "asistanın sözlerini, hassas kimlik bilgilerini, API anahtarlarını ve tahminleri saklama. "
    "Mevcut "
    "hafızayı güncelle ve tamamını kısa Türkçe madde işaretleri halinde döndür. Saklanacak bilgi "
    "yoksa mevcut hafızayı aynen döndür; hafıza boşsa yalnızca \"(boş)\" yaz.");

} // namespace

TEST_F(ChatModelFollowUps, theTitleRequestHoldsTheWholeConversation)
{
    beginSend(QStringLiteral("soru"));
    answer(request(0), QStringLiteral(" yanıt \n"));
    EXPECT_EQ(messagesOf(request(1)),
              (std::vector<SentMessage>{
                  {QStringLiteral("system"), titleInstruction},
                  {QStringLiteral("assistant"),
                   QStringLiteral("Merhaba! Ben Talvo. Sana bugün nasıl yardımcı olabilirim?")},
                  {QStringLiteral("user"), QStringLiteral("soru")},
                  {QStringLiteral("assistant"), QStringLiteral(" yanıt \n")}}));
}

struct TitleReply
{
    const char *name;
    QString reply;
    QString title;
};

class AutomaticTitle : public ChatModelFollowUps, public testing::WithParamInterface<TitleReply>
{
};

TEST_P(AutomaticTitle, isCleanedAndCut)
{
    exchange(GetParam().reply, std::nullopt);
    EXPECT_EQ(model->sessions()[0].title, GetParam().title);
    EXPECT_EQ(saved().sessions[0].title, GetParam().title);
}

const TitleReply titleReplies[] = {
    {"plain", QStringLiteral("Kısa Bir Başlık"), QStringLiteral("Kısa Bir Başlık")},
    {"curlyQuotes", QStringLiteral("“Başlık” "), QStringLiteral("Başlık")},
    {"boldHeading", QStringLiteral("# **Başlık**"), QStringLiteral("Başlık")},
    {"severalLines", QStringLiteral("Bir\nİki\nÜç"), QStringLiteral("Bir İki Üç")},
    {"eightyCharacters", QString(80, u'a'), QString(60, u'a')},
    {"byteOrderMarks", QStringLiteral("\uFEFF\uFEFFBaşlık"), QStringLiteral("\uFEFFBaşlık")},
    {"onlyAsterisks", QStringLiteral("** **"), QStringLiteral("Yeni Sohbet")},
};
INSTANTIATE_TEST_SUITE_P(Replies, AutomaticTitle, testing::ValuesIn(titleReplies),
                         [](const auto &test) { return std::string(test.param.name); });

TEST_F(ChatModelFollowUps, aTitleChangesNeitherDateNorPlace)
{
    beginSend(QStringLiteral("soru"));
    answer(request(0), QStringLiteral("yanıt"));
    request(1);
    const Instant date = model->sessions()[0].updatedAt;
    answer(request(1), QStringLiteral("Başlık"));
    request(2);
    EXPECT_EQ(model->sessions()[0].updatedAt, date);
}

TEST_F(ChatModelFollowUps, anEmptyTitleSavesNothingAndIsAskedForAgain)
{
    exchange(QStringLiteral("***"), std::nullopt);
    EXPECT_EQ(saveCount(), 3U); // load, message, reply
    exchange(QStringLiteral("İkinci"), std::nullopt);
    EXPECT_EQ(model->sessions()[0].title, QStringLiteral("İkinci"));
}

TEST_F(ChatModelFollowUps, aTitledConversationIsNotAskedFor)
{
    exchange(QStringLiteral("Başlık"), std::nullopt);
    const std::size_t before = network->count();
    exchange(std::nullopt, std::nullopt);
    EXPECT_EQ(network->count() - before, 2U);
}

TEST_F(ChatModelFollowUps, aRenameBackToTheDefaultAsksAgain)
{
    exchange(QStringLiteral("Başlık"), std::nullopt);
    model->renameChat(model->sessions()[0].id, QStringLiteral("Yeni Sohbet"));
    exchange(QStringLiteral("Başka"), std::nullopt);
    EXPECT_EQ(model->sessions()[0].title, QStringLiteral("Başka"));
}

TEST_F(ChatModelFollowUps, theUsersOwnTitleIsNotOverwritten)
{
    beginSend(QStringLiteral("soru"));
    answer(request(0), QStringLiteral("yanıt"));
    request(1);
    model->renameChat(model->sessions()[0].id, QStringLiteral("Benim adım"));
    answer(request(1), QStringLiteral("Başlık"));
    request(2);
    EXPECT_EQ(model->sessions()[0].title, QStringLiteral("Benim adım"));
}

TEST_F(ChatModelFollowUps, theMemoryRequestIsOneMessage)
{
    beginSend(QStringLiteral(" adım Can "));
    answer(request(0), QStringLiteral(" memnun oldum\n"));
    answer(request(1), QStringLiteral("Başlık"));
    EXPECT_EQ(messagesOf(request(2)),
              (std::vector<SentMessage>{
                  {QStringLiteral("system"), memoryInstruction},
                  {QStringLiteral("user"),
                   QStringLiteral("Mevcut hafıza:\n(boş)\n\nSon kullanıcı mesajı:\nadım "
                                  "Can\n\nAsistan yanıtı:\n memnun oldum\n")}}));
}

TEST_F(ChatModelFollowUps, aMemoryIsTrimmedStoredAndUsed)
{
    exchange(std::nullopt, QStringLiteral("\n\n - adı Can\n\n- çay sever \n"));
    EXPECT_EQ(model->memory(), QStringLiteral("- adı Can\n\n- çay sever"));
    EXPECT_EQ(saved().memory, model->memory());
    const std::size_t next = network->count();
    beginSend(QStringLiteral("kimim"));
    EXPECT_TRUE(messagesOf(request(next))[0].content.contains(
        QStringLiteral("hatırladığın bilgiler:\n- adı Can\n\n- çay sever\n\nBu hafızayı")));
}

TEST_F(ChatModelFollowUps, theMarkerEmptiesTheMemory)
{
    exchange(std::nullopt, QStringLiteral("- bilgi"));
    exchange(std::nullopt, QStringLiteral(" \n(boş)\n "));
    EXPECT_TRUE(model->memory().isEmpty());
    exchange(std::nullopt, QStringLiteral("- bilgi"));
    exchange(std::nullopt, QStringLiteral("(bos\u0327)"));
    EXPECT_TRUE(model->memory().isEmpty());
    exchange(std::nullopt, QStringLiteral("(boş)."));
    EXPECT_EQ(model->memory(), QStringLiteral("(boş)."));
}

TEST_F(ChatModelFollowUps, aMemoryKeepsEveryCharacter)
{
    exchange(std::nullopt, QStringLiteral("\uFEFF- bilgi"));
    EXPECT_EQ(model->memory(), QStringLiteral("\uFEFF- bilgi"));
    exchange(std::nullopt, QStringLiteral("\uFEFF(boş)"));
    EXPECT_EQ(model->memory(), QStringLiteral("\uFEFF(boş)"));
}

TEST_F(ChatModelFollowUps, anUnchangedMemoryIsSavedAllTheSame)
{
    exchange(QStringLiteral("Başlık"), QStringLiteral("(boş)"));
    EXPECT_EQ(saveCount(), 5U); // load, message, reply, title, memory
}

TEST_F(ChatModelFollowUps, failuresAreSwallowed)
{
    exchange(std::nullopt, QStringLiteral("- kalsın"));
    exchange(std::nullopt, std::nullopt);
    EXPECT_EQ(model->memory(), QStringLiteral("- kalsın"));
    EXPECT_EQ(model->sessions()[0].title, QStringLiteral("Yeni Sohbet"));
    EXPECT_FALSE(model->errorMessage());
}

TEST_F(ChatModelFollowUps, aConversationOfAnotherSessionLeavesTheMemoryAlone)
{
    exchange(std::nullopt, QStringLiteral("- genel"));
    model->deleteChat(model->sessions()[0].id);
    model->newChat();
    EXPECT_EQ(model->memory(), QStringLiteral("- genel"));
}

TEST_F(ChatModelFollowUps, everyRequestOfASendCarriesItsKey)
{
    beginSend(QStringLiteral("soru"));
    answer(request(0), QStringLiteral("yanıt"));
    storeKey(QStringLiteral("gsk_sonraki"));
    answer(request(1), QStringLiteral("Başlık"));
    request(2);
    for (std::size_t i = 0; i < 3; ++i) {
        EXPECT_EQ(request(i)->request().rawHeader("Authorization"), "Bearer gsk") << i;
    }
}

TEST_F(ChatModelFollowUps, theMemoryRequestNamesTheModelChosenByThen)
{
    beginSend(QStringLiteral("soru"));
    answer(request(0), QStringLiteral("yanıt"));
    request(1);
    model->selectModel(QStringLiteral("llama-3.1-8b-instant"));
    answer(request(1), QStringLiteral("Başlık"));
    EXPECT_EQ(modelOf(request(1)), QStringLiteral("llama-3.3-70b-versatile"));
    EXPECT_EQ(modelOf(request(2)), QStringLiteral("llama-3.1-8b-instant"));
}

TEST_F(ChatModelFollowUps, theirFailuresLeaveAnErrorThatIsShownAlone)
{
    beginSend(QStringLiteral("soru"));
    answer(request(0), QStringLiteral("yanıt"));
    request(1);
    model->setErrorMessage(QStringLiteral("kaydedilemedi"));
    request(1)->answer(500, "bozuk");
    request(2)->answer(500, "bozuk");
    waitUntilIdle();
    EXPECT_EQ(model->errorMessage(), QStringLiteral("kaydedilemedi"));
}

TEST_F(ChatModelFollowUps, aLaterTitleRequestHoldsTheWholeConversation)
{
    exchange(std::nullopt, std::nullopt);
    beginSend(QStringLiteral("ikinci"));
    answer(request(3), QStringLiteral("yanıt"));
    const auto sent = messagesOf(request(4));
    ASSERT_EQ(sent.size(), 6U);
    EXPECT_EQ(sent[1].content, QString::fromUtf8(model->selectedMessages()[0].content));
    EXPECT_EQ(sent[2].content, QStringLiteral("soru"));
    EXPECT_EQ(sent[4].content, QStringLiteral("ikinci"));
}

TEST_F(ChatModelFollowUps, theirFailedSavesAreReported)
{
    beginSend(QStringLiteral("soru"));
    answer(request(0), QStringLiteral("yanıt"));
    for (const std::size_t number : {1U, 2U}) {
        ScriptedReply *followUp = request(number);
        files->breakWriting(PlatformFailure::diskFull);
        answer(followUp, QStringLiteral("metin"));
        ASSERT_TRUE(waitUntil([&] { return model->errorMessage().has_value(); })) << number;
        EXPECT_EQ(model->errorMessage(), platformFailureText(PlatformFailure::diskFull));
        files->breakWriting(std::nullopt);
        model->clearErrorMessage();
    }
    waitUntilIdle();
}
