#pragma once

#include <QObject>
#include <QQuickItem>
#include <QtQmlIntegration>

namespace Talvo {

/// Who has the keyboard, for views that would like to have it. GUI thread.
class KeyboardFocus : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    QML_SINGLETON

public:
    using QObject::QObject;

    /// Whether an item may take the focus without taking it from anybody: it has it already, no
    /// item has it, or only one that the item lies in.
    Q_INVOKABLE [[nodiscard]] static bool isFreeFor(const QQuickItem *item);

    /// Whether the focus is with an item or with something in it. False for null.
    Q_INVOKABLE [[nodiscard]] static bool isWithin(const QQuickItem *item);
};

} // namespace Talvo
