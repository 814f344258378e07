#include "Views/MessageColumn.h"

#include "Platform/Text.h"
#include "Views/FollowedObject.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace Talvo {

namespace {

/// How far beyond the visible area rows exist, in pixels: enough that a reply is parsed and drawn
/// before it comes into view, little enough that a frame is quickly made.
constexpr qreal margin = 800;

/// How far the end of the content may be below the visible area to count as visible.
constexpr qreal endTolerance = 2;

/// A first guess at a row's height from the length of its text.
qreal estimatedHeight(const ChatMessage &message, qreal width)
{
    constexpr qreal bubblePadding = 22;
    constexpr qreal lineHeight = 18;
    constexpr qreal averageCharacterWidth = 7.5;
    constexpr qreal besidesText = 150;
    const qreal charactersPerLine = std::max(10.0, (width - besidesText) / averageCharacterWidth);
    const qreal lines = std::ceil(static_cast<qreal>(message.content.size()) / charactersPerLine);
    return bubblePadding + std::max(1.0, lines) * lineHeight;
}

} // namespace

MessageColumn::MessageColumn(QQuickItem *parent)
    : QQuickItem(parent)
{
    connect(this, &MessageColumn::layoutChanged, this, &MessageColumn::polish);
    connect(this, &MessageColumn::delegatesChanged, this, &MessageColumn::polish);
}

MessageColumn::~MessageColumn() = default;

// ---- content -----------------------------------------------------------------------------------

void MessageColumn::setModel(SelectedMessages *model)
{
    if (!exchangeFollowed(m_model, model, this)) {
        return;
    }
    if (model) {
        connect(model, &SelectedMessages::replaced, this, &MessageColumn::replaceContent);
        connect(model, &SelectedMessages::appended, this, &MessageColumn::appendContent);
    }
    Q_EMIT modelChanged();
    replaceContent();
}

/// A conversation is shown from its end; one with as many messages as the one before, where that
/// was.
void MessageColumn::replaceContent()
{
    const bool keepsPlace = m_heights.count() > 0 && m_heights.count() == rowCount();
    discardAllRows();
    m_isNew = true;
    m_makesRowsAhead = false;
    estimateHeights();
    setIsAtEnd(!keepsPlace);
    polish();
    Q_EMIT contentReplaced();
}

void MessageColumn::estimateHeights()
{
    std::vector<qreal> heights;
    heights.reserve(static_cast<std::size_t>(rowCount()));
    for (int row = 0; row < rowCount(); ++row) {
        heights.push_back(estimatedHeight(m_model->at(row), width()) + m_spacing);
    }
    m_heights = RowHeights(std::move(heights));
}

void MessageColumn::appendContent()
{
    for (int row = m_heights.count(); row < rowCount(); ++row) {
        m_heights.append(estimatedHeight(m_model->at(row), width()) + m_spacing);
    }
    // What is visible stays where it is; whether the list follows is the view's decision.
    setIsAtEnd(false);
    polish();
    Q_EMIT contentAppended();
}

void MessageColumn::setFooter(QQuickItem *footer)
{
    if (m_footer == footer) {
        return;
    }
    m_footer = footer;
    if (footer) {
        footer->setParentItem(this);
        connect(footer, &QQuickItem::visibleChanged, this, [this] {
            setIsAtEnd(false);
            polish();
        });
        connect(footer, &QQuickItem::heightChanged, this, &MessageColumn::polish);
    }
    Q_EMIT footerChanged();
    polish();
}

qreal MessageColumn::footerExtent() const
{
    return m_footer && m_footer->isVisible() ? m_footer->height() + m_spacing : 0;
}

// ---- viewport ----------------------------------------------------------------------------------

void MessageColumn::setViewportY(qreal y)
{
    if (m_viewportY == y) {
        return;
    }
    m_viewportY = y;
    // Moves made by the layout itself, to keep the end in view, say nothing about the user.
    if (!m_isLayingOut) {
        setIsAtEnd(m_viewportY + m_viewportHeight >= m_endY - endTolerance);
    }
    Q_EMIT viewportChanged();
    polish();
}

void MessageColumn::setViewportHeight(qreal height)
{
    if (m_viewportHeight == height) {
        return;
    }
    m_viewportHeight = height;
    Q_EMIT viewportChanged();
    polish();
}

void MessageColumn::setIsAtEnd(bool isAtEnd)
{
    if (std::exchange(m_isAtEnd, isAtEnd) != isAtEnd) {
        Q_EMIT isAtEndChanged();
    }
}

void MessageColumn::componentComplete()
{
    QQuickItem::componentComplete();
    estimateHeights(); // the width is known by now
    polish();
}

void MessageColumn::geometryChange(const QRectF &newGeometry, const QRectF &oldGeometry)
{
    QQuickItem::geometryChange(newGeometry, oldGeometry);
    if (newGeometry.width() == oldGeometry.width()) {
        return;
    }
    if (m_rows.empty()) {
        estimateHeights(); // they need a width
        polish();
        return;
    }
    for (const Row &row : m_rows) {
        row.item->setWidth(newGeometry.width());
    }
    polish();
}

// ---- layout ------------------------------------------------------------------------------------

void MessageColumn::layOut()
{
    if (!isComponentComplete() || m_isLayingOut || width() <= 0 || m_viewportHeight <= 0) {
        return;
    }
    m_isLayingOut = true;
    restack();
    fill();
    discardDistantRows();
    placeItems();
    drawVisibleParts();
    updateExtent();
    keepViewportInside();
    m_isLayingOut = false;
    if (m_isNew && !m_rows.empty()) {
        m_isNew = false;
        setIsAtEnd(m_isAtEnd || m_viewportY + m_viewportHeight >= m_endY - endTolerance);
        // What is near the visible area waits until the frame that is being made is on screen. That
        // frame may ask for several layouts: rows get higher when their texts are there.
        QMetaObject::invokeMethod(
            this,
            [this] {
                m_makesRowsAhead = !m_isNew; // there may be other content by now
                polish();
            },
            Qt::QueuedConnection);
    }
}

/// Asks for the visible area to stay within the content, and at its end while the end is in view.
void MessageColumn::keepViewportInside()
{
    if (m_isFollowing) {
        return;
    }
    // Where all fits no move of the visible area tells so.
    setIsAtEnd(m_isAtEnd || m_endY - m_originY <= m_viewportHeight);
    const qreal lowest = std::max(m_originY, m_endY - m_viewportHeight);
    const qreal wanted = m_isAtEnd ? lowest : std::clamp(m_viewportY, m_originY, lowest);
    if (std::abs(wanted - m_viewportY) >= 1) {
        Q_EMIT viewportRequested(wanted);
    }
}

/// Gives the rows that exist their present heights and moves those around the fixed one: the first
/// visible row keeps its top (its bottom, where it is made upwards) or, with the end in view, the
/// last row its bottom.
void MessageColumn::restack()
{
    if (m_rows.empty()) {
        return;
    }
    const bool isEndFixed = m_isAtEnd && isLastRowMade();
    const auto firstVisible =
        std::ranges::find_if(m_rows, [this](const Row &row) { return row.bottom() > m_viewportY; });
    auto fixed = firstVisible == m_rows.end() ? m_rows.end() - 1 : firstVisible;
    if (isEndFixed) {
        fixed = m_rows.end() - 1;
    }
    const qreal fixedBottom = fixed->bottom();
    const bool isBottomFixed = isEndFixed || fixed->growsUpwards;
    for (std::size_t i = 0; i < m_rows.size(); ++i) {
        m_rows[i].height = m_rows[i].item->height();
        rememberHeight(m_firstIndex + static_cast<int>(i), m_rows[i]);
    }
    if (isBottomFixed) {
        fixed->y = fixedBottom - fixed->height;
    }
    for (auto row = fixed + 1; row != m_rows.end(); ++row) {
        row->y = (row - 1)->bottom() + m_spacing;
    }
    for (auto row = fixed; row != m_rows.begin(); --row) {
        (row - 1)->y = row->y - m_spacing - (row - 1)->height;
    }
    for (Row &row : m_rows) {
        row.growsUpwards = row.isGrowingUpwards(); // a whole row is like any other
    }
}

/// A part of a row says less about its height than the estimate does.
void MessageColumn::rememberHeight(int index, const Row &row)
{
    if (!row.isGrowing()) {
        m_heights.set(index, row.height + m_spacing);
    }
}

/// Makes the rows that are missing in and near the visible area.
void MessageColumn::fill()
{
    if (rowCount() == 0 || !m_userDelegate || !m_assistantDelegate) {
        return;
    }
    const qreal ahead = m_makesRowsAhead ? margin : 0;
    const qreal top = m_viewportY - ahead;
    const qreal bottom = m_viewportY + m_viewportHeight + ahead;
    const bool isFarAway =
        !m_rows.empty() && (m_rows.front().y > bottom || m_rows.back().bottom() < top);
    if (isFarAway && isGrowing(indexInView())) {
        moveRowsIntoView();
    } else if (isFarAway) {
        discardAllRows();
    }
    if (m_rows.empty()) {
        startFromEstimate();
    }
    fillDownTo(m_viewportY + m_viewportHeight, bottom);
    fillUpTo(m_viewportY, top);
}

void MessageColumn::fillDownTo(qreal visibleBottom, qreal bottom)
{
    while (m_rows.back().bottom() < bottom) {
        if (m_rows.back().isGrowingDownwards()) {
            const qreal below = isLastRowMade() ? m_padding + footerExtent() : 0;
            if (m_rows.back().bottom() + below >= visibleBottom) {
                return; // the rest of it comes in its own time
            }
            if (grow(m_rows.back())) {
                continue;
            }
        }
        if (isLastRowMade()) {
            return;
        }
        appendRow();
    }
}

void MessageColumn::fillUpTo(qreal visibleTop, qreal top)
{
    while (m_rows.front().y > top) {
        if (m_rows.front().isGrowingUpwards()) {
            if (m_rows.front().y <= visibleTop) {
                return; // the rest of it comes in its own time
            }
            if (grow(m_rows.front())) {
                continue;
            }
        }
        if (m_firstIndex == 0) {
            return;
        }
        prependRow();
    }
}

bool MessageColumn::grow(Row &row)
{
    const qreal bottom = row.bottom();
    const qreal before = row.height;
    row.stack->grow();
    row.height = row.item->height();
    if (row.growsUpwards) {
        row.y = bottom - row.height;
    }
    return row.height != before || !row.isGrowing();
}

/// The top of the first row, were all the rows before those that exist as high as they count.
qreal MessageColumn::firstTop() const
{
    return m_rows.empty() ? m_originY + m_padding
                          : m_rows.front().y - m_heights.sumBefore(m_firstIndex);
}

int MessageColumn::indexInView() const
{
    return m_isAtEnd ? rowCount() - 1 : m_heights.rowAt(m_viewportY - firstTop());
}

bool MessageColumn::isGrowing(int index) const
{
    return index >= m_firstIndex && index <= lastIndex() &&
           m_rows[static_cast<std::size_t>(index - m_firstIndex)].isGrowing();
}

/// A growing row counts as high as it will be, and so may lie in view without reaching into it.
/// Made anew it would be as short as it is, for ever.
void MessageColumn::moveRowsIntoView()
{
    const qreal distance = m_rows.back().bottom() < m_viewportY
                               ? m_viewportY + m_viewportHeight - m_rows.back().bottom()
                               : m_viewportY - m_rows.front().y;
    for (Row &row : m_rows) {
        row.y += distance;
    }
}

/// Makes one row where the visible area is: its last row's bottom at the end, or the row that lies
/// at its top according to the heights known so far.
void MessageColumn::startFromEstimate()
{
    const qreal top = firstTop();
    m_firstIndex = indexInView();
    Row row = makeRow(m_firstIndex, m_isAtEnd);
    row.y = m_isAtEnd ? m_viewportY + m_viewportHeight - m_padding - footerExtent() - row.height
                      : top + m_heights.sumBefore(m_firstIndex);
    m_rows.push_back(row);
    if (row.isGrowing() && row.bottom() < m_viewportY) {
        moveRowsIntoView();
    }
}

void MessageColumn::appendRow()
{
    Row row = makeRow(lastIndex() + 1, false);
    row.y = m_rows.back().bottom() + m_spacing;
    m_rows.push_back(row);
}

void MessageColumn::prependRow()
{
    Row row = makeRow(m_firstIndex - 1, true);
    row.y = m_rows.front().y - m_spacing - row.height;
    row.item->stackBefore(m_rows.front().item);
    m_rows.push_front(row);
    --m_firstIndex;
}

MessageColumn::Row MessageColumn::makeRow(int index, bool growsUpwards)
{
    const ChatMessage &message = m_model->at(index);
    QQmlComponent *delegate =
        message.role == ChatMessage::Role::assistant ? m_assistantDelegate : m_userDelegate;
    QObject *object = delegate->createWithInitialProperties(
        {{QStringLiteral("parent"), QVariant::fromValue<QQuickItem *>(this)},
         {QStringLiteral("width"), width()},
         {QStringLiteral("growsUpwards"), growsUpwards},
         {QStringLiteral("content"), textFromUtf8(message.content)}},
        delegate->creationContext());
    auto *item = qobject_cast<QQuickItem *>(object);
    if (!item) {
        qFatal("A message row cannot be made: %s", qPrintable(delegate->errorString()));
    }
    item->setParent(this);
    connect(item, &QQuickItem::heightChanged, this, &MessageColumn::polish);
    Row row{item, 0, item->height(), growsUpwards,
            item->property("stack").value<MarkdownBlockStack *>()};
    rememberHeight(index, row);
    return row;
}

void MessageColumn::discardDistantRows()
{
    // Rows are kept somewhat longer than they are made early, so that a small move back and forth
    // makes nothing anew.
    const qreal top = m_viewportY - 2 * margin;
    const qreal bottom = m_viewportY + m_viewportHeight + 2 * margin;
    while (m_rows.size() > 1 && m_rows.front().bottom() < top) {
        discard(m_rows.front());
        m_rows.pop_front();
        ++m_firstIndex;
    }
    while (m_rows.size() > 1 && m_rows.back().y > bottom) {
        discard(m_rows.back());
        m_rows.pop_back();
    }
}

void MessageColumn::discardAllRows()
{
    std::ranges::for_each(m_rows, discard);
    m_rows.clear();
    m_firstIndex = 0;
}

void MessageColumn::discard(const Row &row)
{
    row.item->setVisible(false);
    row.item->deleteLater();
}

void MessageColumn::placeItems()
{
    for (const Row &row : m_rows) {
        row.item->setY(std::round(row.y));
    }
    if (m_footer && !m_rows.empty()) {
        m_footer->setY(std::round(m_rows.back().bottom() + m_spacing));
        m_footer->stackAfter(m_rows.back().item);
    } else if (m_footer) {
        m_footer->setY(m_originY + m_padding);
    }
}

void MessageColumn::drawVisibleParts()
{
    const QRectF viewport(0, m_viewportY, width(), m_viewportHeight);
    for (const Row &row : m_rows) {
        if (row.stack) {
            const QRectF visible = row.stack->mapRectFromItem(this, viewport);
            row.stack->setVisiblePart(visible.top(), visible.bottom());
        }
    }
}

void MessageColumn::updateExtent()
{
    qreal origin = m_originY;
    qreal end = m_originY + 2 * m_padding + footerExtent();
    if (!m_rows.empty()) {
        const int firstAfter = lastIndex() + 1;
        const qreal after =
            m_heights.sumBefore(m_heights.count()) - m_heights.sumBefore(firstAfter);
        origin = firstTop() - m_padding;
        end = m_rows.back().bottom() + after + footerExtent() + m_padding;
    }
    const bool hasMoved = origin != m_originY || end != m_endY;
    m_originY = origin;
    m_endY = end;
    if (hasMoved) {
        Q_EMIT extentChanged();
    }
}

} // namespace Talvo
