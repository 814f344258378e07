// Shows the controls and the Markdown views in a window, or writes a picture of it:
// TalvoViewsGallery [--dark] [picture.png]
#include <QGuiApplication>
#include <QPalette>
#include <QQmlApplicationEngine>
#include <QQuickView>
#include <QTimer>

#include "Views/AccessibleEditor.h"

int main(int argc, char **argv)
{
    QGuiApplication application(argc, argv);
    Talvo::installAccessibleEditors();
    QStringList arguments = application.arguments().mid(1);
    if (arguments.removeAll(QStringLiteral("--dark")) > 0) {
        QPalette palette(QColor(30, 30, 30));
        palette.setColor(QPalette::WindowText, Qt::white);
        QGuiApplication::setPalette(palette);
    }
    QQuickView view;
    view.engine()->addImportPath(QStringLiteral("qrc:/qt/qml"));
    view.setResizeMode(QQuickView::SizeRootObjectToView);
    view.setSource(QUrl(QStringLiteral("qrc:/Gallery.qml")));
    if (view.status() != QQuickView::Ready)
        return 1;
    view.resize(1180, 900);
    view.show();
    if (!arguments.isEmpty()) {
        QTimer::singleShot(1500, &view, [&] {
            const bool isSaved = view.grabWindow().save(arguments.first());
            QGuiApplication::exit(isSaved ? 0 : 1);
        });
    }
    return QGuiApplication::exec();
}
