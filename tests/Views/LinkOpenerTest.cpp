#include "Views/LinkOpener.h"

#include <QDesktopServices>
#include <QObject>
#include <gtest/gtest.h>

namespace Talvo {
namespace {

struct Case
{
    const char *address;
    bool isOpenable;
};

class LinkOpener : public testing::TestWithParam<Case>
{
};

TEST_P(LinkOpener, KnowsWhatMayBeOpened)
{
    const QString address = QString::fromUtf8(GetParam().address);
    EXPECT_EQ(openableUrl(address).has_value(), GetParam().isOpenable) << GetParam().address;
}

INSTANTIATE_TEST_SUITE_P(
    Addresses, LinkOpener,
    testing::Values(Case{"https://example.com", true}, Case{"HTTP://EXAMPLE.COM/a?b#c", true},
                    Case{"https://örnek.com/kahve çayı", true},
                    Case{"mailto:biri@example.com", true},
                    Case{"MailTo:biri@example.com?subject=x", true}, Case{"", false},
                    Case{"https://", false}, Case{"https:example.com", false},
                    Case{"mailto:", false}, Case{"//example.com/x", false},
                    Case{"example.com", false}, Case{"/etc/passwd", false},
                    Case{"file:///etc/passwd", false}, Case{"javascript:alert(1)", false},
                    Case{"data:text/html,x", false}, Case{"ftp://example.com", false},
                    Case{"ssh://example.com", false}, Case{"tel:112", false}, Case{"qrc:/x", false},
                    Case{"smb://example.com/x", false}, Case{" file:///etc/passwd", false},
                    Case{"java\nscript:alert(1)", false}, Case{"http://[::1", false}));

TEST(ShownAddress, IsWhereTheLinkLeads)
{
    EXPECT_EQ(shownAddress(QStringLiteral("https://example.com/a?b=c")),
              QStringLiteral("https://example.com/a?b=c"));
}

TEST(ShownAddress, HidesNothingBehindDirectionsOrLookalikes)
{
    EXPECT_EQ(shownAddress(QStringLiteral("https://example.com/\u202Egpj.exe")),
              QStringLiteral("https://example.com/%E2%80%AEgpj.exe"));
    // A Cyrillic letter that looks like the Latin one.
    EXPECT_TRUE(shownAddress(QStringLiteral("https://\u0430pple.com"))
                    .startsWith(QStringLiteral("https://xn--")));
    EXPECT_EQ(shownAddress(QStringLiteral("file:///\u202Etxt\u200B")),
              QStringLiteral("file:///\uFFFDtxt\uFFFD"));
    EXPECT_EQ(shownAddress(QString::fromUtf8("x:\xF3\xA0\x81\x81y")), QStringLiteral("x:\uFFFDy"));
}

TEST(ShownAddress, IsCutWhenItIsVeryLong)
{
    const QString shown =
        shownAddress(QStringLiteral("https://example.com/%1").arg(QString(5000, u'a')));
    EXPECT_EQ(shown.size(), 201);
    EXPECT_TRUE(shown.endsWith(u'…'));
}

TEST(ShownAddress, IsNotCutWithinACharacter)
{
    const QString start = QStringLiteral("yer:") + QString(195, u'a');
    EXPECT_EQ(shownAddress(start + QStringLiteral("😀😀")), start + u'…');
    EXPECT_EQ(shownAddress(start + QStringLiteral("a😀")), start + QStringLiteral("a…"));
}

class Browser : public QObject
{
    Q_OBJECT

public:
    QList<QUrl> opened;

public Q_SLOTS:
    void open(const QUrl &url) { opened.append(url); }
};

TEST(OpenLink, HandsOnlyAllowedAddressesToTheDesktop)
{
    Browser browser;
    const QStringList schemes{QStringLiteral("https"), QStringLiteral("mailto"),
                              QStringLiteral("file"), QStringLiteral("ftp")};
    for (const QString &scheme : schemes) {
        QDesktopServices::setUrlHandler(scheme, &browser, "open");
    }

    EXPECT_TRUE(openLink(QStringLiteral("https://example.com/x")));
    EXPECT_TRUE(openLink(QStringLiteral("mailto:biri@example.com")));
    EXPECT_FALSE(openLink(QStringLiteral("file:///etc/passwd")));
    EXPECT_FALSE(openLink(QStringLiteral("ftp://example.com")));

    for (const QString &scheme : schemes) {
        QDesktopServices::unsetUrlHandler(scheme);
    }
    EXPECT_EQ(browser.opened, (QList<QUrl>{QUrl(QStringLiteral("https://example.com/x")),
                                           QUrl(QStringLiteral("mailto:biri@example.com"))}));
}

} // namespace
} // namespace Talvo

#include "LinkOpenerTest.moc"
