#pragma once

#include <QObject>
#include <QTimer>

#include <chrono>

class QWindow;

namespace Talvo {

/// Lets the text cursor of a window stand still once nobody has typed, clicked or come back to the
/// window for a while, as the text fields of other desktop programs do: every blink wakes the
/// processor. Where the desktop's cursor does not blink, nothing changes. GUI thread.
class CursorRest : public QObject
{
    Q_OBJECT

public:
    /// As long as the desktop's own text fields wait.
    static constexpr std::chrono::seconds usualDelay{10};

    /// @param window watched, and the owner of this object
    /// @param delay from the last sign of the user to the rest
    explicit CursorRest(QWindow *window, std::chrono::milliseconds delay = usualDelay);

    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void wake();

    QTimer m_timer; ///< runs while the cursor blinks
};

} // namespace Talvo
