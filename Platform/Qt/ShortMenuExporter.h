#pragma once

#include "NSMenu.h"
#include "SessionBus.h"

#include <QDBusVirtualObject>
#include <QStringList>
#include <QVariantMap>

#include <memory>
#include <optional>
#include <vector>

namespace quillbox {

// The short menu for hosts that draw it themselves: com.canonical.dbusmenu at a path of the item's
// connection. A flat list of titles and separators; submenus are not exported. Rows are copied from the
// menu and compared with it when a host is about to show them, so ids of rows that are gone stay unused.
//
// A chosen row goes through a MenuTracking like any other choice, from the event loop: the host has its
// answer by then.
class ShortMenuExporter final : public QDBusVirtualObject {
public:
    ShortMenuExporter(QDBusConnection connection, QString path, std::shared_ptr<NSMenu> menu);
    ~ShortMenuExporter() override;

    QString introspect(const QString& path) const override;
    bool handleMessage(const QDBusMessage& message, const QDBusConnection& connection) override;

private:
    struct Row {
        int id;
        QVariantMap properties;
        std::weak_ptr<NSMenuItem> item;
    };

    bool bringRowsUpToDate();
    const Row* findRow(int id) const;
    // None for an id that is not in use.
    std::optional<QVariantMap> propertiesOf(int id) const;
    std::optional<bool> prepareToShow(int id);
    bool takeEvent(int id, const QString& event);
    void choose(const std::weak_ptr<NSMenuItem>& item);

    QDBusMessage getLayout(const QDBusMessage& call) const;
    QDBusMessage getGroupProperties(const QDBusMessage& call) const;
    QDBusMessage getProperty(const QDBusMessage& call) const;
    QDBusMessage oneEvent(const QDBusMessage& call);
    QDBusMessage eventGroup(const QDBusMessage& call);
    QDBusMessage aboutToShow(const QDBusMessage& call);
    QDBusMessage aboutToShowGroup(const QDBusMessage& call);

    QDBusConnection connection_;
    QString path_;
    std::shared_ptr<NSMenu> menu_;
    std::vector<Row> rows_;
    int lastId_ = 0;
    // Counts the layouts that hosts were told of.
    uint revision_ = 1;
};

} // namespace quillbox
