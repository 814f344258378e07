#include "Views/MarkdownBlocks.h"

#include "Views/BlockText.h"

#include <QSemaphore>
#include <QSignalSpy>
#include <QTest>
#include <QThreadPool>
#include <gtest/gtest.h>

namespace Talvo {
namespace {

/// Keeps every worker thread busy while it lives.
class BusyWorkers
{
public:
    BusyWorkers()
    {
        QThreadPool *pool = QThreadPool::globalInstance();
        m_count = pool->maxThreadCount();
        for (int i = 0; i < m_count; ++i)
            pool->start([this] {
                m_begun.release();
                m_end.acquire();
            });
        m_begun.acquire(m_count);
    }
    ~BusyWorkers()
    {
        m_end.release(m_count);
        QThreadPool::globalInstance()->waitForDone();
    }
    BusyWorkers(const BusyWorkers &) = delete;
    BusyWorkers &operator=(const BusyWorkers &) = delete;

private:
    int m_count = 0;
    QSemaphore m_begun;
    QSemaphore m_end;
};

QStringList kinds(const MarkdownBlocks &blocks)
{
    QStringList list;
    for (int row = 0; row < blocks.rowCount(); ++row)
        list.append(blocks.data(blocks.index(row), MarkdownBlocks::kindRole).toString());
    return list;
}

QString textOf(const MarkdownBlocks &blocks, int row)
{
    return blocks.data(blocks.index(row), MarkdownBlocks::styledRole).value<BlockText>().plain();
}

void waitUntilParsed(MarkdownBlocks &blocks)
{
    QThreadPool::globalInstance()->waitForDone();
    QCoreApplication::processEvents();
    ASSERT_TRUE(blocks.isParsed());
}

TEST(MarkdownBlocks, HasOneRowPerBlock)
{
    MarkdownBlocks blocks;
    blocks.setContent(QStringLiteral("## B\n\nx\n\n- y\n7. z\n\n---\n\n| A |\n|---|\n| 1 |"));
    waitUntilParsed(blocks);
    EXPECT_EQ(kinds(blocks), (QStringList{QStringLiteral("heading"), QStringLiteral("paragraph"),
                                          QStringLiteral("item"), QStringLiteral("item"),
                                          QStringLiteral("divider"), QStringLiteral("table")}));
    EXPECT_EQ(blocks.data(blocks.index(0), MarkdownBlocks::levelRole), QVariant(2));
    EXPECT_EQ(blocks.data(blocks.index(2), MarkdownBlocks::markerRole),
              QVariant(QStringLiteral("•")));
    EXPECT_EQ(blocks.data(blocks.index(3), MarkdownBlocks::markerRole),
              QVariant(QStringLiteral("7.")));
    EXPECT_EQ(textOf(blocks, 3), QStringLiteral("z"));
    const auto table = blocks.data(blocks.index(5), MarkdownBlocks::tableRole).value<BlockTable>();
    EXPECT_EQ(table.cells().size(), 2U);
    EXPECT_TRUE(table.hasHeader());
}

TEST(MarkdownBlocks, ShowsTheRawTextUntilTheFirstParseEnds)
{
    MarkdownBlocks blocks;
    {
        const BusyWorkers busy;
        blocks.setContent(QStringLiteral("# x"));
        EXPECT_FALSE(blocks.isParsed());
        EXPECT_TRUE(blocks.isGrowing()) << "its height is not final";
        EXPECT_EQ(kinds(blocks), QStringList(QStringLiteral("plain")));
        EXPECT_EQ(blocks.data(blocks.index(0), MarkdownBlocks::plainRole),
                  QVariant(QStringLiteral("# x")));
    }
    waitUntilParsed(blocks);
    EXPECT_EQ(kinds(blocks), QStringList(QStringLiteral("heading")));
}

TEST(MarkdownBlocks, KeepsABlankReplyAsItStands)
{
    MarkdownBlocks blocks;
    blocks.setContent(QStringLiteral(" \n\n "));
    QThreadPool::globalInstance()->waitForDone();
    QCoreApplication::processEvents();
    EXPECT_EQ(kinds(blocks), QStringList(QStringLiteral("plain")));
    EXPECT_EQ(blocks.data(blocks.index(0), MarkdownBlocks::plainRole),
              QVariant(QStringLiteral(" \n\n ")));
}

TEST(MarkdownBlocks, KeepsTheOldBlocksUntilTheNewOnesAreThere)
{
    MarkdownBlocks blocks;
    blocks.setContent(QStringLiteral("bir"));
    waitUntilParsed(blocks);
    QSignalSpy reset(&blocks, &QAbstractItemModel::modelReset);
    {
        const BusyWorkers busy;
        blocks.setContent(QStringLiteral("iki"));
        blocks.setContent(QStringLiteral("üç"));
        EXPECT_EQ(textOf(blocks, 0), QStringLiteral("bir"));
        EXPECT_EQ(reset.count(), 0);
    }
    waitUntilParsed(blocks);
    EXPECT_EQ(textOf(blocks, 0), QStringLiteral("üç"));
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
    const QSignalSpy inserted(&blocks, &QAbstractItemModel::rowsInserted);
    blocks.setContent(QStringLiteral("- a\n").repeated(1'000));
    waitUntilGrown(blocks);
    EXPECT_EQ(blocks.rowCount(), 1'000);
    EXPECT_GT(inserted.count(), 1);
    for (const QList<QVariant> &portion : inserted)
        EXPECT_LE(portion.at(2).toInt() - portion.at(1).toInt(), 60);
}

TEST(MarkdownBlocks, ShowsALongReplyFromItsEnd)
{
    MarkdownBlocks blocks;
    blocks.setFromEnd(true);
    QString reply;
    for (int i = 0; i < 1'000; ++i)
        reply += QStringLiteral("- %1\n").arg(i);
    blocks.setContent(reply);
    waitUntilParsed(blocks);
    EXPECT_LT(blocks.rowCount(), 1'000);
    EXPECT_EQ(textOf(blocks, blocks.rowCount() - 1), QStringLiteral("999"));

    const int before = blocks.rowCount();
    blocks.grow();
    EXPECT_GT(blocks.rowCount(), before) << "a portion that is wanted at once";
    EXPECT_EQ(textOf(blocks, 0), QString::number(1'000 - blocks.rowCount()));

    waitUntilGrown(blocks);
    ASSERT_EQ(blocks.rowCount(), 1'000);
    for (int i = 0; i < 1'000; ++i)
        EXPECT_EQ(textOf(blocks, i), QString::number(i));
    blocks.grow();
    EXPECT_EQ(blocks.rowCount(), 1'000) << "there is no more";
}

TEST(MarkdownBlocks, OffersMoreFromTheEnd)
{
    MarkdownBlocks blocks;
    blocks.setFromEnd(true);
    blocks.setContent(QStringLiteral("- a\n").repeated(10'000));
    waitUntilParsed(blocks);
    EXPECT_EQ(kinds(blocks).last(), QStringLiteral("more"));
    waitUntilGrown(blocks);
    const int shown = blocks.rowCount();
    EXPECT_EQ(kinds(blocks).last(), QStringLiteral("more"));
    EXPECT_EQ(kinds(blocks).count(QStringLiteral("more")), 1);
    blocks.showMore();
    waitUntilGrown(blocks);
    EXPECT_GT(blocks.rowCount(), shown);
}

TEST(MarkdownBlocks, OffersMoreOfAReplyBeyondAllMeasure)
{
    MarkdownBlocks blocks;
    blocks.setContent(QStringLiteral("- a\n").repeated(10'000));
    waitUntilGrown(blocks);
    const int shown = blocks.rowCount();
    EXPECT_LT(shown, 10'000);
    EXPECT_EQ(kinds(blocks).last(), QStringLiteral("more"));
    EXPECT_EQ(kinds(blocks).count(QStringLiteral("more")), 1);

    blocks.showMore();
    waitUntilGrown(blocks);
    EXPECT_GT(blocks.rowCount(), shown);
    EXPECT_EQ(kinds(blocks).last(), QStringLiteral("more"));

    blocks.showMore();
    waitUntilGrown(blocks);
    EXPECT_EQ(blocks.rowCount(), 10'000);
    EXPECT_EQ(kinds(blocks).last(), QStringLiteral("item"));

    blocks.showMore();
    EXPECT_EQ(blocks.rowCount(), 10'000) << "there is no more";

    blocks.setContent(QStringLiteral("kısa"));
    waitUntilParsed(blocks);
    EXPECT_EQ(kinds(blocks), QStringList(QStringLiteral("paragraph")));
}

TEST(MarkdownBlocks, ShowsOnlyTheBeginningOfAnUnparsedText)
{
    MarkdownBlocks blocks;
    const BusyWorkers busy;
    blocks.setContent(QString(1'000'000, u'x'));
    EXPECT_EQ(blocks.data(blocks.index(0), MarkdownBlocks::plainRole).toString().size(),
              BlockPieces::longestText);
}

TEST(MarkdownBlocks, TakesALiteralTextAsItStands)
{
    MarkdownBlocks blocks;
    blocks.setLiteral(true);
    const QString line = QStringLiteral("# **x**");
    blocks.setContent((line + u'\n').repeated(4'000) + line);
    waitUntilGrown(blocks);
    QStringList pieces;
    for (int row = 0; row < blocks.rowCount(); ++row)
        pieces.append(blocks.data(blocks.index(row), MarkdownBlocks::plainRole).toString());
    EXPECT_EQ(pieces.join(u'\n'), blocks.content());
    EXPECT_EQ(kinds(blocks).count(QStringLiteral("plain")), blocks.rowCount());
}

TEST(MarkdownBlocks, MayGoWhileItsParseRuns)
{
    const BusyWorkers busy;
    auto blocks = std::make_unique<MarkdownBlocks>();
    blocks->setContent(QStringLiteral("# x"));
    blocks.reset();
    SUCCEED() << "the worker finds nobody to tell; the sanitizers watch";
}

} // namespace
} // namespace Talvo
