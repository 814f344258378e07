// Measures the program's window inside this process, on an X server.
//
//   WindowBenchmark open | fling | sidebar | send
//
// Prints the milliseconds of each measurement as JSON. Draws with the software renderer, or with
// what QSG_RHI_BACKEND says: opengl.

#include "Views/FrameDelay.h"
#include "standins/FolderFileManager.h"
#include "support/LocalService.h"
#include "support/SampleData.h"
#include "support/TestWindow.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QKeyEvent>

#include <atomic>
#include <cmath>
#include <cstdio>

using namespace Talvo;
using namespace Talvo::Benchmarks;

namespace {

const QUrl nowhere(QStringLiteral("http://127.0.0.1:9/")); // NOLINT(cert-err58-cpp)

/// An archive in a folder of its own, shown in the window.
struct Scene
{
    explicit Scene(const ChatArchive &archive, const QUrl &endpoint = nowhere)
        : window(archive, endpoint, std::make_shared<FolderFileManager>(folder.path()),
                 folder.path())
    {
    }

    QTemporaryDir folder;
    TestWindow window;
};

// ---- open
// ----------------------------------------------------------------------------------------

/// A long conversation, and a short one that ends with the same messages: what is drawn is the
/// same.
ChatArchive longAndShort()
{
    ChatArchive archive = SampleData().archive(3, 100'000, 10'000);
    const ChatMessageList &all = archive.sessions[0].messages;
    archive.sessions[1].messages = {};
    for (std::size_t i = all.size() - 20; i < all.size(); ++i) {
        archive.sessions[1].messages.append(all[i]);
    }
    return archive;
}

QJsonObject measureOpen()
{
    Scene scene(longAndShort());
    TestWindow &window = scene.window;
    window.waitUntilLoaded();
    const auto sessions = window.model().sessions();
    std::vector<double> longOnes;
    std::vector<double> shortOnes;
    for (int i = 0; i < 15; ++i) {
        const auto switchTo = [&](std::size_t index) {
            // From the third conversation each time, so that both leave the same behind.
            window.model().selectChat(sessions[2].id);
            window.settle();
            return window.busyUntilSettled([&] { window.model().selectChat(sessions[index].id); });
        };
        longOnes.push_back(switchTo(0));
        shortOnes.push_back(switchTo(1));
    }
    return {{QStringLiteral("long"), median(longOnes)},
            {QStringLiteral("short"), median(shortOnes)}};
}

// ---- fling
// ---------------------------------------------------------------------------------------

struct RowPlace
{
    QPointer<QQuickItem> item;
    double top;
    double bottom;
};

/// The rows that are on screen, in the list's coordinates.
std::vector<RowPlace> visibleRows(const TestWindow &window)
{
    std::vector<RowPlace> rows;
    for (QQuickItem *item : window.column()->childItems()) {
        const double top = item->mapToItem(window.list(), QPointF()).y();
        if (item->isVisible() && top < window.list()->height() && top + item->height() > 0) {
            rows.push_back({item, top, top + item->height()});
        }
    }
    std::ranges::sort(rows, {}, &RowPlace::top);
    return rows;
}

bool hasBlankArea(const TestWindow &window, const std::vector<RowPlace> &rows)
{
    constexpr double widestGap = 30;
    double covered = 0;
    for (const RowPlace &row : rows) {
        if (row.top > covered + widestGap) {
            return true;
        }
        covered = std::max(covered, row.bottom);
    }
    return covered + widestGap < window.list()->height();
}

/// A row that was on screen before and after has moved by something else than the step. One that
/// did not begin below the upper edge may have got longer there: its end tells.
bool hasJumped(const std::vector<RowPlace> &before, const std::vector<RowPlace> &after, double step)
{
    constexpr double tolerance = 1.5; // rows stand on whole pixels
    return std::ranges::any_of(before, [&](const RowPlace &old) {
        const auto now = std::ranges::find(after, old.item, &RowPlace::item);
        if (!old.item || now == after.end()) {
            return false;
        }
        const bool isTopSteady = std::abs(now->top - old.top + step) <= tolerance;
        const bool isBottomSteady = std::abs(now->bottom - old.bottom + step) <= tolerance;
        return !isTopSteady && !(old.top <= 0 && isBottomSteady);
    });
}

/// Scrolls at a speed, up from the end and back down, a step for each frame of 60 a second.
QJsonObject flingAt(TestWindow &window, double pixelsPerSecond)
{
    constexpr int frames = 1'500;
    const double distance = std::round(pixelsPerSecond / 60);
    std::vector<double> busy;
    int jumps = 0;
    int blanks = 0;
    std::vector<RowPlace> before = visibleRows(window);
    for (const double step : {-distance, distance}) {
        for (int i = 0; i < frames; ++i) {
            const auto scroll = [&] {
                const double y = window.list()->property("contentY").toDouble();
                window.list()->setProperty("contentY", y + step);
            };
            // As drawn: between two frames a row may have grown and not yet have its new place.
            std::vector<RowPlace> after;
            busy.push_back(window.busyOfFrame(scroll, [&] { after = visibleRows(window); }));
            jumps += hasJumped(before, after, step) ? 1 : 0;
            blanks += hasBlankArea(window, after) ? 1 : 0;
            before = std::move(after);
        }
    }
    return {{QStringLiteral("p50"), median(busy)},
            {QStringLiteral("p99"), quantile(busy, 0.99)},
            {QStringLiteral("max"), quantile(busy, 1)},
            {QStringLiteral("jumps"), jumps},
            {QStringLiteral("blanks"), blanks}};
}

QJsonObject measureFling()
{
    Scene scene(SampleData().archive(2, 4'000'000, 10'000));
    scene.window.waitUntilLoaded();
    const QJsonObject slow = flingAt(scene.window, 4'000);
    const QJsonObject fast = flingAt(scene.window, 20'000);
    return {{QStringLiteral("4000"), slow}, {QStringLiteral("20000"), fast}};
}

// ---- sidebar
// -------------------------------------------------------------------------------------

QJsonObject measureSidebar()
{
    const ChatArchive archive = SampleData().archive(10'000, 6'000'000, 2);
    std::vector<double> starts;
    for (int i = 0; i < 3; ++i) {
        Scene scene(archive);
        TestWindow &window = scene.window;
        // The window is there; what comes now is the archive's doing, until it is first drawn.
        const double before = threadSeconds();
        double drawn = 0;
        QObject::connect(window.window(), &QQuickWindow::frameSwapped, window.window(), [&] {
            if (drawn == 0 && !window.model().isLoadingArchive()) {
                drawn = threadSeconds();
            }
        });
        window.waitUntil([&] { return drawn != 0; });
        starts.push_back((drawn - before) * 1000);
        window.settle(1'000);
    }
    Scene scene(archive);
    TestWindow &window = scene.window;
    ChatModel &model = window.model();
    window.waitUntilLoaded();
    std::vector<double> selects;
    std::vector<double> renames;
    std::vector<double> deletes;
    std::vector<double> news;
    for (std::size_t i = 0; i < 9; ++i) {
        const auto measure = [&](std::vector<double> &into, const std::function<void()> &change) {
            into.push_back(window.busyOfFrame(change));
            window.settle(300);
        };
        const QUuid middle = model.sessions()[5'000 + i * 100].id;
        measure(selects, [&] { model.selectChat(middle); });
        measure(renames, [&] { model.renameChat(middle, QStringLiteral("Ad %1").arg(i)); });
        measure(deletes, [&] { model.deleteChat(middle); });
        measure(news, [&] { model.newChat(); });
    }
    return {{QStringLiteral("start"), median(starts)},
            {QStringLiteral("select"), median(selects)},
            {QStringLiteral("rename"), median(renames)},
            {QStringLiteral("delete"), median(deletes)},
            {QStringLiteral("new"), median(news)}};
}

// ---- send
// ----------------------------------------------------------------------------------------

/// Knows how long its saves took.
class TimedFileManager : public FolderFileManager
{
public:
    using FolderFileManager::FolderFileManager;

    void replaceFile(const QString &path,
                     const std::function<void(const Sink &)> &produce) const override
    {
        const qint64 start = monotonicNanoseconds();
        FolderFileManager::replaceFile(path, produce);
        spent += monotonicNanoseconds() - start;
    }

    mutable std::atomic<qint64> spent = 0;
};

QJsonObject measureSend()
{
    const QTemporaryDir folder;
    SampleData data;
    LocalService service(data.reply(1'500));
    const auto files = std::make_shared<TimedFileManager>(folder.path());
    TestWindow window(data.archive(2, 1'000'000, 2'000), service.url(), files, folder.path());
    window.waitUntilLoaded();
    ChatModel &model = window.model();

    std::atomic<bool> hasReply = false;
    qint64 shownAt = 0;
    QObject::connect(&model, &ChatModel::replyArrived, window.window(), [&] { hasReply = true; });
    QObject::connect(window.window(), &QQuickWindow::frameSwapped, window.window(), [&] {
        if (hasReply && shownAt == 0) {
            shownAt = monotonicNanoseconds();
        }
    });
    std::vector<double> requests;
    std::vector<double> replies;
    for (int i = 0; i < 15; ++i) {
        model.setDraft(QStringLiteral("Soru %1").arg(i));
        window.settle();
        service.watchNextRequest();
        hasReply = false;
        shownAt = 0;
        files->spent = 0;
        const qint64 pressedAt = monotonicNanoseconds();
        qint64 saved = 0;
        QCoreApplication::postEvent(window.window(),
                                    new QKeyEvent(QEvent::KeyPress, Qt::Key_Return, {}));
        window.waitUntil([&] {
            if (saved == 0 && service.firstByteAt() != 0) {
                saved =
                    files->spent; // of the save before the request; the next one follows the reply
            }
            return shownAt != 0 && !model.isSending();
        });
        requests.push_back(static_cast<double>(service.firstByteAt() - pressedAt - saved) / 1e6);
        replies.push_back(static_cast<double>(shownAt - service.lastByteAt()) / 1e6);
    }
    return {{QStringLiteral("request"), median(requests)},
            {QStringLiteral("reply"), median(replies)}};
}

QJsonObject measured(const QString &mode)
{
    if (mode == u"open") {
        return measureOpen();
    }
    if (mode == u"fling") {
        return measureFling();
    }
    if (mode == u"sidebar") {
        return measureSidebar();
    }
    if (mode == u"send") {
        return measureSend();
    }
    return {};
}

} // namespace

int main(int argc, char **argv)
{
    if (!qEnvironmentVariableIsSet("QSG_RHI_BACKEND")) {
        QQuickWindow::setGraphicsApi(QSGRendererInterface::Software);
    }
    shortenFrameDelay();
    QGuiApplication application(argc, argv);
    QGuiApplication::setQuitOnLastWindowClosed(false);
    const QJsonObject result = measured(QCoreApplication::arguments().value(1));
    if (result.isEmpty()) {
        std::fprintf(stderr, "See the head of WindowBenchmark.cpp.\n");
        return 2;
    }
    std::printf("%s\n", QJsonDocument(result).toJson(QJsonDocument::Compact).constData());
    return 0;
}
