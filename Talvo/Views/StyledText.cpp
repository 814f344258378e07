#include "Views/StyledText.h"

#include "Views/LinkOpener.h"

#include <QCursor>
#include <QHoverEvent>
#include <QKeyEvent>
#include <QTextDocument>

#include <algorithm>
#include <iterator>
#include <utility>

namespace Talvo {

void StyledText::setStyled(const BlockText &styled)
{
    if (m_styled == styled)
        return;
    m_styled = styled;
    setSource(m_styled.plain());
    fill();
    Q_EMIT styledChanged();
}

void StyledText::setLinkColor(const QColor &color)
{
    if (std::exchange(m_looks.link, color) != color)
        restyle();
}

void StyledText::setCodeBackground(const QColor &color)
{
    if (std::exchange(m_looks.codeBackground, color) != color)
        restyle();
}

void StyledText::setCodeFamily(const QString &family)
{
    if (std::exchange(m_looks.codeFamily, family) != family)
        restyle();
}

void StyledText::componentComplete()
{
    ReadOnlyText::componentComplete();
    fill();
}

QTextDocument *StyledText::document() const
{
    auto *quick = edit() ? edit()->property("textDocument").value<QQuickTextDocument *>() : nullptr;
    return quick ? quick->textDocument() : nullptr;
}

void StyledText::fill()
{
    QTextDocument *target = document();
    if (!target)
        return;
    target->setUndoRedoEnabled(false);
    if (edit()->width() > 0)
        target->setTextWidth(edit()->width());
    if (!target->isEmpty())
        target->clear();
    m_currentLink = -1;
    fillDocument(*target, m_styled.value(), m_looks);
    const std::vector<AttributedString::Run> &runs = m_styled.value().runs;
    m_links.clear();
    std::copy_if(runs.begin(), runs.end(), std::back_inserter(m_links),
                 [](const auto &run) { return !run.link.isEmpty() && openableUrl(run.link); });
    edit()->setActiveFocusOnTab(!m_links.empty());
    if (m_links.empty())
        return;
    // By name: the class of TextEdit is not public.
    connect(edit(), SIGNAL(linkActivated(QString)), this, SLOT(open(QString)),
            Qt::UniqueConnection);
    connect(edit(), SIGNAL(linkHovered(QString)), this, SLOT(followHover()), Qt::UniqueConnection);
}

void StyledText::restyle()
{
    Q_EMIT looksChanged();
    if (QTextDocument *target = document())
        restyleDocument(*target, m_styled.value(), m_looks);
}

bool StyledText::eventFilter(QObject *watched, QEvent *event)
{
    if (m_links.empty())
        return ReadOnlyText::eventFilter(watched, event);
    switch (event->type()) {
    case QEvent::HoverMove:
        m_pointer = static_cast<QHoverEvent *>(event)->position();
        break;
    case QEvent::FocusIn: {
        const Qt::FocusReason reason = static_cast<QFocusEvent *>(event)->reason();
        if (reason == Qt::TabFocusReason || reason == Qt::BacktabFocusReason) {
            m_currentLink = reason == Qt::TabFocusReason ? -1 : static_cast<int>(m_links.size());
            goToLink(reason == Qt::TabFocusReason ? 1 : -1);
        }
        break;
    }
    case QEvent::FocusOut:
        leaveLinks();
        break;
    case QEvent::KeyPress:
        switch (static_cast<QKeyEvent *>(event)->key()) {
        case Qt::Key_Tab:
            return goToLink(1);
        case Qt::Key_Backtab:
            return goToLink(-1);
        case Qt::Key_Return:
        case Qt::Key_Enter:
            if (m_currentLink < 0)
                break;
            open(m_links.at(static_cast<size_t>(m_currentLink)).link);
            return true;
        default:
            break;
        }
        break;
    default:
        break;
    }
    return ReadOnlyText::eventFilter(watched, event);
}

bool StyledText::goToLink(int step)
{
    const int next = m_currentLink + step;
    if (next < 0 || next >= static_cast<int>(m_links.size())) {
        leaveLinks();
        return false;
    }
    m_currentLink = next;
    const AttributedString::Run &link = m_links[static_cast<size_t>(next)];
    const int start = static_cast<int>(link.start);
    const int end = static_cast<int>(link.start + link.length);
    QMetaObject::invokeMethod(edit(), "select", Q_ARG(int, start), Q_ARG(int, end));
    showHint(link.link, below(start));
    return true;
}

void StyledText::leaveLinks()
{
    if (m_currentLink < 0)
        return;
    m_currentLink = -1;
    QMetaObject::invokeMethod(edit(), "deselect");
    showHint({}, {});
}

void StyledText::followHover()
{
    const QString address = edit()->property("hoveredLink").toString();
    edit()->setCursor(QCursor(address.isEmpty() ? Qt::IBeamCursor : Qt::PointingHandCursor));
    showHint(address, m_pointer + QPointF(0, 20));
}

QPointF StyledText::below(int position) const
{
    QRectF place;
    QMetaObject::invokeMethod(edit(), "positionToRectangle", Q_RETURN_ARG(QRectF, place),
                              Q_ARG(int, position));
    return place.bottomLeft() + QPointF(0, 4);
}

void StyledText::showHint(const QString &address, QPointF place)
{
    if (!m_hint && address.isEmpty())
        return;
    if (!m_hint)
        m_hint = makeView(QStringLiteral("Hint"), {});
    if (!m_hint)
        return;
    m_hint->setProperty("x", place.x());
    m_hint->setProperty("y", place.y());
    QMetaObject::invokeMethod(
        m_hint, "show", Q_ARG(QString, address.isEmpty() ? QString() : shownAddress(address)));
}

void StyledText::open(const QString &address)
{
    openLink(address);
}

} // namespace Talvo
