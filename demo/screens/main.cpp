// Takes a picture of every state of the window: talvo-screens FOLDER
#include "Views/AccessibleEditor.h"
#include "demo/screens/Scene.h"

#include <QDir>
#include <QFont>
#include <QGuiApplication>
#include <QLocale>
#include <QScreen>
#include <QStyleHints>
#include <QTemporaryFile>
#include <QtQml/QQmlExtensionPlugin>

#include <cstdio>
#include <stdexcept>
#include <string>

Q_IMPORT_QML_PLUGIN(Talvo_Views_ControlsPlugin)
Q_IMPORT_QML_PLUGIN(Talvo_ViewsPlugin)

using namespace Talvo;

namespace {

/// Two screens side by side; screenScales gives the right one two device pixels per pixel.
constexpr auto screenConfiguration = R"({
    "windowFrameMargins": false,
    "screens": [
        {"name": "usual", "x": 0, "y": 0, "width": 3000, "height": 3000},
        {"name": "double", "x": 3000, "y": 0, "width": 3000, "height": 3000}
    ]
})";
constexpr auto screenScales = "usual=1;double=2";

/// The same pictures wherever they are taken: no desktop has a say in them.
void leaveDesktop(const QString &screens)
{
    qputenv("QT_QPA_PLATFORM", "offscreen:configfile=" + screens.toUtf8());
    qputenv("QT_QUICK_BACKEND", "software");
    qputenv("DBUS_SESSION_BUS_ADDRESS", "");
    qputenv("QT_SCREEN_SCALE_FACTORS", screenScales);
    for (const char *name : {"QT_SCALE_FACTOR", "QT_FONT_DPI"}) {
        qunsetenv(name);
    }
    QLocale::setDefault(QLocale(QLocale::Turkish, QLocale::Turkey));
}

QScreen *screenWithScale(qreal scale)
{
    const QList<QScreen *> screens = QGuiApplication::screens();
    for (QScreen *screen : screens) {
        if (qFuzzyCompare(screen->devicePixelRatio(), scale)) {
            return screen;
        }
    }
    throw std::runtime_error("there is no screen of this scale");
}

void takePicture(const Scene &scene, bool isDark, const QDir &folder)
{
    Stage::Setting setting = scene.setting;
    setting.isDark = isDark;
    setting.screen = screenWithScale(scene.scale);
    Stage stage(setting);
    if (scene.act) {
        scene.act(stage);
    }
    const QImage picture = stage.picture();
    if (picture.size() != setting.size * scene.scale) {
        throw std::runtime_error(
            "the picture has another size than the window: " + std::to_string(picture.width()) +
            " by " + std::to_string(picture.height()));
    }
    const QString name =
        scene.name + (isDark ? QStringLiteral("-dark.png") : QStringLiteral("-light.png"));
    if (!picture.save(folder.filePath(name))) {
        throw std::runtime_error("the picture cannot be written");
    }
    std::puts(qPrintable(name));
}

int takePictures(const QDir &folder)
{
    int failures = 0;
    for (const Scene &scene : allScenes()) {
        for (const bool isDark : {false, true}) {
            try {
                takePicture(scene, isDark, folder);
            } catch (const std::exception &problem) {
                std::fprintf(stderr, "%s: %s\n", qPrintable(scene.name), problem.what());
                ++failures;
            }
        }
    }
    return failures;
}

} // namespace

int main(int argc, char **argv)
{
    QTemporaryFile screens;
    if (argc != 2 || !screens.open() || screens.write(screenConfiguration) < 0 ||
        !screens.flush()) {
        std::fputs("talvo-screens FOLDER\n", stderr);
        return 2;
    }
    leaveDesktop(screens.fileName());
    const QGuiApplication application(argc, argv);
    // A cursor that blinks would make two pictures of one state.
    QGuiApplication::styleHints()->setCursorFlashTime(0);
    installAccessibleEditors();
    const QDir folder(QString::fromLocal8Bit(argv[1]));
    return folder.mkpath(QStringLiteral(".")) && takePictures(folder) == 0 ? 0 : 1;
}
