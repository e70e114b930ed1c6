#include "SelectionReader.h"

#include "XcbReply.h"

#include <cerrno>
#include <poll.h>

namespace quillbox {

namespace {

    using Time = std::chrono::steady_clock;

    // One transfer: a window that receives the data, below the one that got the drop, and the events of that window.
    class Transfer {
    public:
        Transfer(xcb_connection_t& connection, xcb_window_t below) : connection_(connection)
        {
            receiver_ = xcb_generate_id(&connection_);
            property_ = atomOf(&connection_, "QUILLBOX_SELECTION");
            const std::uint32_t events = XCB_EVENT_MASK_PROPERTY_CHANGE;
            xcb_create_window(&connection_, 0, receiver_, below, -1, -1, 1, 1, 0, XCB_WINDOW_CLASS_INPUT_ONLY,
                              XCB_COPY_FROM_PARENT, XCB_CW_EVENT_MASK, &events);
        }

        std::optional<std::string> run(const std::string& selection, const std::string& type,
                                       std::chrono::milliseconds longestSilence, std::chrono::milliseconds longest)
        {
            const auto begin = Time::now();
            end_ = begin + longestSilence;
            const auto now = serverTime();
            if (!now)
                return std::nullopt;
            xcb_convert_selection(&connection_, receiver_, atomOf(&connection_, selection), atomOf(&connection_, type),
                                  property_, *now);
            const auto answer = waitFor(XCB_SELECTION_NOTIFY);
            if (!answer || reinterpret_cast<const xcb_selection_notify_event_t&>(*answer).property == XCB_ATOM_NONE)
                return std::nullopt;
            end_ = begin + longest;
            std::string data;
            if (take(data) != atomOf(&connection_, "INCR"))
                return data;
            // The data comes in pieces. Each is announced after the previous one was taken, and an empty one is the
            // last.
            data.clear();
            while (const auto event = waitFor(XCB_PROPERTY_NOTIFY)) {
                const auto& change = reinterpret_cast<const xcb_property_notify_event_t&>(*event);
                if (change.atom != property_ || change.state != XCB_PROPERTY_NEW_VALUE)
                    continue;
                const std::size_t before = data.size();
                take(data);
                if (data.size() == before)
                    return data;
            }
            return std::nullopt;
        }

    private:
        // A program that is asked with no time at all may look for the data of the drag that goes on, while the drop
        // has ended that drag already: Qt's programs do.
        std::optional<xcb_timestamp_t> serverTime()
        {
            xcb_change_property(&connection_, XCB_PROP_MODE_APPEND, receiver_, property_, XCB_ATOM_STRING, 8, 0,
                                nullptr);
            const auto event = waitFor(XCB_PROPERTY_NOTIFY);
            if (!event)
                return std::nullopt;
            return reinterpret_cast<const xcb_property_notify_event_t&>(*event).time;
        }

        // Appends the contents of the property, deletes the property and returns its type.
        xcb_atom_t take(std::string& data)
        {
            constexpr std::uint32_t kAll = 1U << 28;
            const auto reply = owned(xcb_get_property_reply(
                &connection_, xcb_get_property(&connection_, 1, receiver_, property_, XCB_ATOM_ANY, 0, kAll), nullptr));
            if (!reply)
                return XCB_ATOM_NONE;
            data.append(static_cast<const char*>(xcb_get_property_value(reply.get())),
                        static_cast<std::size_t>(xcb_get_property_value_length(reply.get())));
            return reply->type;
        }

        std::unique_ptr<xcb_generic_event_t, FreeReply> waitFor(int kind)
        {
            xcb_flush(&connection_);
            while (!xcb_connection_has_error(&connection_)) {
                while (auto event = owned(xcb_poll_for_event(&connection_))) {
                    if ((event->response_type & 0x7F) == kind)
                        return event;
                }
                const auto rest = std::chrono::duration_cast<std::chrono::milliseconds>(end_ - Time::now()).count();
                pollfd socket { xcb_get_file_descriptor(&connection_), POLLIN, 0 };
                if (rest <= 0 || (::poll(&socket, 1, static_cast<int>(rest)) < 0 && errno != EINTR))
                    break;
            }
            return nullptr;
        }

        xcb_connection_t& connection_;
        xcb_window_t receiver_ = 0;
        xcb_atom_t property_ = 0;
        Time::time_point end_;
    };

} // namespace

std::optional<std::string> SelectionReader::read(const std::string& selection, const std::string& type) const
{
    const std::unique_ptr<xcb_connection_t, decltype(&xcb_disconnect)> connection(xcb_connect(nullptr, nullptr),
                                                                                  &xcb_disconnect);
    if (xcb_connection_has_error(connection.get()))
        return std::nullopt;
    return Transfer(*connection, static_cast<xcb_window_t>(window_)).run(selection, type, longestSilence, longest);
}

} // namespace quillbox
