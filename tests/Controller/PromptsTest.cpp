#include "Controller/Prompts.h"

#include <gtest/gtest.h>

using namespace Talvo;

namespace {

const auto base = QStringLiteral("Adın Talvo. Yardımcı bir yapay zeka asistanısın. Kullanıcıya "
                                 "açık, doğru ve doğal Türkçe ile yanıt ver.");

ChatMessage said(const char *content)
{
    return ChatMessage::make(ChatMessage::Role::user, content);
}

} // namespace

TEST(Prompts, anEmptyMemoryAddsNothing)
{
    EXPECT_EQ(Prompts::system({}), base);
}

TEST(Prompts, aMemoryStandsBetweenHeaderAndFooter)
{
    EXPECT_EQ(Prompts::system(QStringLiteral("- adı Can ")),
              base +
                  QStringLiteral("\n\nKullanıcı hakkında önceki konuşmalardan hatırladığın "
                                 "bilgiler:\n- adı Can \n\nBu hafızayı yalnızca ilgili olduğunda "
                                 "doğal biçimde kullan. Kullanıcının söylemediği ayrıntıları "
                                 "uydurma."));
}

TEST(Prompts, theFirstMemoryRequestBeginsWithTheMarker)
{
    EXPECT_EQ(QString::fromUtf8(Prompts::memoryRequest({}, said("adım Can"), said(" selam\n"))),
              QStringLiteral("Mevcut hafıza:\n(boş)\n\nSon kullanıcı mesajı:\nadım Can\n\nAsistan "
                             "yanıtı:\n selam\n"));
}

TEST(Prompts, theMemoryRequestCarriesTheMemoryAsStored)
{
    EXPECT_TRUE(Prompts::memoryRequest(QStringLiteral(" "), said("a"), said("b"))
                    .startsWith(QByteArray("Mevcut hafıza:\n \n\nSon")));
}
