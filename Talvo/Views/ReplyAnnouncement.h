#pragma once

#include "Controller/ChatModel.h"

#include <QPointer>
#include <QQuickItem>
#include <QTimer>
#include <QtQmlIntegration>

namespace Talvo {

/// Tells assistive technology of a reply that has just arrived, which nothing on the screen but the
/// list itself does. Draws nothing.
///
/// Qt 6.4 has no announcements; what screen readers speak of their own accord is a notification
/// that begins to show. So this item shows for a moment: give it the role of one, and `text` as its
/// name. GUI thread.
class ReplyAnnouncement : public QQuickItem
{
    Q_OBJECT
    QML_ELEMENT
    /// Whose replies are announced.
    Q_PROPERTY(Talvo::ChatModel *controller READ controller WRITE setController NOTIFY
                   controllerChanged REQUIRED FINAL)
    /// The visible text of the reply that arrived last, without its markup.
    Q_PROPERTY(QString text READ text NOTIFY textChanged FINAL)

public:
    explicit ReplyAnnouncement(QQuickItem *parent = nullptr);

    [[nodiscard]] ChatModel *controller() const { return m_controller; }
    void setController(ChatModel *controller);
    [[nodiscard]] const QString &text() const { return m_text; }

Q_SIGNALS:
    void controllerChanged();
    void textChanged();

private:
    void announce(const QString &reply);
    void end();

    QPointer<ChatModel> m_controller;
    QString m_text;
    QTimer m_end;
};

} // namespace Talvo
