#include "Views/Controls/ControlsPlugin.h"

#include <QtQuickTemplates2/private/qquickshortcutcontext_p_p.h>

// Declared in no header: the toolkit's own plugin declares it like this.
void qt_quick_set_shortcut_context_matcher(bool (*matcher)(QObject *, Qt::ShortcutContext));

// Generated.
void qml_register_types_Talvo_Views_Controls();

Talvo_Views_ControlsPlugin::Talvo_Views_ControlsPlugin(QObject *parent)
    : QQmlEngineExtensionPlugin(parent)
{
    // Keeps the registration in the program, where nothing else refers to it.
    [[maybe_unused]] const volatile auto registration = &qml_register_types_Talvo_Views_Controls;
    // A shortcut of the window is none while a modal popup lies over it.
    qt_quick_set_shortcut_context_matcher(QQuickShortcutContext::matcher);
}
