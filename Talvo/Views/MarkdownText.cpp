#include "Views/MarkdownText.h"

#include "Views/KeyboardFocus.h"
#include "Views/LinkOpener.h"

#include <QCursor>
#include <QHoverEvent>
#include <QKeyEvent>
#include <QQmlProperty>
#include <QQuickTextDocument>
#include <QTextDocument>

#include <QtQuick/private/qquickitem_p.h>

#include <algorithm>
#include <iterator>

namespace Talvo {

MarkdownText::MarkdownText(QQuickItem *parent, const BlockText &styled, Rank rank,
                           MessageLooks *looks)
    : m_styled(styled)
    , m_rank(rank)
{
    setParent(parent);
    setParentItem(parent);
    setLooks(looks);
    // Position for position as in the document: there, each of a CR LF from entities ends a line.
    setShownSource(styled.plain().replace(u'\r', u'\n'));
}

QAccessible::Role MarkdownText::accessibleRole() const
{
    return m_rank >= Rank::headline ? QAccessible::Heading : QAccessible::StaticText;
}

void MarkdownText::applyFonts()
{
    switch (m_rank) {
    case Rank::body:
        setFont(looks()->body);
        break;
    case Rank::tableHead:
        setFont(looks()->strong);
        break;
    case Rank::headline:
        setFont(looks()->headline);
        break;
    case Rank::title2:
        setFont(looks()->title2);
        break;
    case Rank::title:
        setFont(looks()->title);
        break;
    }
    restyle();
}

void MarkdownText::applyColours()
{
    ReadOnlyText::applyColours();
    // The selection is also the mark of the link that has the keyboard, and has to be told from its
    // surroundings as easily as the links themselves.
    if (m_currentLink >= 0) {
        setSelectionColor(looks()->link);
        setSelectedTextColor(looks()->focusedLink);
    }
    restyle();
}

InlineLooks MarkdownText::inlineLooks() const
{
    return {looks()->link, looks()->codeBackground, looks()->codeFamily};
}

QTextDocument &MarkdownText::document()
{
    return *textDocument()->textDocument();
}

void MarkdownText::componentComplete()
{
    fill();
    ReadOnlyText::componentComplete();
}

/// In the final width before the document is first laid out, and with its edits in one step: so it
/// is laid out once.
void MarkdownText::fill()
{
    QTextDocument &target = document();
    target.setUndoRedoEnabled(false);
    target.setTextWidth(QQuickItemPrivate::get(this)->widthValid() ? width() : -1);
    m_shownLooks = inlineLooks();
    fillDocument(target, m_styled.value(), m_shownLooks);
    takeLinks();
}

void MarkdownText::takeLinks()
{
    const std::vector<AttributedString::Run> &runs = m_styled.value().runs;
    for (const AttributedString::Run &run : runs) {
        if (run.link.isEmpty() || !openableUrl(run.link)) {
            continue;
        }
        // A link is several runs where a part of its text is bold, say.
        const bool goesOn = !m_links.empty() && m_links.back().link == run.link &&
                            m_links.back().title == run.title &&
                            m_links.back().start + m_links.back().length == run.start;
        if (goesOn) {
            m_links.back().length += run.length;
        } else {
            m_links.push_back(run);
        }
    }
    if (m_links.empty()) {
        return;
    }
    setActiveFocusOnTab(true);
    setAcceptHoverEvents(true);
    connect(this, &QQuickTextEdit::linkActivated, this, &openLink);
    connect(this, &QQuickTextEdit::linkHovered, this, &MarkdownText::followHover);
    connect(this, &QQuickTextEdit::selectedTextChanged, this, &MarkdownText::followSelection);
}

/// No key opens a link that is not marked any more.
void MarkdownText::followSelection()
{
    if (m_currentLink < 0) {
        return;
    }
    const AttributedString::Run &link = m_links[static_cast<size_t>(m_currentLink)];
    if (selectionStart() == link.start && selectionEnd() == link.start + link.length) {
        return;
    }
    unmarkLink();
}

void MarkdownText::restyle()
{
    if (!isComponentComplete() || m_shownLooks == inlineLooks()) {
        return;
    }
    m_shownLooks = inlineLooks();
    restyleDocument(document(), m_styled.value(), m_shownLooks);
}

bool MarkdownText::event(QEvent *event)
{
    if (m_links.empty()) {
        return ReadOnlyText::event(event);
    }
    switch (event->type()) {
    case QEvent::HoverMove:
        m_pointer = static_cast<QHoverEvent *>(event)->position();
        break;
    case QEvent::FocusIn:
        enterLinks(static_cast<QFocusEvent *>(event)->reason());
        break;
    case QEvent::FocusOut: {
        // From another window or a panel the keyboard comes back to the same link.
        const Qt::FocusReason reason = static_cast<QFocusEvent *>(event)->reason();
        if (reason != Qt::ActiveWindowFocusReason && reason != Qt::PopupFocusReason) {
            leaveLinks();
        }
        break;
    }
    case QEvent::KeyPress:
        if (takesKey(*static_cast<QKeyEvent *>(event))) {
            return true;
        }
        break;
    default:
        break;
    }
    return ReadOnlyText::event(event);
}

bool MarkdownText::takesKey(const QKeyEvent &event)
{
    switch (event.key()) {
    case Qt::Key_Tab:
        return goToLink(1);
    case Qt::Key_Backtab:
        return goToLink(-1);
    case Qt::Key_Return:
    case Qt::Key_Enter:
        if (m_currentLink < 0 || event.modifiers().testFlag(Qt::ControlModifier)) {
            return false;
        }
        openLink(m_links.at(static_cast<size_t>(m_currentLink)).link);
        return true;
    default:
        return false;
    }
}

void MarkdownText::enterLinks(Qt::FocusReason reason)
{
    if (reason == Qt::TabFocusReason) {
        m_currentLink = -1;
        goToLink(1);
    } else if (reason == Qt::BacktabFocusReason) {
        m_currentLink = static_cast<int>(m_links.size());
        goToLink(-1);
    }
}

bool MarkdownText::goToLink(int step)
{
    const int next = m_currentLink + step;
    if (next < 0 || next >= static_cast<int>(m_links.size())) {
        leaveLinks();
        return false;
    }
    m_currentLink = next;
    applyColours();
    const AttributedString::Run &link = m_links[static_cast<size_t>(next)];
    const int start = static_cast<int>(link.start);
    const int end = static_cast<int>(link.start + link.length);
    select(start, end);
    KeyboardFocus::revealPart(this, positionToRectangle(start) | positionToRectangle(end));
    showHint(link.link, below(start));
    return true;
}

void MarkdownText::leaveLinks()
{
    if (m_currentLink < 0) {
        return;
    }
    unmarkLink();
    deselect();
}

void MarkdownText::unmarkLink()
{
    m_currentLink = -1;
    applyColours();
    showHint({}, {});
}

void MarkdownText::followHover()
{
    setCursor(QCursor(hoveredLink().isEmpty() ? Qt::IBeamCursor : Qt::PointingHandCursor));
    showHint(hoveredLink(), m_pointer + QPointF(0, 20));
}

QPointF MarkdownText::below(int position) const
{
    return positionToRectangle(position).bottomLeft() + QPointF(0, 4);
}

void MarkdownText::showHint(const QString &address, QPointF place)
{
    if (!m_hint && address.isEmpty()) {
        return;
    }
    if (!m_hint) {
        m_hint = makeView(QStringLiteral("Hint"), {});
    }
    if (!m_hint) {
        return;
    }
    QMetaObject::invokeMethod(
        m_hint, "show", Q_ARG(QString, address.isEmpty() ? QString() : shownAddress(address)));
    if (address.isEmpty()) {
        return;
    }
    // QObject::setProperty would keep the hint's own bindings, which follow the size of its text.
    QQmlProperty::write(m_hint, QStringLiteral("x"), place.x());
    QQmlProperty::write(m_hint, QStringLiteral("y"), place.y());
}

} // namespace Talvo
