#pragma once

#include <xcb/damage.h>
#include <xcb/xcb.h>

#include <cstdint>
#include <optional>

namespace Talvo::Benchmarks {

/// Nanoseconds of the monotonic clock.
[[nodiscard]] std::int64_t monotonicNow();

/// A part of the window that was drawn anew, and when the X server said so.
struct Frame
{
    std::int64_t time = 0;
    int x = 0;
    int y = 0;
    int width = 0;
    int height = 0;
};

/// Sees what another program draws in its top-level window. Ends the process when there is no X
/// server.
class FrameConnection
{
public:
    FrameConnection();
    ~FrameConnection();
    FrameConnection(const FrameConnection &) = delete;
    FrameConnection &operator=(const FrameConnection &) = delete;

    /// Waits for a window to be made and watches it from then on.
    bool waitForWindow(int milliseconds);
    /// Watches the window that is there.
    bool findWindow();
    /// The next frame, with whatever else has been drawn by then; absent when none comes in that
    /// time.
    std::optional<Frame> nextFrame(int milliseconds);
    /// Lets frames pass until none has come for that time or, with a blinking cursor, for ten times
    /// of it.
    void drain(int milliseconds);
    /// A number for what is drawn right of the sidebar and above the composer; frames that look the
    /// same there have the same.
    [[nodiscard]] std::uint64_t conversationHash();

    void focusWindow();
    /// Presses and releases a key: "a" or "BackSpace". @return when it was pressed
    std::int64_t tapKey(const char *name);

private:
    bool watch(xcb_window_t window);
    std::optional<Frame> nextRectangle(int milliseconds);
    /// Reads what has arrived; an event, or null.
    xcb_generic_event_t *waitForEvent(int milliseconds);
    [[nodiscard]] xcb_keycode_t keycode(xcb_keysym_t symbol) const;

    xcb_connection_t *m_connection = nullptr;
    xcb_screen_t *m_screen = nullptr;
    std::uint8_t m_damageNotify = 0;
    xcb_window_t m_window = XCB_NONE;
    xcb_damage_damage_t m_damage = XCB_NONE;
};

} // namespace Talvo::Benchmarks
