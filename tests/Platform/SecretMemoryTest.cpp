#include "Platform/SecretMemory.h"

#include <gtest/gtest.h>

using namespace Talvo;

TEST(SecretMemory, anUnsharedSecretIsOverwrittenWhereItIs)
{
    QByteArray bytes("gsk_123456");
    bytes.detach();
    const char *const memory = bytes.constData();
    wipe(bytes);
    EXPECT_EQ(bytes.constData(), memory);
    EXPECT_EQ(bytes, QByteArray(10, '\0'));

    QString text = QStringLiteral("gsk_123456");
    text.detach();
    const QChar *const characters = text.constData();
    wipe(text);
    EXPECT_EQ(text.constData(), characters);
    EXPECT_EQ(text, QString(10, QChar(u'\0')));
}

TEST(SecretMemory, aSharedSecretIsLeftToTheLastOwner)
{
    QString owner = QStringLiteral("gsk_123456");
    owner.detach();
    {
        QString copy = owner;
        const WipedAtEnd<QString> wiped(copy);
    }
    EXPECT_EQ(owner, QStringLiteral("gsk_123456"));
    {
        const WipedAtEnd<QString> wiped(owner);
    }
    EXPECT_EQ(owner, QString(10, QChar(u'\0')));
}

TEST(SecretMemory, noSecretNeedsNoWiping)
{
    QString text;
    QByteArray bytes;
    wipe(text);
    wipe(bytes);
    EXPECT_TRUE(text.isNull());
    EXPECT_TRUE(bytes.isNull());
}
