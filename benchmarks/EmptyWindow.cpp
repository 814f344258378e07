// An empty Qt Quick window of Talvo's size with the same renderer: the floor for start and memory.

#include <QGuiApplication>
#include <QQmlApplicationEngine>
#include <QQuickWindow>

int main(int argc, char **argv)
{
    QQuickWindow::setGraphicsApi(QSGRendererInterface::Software);
    const QGuiApplication application(argc, argv);
    QQmlApplicationEngine engine;
    engine.load(QUrl(QStringLiteral("qrc:/qt/qml/Talvo/EmptyWindow/EmptyWindow.qml")));
    return engine.rootObjects().isEmpty() ? 1 : QGuiApplication::exec();
}
