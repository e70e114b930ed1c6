#include "MenuExporter.h"

#include "DBusMenuTypes.h"
#include "SessionBus.h"
#include "ShownTitle.h"

#include <QGuiApplication>
#include <QPointer>

#include <algorithm>
#include <utility>

namespace quillbox {

namespace {

    const QString kInterface = QStringLiteral("com.canonical.dbusmenu");
    constexpr int kRoot = ExportedTree::kRoot;
    using Kind = ExportedRow::Kind;
    using Announcement = ExportedMenu::Announcement;

    // The values of properties that are not sent.
    const QVariantMap& defaultProperties()
    {
        static const QVariantMap defaults {
            { QStringLiteral("type"), QStringLiteral("standard") },
            { QStringLiteral("label"), QString() },
            { QStringLiteral("accessible-desc"), QString() },
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

    bool contains(const ExportedTree& tree, int id)
    {
        return isPlaceholder(id) ? tree.contains(levelOfPlaceholder(id)) : tree.contains(id);
    }

    QVariantMap properties(const ExportedTree& tree, int id, MenuHostKind host)
    {
        if (isPlaceholder(id))
            return { { QStringLiteral("label"), placeholderLabel() }, { QStringLiteral("enabled"), false } };
        const ExportedRow& row = tree.row(id);
        if (row.kind == Kind::separator)
            return { { QStringLiteral("type"), QStringLiteral("separator") } };
        QVariantMap properties;
        if (id != kRoot) {
            const QString shown = shownTitle(row.title);
            properties.insert(QStringLiteral("label"), escapedLabel(shown, host));
            if (shown != row.title)
                properties.insert(QStringLiteral("accessible-desc"), row.title);
        }
        if (row.kind == Kind::text)
            properties.insert(QStringLiteral("enabled"), false);
        if (row.hasLevel())
            properties.insert(QStringLiteral("children-display"), QStringLiteral("submenu"));
        if (row.isChecked) {
            properties.insert(QStringLiteral("toggle-type"), QStringLiteral("checkmark"));
            properties.insert(QStringLiteral("toggle-state"), *row.isChecked ? 1 : 0);
        }
        if (!row.iconName.isEmpty())
            properties.insert(QStringLiteral("icon-name"), row.iconName);
        if (!row.iconData.isEmpty())
            properties.insert(QStringLiteral("icon-data"), row.iconData);
        return properties;
    }

    QVariantMap onlyNamed(QVariantMap properties, const QStringList& names)
    {
        if (!names.isEmpty())
            properties.removeIf([&names](const auto& property) { return !names.contains(property.key()); });
        return properties;
    }

    // The arguments of one GetLayout call.
    struct LayoutRequest {
        MenuHostKind host;
        QStringList names;

        // A negative depth means no limit.
        DBusMenuLayout layout(const ExportedTree& tree, int id, int depth) const
        {
            DBusMenuLayout result { id, onlyNamed(properties(tree, id, host), names), {} };
            if (leavesChildrenDisplayToProperties(host))
                result.properties.remove(QStringLiteral("children-display"));
            if (depth == 0 || isPlaceholder(id))
                return result;
            for (const int child : tree.children(id))
                result.children.append(layout(tree, child, depth - 1));
            if (result.children.isEmpty() && tree.row(id).hasLevel() && needsPlaceholders(host))
                result.children.append(layout(tree, placeholderId(id), depth - 1));
            return result;
        }
    };

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

    QDBusMessage noSuchRows(const QDBusMessage& call)
    {
        return invalidArguments(call, QStringLiteral("no row has any of the ids"));
    }

} // namespace

MenuExporter::MenuExporter(QDBusConnection connection, QString path, std::shared_ptr<NSMenu> menu,
                           std::shared_ptr<NSMenu> reserve, const QString& desktops)
    : connection_(std::move(connection)),
      path_(std::move(path)),
      menu_(std::move(menu), std::move(reserve)),
      hosts_(desktops)
{
    registerDBusMenuTypes();
    menu_.onLayoutChanged = [this](int id) {
        if (id != replaced_)
            tellLayoutUpdated(id);
    };
    connection_.registerVirtualObject(path_, this);
}

MenuExporter::~MenuExporter()
{
    connection_.unregisterObject(path_);
}

void MenuExporter::fill()
{
    if (menu_.fill() && isKnown_)
        tellLayoutUpdated(kRoot);
}

void MenuExporter::fillIfDue()
{
    if (menu_.isFillDue())
        fill();
}

// A host may ask before it has been announced.
void MenuExporter::fillOnce()
{
    if (!menu_.isFilled())
        menu_.fill();
    isKnown_ = true;
}

void MenuExporter::tellLayoutUpdated(int id)
{
    QDBusMessage updated = QDBusMessage::createSignal(path_, kInterface, QStringLiteral("LayoutUpdated"));
    updated.setArguments({ ++revision_, id });
    connection_.send(updated);
}

void MenuExporter::openBehindNewRow(int id)
{
    replaced_ = id;
    menu_.announce({ id }, Announcement::aboutToShow);
    replaced_.reset();
    if (!menu_.isOpen(id))
        return;
    newRow_ = menu_.renew(id);
    tellLayoutUpdated(menu_.tree().parent(*newRow_));
}

QVariantMap MenuExporter::propertiesFor(MenuHostKind host, int id) const
{
    QVariantMap found = properties(menu_.tree(), id, host);
    if (showsOneColumn(host) && hidden_.contains(id))
        found.insert(QStringLiteral("visible"), false);
    return found;
}

void MenuExporter::hideBesideOpenLevels()
{
    if (hosts_.withOneColumn().isEmpty())
        return;
    const std::vector<int> beside = menu_.besideOpenLevels(roomForRowsInOneColumn());
    std::set<int> hidden(beside.begin(), beside.end());
    DBusMenuPropertiesList changed;
    const auto tell = [&](const std::set<int>& rows, const std::set<int>& others, bool isVisible) {
        for (const int id : rows)
            if (!others.contains(id) && menu_.tree().contains(id))
                changed.append({ id, { { QStringLiteral("visible"), isVisible } } });
    };
    tell(hidden_, hidden, true);
    tell(hidden, hidden_, false);
    hidden_ = std::move(hidden);
    if (changed.isEmpty())
        return;
    for (const QString& host : hosts_.withOneColumn()) {
        QDBusMessage updated =
            QDBusMessage::createTargetedSignal(host, path_, kInterface, QStringLiteral("ItemsPropertiesUpdated"));
        updated.setArguments({ QVariant::fromValue(changed), QVariant::fromValue(DBusMenuRemovedList()) });
        connection_.send(updated);
    }
}

QDBusMessage MenuExporter::getLayout(const QDBusMessage& call)
{
    fillOnce();
    const int parent = call.arguments().at(0).toInt();
    const int depth = call.arguments().at(1).toInt();
    const QStringList names = call.arguments().at(2).toStringList();
    const LayoutRequest request { hosts_.askedForLayout(call.service(), names), names };
    if (leavesRowsInTheirPlaces(request.host))
        menu_.neverMoveRows();
    if (!menu_.tree().contains(parent))
        return noSuchRow(call, parent);
    if (!menu_.tree().children(parent).empty())
        givenLevels_.insert(parent);
    if (newRow_ && menu_.tree().contains(*newRow_) && menu_.tree().parent(*newRow_) == parent)
        afterAnswer_.emplace_back([this, id = *std::exchange(newRow_, {})] { tellLayoutUpdated(id); });
    return call.createReply({ revision_, QVariant::fromValue(request.layout(menu_.tree(), parent, depth)) });
}

QDBusMessage MenuExporter::getGroupProperties(const QDBusMessage& call)
{
    fillOnce();
    auto ids = qdbus_cast<QList<int>>(call.arguments().at(0));
    const QStringList names = call.arguments().at(1).toStringList();
    if (ids.isEmpty()) {
        const std::vector<int> all = menu_.tree().allIds();
        ids = QList<int>(all.begin(), all.end());
    }
    DBusMenuPropertiesList found;
    const MenuHostKind host = hosts_.kind(call.service());
    for (const int id : ids) {
        if (contains(menu_.tree(), id))
            found.append({ id, onlyNamed(propertiesFor(host, id), names) });
    }
    return call.createReply(QVariant::fromValue(found));
}

QDBusMessage MenuExporter::getProperty(const QDBusMessage& call)
{
    const int id = call.arguments().at(0).toInt();
    const QString name = call.arguments().at(1).toString();
    if (!contains(menu_.tree(), id))
        return noSuchRow(call, id);
    if (!defaultProperties().contains(name))
        return invalidArguments(call, QStringLiteral("rows have no property %1").arg(name));
    const QVariant value = propertiesFor(hosts_.kind(call.service()), id).value(name, defaultProperties().value(name));
    return call.createReply(QVariant::fromValue(QDBusVariant(value)));
}

bool MenuExporter::takeEvent(int id, const QString& event)
{
    if (!menu_.tree().contains(id))
        return false;
    if (event == QLatin1String("opened")) {
        afterAnswer_.emplace_back([this, id] { menu_.announce({ id }, Announcement::opened); });
    } else if (event == QLatin1String("closed")) {
        afterAnswer_.emplace_back([this, id] { menu_.closed(id); });
    } else if (event == QLatin1String("clicked")) {
        const auto choose = [this, choice = menu_.choice(id)] {
            if (willPerform_)
                willPerform_();
            // The action may end the program, and with it the status item.
            const QPointer<MenuExporter> self(this);
            menu_.perform(choice);
            if (self && didPerform_)
                didPerform_();
        };
        QMetaObject::invokeMethod(this, choose, Qt::QueuedConnection);
    }
    return true;
}

QDBusMessage MenuExporter::oneEvent(const QDBusMessage& call)
{
    const int id = call.arguments().at(0).toInt();
    return takeEvent(id, call.arguments().at(1).toString()) ? call.createReply() : noSuchRow(call, id);
}

QDBusMessage MenuExporter::eventGroup(const QDBusMessage& call)
{
    const auto events = qdbus_cast<DBusMenuEventList>(call.arguments().at(0));
    QList<int> unknown;
    for (const DBusMenuEvent& event : events) {
        if (!takeEvent(event.id, event.name))
            unknown.append(event.id);
    }
    if (!events.isEmpty() && unknown.size() == events.size())
        return noSuchRows(call);
    return call.createReply(QVariant::fromValue(unknown));
}

QDBusMessage MenuExporter::aboutToShow(const QDBusMessage& call)
{
    const int id = call.arguments().at(0).toInt();
    if (!menu_.tree().contains(id))
        return noSuchRow(call, id);
    // Whether the root has other rows is known only after the model was updated.
    if (id == kRoot)
        return call.createReply(menu_.announce({ id }, Announcement::aboutToShow));
    if (!menu_.canOpen(id))
        return call.createReply(false);
    const MenuHostKind host = hosts_.kind(call.service());
    const bool joins = menu_.joinsAnother(id, Announcement::aboutToShow);
    if (placesEmptyLevels(host) && !joins && !givenLevels_.contains(id)) {
        afterAnswer_.emplace_back([this, id] { openBehindNewRow(id); });
        return call.createReply(false);
    }
    const bool isNews = !joins || !(losesOneOfTwoLayouts(host) || placesEmptyLevels(host));
    afterAnswer_.emplace_back([this, id] { menu_.announce({ id }, Announcement::aboutToShow); });
    return call.createReply(isNews);
}

QDBusMessage MenuExporter::aboutToShowGroup(const QDBusMessage& call)
{
    const auto ids = qdbus_cast<QList<int>>(call.arguments().at(0));
    QList<int> needUpdate;
    QList<int> unknown;
    std::vector<int> submenus;
    if (ids.contains(kRoot) && menu_.announce({ kRoot }, Announcement::aboutToShow))
        needUpdate.append(kRoot);
    for (const int id : ids) {
        if (!menu_.tree().contains(id))
            unknown.append(id);
        else if (id != kRoot && menu_.canOpen(id))
            submenus.push_back(id);
    }
    if (!ids.isEmpty() && unknown.size() == ids.size())
        return noSuchRows(call);
    needUpdate.append(QList<int>(submenus.begin(), submenus.end()));
    if (!submenus.empty())
        afterAnswer_.emplace_back([this, submenus] { menu_.announce(submenus, Announcement::aboutToShow); });
    return call.createReply({ QVariant::fromValue(needUpdate), QVariant::fromValue(unknown) });
}

bool MenuExporter::handleMessage(const QDBusMessage& message, const QDBusConnection& connection)
{
    const auto by = [this](auto member) {
        return [this, member](const QDBusMessage& call) { return (this->*member)(call); };
    };
    const bool isAnswered = answerProperties(message, connection, kInterface, objectProperties)
        || answerCall(message, connection, kInterface,
                      { { "GetLayout", "iias", by(&MenuExporter::getLayout) },
                        { "GetGroupProperties", "aias", by(&MenuExporter::getGroupProperties) },
                        { "GetProperty", "is", by(&MenuExporter::getProperty) },
                        { "Event", "isvu", by(&MenuExporter::oneEvent) },
                        { "EventGroup", "a(isvu)", by(&MenuExporter::eventGroup) },
                        { "AboutToShow", "i", by(&MenuExporter::aboutToShow) },
                        { "AboutToShowGroup", "ai", by(&MenuExporter::aboutToShowGroup) } });
    for (const auto& work : std::exchange(afterAnswer_, {}))
        work();
    menu_.heard();
    hideBesideOpenLevels();
    return isAnswered;
}

QString MenuExporter::introspect(const QString&) const
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
