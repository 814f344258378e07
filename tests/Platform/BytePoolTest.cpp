#include "Platform/BytePool.h"

#include <gtest/gtest.h>

#include <memory>
#include <thread>
#include <vector>

using namespace Talvo;

namespace {

TEST(BytePool, CopiesOutliveIt)
{
    auto pool = std::make_unique<BytePool>(100);
    const QByteArray first = pool->copy("güneş");
    const QByteArray none = pool->copy("");
    const QByteArray zero = pool->copy(QByteArrayView("a\0b", 3));
    pool.reset();
    EXPECT_EQ(first, "güneş");
    EXPECT_EQ(first.constData()[first.size()], '\0');
    EXPECT_TRUE(none.isEmpty());
    EXPECT_FALSE(none.isNull());
    EXPECT_EQ(zero, QByteArray("a\0b", 3));
}

TEST(BytePool, CopiesShareOneBlock)
{
    BytePool pool(100);
    const QByteArray first = pool.copy("abc");
    const QByteArray second = pool.copy("def");
    EXPECT_EQ(second.constData(), first.constData() + 4);
}

TEST(BytePool, AChangedCopyLeavesTheOthersAlone)
{
    BytePool pool(100);
    QByteArray changed = pool.copy("abc");
    const QByteArray next = pool.copy("def");
    changed.append("123456789");
    changed[0] = 'x';
    EXPECT_EQ(changed, "xbc123456789");
    EXPECT_EQ(next, "def");
}

TEST(BytePool, TheLastCopyMayBeChangedInPlace)
{
    QByteArray last;
    {
        BytePool pool(8);
        last = pool.copy("abc");
        EXPECT_EQ(pool.copy("def"), "def");
    }
    last.append(QByteArray(1000, 'x'));
    last.prepend("0");
    EXPECT_EQ(last, "0abc" + QByteArray(1000, 'x'));
}

TEST(BytePool, GivesAnArrayOfItsOwnWhenItIsFull)
{
    BytePool pool(8);
    const QByteArray fits = pool.copy("1234567");
    const QByteArray outside = pool.copy("abc");
    EXPECT_EQ(fits, "1234567");
    EXPECT_EQ(outside, "abc");
    EXPECT_EQ(BytePool(0).copy("abc"), "abc");
}

TEST(BytePool, ServesSeveralThreadsAtOnce)
{
    constexpr int threads = 4;
    constexpr int copies = 1000;
    BytePool pool(threads * copies * 10);
    std::vector<std::vector<QByteArray>> found(threads);
    {
        std::vector<std::jthread> workers;
        for (int i = 0; i < threads; ++i) {
            workers.emplace_back([&pool, &mine = found[static_cast<std::size_t>(i)], i] {
                for (int k = 0; k < copies; ++k) {
                    mine.push_back(pool.copy(QByteArray::number(i * copies + k)));
                }
            });
        }
    }
    for (int i = 0; i < threads * copies; ++i) {
        EXPECT_EQ(found[static_cast<std::size_t>(i / copies)][static_cast<std::size_t>(i % copies)],
                  QByteArray::number(i));
    }
}

} // namespace
