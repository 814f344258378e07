#include "Views/MarkdownBlocks.h"

#include "support/BusyWorkers.h"

#include <QSignalSpy>
#include <QTest>
#include <QThreadPool>
#include <gtest/gtest.h>

#include <type_traits>
#include <variant>

namespace Talvo {
namespace {

/// What a row is, and its block's place in the variant when it has one.
template <class Kind>
bool is(const MarkdownBlocks &blocks, int row)
{
    const MarkdownBlocks::Row found = blocks.row(row);
    if constexpr (std::is_constructible_v<MarkdownBlocks::Row, Kind>) {
        return std::holds_alternative<Kind>(found);
    } else {
        const auto *block = std::get_if<MarkdownBlocks::Block>(&found);
        return block && std::holds_alternative<Kind>(**block);
    }
}

/// How many of the rows are of that kind.
template <class Kind>
int count(const MarkdownBlocks &blocks)
{
    int result = 0;
    for (int row = 0; row < blocks.rowCount(); ++row) {
        result += is<Kind>(blocks, row) ? 1 : 0;
    }
    return result;
}

/// The block of a row; throws when it is none of that kind.
template <class Kind>
Kind block(const MarkdownBlocks &blocks, int row)
{
    return std::get<Kind>(*std::get<MarkdownBlocks::Block>(blocks.row(row)));
}

QString plain(const MarkdownBlocks &blocks, int row)
{
    return std::get<MarkdownBlocks::PlainText>(blocks.row(row)).text;
}

QString bullet(const MarkdownBlocks &blocks, int row)
{
    return block<MarkdownBlock::Bullet>(blocks, row).text.text;
}

QString paragraph(const MarkdownBlocks &blocks, int row)
{
    return block<MarkdownBlock::Paragraph>(blocks, row).text.text;
}

void waitUntilParsed(MarkdownBlocks &blocks)
{
    MarkdownBlocks::threads().waitForDone();
    QCoreApplication::processEvents();
    ASSERT_TRUE(blocks.isParsed());
}

TEST(MarkdownBlocks, HasOneRowPerBlock)
{
    MarkdownBlocks blocks;
    blocks.setContent(QStringLiteral("## B\n\nx\n\n- y\n7. z\n\n---\n\n| A |\n|---|\n| 1 |"));
    waitUntilParsed(blocks);
    ASSERT_EQ(blocks.rowCount(), 6);
    EXPECT_EQ(block<MarkdownBlock::Heading>(blocks, 0).level, 2);
    EXPECT_EQ(paragraph(blocks, 1), QStringLiteral("x"));
    EXPECT_EQ(bullet(blocks, 2), QStringLiteral("y"));
    EXPECT_EQ(block<MarkdownBlock::Numbered>(blocks, 3).number, 7);
    EXPECT_TRUE(is<MarkdownBlock::Divider>(blocks, 4));
    EXPECT_EQ(block<MarkdownTable>(blocks, 5).headers.size(), 1U);
}

TEST(MarkdownBlocks, ShowsTheRawTextUntilTheFirstParseEnds)
{
    MarkdownBlocks blocks;
    const QSignalSpy replaced(&blocks, &MarkdownBlocks::replaced);
    {
        const Testing::BusyWorkers busy(MarkdownBlocks::threads());
        blocks.setContent(QStringLiteral("# x"));
        EXPECT_FALSE(blocks.isParsed());
        EXPECT_TRUE(blocks.isGrowing()) << "its height is not final";
        EXPECT_EQ(blocks.rowCount(), 1);
        EXPECT_EQ(plain(blocks, 0), QStringLiteral("# x"));
        blocks.setContent(QStringLiteral("# y"));
        EXPECT_EQ(plain(blocks, 0), QStringLiteral("# y"));
        EXPECT_EQ(replaced.count(), 2) << "once for each text";
    }
    waitUntilParsed(blocks);
    EXPECT_EQ(blocks.rowCount(), 1);
    EXPECT_TRUE(is<MarkdownBlock::Heading>(blocks, 0));
}

TEST(MarkdownBlocks, ParsesWhileTheCommonThreadsAreBusy)
{
    const Testing::BusyWorkers busy;
    MarkdownBlocks blocks;
    blocks.setContent(QStringLiteral("# x"));
    EXPECT_TRUE(QTest::qWaitFor([&] { return blocks.isParsed(); }));
}

TEST(MarkdownBlocks, KeepsABlankReplyAsItStands)
{
    MarkdownBlocks blocks;
    blocks.setContent(QStringLiteral(" \n\n "));
    MarkdownBlocks::threads().waitForDone();
    QCoreApplication::processEvents();
    EXPECT_EQ(blocks.rowCount(), 1);
    EXPECT_EQ(plain(blocks, 0), QStringLiteral(" \n\n "));
}

TEST(MarkdownBlocks, KeepsTheOldBlocksUntilTheNewOnesAreThere)
{
    MarkdownBlocks blocks;
    blocks.setContent(QStringLiteral("bir"));
    waitUntilParsed(blocks);
    const QSignalSpy replaced(&blocks, &MarkdownBlocks::replaced);
    {
        const Testing::BusyWorkers busy(MarkdownBlocks::threads());
        blocks.setContent(QStringLiteral("iki"));
        blocks.setContent(QStringLiteral("üç"));
        EXPECT_EQ(paragraph(blocks, 0), QStringLiteral("bir"));
        EXPECT_EQ(replaced.count(), 0);
    }
    waitUntilParsed(blocks);
    EXPECT_EQ(paragraph(blocks, 0), QStringLiteral("üç"));
}

/// Lets everything be shown that is shown without being asked for.
void waitUntilGrown(MarkdownBlocks &blocks)
{
    waitUntilParsed(blocks);
    EXPECT_TRUE(QTest::qWaitFor([&blocks] { return !blocks.isGrowing(); }));
}

TEST(MarkdownBlocks, ShowsALongReplyInPortions)
{
    MarkdownBlocks blocks;
    const QSignalSpy inserted(&blocks, &MarkdownBlocks::inserted);
    blocks.setContent(QStringLiteral("- a\n").repeated(1'000));
    waitUntilGrown(blocks);
    EXPECT_EQ(blocks.rowCount(), 1'000);
    EXPECT_GT(inserted.count(), 1);
    for (const QList<QVariant> &portion : inserted) {
        EXPECT_LE(portion.at(1).toInt() - portion.at(0).toInt(), 20);
    }
}

TEST(MarkdownBlocks, ShowsALongReplyFromItsEnd)
{
    MarkdownBlocks blocks;
    blocks.setFromEnd(true);
    QString reply;
    for (int i = 0; i < 1'000; ++i) {
        reply += QStringLiteral("- %1\n").arg(i);
    }
    blocks.setContent(reply);
    waitUntilParsed(blocks);
    EXPECT_LT(blocks.rowCount(), 1'000);
    EXPECT_EQ(bullet(blocks, blocks.rowCount() - 1), QStringLiteral("999"));

    const int before = blocks.rowCount();
    blocks.grow();
    EXPECT_GT(blocks.rowCount(), before) << "a portion that is wanted at once";
    EXPECT_EQ(bullet(blocks, 0), QString::number(1'000 - blocks.rowCount()));

    waitUntilGrown(blocks);
    ASSERT_EQ(blocks.rowCount(), 1'000);
    for (int i = 0; i < 1'000; ++i) {
        EXPECT_EQ(bullet(blocks, i), QString::number(i));
    }
    blocks.grow();
    EXPECT_EQ(blocks.rowCount(), 1'000) << "there is no more";
}

/// Items that are numbered from 0 on.
QString countedItems(int count)
{
    QString reply;
    for (int i = 0; i < count; ++i) {
        reply += QStringLiteral("- %1\n").arg(i);
    }
    return reply;
}

/// How many rows stand before the offer of more; the others are the items from the first on, and
/// the last ones behind the offer. Below zero where it is not so.
int rowsBeforeTheOffer(const MarkdownBlocks &blocks, int items)
{
    int before = -1;
    for (int row = 0; row < blocks.rowCount(); ++row) {
        if (is<MarkdownBlocks::OfferOfMore>(blocks, row)) {
            if (before >= 0) {
                return -1;
            }
            before = row;
            continue;
        }
        const int item = before < 0 ? row : items - blocks.rowCount() + row;
        if (bullet(blocks, row) != QString::number(item)) {
            return -1;
        }
    }
    return before;
}

TEST(MarkdownBlocks, OffersTheMiddleOfAReplyBeyondAllMeasure)
{
    MarkdownBlocks blocks;
    blocks.setContent(countedItems(10'000));
    waitUntilParsed(blocks);
    EXPECT_EQ(count<MarkdownBlocks::OfferOfMore>(blocks), 0) << "the beginning comes first";
    waitUntilGrown(blocks);
    const int shown = rowsBeforeTheOffer(blocks, 10'000);
    EXPECT_GT(shown, 1'000);
    EXPECT_LT(shown, 9'000);
    EXPECT_EQ(bullet(blocks, blocks.rowCount() - 1), QStringLiteral("9999"));

    blocks.showMore();
    EXPECT_EQ(count<MarkdownBlocks::OfferOfMore>(blocks), 0);
    waitUntilGrown(blocks);
    EXPECT_GT(rowsBeforeTheOffer(blocks, 10'000), shown);

    blocks.showMore();
    waitUntilGrown(blocks);
    ASSERT_EQ(blocks.rowCount(), 10'000);
    for (int i = 0; i < 10'000; ++i) {
        EXPECT_EQ(bullet(blocks, i), QString::number(i));
    }

    blocks.showMore();
    EXPECT_EQ(blocks.rowCount(), 10'000) << "there is no more";

    blocks.setContent(QStringLiteral("kısa"));
    waitUntilParsed(blocks);
    EXPECT_EQ(blocks.rowCount(), 1);
    EXPECT_EQ(paragraph(blocks, 0), QStringLiteral("kısa"));
}

TEST(MarkdownBlocks, OffersTheMiddleFromTheEnd)
{
    MarkdownBlocks blocks;
    blocks.setFromEnd(true);
    blocks.setContent(countedItems(10'000));
    waitUntilParsed(blocks);
    EXPECT_EQ(count<MarkdownBlocks::OfferOfMore>(blocks), 1);
    EXPECT_EQ(bullet(blocks, blocks.rowCount() - 1), QStringLiteral("9999"));
    EXPECT_LT(blocks.rowCount(), 100) << "a portion";
    waitUntilGrown(blocks);
    const int shown = rowsBeforeTheOffer(blocks, 10'000);
    EXPECT_GT(shown, 1'000);

    blocks.showMore();
    waitUntilGrown(blocks);
    EXPECT_GT(rowsBeforeTheOffer(blocks, 10'000), shown);
}

TEST(MarkdownBlocks, OffersNothingWhereTheEndGoesOnFromTheBeginning)
{
    for (const bool isFromEnd : {false, true}) {
        for (const int extra : {0, 1, 5}) {
            MarkdownBlocks blocks;
            blocks.setFromEnd(isFromEnd);
            const int items = int(MarkdownBlocks::effortWithoutAsking) + extra;
            blocks.setContent(countedItems(items));
            waitUntilParsed(blocks);
            while (blocks.isGrowing()) {
                blocks.grow();
            }
            EXPECT_EQ(blocks.rowCount(), items);
            EXPECT_EQ(count<MarkdownBlocks::OfferOfMore>(blocks), 0);
        }
    }
}

TEST(MarkdownBlocks, ShowsOnlyTheBeginningOfAnUnparsedText)
{
    MarkdownBlocks blocks;
    const Testing::BusyWorkers busy(MarkdownBlocks::threads());
    blocks.setContent(QString(1'000'000, u'x'));
    EXPECT_EQ(plain(blocks, 0).size(), BlockPieces::longestText);
}

TEST(MarkdownBlocks, CutsNoCharacterOfAnUnparsedText)
{
    MarkdownBlocks blocks;
    const Testing::BusyWorkers busy(MarkdownBlocks::threads());
    blocks.setContent(u'x' + QStringLiteral("😀").repeated(500'000));
    EXPECT_TRUE(plain(blocks, 0).isValidUtf16());
}

TEST(MarkdownBlocks, TakesALiteralTextAsItStands)
{
    MarkdownBlocks blocks;
    blocks.setLiteral(true);
    const QString line = QStringLiteral("# **x**");
    blocks.setContent((line + u'\n').repeated(4'000) + line);
    waitUntilGrown(blocks);
    QStringList pieces;
    for (int row = 0; row < blocks.rowCount(); ++row) {
        pieces.append(plain(blocks, row));
    }
    EXPECT_EQ(pieces.join(u'\n'), blocks.content());
}

TEST(MarkdownBlocks, MayGoWhileItsParseRuns)
{
    const Testing::BusyWorkers busy(MarkdownBlocks::threads());
    auto blocks = std::make_unique<MarkdownBlocks>();
    blocks->setContent(QStringLiteral("# x"));
    blocks.reset();
    SUCCEED() << "the worker finds nobody to tell; the sanitizers watch";
}

} // namespace
} // namespace Talvo
