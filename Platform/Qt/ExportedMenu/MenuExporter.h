#pragma once

#include "ExportedMenu.h"
#include "MenuHostKind.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusVirtualObject>
#include <QStringList>
#include <QVariantMap>

#include <functional>
#include <memory>
#include <optional>
#include <set>

namespace quillbox {

// Exports a menu for hosts that draw it themselves: com.canonical.dbusmenu at a path of the item's connection. It
// translates the calls of hosts for an ExportedMenu and keeps no rows. A call with an id that no row has, or no longer
// has, gets an error.
//
// The host gets its answer before a directory is listed; the action of a chosen row runs from the event loop.
class MenuExporter final : public QDBusVirtualObject {
public:
    // `reserve` is shown in place of `menu` while that is empty; see ExportedMenu. For `desktops` see MenuHosts.
    MenuExporter(QDBusConnection connection, QString path, std::shared_ptr<NSMenu> menu,
                 std::shared_ptr<NSMenu> reserve, const QString& desktops);
    ~MenuExporter() override;

    // Must be called when a host has appeared, so that its first question finds the rows.
    void fill();
    // Must be called when an alert has ended, or the menu is no longer shown in another way; fills what was put off.
    void fillIfDue();
    // Must be called when the host is gone, or before the menu is shown in another way.
    void close() { menu_.close(); }
    // `willOpen` is called before the model's menu is opened for the host. `isOpen` returns whether it is open in
    // another way; questions of a host alone don't disturb that.
    void setOtherWay(std::function<bool()> isOpen, std::function<void()> willOpen)
    {
        menu_.isShownElsewhere = std::move(isOpen);
        menu_.onWillOpen = std::move(willOpen);
    }

    // Called before and after the action of a row that a host has clicked.
    void setChoiceHandlers(std::function<void()> willPerform, std::function<void()> didPerform)
    {
        willPerform_ = std::move(willPerform);
        didPerform_ = std::move(didPerform);
    }
    // Returns the kind of the host with this connection.
    MenuHostKind hostKind(const QString& connection) const { return hosts_.kind(connection); }

    QString introspect(const QString& path) const override;
    bool handleMessage(const QDBusMessage& message, const QDBusConnection& connection) override;

private:
    void fillOnce();
    void tellLayoutUpdated(int id);
    // Makes room for the deepest level in hosts that show all levels in one column.
    void hideBesideOpenLevels();
    // Opens a level that the host shows empty and in a wrong place, and replaces its row, which ends that. The host
    // opens the new row's level when the pointer moves on.
    void openBehindNewRow(int id);
    QVariantMap propertiesFor(MenuHostKind host, int id) const;
    // Returns false if no row has the id.
    bool takeEvent(int id, const QString& event);

    QDBusMessage getLayout(const QDBusMessage& call);
    QDBusMessage getGroupProperties(const QDBusMessage& call);
    QDBusMessage getProperty(const QDBusMessage& call);
    QDBusMessage oneEvent(const QDBusMessage& call);
    QDBusMessage eventGroup(const QDBusMessage& call);
    QDBusMessage aboutToShow(const QDBusMessage& call);
    QDBusMessage aboutToShowGroup(const QDBusMessage& call);

    QDBusConnection connection_;
    QString path_;
    ExportedMenu menu_;
    MenuHosts hosts_;
    // Counts the layouts that hosts were told of.
    uint revision_ = 1;
    bool isKnown_ = false;
    // The rows whose levels the host has been given.
    std::set<int> givenLevels_;
    // The row in place of which the host gets a new one.
    std::optional<int> replaced_;
    // The new row, until the host knows it and can be given its level.
    std::optional<int> newRow_;
    // The rows that hosts with one column were told to hide.
    std::set<int> hidden_;
    std::function<void()> willPerform_;
    std::function<void()> didPerform_;
    // What to do after the call in progress has been answered.
    std::vector<std::function<void()>> afterAnswer_;
};

} // namespace quillbox
