#include "Views/CursorRest.h"

#include <QEvent>
#include <QGuiApplication>
#include <QStyleHints>
#include <QWindow>

namespace Talvo {

namespace {

constexpr int standsStill = 0;
constexpr int asOnTheDesktop = -1;

} // namespace

CursorRest::CursorRest(QWindow *window, std::chrono::milliseconds delay)
    : QObject(window)
{
    m_timer.setSingleShot(true);
    m_timer.setInterval(delay);
    connect(&m_timer, &QTimer::timeout, this,
            [] { QGuiApplication::styleHints()->setCursorFlashTime(standsStill); });
    window->installEventFilter(this);
    m_timer.start();
}

bool CursorRest::eventFilter(QObject *watched, QEvent *event)
{
    switch (event->type()) {
    case QEvent::KeyPress:
    case QEvent::InputMethod:
    case QEvent::MouseButtonPress:
    case QEvent::TouchBegin:
    case QEvent::FocusIn:
        wake();
        break;
    default:
        break;
    }
    return QObject::eventFilter(watched, event);
}

void CursorRest::wake()
{
    if (!m_timer.isActive()) {
        QGuiApplication::styleHints()->setCursorFlashTime(asOnTheDesktop);
    }
    m_timer.start();
}

} // namespace Talvo
