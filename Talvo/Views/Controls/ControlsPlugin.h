#pragma once

#include <QQmlExtensionPlugin>

/// Brings the types of ControlTemplates.h when their module is imported, and what the toolkit's own
/// plugin of its controls does beside. Its name is the one that the build derives from the
/// module's. The engine makes it, on the thread that imports.
class Talvo_Views_ControlsPlugin : public QQmlEngineExtensionPlugin
{
    Q_OBJECT
    Q_PLUGIN_METADATA(IID QQmlEngineExtensionInterface_iid)

public:
    explicit Talvo_Views_ControlsPlugin(QObject *parent = nullptr);
};
