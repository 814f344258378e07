#include "Controller/Prompts.h"

namespace Talvo::Prompts {

QString system(const QString &memory)
{
    QString base = QStringLiteral(
        "Adın Talvo. Yardımcı bir yapay zeka asistanısın. Kullanıcıya açık, doğru ve "
        "doğal Türkçe ile yanıt ver.");
    if (memory.isEmpty()) {
        return base;
    }
    return base +
           QStringLiteral("\n\nKullanıcı hakkında önceki konuşmalardan hatırladığın bilgiler:\n") +
           memory +
           QStringLiteral("\n\nBu hafızayı yalnızca ilgili olduğunda doğal biçimde kullan. "
                          "Kullanıcının söylemediği ayrıntıları uydurma.");
}

QString titleInstruction()
{
    return QStringLiteral(
        "Bu konuşmanın ana konusunu özetleyen kısa bir Türkçe sohbet başlığı üret. Başlık 2-6 "
        "kelime olsun. Yalnızca başlığı yaz; tırnak, noktalama, açıklama veya \"Başlık:\" ön eki "
        "kullanma.");
}

QString memoryInstruction()
{
    return QStringLiteral(
        "Kullanıcı için kalıcı bir hafıza kaydı tutuyorsun. Yalnızca gelecekte gerçekten yararlı "
        "olacak açık kullanıcı bilgilerini, tercihleri, hedefleri ve devam eden işleri sakla. "
        "Geçici soruları, asistanın sözlerini, hassas kimlik bilgilerini, API anahtarlarını ve "
        "tahminleri saklama. Mevcut hafızayı güncelle ve tamamını kısa Türkçe madde işaretleri "
        "halinde döndür. Saklanacak bilgi yoksa mevcut hafızayı aynen döndür; hafıza boşsa "
        "yalnızca \"(boş)\" yaz.");
}

QByteArray memoryRequest(const QString &memory, const ChatMessage &userMessage,
                         const ChatMessage &assistantMessage)
{
    const QString shownMemory = memory.isEmpty() ? emptyMemoryMarker() : memory;
    return QByteArrayLiteral("Mevcut hafıza:\n") + shownMemory.toUtf8() +
           QByteArrayLiteral("\n\nSon kullanıcı mesajı:\n") + userMessage.content +
           QByteArrayLiteral("\n\nAsistan yanıtı:\n") + assistantMessage.content;
}

QString emptyMemoryMarker()
{
    return QStringLiteral("(boş)");
}

QString firstGreeting()
{
    return QStringLiteral("Merhaba! Ben Talvo. Sana bugün nasıl yardımcı olabilirim?");
}

QString newChatGreeting()
{
    return QStringLiteral("Yeni sohbet hazır. Ne hakkında konuşalım?");
}

} // namespace Talvo::Prompts
