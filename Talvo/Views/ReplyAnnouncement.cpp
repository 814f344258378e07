#include "Views/ReplyAnnouncement.h"

#include "Markdown/SpokenReply.h"
#include "Views/FollowedObject.h"

namespace Talvo {

namespace {

using namespace std::chrono_literals;

/// A screen reader asks for the text some time after it was told of the notification.
constexpr auto presence = 5s;

} // namespace

ReplyAnnouncement::ReplyAnnouncement(QQuickItem *parent)
    : QQuickItem(parent)
{
    setVisible(false);
    // Something without an extent counts as not showing.
    setSize({1, 1});
    m_end.setSingleShot(true);
    m_end.setInterval(presence);
    connect(&m_end, &QTimer::timeout, this, &ReplyAnnouncement::end);
}

void ReplyAnnouncement::setController(ChatModel *controller)
{
    if (!exchangeFollowed(m_controller, controller, this)) {
        return;
    }
    if (controller) {
        connect(controller, &ChatModel::replyArrived, this, &ReplyAnnouncement::announce);
        connect(controller, &ChatModel::selectedChatIDChanged, this, &ReplyAnnouncement::end);
    }
    Q_EMIT controllerChanged();
}

void ReplyAnnouncement::announce(const QString &reply)
{
    end();
    m_text = spokenReply(reply);
    Q_EMIT textChanged();
    setVisible(true);
    m_end.start();
}

void ReplyAnnouncement::end()
{
    m_end.stop();
    setVisible(false);
}

} // namespace Talvo
