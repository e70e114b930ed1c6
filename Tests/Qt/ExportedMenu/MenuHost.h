#pragma once

#include "DBusMenuTypes.h"
#include "PrivateBus.h"

#include <QMap>
#include <QObject>
#include <QStringList>

namespace quillbox {

// A panel that draws an exported menu: calls its methods over the bus, hears its signals, and remembers the id of
// every row it was ever shown.
class MenuHost final : public QObject {
    Q_OBJECT

public:
    MenuHost(QString service, QString path);

    QDBusMessage call(const QString& member, const QVariantList& arguments);
    QDBusMessage tell(int id, const QString& name);

    // The rows below `parent` as text: "2 Papers > (3 a, 4 ---), 5 Note". The name of the error where there is
    // one.
    QString layout(int parent, int depth, const QStringList& names = {});
    // By the row's label; the last one shown under it.
    int id(const QString& label) const { return ids_.value(label, -1); }

    // Does the step that begins each line of `script`, and gives the script with what came of each: "about Papers:
    // true; r3 below 2; update Papers" has the answer, the layouts announced and what `log` says. Whatever a line
    // has after a colon is replaced. Steps are "about LABEL", "opened LABEL", "closed LABEL",
    // "clicked LABEL" and "get LABEL"; "top" is the root.
    std::string run(const std::string& script, const std::function<std::string()>& log);

    QStringList takeUpdates();

public slots:
    void layoutUpdated(uint revision, int parent);
    void propertiesUpdated(const QDBusMessage& signal);

private:
    QString answerOf(const QString& step);
    QString describe(const DBusMenuLayout& layout);

    QString service_;
    QString path_;
    BusClient client_;
    QMap<QString, int> ids_ { { QStringLiteral("top"), 0 } };
    QStringList updates_;
    uint revision_ = 0;
};

} // namespace quillbox
