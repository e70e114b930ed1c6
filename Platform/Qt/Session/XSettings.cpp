#include "XSettings.h"

#include "XcbReply.h"

#include <QCoreApplication>
#include <QGuiApplication>
#include <QtEndian>
#include <QtGui/qguiapplication_platform.h>
#include <QTimer>

#include <string>

namespace quillbox {

namespace {

    // The longest property that is read, in units of four bytes. Real ones have a few kilobytes.
    constexpr quint32 kMostUnits = 1 << 16;

    // Reads the bytes from their beginning. After their end, everything that is read is zero.
    class Reader {
    public:
        explicit Reader(const QByteArray& bytes) : bytes_(bytes), isBigEndian_(bytes.startsWith('\1')) { }

        bool hasEnded() const { return hasEnded_; }
        QByteArray take(qsizetype count)
        {
            hasEnded_ = hasEnded_ || count < 0 || count > bytes_.size() - at_;
            if (hasEnded_)
                return QByteArray(2 * sizeof(quint32), '\0');
            at_ += count;
            return bytes_.mid(at_ - count, count);
        }
        // A text is padded to a multiple of four bytes.
        QByteArray takeText(quint32 length)
        {
            QByteArray text = take(length);
            take((4 - length % 4) % 4);
            return text;
        }
        template <class T>
        T takeNumber()
        {
            const QByteArray raw = take(sizeof(T));
            return isBigEndian_ ? qFromBigEndian<T>(raw.constData()) : qFromLittleEndian<T>(raw.constData());
        }

    private:
        const QByteArray& bytes_;
        qsizetype at_ = 0;
        bool isBigEndian_;
        bool hasEnded_ = false;
    };

} // namespace

QMap<QByteArray, QByteArray> XSettings::parse(const QByteArray& bytes)
{
    enum Kind : quint8 { number, text, colour };
    constexpr qsizetype kColourSize = 8;
    QMap<QByteArray, QByteArray> texts;
    Reader reader(bytes);
    reader.take(4); // the byte order and padding
    reader.takeNumber<quint32>(); // the serial number of the settings
    const auto count = reader.takeNumber<quint32>();
    for (quint32 i = 0; i < count && !reader.hasEnded(); ++i) {
        const auto kind = reader.takeNumber<quint8>();
        reader.take(1);
        const QByteArray name = reader.takeText(reader.takeNumber<quint16>());
        reader.takeNumber<quint32>(); // the serial number of the setting
        QByteArray value;
        if (kind == text)
            value = reader.takeText(reader.takeNumber<quint32>());
        else
            reader.take(kind == colour ? kColourSize : static_cast<qsizetype>(sizeof(quint32)));
        if (kind > colour || reader.hasEnded())
            break;
        if (kind == text)
            texts.insert(name, value);
    }
    return texts;
}

struct XSettings::Server {
    xcb_connection_t* connection;
    xcb_window_t root;
    xcb_atom_t selection;
    xcb_atom_t settings;
    xcb_atom_t manager;
    // The window that has the settings, or 0.
    xcb_window_t owner = XCB_WINDOW_NONE;

    void watch(xcb_window_t window, quint32 events) const
    {
        const auto cookie = xcb_get_window_attributes(connection, window);
        const auto attributes = owned(xcb_get_window_attributes_reply(connection, cookie, nullptr));
        // The toolkit shares the connection, so the events that it selected on the window are kept.
        const quint32 mask = (attributes ? attributes->your_event_mask : 0) | events;
        const auto change = xcb_change_window_attributes_checked(connection, window, XCB_CW_EVENT_MASK, &mask);
        const auto error = owned(xcb_request_check(connection, change));
    }

    QByteArray read()
    {
        const auto asked = xcb_get_selection_owner(connection, selection);
        const auto found = owned(xcb_get_selection_owner_reply(connection, asked, nullptr));
        owner = found ? found->owner : xcb_window_t { XCB_WINDOW_NONE };
        if (owner == XCB_WINDOW_NONE)
            return {};
        watch(owner, XCB_EVENT_MASK_STRUCTURE_NOTIFY | XCB_EVENT_MASK_PROPERTY_CHANGE);
        const auto cookie = xcb_get_property(connection, 0, owner, settings, settings, 0, kMostUnits);
        const auto reply = owned(xcb_get_property_reply(connection, cookie, nullptr));
        if (!reply || reply->format != 8)
            return {};
        return { static_cast<const char*>(xcb_get_property_value(reply.get())),
                 xcb_get_property_value_length(reply.get()) };
    }
};

std::unique_ptr<XSettings> XSettings::create()
{
    auto* x11 = qGuiApp->nativeInterface<QNativeInterface::QX11Application>();
    if (!x11 || !x11->connection())
        return nullptr;
    // One manager serves all screens, because today's displays have only one.
    xcb_connection_t* connection = x11->connection();
    std::unique_ptr<XSettings> settings(new XSettings);
    settings->server_ = std::make_unique<Server>(Server {
        connection, xcb_setup_roots_iterator(xcb_get_setup(connection)).data->root, atomOf(connection, "_XSETTINGS_S0"),
        atomOf(connection, "_XSETTINGS_SETTINGS"), atomOf(connection, "MANAGER") });
    // New managers announce themselves on the root window.
    settings->server_->watch(settings->server_->root, XCB_EVENT_MASK_STRUCTURE_NOTIFY);
    settings->texts_ = parse(settings->server_->read());
    return settings;
}

XSettings::XSettings()
{
    QCoreApplication::instance()->installNativeEventFilter(this);
}

XSettings::~XSettings()
{
    QCoreApplication::instance()->removeNativeEventFilter(this);
}

void XSettings::read()
{
    auto texts = parse(server_->read());
    if (texts == texts_)
        return;
    texts_ = std::move(texts);
    if (onChanged)
        onChanged();
}

bool XSettings::nativeEventFilter(const QByteArray&, void* message, qintptr*)
{
    if (!server_)
        return false;
    constexpr quint8 kSentByClient = 0x80;
    const auto* event = static_cast<const xcb_generic_event_t*>(message);
    bool isNews = false;
    switch (event->response_type & ~kSentByClient) {
    case XCB_PROPERTY_NOTIFY: {
        const auto* property = reinterpret_cast<const xcb_property_notify_event_t*>(event);
        isNews = property->window == server_->owner && property->atom == server_->settings;
        break;
    }
    case XCB_DESTROY_NOTIFY:
        isNews = server_->owner && reinterpret_cast<const xcb_destroy_notify_event_t*>(event)->window == server_->owner;
        break;
    case XCB_CLIENT_MESSAGE: {
        const auto* announced = reinterpret_cast<const xcb_client_message_event_t*>(event);
        isNews = announced->type == server_->manager && announced->format == 32
            && announced->data.data32[1] == server_->selection;
        break;
    }
    default:
        break;
    }
    if (isNews)
        QTimer::singleShot(0, &context_, [this] { read(); });
    return false;
}

} // namespace quillbox
