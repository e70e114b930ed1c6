#include "FuzzTarget.h"

#include "Check.h"
#include "DBusMenuTypes.h"
#include "ExportedMenu.h"
#include "ManualClock.h"
#include "MenuExporter.h"

#include <QDBusConnection>

#include <map>
#include <set>

namespace quillbox {

namespace {

    // An endless tree of menus, whose rows depend on how often they were listed. It stops the process if the delegate
    // is called in an impossible order.
    class Model final : public NSObject, public NSMenuDelegate, public std::enable_shared_from_this<Model> {
    public:
        void menuNeedsUpdate(NSMenu& menu) override
        {
            ++updates_;
            NSMenu::ItemArray rows;
            for (unsigned row = 0; row < 2 + updates_ % 4; ++row)
                rows.push_back(makeRow(row));
            menu.setItemArray(rows);
        }
        void menuWillOpen(NSMenu& menu) override { QB_CHECK(open_.insert(&menu).second); }
        void menuDidClose(NSMenu& menu) override { QB_CHECK(open_.erase(&menu) == 1); }
        void choose(NSMenuItem*) { QB_CHECK(open_.empty()); }
        bool isClosed() const { return open_.empty(); }

    private:
        std::shared_ptr<NSMenuItem> makeRow(unsigned row)
        {
            static const Selector kChoose = makeSelector<&Model::choose>("chooseWithSender:");
            if (row % 4 == 3)
                return NSMenuItem::separatorItem();
            auto item = std::make_shared<NSMenuItem>("row " + std::to_string(row + updates_ % 2),
                                                     row % 3 == 2 ? nullptr : &kChoose);
            item->setTarget(shared_from_this());
            if (row % 2 == 1) {
                auto submenu = std::make_shared<NSMenu>(item->title());
                submenu->setDelegate(shared_from_this());
                item->setSubmenu(std::move(submenu));
            }
            return item;
        }

        unsigned updates_ = 0;
        std::set<const NSMenu*> open_;
    };

    // Returns an id that a host may name: one of the tree, or one that it never had or no longer has.
    int idFrom(const ExportedTree& tree, std::uint8_t choice)
    {
        const std::vector<int> ids = tree.allIds();
        return choice >= 0xF0 ? static_cast<int>(choice) * 7 - 1700 : ids[choice % ids.size()];
    }

    void checkTree(const ExportedTree& tree, std::map<int, ExportedRow::Kind>& known)
    {
        for (const int id : tree.allIds()) {
            QB_CHECK(known.emplace(id, tree.row(id).kind).first->second == tree.row(id).kind);
            for (const int child : tree.children(id))
                QB_CHECK(tree.contains(child) && tree.parent(child) == id);
        }
    }

    void tellMenu(ExportedMenu& menu, const ManualClock&, std::uint8_t call, int id, int other)
    {
        using Announcement = ExportedMenu::Announcement;
        const auto by = (call & 8U) != 0 ? Announcement::opened : Announcement::aboutToShow;
        switch (call % 6) {
        case 0:
            menu.announce({ id }, by);
            break;
        case 1:
            menu.announce({ id, other }, by);
            break;
        case 2:
            menu.closed(id);
            break;
        case 3:
            menu.perform(menu.choice(id));
            break;
        case 4:
            menu.fill();
            break;
        default:
            menu.close();
        }
    }

    // Three bytes are one call of a host: which call, and for which rows.
    void driveMenu(ManualClock& clock, const Data& bytes)
    {
        const auto model = std::make_shared<Model>();
        const auto top = std::make_shared<NSMenu>("top");
        top->setDelegate(model);
        ExportedMenu menu(top, nullptr);
        std::map<int, ExportedRow::Kind> known;
        for (std::size_t i = 0; i + 2 < bytes.size(); i += 3) {
            tellMenu(menu, clock, bytes[i], idFrom(menu.tree(), bytes[i + 1]), idFrom(menu.tree(), bytes[i + 2]));
            if ((bytes[i] & 0x80U) != 0)
                clock.advance(std::chrono::seconds(2));
            checkTree(menu.tree(), known);
        }
        menu.close();
        clock.advance(std::chrono::seconds(10));
        QB_CHECK(model->isClosed());
    }

    // Sends such calls as messages whose values may be of any type.
    void sendMessages(ManualClock& clock, const Data& bytes)
    {
        static const QStringList methods { "GetLayout",  "GetGroupProperties", "GetProperty",      "Event",
                                           "EventGroup", "AboutToShow",        "AboutToShowGroup", "Nonsense" };
        const auto model = std::make_shared<Model>();
        const auto top = std::make_shared<NSMenu>("top");
        top->setDelegate(model);
        const QDBusConnection nowhere(QStringLiteral("no bus"));
        {
            MenuExporter exporter(nowhere, QStringLiteral("/Menu"), top, nullptr,
                                  bytes.size() % 2 == 0 ? QString() : QStringLiteral("KDE"));
            exporter.fill();
            for (std::size_t i = 0; i + 3 < bytes.size(); i += 4) {
                QDBusMessage call =
                    QDBusMessage::createMethodCall(QStringLiteral("a.b"), QStringLiteral("/Menu"),
                                                   QStringLiteral("com.canonical.dbusmenu"), methods[bytes[i] % 8]);
                // Ids begin with -128, because hosts may ask for what never existed.
                const int id = int { bytes[i + 1] } - (bytes[i + 1] < 128 ? 0 : 256);
                for (unsigned argument = 0; argument < bytes[i + 2] % 5U; ++argument) {
                    switch ((bytes[i + 3] >> (argument * 2)) % 4) {
                    case 0:
                        call << id;
                        break;
                    case 1:
                        call << QString::number(id);
                        break;
                    case 2:
                        call << QVariant::fromValue(QList<int> { id, 0 });
                        break;
                    default:
                        call << QVariant::fromValue(QDBusVariant(id));
                    }
                }
                exporter.handleMessage(call, nowhere);
            }
            exporter.close();
        }
        clock.advance(std::chrono::seconds(10));
        QB_CHECK(model->isClosed());
    }

    void driveHost(const Data& bytes)
    {
        startDisplay();
        ManualClock clock;
        if (bytes.empty())
            return;
        const Data rest(bytes.begin() + 1, bytes.end());
        if (bytes[0] % 2 == 0)
            driveMenu(clock, rest);
        else
            sendMessages(clock, rest);
    }

    const FuzzTarget kTarget("exported-menu", driveHost);

} // namespace

} // namespace quillbox
