#include "ShortMenuExporter.h"

#include "DBusMenuTypes.h"
#include "MenuTracking.h"
#include "NSApplication.h"

#include <QGuiApplication>
#include <QTimer>

#include <algorithm>

namespace quillbox {

namespace {

    const QString kInterface = QStringLiteral("com.canonical.dbusmenu");
    constexpr int kRootId = 0;

    // Hosts take an underscore as the mark of a mnemonic.
    QString escaped(const std::string& title)
    {
        return QString::fromStdString(title).replace(u'_', QStringLiteral("__"));
    }

    QVariantMap describe(const NSMenuItem& item)
    {
        if (item.isSeparatorItem())
            return { { QStringLiteral("type"), QStringLiteral("separator") } };
        QVariantMap properties { { QStringLiteral("label"), escaped(item.title()) } };
        if (!item.isEnabled())
            properties.insert(QStringLiteral("enabled"), false);
        return properties;
    }

    // What a property that was not sent stands for.
    const QVariantMap& defaultProperties()
    {
        static const QVariantMap defaults {
            { QStringLiteral("type"), QStringLiteral("standard") },
            { QStringLiteral("label"), QString() },
            { QStringLiteral("enabled"), true },
            { QStringLiteral("visible"), true },
            { QStringLiteral("icon-name"), QString() },
            { QStringLiteral("icon-data"), QByteArray() },
            { QStringLiteral("toggle-type"), QString() },
            { QStringLiteral("toggle-state"), -1 },
            { QStringLiteral("children-display"), QString() },
        };
        return defaults;
    }

    QVariantMap onlyNamed(const QVariantMap& properties, const QStringList& names)
    {
        if (names.isEmpty())
            return properties;
        QVariantMap chosen;
        for (const QString& name : names) {
            if (const auto found = properties.constFind(name); found != properties.constEnd())
                chosen.insert(name, *found);
        }
        return chosen;
    }

    QVariantMap objectProperties()
    {
        return {
            { QStringLiteral("Version"), 3U },
            { QStringLiteral("TextDirection"),
              QGuiApplication::isRightToLeft() ? QStringLiteral("rtl") : QStringLiteral("ltr") },
            { QStringLiteral("Status"), QStringLiteral("normal") },
            { QStringLiteral("IconThemePath"), QStringList() },
        };
    }

    QDBusMessage noSuchRow(const QDBusMessage& call, int id)
    {
        return invalidArguments(call, QStringLiteral("no row has the id %1").arg(id));
    }

} // namespace

ShortMenuExporter::ShortMenuExporter(QDBusConnection connection, QString path, std::shared_ptr<NSMenu> menu)
    : connection_(std::move(connection)),
      path_(std::move(path)),
      menu_(std::move(menu))
{
    registerDBusMenuTypes();
    // Hosts never ask an empty menu whether it has something to show, so it is filled from the start.
    bringRowsUpToDate();
    connection_.registerVirtualObject(path_, this);
}

ShortMenuExporter::~ShortMenuExporter()
{
    connection_.unregisterObject(path_);
}

// True where the rows are others than before.
bool ShortMenuExporter::bringRowsUpToDate()
{
    const NSMenu::ItemArray& items = menu_->itemArray();
    const bool isSame = std::equal(items.begin(), items.end(), rows_.begin(), rows_.end(),
                                   [](const std::shared_ptr<NSMenuItem>& item, const Row& row) {
                                       return row.item.lock() == item && row.properties == describe(*item);
                                   });
    if (isSame)
        return false;
    rows_.clear();
    for (const auto& item : items)
        rows_.push_back({ ++lastId_, describe(*item), item });
    return true;
}

const ShortMenuExporter::Row* ShortMenuExporter::findRow(int id) const
{
    const auto found = std::find_if(rows_.begin(), rows_.end(), [id](const Row& row) { return row.id == id; });
    return found == rows_.end() ? nullptr : &*found;
}

std::optional<QVariantMap> ShortMenuExporter::propertiesOf(int id) const
{
    if (id == kRootId)
        return QVariantMap { { QStringLiteral("children-display"), QStringLiteral("submenu") } };
    const Row* row = findRow(id);
    return row ? std::optional(row->properties) : std::nullopt;
}

QDBusMessage ShortMenuExporter::getLayout(const QDBusMessage& call) const
{
    const int parent = call.arguments().at(0).toInt();
    const int depth = call.arguments().at(1).toInt();
    const QStringList names = call.arguments().at(2).toStringList();
    const auto properties = propertiesOf(parent);
    if (!properties)
        return noSuchRow(call, parent);
    DBusMenuLayout layout { parent, onlyNamed(*properties, names), {} };
    if (parent == kRootId && depth != 0) {
        for (const Row& row : rows_)
            layout.children.append({ row.id, onlyNamed(row.properties, names), {} });
    }
    return call.createReply({ revision_, QVariant::fromValue(layout) });
}

QDBusMessage ShortMenuExporter::getGroupProperties(const QDBusMessage& call) const
{
    QList<int> ids = qdbus_cast<QList<int>>(call.arguments().at(0));
    const QStringList names = call.arguments().at(1).toStringList();
    if (ids.isEmpty()) {
        ids.append(kRootId);
        for (const Row& row : rows_)
            ids.append(row.id);
    }
    DBusMenuPropertiesList found;
    for (const int id : ids) {
        if (const auto properties = propertiesOf(id))
            found.append({ id, onlyNamed(*properties, names) });
    }
    return call.createReply(QVariant::fromValue(found));
}

QDBusMessage ShortMenuExporter::getProperty(const QDBusMessage& call) const
{
    const int id = call.arguments().at(0).toInt();
    const QString name = call.arguments().at(1).toString();
    const auto properties = propertiesOf(id);
    if (!properties)
        return noSuchRow(call, id);
    if (!defaultProperties().contains(name))
        return invalidArguments(call, QStringLiteral("rows have no property %1").arg(name));
    const QVariant value = properties->value(name, defaultProperties().value(name));
    return call.createReply(QVariant::fromValue(QDBusVariant(value)));
}

// False where no row has the id.
bool ShortMenuExporter::takeEvent(int id, const QString& event)
{
    if (id == kRootId)
        return true;
    const Row* row = findRow(id);
    if (!row)
        return false;
    if (event == QLatin1String("clicked"))
        QTimer::singleShot(0, this, [this, item = row->item] { choose(item); });
    return true;
}

void ShortMenuExporter::choose(const std::weak_ptr<NSMenuItem>& item)
{
    const NSApplication::EventScope event;
    const std::shared_ptr<NSMenuItem> chosen = item.lock();
    if (!chosen || !chosen->isEnabled() || chosen->menu() != menu_.get())
        return;
    MenuTracking tracking;
    if (tracking.open(menu_))
        tracking.choose(chosen);
    else
        NSApplication::shared().activate(true); // An alert wants its answer first.
}

QDBusMessage ShortMenuExporter::oneEvent(const QDBusMessage& call)
{
    const int id = call.arguments().at(0).toInt();
    return takeEvent(id, call.arguments().at(1).toString()) ? call.createReply() : noSuchRow(call, id);
}

QDBusMessage ShortMenuExporter::eventGroup(const QDBusMessage& call)
{
    const auto events = qdbus_cast<DBusMenuEventList>(call.arguments().at(0));
    QList<int> unknown;
    for (const DBusMenuEvent& event : events) {
        if (!takeEvent(event.id, event.name))
            unknown.append(event.id);
    }
    if (!events.isEmpty() && unknown.size() == events.size())
        return invalidArguments(call, QStringLiteral("no row has any of the ids"));
    return call.createReply(QVariant::fromValue(unknown));
}

// Whether the host has to ask again; none where no row has the id.
std::optional<bool> ShortMenuExporter::prepareToShow(int id)
{
    if (!propertiesOf(id))
        return std::nullopt;
    if (id != kRootId || !bringRowsUpToDate())
        return false;
    // Some hosts go by the answer and others by the signal.
    QDBusMessage updated = QDBusMessage::createSignal(path_, kInterface, QStringLiteral("LayoutUpdated"));
    updated.setArguments({ ++revision_, kRootId });
    connection_.send(updated);
    return true;
}

QDBusMessage ShortMenuExporter::aboutToShow(const QDBusMessage& call)
{
    const int id = call.arguments().at(0).toInt();
    const auto needsUpdate = prepareToShow(id);
    return needsUpdate ? call.createReply(*needsUpdate) : noSuchRow(call, id);
}

QDBusMessage ShortMenuExporter::aboutToShowGroup(const QDBusMessage& call)
{
    const auto ids = qdbus_cast<QList<int>>(call.arguments().at(0));
    QList<int> needUpdate;
    QList<int> unknown;
    for (const int id : ids) {
        const auto needsUpdate = prepareToShow(id);
        if (!needsUpdate)
            unknown.append(id);
        else if (*needsUpdate)
            needUpdate.append(id);
    }
    if (!ids.isEmpty() && unknown.size() == ids.size())
        return invalidArguments(call, QStringLiteral("no row has any of the ids"));
    return call.createReply({ QVariant::fromValue(needUpdate), QVariant::fromValue(unknown) });
}

bool ShortMenuExporter::handleMessage(const QDBusMessage& message, const QDBusConnection& connection)
{
    const auto by = [this](auto member) {
        return [this, member](const QDBusMessage& call) { return (this->*member)(call); };
    };
    return answerProperties(message, connection, kInterface, objectProperties)
        || answerCall(message, connection, kInterface,
                      { { "GetLayout", "iias", by(&ShortMenuExporter::getLayout) },
                        { "GetGroupProperties", "aias", by(&ShortMenuExporter::getGroupProperties) },
                        { "GetProperty", "is", by(&ShortMenuExporter::getProperty) },
                        { "Event", "isvu", by(&ShortMenuExporter::oneEvent) },
                        { "EventGroup", "a(isvu)", by(&ShortMenuExporter::eventGroup) },
                        { "AboutToShow", "i", by(&ShortMenuExporter::aboutToShow) },
                        { "AboutToShowGroup", "ai", by(&ShortMenuExporter::aboutToShowGroup) } });
}

QString ShortMenuExporter::introspect(const QString&) const
{
    return QStringLiteral(R"xml(<interface name="com.canonical.dbusmenu">
  <property name="Version" type="u" access="read"/>
  <property name="TextDirection" type="s" access="read"/>
  <property name="Status" type="s" access="read"/>
  <property name="IconThemePath" type="as" access="read"/>
  <method name="GetLayout"><arg name="parentId" type="i" direction="in"/><arg name="recursionDepth" type="i" direction="in"/><arg name="propertyNames" type="as" direction="in"/><arg name="revision" type="u" direction="out"/><arg name="layout" type="(ia{sv}av)" direction="out"/></method>
  <method name="GetGroupProperties"><arg name="ids" type="ai" direction="in"/><arg name="propertyNames" type="as" direction="in"/><arg name="properties" type="a(ia{sv})" direction="out"/></method>
  <method name="GetProperty"><arg name="id" type="i" direction="in"/><arg name="name" type="s" direction="in"/><arg name="value" type="v" direction="out"/></method>
  <method name="Event"><arg name="id" type="i" direction="in"/><arg name="eventId" type="s" direction="in"/><arg name="data" type="v" direction="in"/><arg name="timestamp" type="u" direction="in"/></method>
  <method name="EventGroup"><arg name="events" type="a(isvu)" direction="in"/><arg name="idErrors" type="ai" direction="out"/></method>
  <method name="AboutToShow"><arg name="id" type="i" direction="in"/><arg name="needUpdate" type="b" direction="out"/></method>
  <method name="AboutToShowGroup"><arg name="ids" type="ai" direction="in"/><arg name="updatesNeeded" type="ai" direction="out"/><arg name="idErrors" type="ai" direction="out"/></method>
  <signal name="ItemsPropertiesUpdated"><arg name="updatedProps" type="a(ia{sv})"/><arg name="removedProps" type="a(ias)"/></signal>
  <signal name="LayoutUpdated"><arg name="revision" type="u"/><arg name="parent" type="i"/></signal>
  <signal name="ItemActivationRequested"><arg name="id" type="i"/><arg name="timestamp" type="u"/></signal>
</interface>
)xml");
}

} // namespace quillbox
