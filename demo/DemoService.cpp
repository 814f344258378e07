#include "demo/DemoService.h"

#include "Controller/Prompts.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QRegularExpression>

namespace Talvo {

namespace {

using namespace std::chrono_literals;

constexpr auto replyDelay = 1400ms;
constexpr auto followUpDelay = 500ms;

struct Conversation
{
    QString systemPrompt;
    QStringList userTexts;
};

Conversation conversationIn(const QByteArray &body)
{
    Conversation conversation;
    const QJsonObject request = QJsonDocument::fromJson(body).object();
    for (const auto &value : request[QStringLiteral("messages")].toArray()) {
        const QJsonObject message = value.toObject();
        const QString content = message[QStringLiteral("content")].toString();
        const QString role = message[QStringLiteral("role")].toString();
        if (role == u"system") {
            conversation.systemPrompt = content;
        } else if (role == u"user") {
            conversation.userTexts.append(content);
        }
    }
    return conversation;
}

QString titleFor(const QString &firstUserText)
{
    constexpr qsizetype mostWords = 5;
    const QStringList words =
        firstUserText.split(QRegularExpression(QStringLiteral("[\\s.,;:!?]+")), Qt::SkipEmptyParts);
    return words.mid(0, mostWords).join(u' ');
}

/// The current memory, with a line more when the user has just given a name.
QString memoryAfter(const QString &request)
{
    static const QRegularExpression parts(
        QStringLiteral("^Mevcut hafıza:\n(.*)\n\nSon kullanıcı mesajı:\n(.*)\n\nAsistan yanıtı:\n"),
        QRegularExpression::DotMatchesEverythingOption);
    static const QRegularExpression name(QStringLiteral("\\b[Aa]dım (\\p{L}+)"),
                                         QRegularExpression::UseUnicodePropertiesOption);
    const auto match = parts.match(request);
    QString memory = match.captured(1);
    const auto introduction = name.match(match.captured(2));
    if (!introduction.hasMatch()) {
        return memory;
    }
    const QString line = QStringLiteral("- Adı ") + introduction.captured(1);
    return memory == Prompts::emptyMemoryMarker() ? line : memory + u'\n' + line;
}

QString replyTo(const QString &text)
{
    if (text.contains(QStringLiteral("tablo"), Qt::CaseInsensitive)) {
        return QStringLiteral(
            "Elbette, küçük bir tablo:\n\n| Gün | Hava | Sıcaklık |\n|---|---|---|\n"
            "| Pazartesi | ☀️ güneşli | 24 °C |\n| Salı | 🌧️ yağmurlu | 17 °C |");
    }
    if (text.contains(QStringLiteral("liste"), Qt::CaseInsensitive)) {
        return QStringLiteral("İşte bir liste:\n\n- **Birinci** madde\n- *İkinci* madde\n"
                              "- `Üçüncü` madde");
    }
    return QStringLiteral("Bu bir **deneme yanıtı**: burada ağ da model de yok. Şunu yazdın:\n\n") +
           text +
           QStringLiteral("\n\n---\n\n“tablo” ya da “liste” yazarsan başka biçimler görürsün; "
                          "“adım …” dersen adını hatırlarım.");
}

ScriptedAnswer completion(const QString &content, std::chrono::milliseconds delay)
{
    const QJsonObject message{{QStringLiteral("role"), QStringLiteral("assistant")},
                              {QStringLiteral("content"), content}};
    const QJsonArray choices{QJsonObject{{QStringLiteral("message"), message}}};
    const QByteArray body =
        QJsonDocument(QJsonObject{{QStringLiteral("choices"), choices}}).toJson();
    ScriptedAnswer answer = ScriptedAnswer().pausing(delay);
    const ScriptedAnswer whole = ScriptedAnswer::http(200, body);
    for (const ScriptedAnswer::Step &step : whole.steps()) {
        answer = answer.sending(step.bytes);
    }
    return answer;
}

} // namespace

ScriptedAnswer demoAnswer(const RecordedRequest &request, int)
{
    const Conversation conversation = conversationIn(request.body);
    if (conversation.userTexts.isEmpty()) {
        return ScriptedAnswer::http(400, R"({"error":{"message":"İleti yok."}})");
    }
    if (conversation.systemPrompt == Prompts::titleInstruction()) {
        return completion(titleFor(conversation.userTexts.constFirst()), followUpDelay);
    }
    if (conversation.systemPrompt == Prompts::memoryInstruction()) {
        return completion(memoryAfter(conversation.userTexts.constLast()), followUpDelay);
    }
    return completion(replyTo(conversation.userTexts.constLast()), replyDelay);
}

} // namespace Talvo
