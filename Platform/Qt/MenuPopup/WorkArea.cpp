#include "WorkArea.h"

#include "XcbReply.h"

#include <QGuiApplication>
#include <QScreen>
#include <QtGui/qguiapplication_platform.h>

#include <algorithm>
#include <cmath>
#include <tuple>

namespace quillbox {

namespace {

    constexpr quint32 kMostWindows = 4096;

    // Returns the 32-bit values of a property; none if there is no such property.
    std::vector<quint32> valuesOf(xcb_connection_t* connection, xcb_get_property_cookie_t cookie)
    {
        const auto reply = owned(xcb_get_property_reply(connection, cookie, nullptr));
        if (!reply || reply->format != 32)
            return {};
        const auto* values = static_cast<const quint32*>(xcb_get_property_value(reply.get()));
        return { values, values + reply->value_len };
    }

    std::vector<PanelReserve> panelsOn(xcb_connection_t* connection, xcb_window_t root)
    {
        const xcb_atom_t clients = atomOf(connection, "_NET_CLIENT_LIST");
        const xcb_atom_t reserve = atomOf(connection, "_NET_WM_STRUT_PARTIAL");
        const auto list =
            valuesOf(connection, xcb_get_property(connection, 0, root, clients, XCB_ATOM_WINDOW, 0, kMostWindows));
        constexpr quint32 kCount = std::tuple_size_v<PanelReserve>;
        // All questions are sent before the first answer is waited for.
        std::vector<xcb_get_property_cookie_t> asked;
        asked.reserve(list.size());
        for (const xcb_window_t window : list)
            asked.push_back(xcb_get_property(connection, 0, window, reserve, XCB_ATOM_CARDINAL, 0, kCount));
        std::vector<PanelReserve> panels;
        for (const xcb_get_property_cookie_t cookie : asked) {
            const auto values = valuesOf(connection, cookie);
            if (values.size() == kCount)
                std::copy(values.begin(), values.end(), panels.emplace_back().begin());
        }
        return panels;
    }

} // namespace

QRect workAreaOf(const QScreen& screen)
{
    auto* x11 = qGuiApp->nativeInterface<QNativeInterface::QX11Application>();
    if (!x11 || !x11->connection() || QGuiApplication::screens().size() < 2)
        return screen.availableGeometry();
    xcb_connection_t* connection = x11->connection();
    const xcb_window_t root = xcb_setup_roots_iterator(xcb_get_setup(connection)).data->root;
    const auto all = owned(xcb_get_geometry_reply(connection, xcb_get_geometry(connection, root), nullptr));
    if (!all)
        return screen.geometry();

    // The origin of a screen is the same in logical and in device pixels.
    const QRect logical = screen.geometry();
    const double scale = screen.devicePixelRatio();
    const QRect device(logical.topLeft(), (logical.size().toSizeF() * scale).toSize());
    const QRect free = withoutPanels(device, { all->width, all->height }, panelsOn(connection, root));
    const QPoint first = free.topLeft() - device.topLeft();
    const QPoint end = first + QPoint(free.width(), free.height());
    const QPoint inner(static_cast<int>(std::ceil(first.x() / scale)), static_cast<int>(std::ceil(first.y() / scale)));
    const QSize size(static_cast<int>(end.x() / scale) - inner.x(), static_cast<int>(end.y() / scale) - inner.y());
    return QRect(logical.topLeft() + inner, size).intersected(logical);
}

QRect withoutPanels(QRect screen, QSize all, const std::vector<PanelReserve>& panels)
{
    QRect free = screen;
    const auto cut = [&](QRect reserved, QRect rest) {
        // A panel between two screens may reserve one of them as a whole; covering the panel is better than showing no
        // menu.
        if (reserved.intersects(free) && 2 * rest.width() >= screen.width() && 2 * rest.height() >= screen.height())
            free = rest;
    };
    for (const PanelReserve& panel : panels) {
        std::array<int, std::tuple_size_v<PanelReserve>> at {};
        std::transform(panel.begin(), panel.end(), at.begin(), [](quint32 value) { return static_cast<int>(value); });
        const auto along = [&at](std::size_t edge) { return at[5 + 2 * edge] - at[4 + 2 * edge] + 1; };
        const QRect left(0, at[4], at[0], along(0));
        const QRect right(all.width() - at[1], at[6], at[1], along(1));
        const QRect upper(at[8], 0, along(2), at[2]);
        const QRect lower(at[10], all.height() - at[3], along(3), at[3]);
        cut(left, free.adjusted(std::max(0, at[0] - free.x()), 0, 0, 0));
        cut(right, free.intersected(QRect(free.topLeft(), QPoint(right.x() - 1, free.bottom()))));
        cut(upper, free.adjusted(0, std::max(0, at[2] - free.y()), 0, 0));
        cut(lower, free.intersected(QRect(free.topLeft(), QPoint(free.right(), lower.y() - 1))));
    }
    return free;
}

} // namespace quillbox
