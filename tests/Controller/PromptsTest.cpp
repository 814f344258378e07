#include "Controller/Prompts.h"

#include "Controller/PromptTexts.h"

#include <gtest/gtest.h>

using namespace Talvo;

namespace {

ChatMessage said(const char *content)
{
    return ChatMessage::make(ChatMessage::Role::user, content);
}

} // namespace

TEST(Prompts, anEmptyMemoryAddsNothing)
{
    EXPECT_EQ(Prompts::system({}), basePrompt);
}

TEST(Prompts, aMemoryStandsBetweenHeaderAndFooter)
{
    EXPECT_EQ(Prompts::system(QStringLiteral("- adı Can ")),
              basePrompt +
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
