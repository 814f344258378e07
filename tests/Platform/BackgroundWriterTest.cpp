#include "Platform/BackgroundWriter.h"

#include "Platform/LocalizedError.h"

#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <future>
#include <memory>
#include <semaphore>
#include <thread>

using namespace Talvo;

namespace {

class WriteFailure : public TypedError<WriteFailure>
{
public:
    WriteFailure()
        : TypedError(QStringLiteral("Yazılamadı."))
    {
    }
};

/// Lets a piece be written on the other thread, and not on this one that would wait for it.
void waitUntil(const std::atomic<bool> &isBegun)
{
    while (!isBegun) {
        std::this_thread::yield();
    }
}

} // namespace

TEST(BackgroundWriter, writesAllPiecesInOrder)
{
    QByteArray expected;
    QByteArray written;
    BackgroundWriter writer([&written](QByteArrayView piece) { written.append(piece); });
    for (int i = 0; i < 1000; ++i) {
        const QByteArray piece = QByteArray::number(i).repeated(i % 50);
        expected += piece;
        writer.write(piece);
    }
    writer.finish();
    EXPECT_EQ(written, expected);
}

TEST(BackgroundWriter, letsItsOwnerMakeTheNextPieceMeanwhile)
{
    std::atomic<bool> isBegun = false;
    std::binary_semaphore mayEnd(0);
    QByteArray written;
    BackgroundWriter writer([&](QByteArrayView piece) {
        isBegun = true;
        mayEnd.acquire();
        written = piece.toByteArray();
    });
    QByteArray piece = "ilk";
    writer.write(piece);
    waitUntil(isBegun);
    piece.fill('x'); // the owner's own again
    mayEnd.release();
    writer.finish();
    EXPECT_EQ(written, "ilk");
}

TEST(BackgroundWriter, tellsAFailureWithTheNextPiece)
{
    int count = 0;
    BackgroundWriter writer([&count](QByteArrayView) {
        ++count;
        throw WriteFailure();
    });
    writer.write("ilk");
    EXPECT_THROW(writer.write("ikinci"), WriteFailure);
    EXPECT_EQ(count, 1);
}

TEST(BackgroundWriter, tellsAFailureOfTheLastPieceAtTheEnd)
{
    BackgroundWriter writer([](QByteArrayView piece) {
        if (piece == "son") {
            throw WriteFailure();
        }
    });
    writer.write("ilk");
    writer.write("son");
    EXPECT_THROW(writer.finish(), WriteFailure);
}

TEST(BackgroundWriter, waitsAtTheEndForThePieceOnItsWay)
{
    std::atomic<bool> isBegun = false;
    std::binary_semaphore mayEnd(0);
    bool isWritten = false;
    auto writer = std::make_unique<BackgroundWriter>([&](QByteArrayView) {
        isBegun = true;
        mayEnd.acquire();
        isWritten = true;
    });
    writer->write("yarım");
    waitUntil(isBegun);
    auto wasWritten = std::async(std::launch::async, [&] {
        writer.reset();
        return isWritten;
    });
    // Never over before that; one that does not wait is, nearly always.
    EXPECT_EQ(wasWritten.wait_for(std::chrono::milliseconds(50)), std::future_status::timeout);
    mayEnd.release();
    EXPECT_TRUE(wasWritten.get());
}

TEST(BackgroundWriter, needsNothingWritten)
{
    BackgroundWriter writer([](QByteArrayView) { FAIL(); });
    EXPECT_NO_THROW(writer.finish());
}
