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

// A menu for hosts that draw it themselves: com.canonical.dbusmenu at a path of the item's connection. What
// hosts ask and tell is translated for an ExportedMenu; this object keeps no rows. Ids that no row has, or
// that their row has lost, get an error.
//
// The host has its answer before a directory is listed, and a chosen row's action runs from the event loop.
class MenuExporter final : public QDBusVirtualObject {
public:
    // `menu` with `reserve` in its place while it is empty; see ExportedMenu.
    MenuExporter(QDBusConnection connection, QString path, std::shared_ptr<NSMenu> menu,
                 std::shared_ptr<NSMenu> reserve);
    ~MenuExporter() override;

    // A host has come; its first question finds the rows there.
    void fill();
    // An alert has ended, or the menu is no longer shown in another way: fills what could not be filled meanwhile.
    void fillIfDue();
    // The host is gone, or the menu is about to be shown in another way.
    void close() { menu_.close(); }
    // `willOpen` is called before the model's menu is opened for the host; `isOpen` tells whether it is open in another
    // way, which a host's questions alone don't disturb.
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
    // What the host with this connection is.
    MenuHostKind hostKind(const QString& connection) const { return hosts_.kind(connection); }

    QString introspect(const QString& path) const override;
    bool handleMessage(const QDBusMessage& message, const QDBusConnection& connection) override;

private:
    void fillOnce();
    void tellLayoutUpdated(int id);
    // Makes room for the deepest level in hosts that show all levels in one column.
    void hideBesideOpenLevels();
    QVariantMap propertiesFor(MenuHostKind host, int id) const;
    // False where no row has the id.
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
    // What hosts with one column were told to hide.
    std::set<int> hidden_;
    std::function<void()> willPerform_;
    std::function<void()> didPerform_;
    // What the call that is being answered has set off.
    std::vector<std::function<void()>> afterAnswer_;
};

} // namespace quillbox
