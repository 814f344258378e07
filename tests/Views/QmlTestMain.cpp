#include "ChatFixture.h"
#include "Probe.h"
#include "Views/AccessibleEditor.h"

#include <QAccessible>
#include <QQmlEngine>
#include <QtQuickTest>

class Setup : public QObject
{
    Q_OBJECT

public Q_SLOTS:
    void applicationAvailable()
    {
        Talvo::installAccessibleEditors();
        QAccessible::setActive(true);
    }

    void qmlEngineAvailable(QQmlEngine *engine)
    {
        engine->addImportPath(QStringLiteral("qrc:/qt/qml"));
        // Every file has an engine of its own.
        qmlRegisterSingletonType<Probe>("Talvo.Tests", 1, 0, "Probe",
                                        [](QQmlEngine *, QJSEngine *) { return new Probe; });
        qmlRegisterType<Talvo::Testing::ChatFixture>("Talvo.Tests", 1, 0, "ChatFixture");
    }
};

QUICK_TEST_MAIN_WITH_SETUP(Views, Setup)

#include "QmlTestMain.moc"
