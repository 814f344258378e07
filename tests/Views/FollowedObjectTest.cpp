#include "Views/FollowedObject.h"

#include <QPointer>

#include <gtest/gtest.h>

#include <memory>

namespace Talvo {
namespace {

/// Counts how often the object that it follows is renamed.
class RenameCounter : public QObject
{
public:
    bool follow(QObject *next)
    {
        if (!exchangeFollowed(m_followed, next, this)) {
            return false;
        }
        if (next != nullptr) {
            connect(next, &QObject::objectNameChanged, this, [this] { ++count; });
        }
        return true;
    }

    int count = 0;

private:
    QPointer<QObject> m_followed;
};

class FollowedObject : public testing::Test
{
protected:
    /// Renames an object and gives back how often the follower heard of it.
    int heardRenamesOf(QObject &object)
    {
        const int before = follower.count;
        object.setObjectName(object.objectName() + u'x');
        return follower.count - before;
    }

    RenameCounter follower;
    QObject first;
    QObject second;
};

TEST_F(FollowedObject, onlyThePresentOneIsHeard)
{
    EXPECT_TRUE(follower.follow(&first));
    EXPECT_EQ(heardRenamesOf(first), 1);
    EXPECT_TRUE(follower.follow(&second));
    EXPECT_EQ(heardRenamesOf(first), 0);
    EXPECT_EQ(heardRenamesOf(second), 1);
    EXPECT_TRUE(follower.follow(nullptr));
    EXPECT_EQ(heardRenamesOf(second), 0);
}

TEST_F(FollowedObject, theSameOneAgainChangesNothing)
{
    EXPECT_FALSE(follower.follow(nullptr));
    EXPECT_TRUE(follower.follow(&first));
    EXPECT_FALSE(follower.follow(&first));
    EXPECT_EQ(heardRenamesOf(first), 1);
}

TEST_F(FollowedObject, oneThatIsGoneCanBeReplaced)
{
    auto gone = std::make_unique<QObject>();
    EXPECT_TRUE(follower.follow(gone.get()));
    gone.reset();
    EXPECT_TRUE(follower.follow(&first));
    EXPECT_EQ(heardRenamesOf(first), 1);
}

} // namespace
} // namespace Talvo
