#include <QQmlExtensionPlugin>

#include <QtQuickTemplates2/private/qquickshortcutcontext_p_p.h>

// Declared in no header: the toolkit's own plugin of these controls declares it like this.
void qt_quick_set_shortcut_context_matcher(bool (*matcher)(QObject *, Qt::ShortcutContext));

void qml_register_types_Talvo_Views_Controls();

/// Brings the types of ControlTemplates.h when their module is imported. Created by the engine, on
/// the thread that imports.
class Talvo_Views_ControlsPlugin : public QQmlEngineExtensionPlugin // NOLINT: the build's name
{
    Q_OBJECT
    Q_PLUGIN_METADATA(IID QQmlEngineExtensionInterface_iid)

public:
    explicit Talvo_Views_ControlsPlugin(QObject *parent = nullptr)
        : QQmlEngineExtensionPlugin(parent)
    {
        // Keeps the registration in the program, which nothing else refers to.
        [[maybe_unused]] const volatile auto registration =
            &qml_register_types_Talvo_Views_Controls;
        // As the toolkit's own plugin does: a shortcut of the window is none below a modal popup.
        qt_quick_set_shortcut_context_matcher(QQuickShortcutContext::matcher);
    }
};

#include "ControlsPlugin.moc"
