#include "support/FrameConnection.h"

#include <xcb/xtest.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <memory>
#include <poll.h>
#include <vector>

namespace Talvo::Benchmarks {

namespace {

struct FreeDeleter
{
    void operator()(void *memory) const { std::free(memory); }
};

template <class Reply>
using Owned = std::unique_ptr<Reply, FreeDeleter>;

/// Smaller windows are no windows of applications.
constexpr int smallestWidth = 400;

constexpr int sidebarWidth = 262;
constexpr int composerHeight = 160; // at its highest
constexpr int scrollBarWidth = 24;  // it fades by itself

/// Every eighth line of the window is compared: whatever a conversation shows is higher than that.
/// The whole picture would keep a processor busy for a frame, while the program is starting.
constexpr int lineDistance = 8;

/// FNV-1a over whole pixels.
std::uint64_t hashed(std::uint64_t hash, const xcb_get_image_reply_t &image)
{
    const auto *bytes = xcb_get_image_data(&image);
    for (int i = 0, end = xcb_get_image_data_length(&image); i + 4 <= end; i += 4) {
        std::uint32_t pixel = 0;
        std::memcpy(&pixel, bytes + i, sizeof pixel);
        hash = (hash ^ pixel) * 0x100000001b3;
    }
    return hash;
}

/// Both as one, drawn when the first was.
Frame united(const Frame &first, const Frame &second)
{
    const int x = std::min(first.x, second.x);
    const int y = std::min(first.y, second.y);
    const int right = std::max(first.x + first.width, second.x + second.width);
    const int bottom = std::max(first.y + first.height, second.y + second.height);
    return {first.time, x, y, right - x, bottom - y};
}

} // namespace

std::int64_t monotonicNow()
{
    timespec time{};
    ::clock_gettime(CLOCK_MONOTONIC, &time);
    return std::int64_t{time.tv_sec} * 1'000'000'000 + time.tv_nsec;
}

FrameConnection::FrameConnection()
    : m_connection(xcb_connect(nullptr, nullptr))
{
    const auto *damage = xcb_get_extension_data(m_connection, &xcb_damage_id);
    if (xcb_connection_has_error(m_connection) != 0 || damage == nullptr || damage->present == 0) {
        std::fprintf(stderr, "There is no X server with the Damage extension\n");
        std::exit(1);
    }
    m_damageNotify = static_cast<std::uint8_t>(damage->first_event + XCB_DAMAGE_NOTIFY);
    m_screen = xcb_setup_roots_iterator(xcb_get_setup(m_connection)).data;
    const Owned<xcb_damage_query_version_reply_t> version(xcb_damage_query_version_reply(
        m_connection, xcb_damage_query_version(m_connection, 1, 1), nullptr));
    const std::uint32_t mask = XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY;
    xcb_change_window_attributes(m_connection, m_screen->root, XCB_CW_EVENT_MASK, &mask);
    xcb_flush(m_connection);
}

FrameConnection::~FrameConnection()
{
    xcb_disconnect(m_connection);
}

xcb_generic_event_t *FrameConnection::waitForEvent(int milliseconds)
{
    const std::int64_t end = monotonicNow() + std::int64_t{milliseconds} * 1'000'000;
    while (true) {
        if (auto *event = xcb_poll_for_event(m_connection)) {
            return event;
        }
        const std::int64_t rest = end - monotonicNow();
        if (rest <= 0) {
            return nullptr;
        }
        pollfd descriptor{xcb_get_file_descriptor(m_connection), POLLIN, 0};
        ::poll(&descriptor, 1, static_cast<int>(rest / 1'000'000) + 1);
    }
}

bool FrameConnection::watch(xcb_window_t window)
{
    const Owned<xcb_get_geometry_reply_t> geometry(
        xcb_get_geometry_reply(m_connection, xcb_get_geometry(m_connection, window), nullptr));
    const Owned<xcb_get_window_attributes_reply_t> attributes(xcb_get_window_attributes_reply(
        m_connection, xcb_get_window_attributes(m_connection, window), nullptr));
    if (!geometry || geometry->width < smallestWidth || !attributes ||
        attributes->_class != XCB_WINDOW_CLASS_INPUT_OUTPUT) {
        return false;
    }
    m_window = window;
    m_damage = xcb_generate_id(m_connection);
    xcb_damage_create(m_connection, m_damage, window, XCB_DAMAGE_REPORT_LEVEL_RAW_RECTANGLES);
    xcb_flush(m_connection);
    return true;
}

/// From its creation on: of a window that is on the screen already the server first tells the whole
/// area, which nobody has drawn.
bool FrameConnection::waitForWindow(int milliseconds)
{
    const std::int64_t end = monotonicNow() + std::int64_t{milliseconds} * 1'000'000;
    while (monotonicNow() < end) {
        const Owned<xcb_generic_event_t> event(waitForEvent(100));
        if (event && (event->response_type & 0x7f) == XCB_CREATE_NOTIFY &&
            watch(reinterpret_cast<xcb_create_notify_event_t *>(event.get())->window)) {
            return true;
        }
    }
    return false;
}

bool FrameConnection::findWindow()
{
    const Owned<xcb_query_tree_reply_t> tree(
        xcb_query_tree_reply(m_connection, xcb_query_tree(m_connection, m_screen->root), nullptr));
    const xcb_window_t *children = xcb_query_tree_children(tree.get());
    return std::any_of(children, children + xcb_query_tree_children_length(tree.get()),
                       [this](xcb_window_t window) { return watch(window); });
}

std::optional<Frame> FrameConnection::nextRectangle(int milliseconds)
{
    const std::int64_t end = monotonicNow() + std::int64_t{milliseconds} * 1'000'000;
    while (true) {
        const auto rest = static_cast<int>((end - monotonicNow()) / 1'000'000);
        const Owned<xcb_generic_event_t> event(waitForEvent(std::max(0, rest)));
        if (!event) {
            return std::nullopt;
        }
        if ((event->response_type & 0x7f) != m_damageNotify) {
            continue;
        }
        const std::int64_t time = monotonicNow();
        const auto area = reinterpret_cast<xcb_damage_notify_event_t *>(event.get())->area;
        return Frame{time, area.x, area.y, area.width, area.height};
    }
}

/// A frame of many texts is told in a hundred rectangles at once.
std::optional<Frame> FrameConnection::nextFrame(int milliseconds)
{
    std::optional<Frame> frame = nextRectangle(milliseconds);
    while (frame) {
        const std::optional<Frame> more = nextRectangle(0);
        if (!more) {
            break;
        }
        frame = united(*frame, *more);
    }
    return frame;
}

void FrameConnection::drain(int milliseconds)
{
    const std::int64_t end = monotonicNow() + std::int64_t{10} * milliseconds * 1'000'000;
    while (monotonicNow() < end && nextFrame(milliseconds)) {
    }
}

std::uint64_t FrameConnection::conversationHash()
{
    const Owned<xcb_get_geometry_reply_t> geometry(
        xcb_get_geometry_reply(m_connection, xcb_get_geometry(m_connection, m_window), nullptr));
    if (!geometry || geometry->height <= composerHeight ||
        geometry->width <= sidebarWidth + scrollBarWidth) {
        return 0;
    }
    const auto width = static_cast<std::uint16_t>(geometry->width - sidebarWidth - scrollBarWidth);
    std::vector<xcb_get_image_cookie_t> requests;
    for (int y = 0; y < geometry->height - composerHeight; y += lineDistance) {
        requests.push_back(xcb_get_image(m_connection, XCB_IMAGE_FORMAT_Z_PIXMAP, m_window,
                                         sidebarWidth, static_cast<std::int16_t>(y), width, 1,
                                         ~0U));
    }
    std::uint64_t hash = 0xcbf29ce484222325;
    for (const auto request : requests) {
        const Owned<xcb_get_image_reply_t> line(
            xcb_get_image_reply(m_connection, request, nullptr));
        hash = line ? hashed(hash, *line) : 0;
    }
    return hash;
}

void FrameConnection::focusWindow()
{
    xcb_set_input_focus(m_connection, XCB_INPUT_FOCUS_POINTER_ROOT, m_window, XCB_CURRENT_TIME);
    xcb_flush(m_connection);
}

xcb_keycode_t FrameConnection::keycode(xcb_keysym_t symbol) const
{
    const auto *setup = xcb_get_setup(m_connection);
    const auto count = static_cast<std::uint8_t>(setup->max_keycode - setup->min_keycode + 1);
    const Owned<xcb_get_keyboard_mapping_reply_t> mapping(xcb_get_keyboard_mapping_reply(
        m_connection, xcb_get_keyboard_mapping(m_connection, setup->min_keycode, count), nullptr));
    const xcb_keysym_t *symbols = xcb_get_keyboard_mapping_keysyms(mapping.get());
    for (int i = 0; i < count; ++i) {
        if (symbols[i * mapping->keysyms_per_keycode] == symbol) {
            return static_cast<xcb_keycode_t>(setup->min_keycode + i);
        }
    }
    std::fprintf(stderr, "The keyboard lacks a key\n");
    std::exit(1);
}

std::int64_t FrameConnection::tapKey(const char *name)
{
    constexpr xcb_keysym_t backspaceSymbol = 0xff08;
    const xcb_keysym_t symbol =
        std::strcmp(name, "BackSpace") == 0 ? backspaceSymbol : static_cast<xcb_keysym_t>(name[0]);
    const xcb_keycode_t code = keycode(symbol);
    xcb_test_fake_input(m_connection, XCB_KEY_PRESS, code, XCB_CURRENT_TIME, XCB_NONE, 0, 0, 0);
    xcb_flush(m_connection);
    const std::int64_t pressed = monotonicNow();
    xcb_test_fake_input(m_connection, XCB_KEY_RELEASE, code, XCB_CURRENT_TIME, XCB_NONE, 0, 0, 0);
    xcb_flush(m_connection);
    return pressed;
}

} // namespace Talvo::Benchmarks
