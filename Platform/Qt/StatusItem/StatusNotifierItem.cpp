#include "StatusNotifierItem.h"

#include <QDBusMetaType>
#include <QDBusObjectPath>
#include <QImage>
#include <QtEndian>
#include <QTimer>

namespace quillbox {

namespace {

    const QString kInterface = QStringLiteral("org.kde.StatusNotifierItem");
    const QString kObjectPath = QStringLiteral("/StatusNotifierItem");

    // The sizes that panels use, from small ones to twice the size of large ones.
    constexpr int kPixmapSizes[] = { 16, 22, 24, 32, 48, 64 };

    NotifierPixmap encode(const QPixmap& pixmap)
    {
        const QImage image = pixmap.toImage().convertToFormat(QImage::Format_ARGB32);
        NotifierPixmap encoded { image.width(), image.height(), {} };
        encoded.pixels.reserve(image.sizeInBytes());
        for (int y = 0; y < image.height(); ++y) {
            const auto* row = reinterpret_cast<const QRgb*>(image.constScanLine(y));
            for (int x = 0; x < image.width(); ++x) {
                const QRgb bigEndian = qToBigEndian(row[x]);
                encoded.pixels.append(reinterpret_cast<const char*>(&bigEndian), sizeof bigEndian);
            }
        }
        return encoded;
    }

    NotifierPixmapList encodeAllSizes(const StatusIcon& icon)
    {
        NotifierPixmapList list;
        for (const int size : kPixmapSizes) {
            const QPixmap pixmap = icon.pixmap(size, 1, StatusIcon::neutralColour());
            if (!pixmap.isNull())
                list.append(encode(pixmap));
        }
        return list;
    }

    void registerTypes()
    {
        qDBusRegisterMetaType<NotifierPixmap>();
        qDBusRegisterMetaType<NotifierPixmapList>();
        qDBusRegisterMetaType<NotifierToolTip>();
    }

} // namespace

QDBusArgument& operator<<(QDBusArgument& out, const NotifierPixmap& pixmap)
{
    out.beginStructure();
    out << pixmap.width << pixmap.height << pixmap.pixels;
    out.endStructure();
    return out;
}

const QDBusArgument& operator>>(const QDBusArgument& in, NotifierPixmap& pixmap)
{
    in.beginStructure();
    in >> pixmap.width >> pixmap.height >> pixmap.pixels;
    in.endStructure();
    return in;
}

QDBusArgument& operator<<(QDBusArgument& out, const NotifierToolTip& toolTip)
{
    out.beginStructure();
    out << toolTip.iconName << toolTip.icons << toolTip.title << toolTip.text;
    out.endStructure();
    return out;
}

const QDBusArgument& operator>>(const QDBusArgument& in, NotifierToolTip& toolTip)
{
    in.beginStructure();
    in >> toolTip.iconName >> toolTip.icons >> toolTip.title >> toolTip.text;
    in.endStructure();
    return in;
}

StatusNotifierItem::StatusNotifierItem(QDBusConnection connection, StatusIcon icon, QString menuPath,
                                       MenuDrawing drawing)
    : connection_(std::move(connection)),
      icon_(std::move(icon)),
      menuPath_(std::move(menuPath)),
      drawing_(drawing)
{
    registerTypes();
    connection_.registerVirtualObject(kObjectPath, this);
}

StatusNotifierItem::~StatusNotifierItem()
{
    connection_.unregisterObject(kObjectPath);
}

QVariantMap StatusNotifierItem::properties()
{
    if (pixmaps_.isEmpty())
        pixmaps_ = encodeAllSizes(icon_);
    const QString title = QStringLiteral("Quillbox");
    const QVariant noPixmaps = QVariant::fromValue(NotifierPixmapList {});
    return {
        { QStringLiteral("Category"), QStringLiteral("ApplicationStatus") },
        { QStringLiteral("Id"), QStringLiteral("quillbox") },
        { QStringLiteral("Title"), title },
        { QStringLiteral("Status"), QStringLiteral("Active") },
        { QStringLiteral("WindowId"), 0 },
        { QStringLiteral("IconThemePath"), icon_.themePath() },
        { QStringLiteral("IconName"), icon_.themeName() },
        { QStringLiteral("IconPixmap"), QVariant::fromValue(pixmaps_) },
        { QStringLiteral("OverlayIconName"), QString() },
        { QStringLiteral("OverlayIconPixmap"), noPixmaps },
        { QStringLiteral("AttentionIconName"), QString() },
        { QStringLiteral("AttentionIconPixmap"), noPixmaps },
        { QStringLiteral("AttentionMovieName"), QString() },
        { QStringLiteral("ToolTip"), QVariant::fromValue(NotifierToolTip { {}, {}, title, {} }) },
        { QStringLiteral("ItemIsMenu"), drawing_ == MenuDrawing::byHost },
        { QStringLiteral("Menu"), QVariant::fromValue(QDBusObjectPath(menuPath_)) },
    };
}

QDBusMessage StatusNotifierItem::answerClick(const QDBusMessage& call, const std::function<void(QPoint)>& handler)
{
    const QPoint position(call.arguments().at(0).toInt(), call.arguments().at(1).toInt());
    if (handler)
        QTimer::singleShot(0, this, [handler, position] { handler(position); });
    return call.createReply();
}

bool StatusNotifierItem::answerClicks(const QDBusMessage& message, const QDBusConnection& connection)
{
    const auto click = [this](const QDBusMessage& call) { return answerClick(call, onActivate); };
    const auto contextMenu = [this](const QDBusMessage& call) { return answerClick(call, onContextMenu); };
    const bool isHeard = (message.member() == QLatin1String("Activate") && onActivate)
        || (message.member() == QLatin1String("ContextMenu") && onContextMenu);
    return isHeard
        && answerCall(message, connection, kInterface,
                      { { "Activate", "ii", click }, { "ContextMenu", "ii", contextMenu } });
}

bool StatusNotifierItem::handleMessage(const QDBusMessage& message, const QDBusConnection& connection)
{
    const auto nothing = [](const QDBusMessage& call) { return call.createReply(); };
    const auto token = [this](const QDBusMessage& call) {
        return onActivationToken && onActivationToken(call) ? QDBusMessage() : call.createReply();
    };
    return answerProperties(message, connection, kInterface, [this] { return properties(); })
        || answerClicks(message, connection)
        || answerCall(message, connection, kInterface,
                      { { "SecondaryActivate", "ii", nothing },
                        { "Scroll", "is", nothing },
                        { "ProvideXdgActivationToken", "s", token } });
}

QString StatusNotifierItem::introspect(const QString&) const
{
    // Hosts look here to find out which methods a click may call.
    const QString clicks = drawing_ == MenuDrawing::byHost ? QString() : QStringLiteral(R"xml(
  <method name="Activate"><arg name="x" type="i" direction="in"/><arg name="y" type="i" direction="in"/></method>
  <method name="ContextMenu"><arg name="x" type="i" direction="in"/><arg name="y" type="i" direction="in"/></method>)xml");
    return QStringLiteral(R"xml(<interface name="org.kde.StatusNotifierItem">
  <property name="Category" type="s" access="read"/>
  <property name="Id" type="s" access="read"/>
  <property name="Title" type="s" access="read"/>
  <property name="Status" type="s" access="read"/>
  <property name="WindowId" type="i" access="read"/>
  <property name="IconThemePath" type="s" access="read"/>
  <property name="IconName" type="s" access="read"/>
  <property name="IconPixmap" type="a(iiay)" access="read"/>
  <property name="OverlayIconName" type="s" access="read"/>
  <property name="OverlayIconPixmap" type="a(iiay)" access="read"/>
  <property name="AttentionIconName" type="s" access="read"/>
  <property name="AttentionIconPixmap" type="a(iiay)" access="read"/>
  <property name="AttentionMovieName" type="s" access="read"/>
  <property name="ToolTip" type="(sa(iiay)ss)" access="read"/>
  <property name="ItemIsMenu" type="b" access="read"/>
  <property name="Menu" type="o" access="read"/>%1
  <method name="SecondaryActivate"><arg name="x" type="i" direction="in"/><arg name="y" type="i" direction="in"/></method>
  <method name="Scroll"><arg name="delta" type="i" direction="in"/><arg name="orientation" type="s" direction="in"/></method>
  <method name="ProvideXdgActivationToken"><arg name="token" type="s" direction="in"/></method>
  <signal name="NewTitle"/>
  <signal name="NewIcon"/>
  <signal name="NewAttentionIcon"/>
  <signal name="NewOverlayIcon"/>
  <signal name="NewToolTip"/>
  <signal name="NewStatus"><arg name="status" type="s"/></signal>
</interface>
)xml")
        .arg(clicks);
}

} // namespace quillbox
