#pragma once

#include <QObject>
#include <QQuickTextDocument>
#include <QString>
#include <QtQmlIntegration>

namespace Talvo {

/// Reads what stands in a text area. GUI thread.
class DraftText : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    QML_SINGLETON

public:
    using QObject::QObject;

    /// The text as it was typed or pasted, its lines ended by line feeds. The text area's own
    /// `text` makes ordinary blanks of no-break ones.
    Q_INVOKABLE [[nodiscard]] static QString of(const QQuickTextDocument *document);
};

} // namespace Talvo
