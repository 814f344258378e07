#include "InputMethod.h"

#include <QGuiApplication>
#include <QInputMethodEvent>

#include <utility>

// The platform of the tests has no input method, and there is no public way to give it one.
#include <QtGui/private/qinputmethod_p.h>

namespace {

void deliver(QInputMethodEvent &event)
{
    if (QObject *focused = QGuiApplication::focusObject()) {
        QCoreApplication::sendEvent(focused, &event);
    }
}

} // namespace

InputMethod::InputMethod()
{
    QInputMethodPrivate::get(QGuiApplication::inputMethod())->testContext = this;
}

InputMethod::~InputMethod()
{
    QInputMethodPrivate::get(QGuiApplication::inputMethod())->testContext = nullptr;
}

void InputMethod::compose(const QString &text)
{
    m_text = text;
    QInputMethodEvent event(text, {});
    deliver(event);
}

void InputMethod::commit()
{
    const QString text = std::exchange(m_text, QString());
    if (text.isEmpty()) {
        return;
    }
    QInputMethodEvent event;
    event.setCommitString(text);
    deliver(event);
}

void InputMethod::reset()
{
    m_text.clear();
}
