#include "MenuHost.h"

#include <QCoreApplication>

#include <utility>

namespace quillbox {

namespace {

    const QString kInterface = QStringLiteral("com.canonical.dbusmenu");

} // namespace

MenuHost::MenuHost(QString service, QString path) : service_(std::move(service)), path_(std::move(path))
{
    client_.connection().connect(service_, path_, kInterface, QStringLiteral("LayoutUpdated"), this,
                                 SLOT(layoutUpdated(uint, int)));
    client_.connection().connect(service_, path_, kInterface, QStringLiteral("ItemsPropertiesUpdated"), this,
                                 SLOT(propertiesUpdated(QDBusMessage)));
}

QDBusMessage MenuHost::call(const QString& member, const QVariantList& arguments)
{
    return client_.call(service_, path_, kInterface, member, arguments);
}

QDBusMessage MenuHost::tell(int id, const QString& name)
{
    return call(QStringLiteral("Event"), { id, name, QVariant::fromValue(QDBusVariant(0)), 0U });
}

QString MenuHost::describe(const DBusMenuLayout& layout)
{
    QStringList rows;
    for (const DBusMenuLayout& row : layout.children) {
        const QString label = row.properties.value(QStringLiteral("label"), QStringLiteral("---")).toString();
        ids_[label] = row.id;
        rows.append(QStringLiteral("%1 %2").arg(row.id).arg(label));
        if (!row.children.isEmpty())
            rows.last() += QStringLiteral(" > (%1)").arg(describe(row));
    }
    return rows.join(QStringLiteral(", "));
}

QString MenuHost::layout(int parent, int depth, const QStringList& names)
{
    const QDBusMessage reply = call(QStringLiteral("GetLayout"), { parent, depth, names });
    if (reply.type() != QDBusMessage::ReplyMessage)
        return reply.errorName();
    revision_ = reply.arguments().at(0).toUInt();
    return describe(qdbus_cast<DBusMenuLayout>(reply.arguments().at(1)));
}

void MenuHost::layoutUpdated(uint revision, int parent)
{
    updates_.append(QStringLiteral("r%1 below %2").arg(revision).arg(parent));
}

void MenuHost::propertiesUpdated(const QDBusMessage& signal)
{
    for (const auto& row : qdbus_cast<DBusMenuPropertiesList>(signal.arguments().at(0))) {
        const QString what = row.properties.value(QStringLiteral("visible")).toBool() ? "show" : "hide";
        updates_.append(QStringLiteral("%1 %2").arg(what).arg(row.id));
    }
}

QStringList MenuHost::takeUpdates()
{
    // Whatever the menu sent before it answered this has come by then.
    call(QStringLiteral("GetProperty"), { 0, "label" });
    QCoreApplication::processEvents();
    return std::exchange(updates_, {});
}

QString MenuHost::answerOf(const QString& step)
{
    const QString what = step.section(u' ', 0, 0);
    const QString label = step.section(u' ', 1);
    if (what == QLatin1String("get")) {
        const QString rows = layout(id(label), 1);
        return rows + QStringLiteral(" r%1").arg(revision_);
    }
    const QDBusMessage reply =
        what == QLatin1String("about") ? call(QStringLiteral("AboutToShow"), { id(label) }) : tell(id(label), what);
    return reply.type() == QDBusMessage::ReplyMessage ? reply.arguments().value(0).toString() : reply.errorName();
}

std::string MenuHost::run(const std::string& script, const std::function<std::string()>& log)
{
    std::string transcript;
    for (const QString& line : QString::fromStdString(script).split(u'\n', Qt::SkipEmptyParts)) {
        const QString step = line.section(u':', 0, 0);
        QStringList came { answerOf(step) };
        came += takeUpdates();
        came.append(QString::fromStdString(log()));
        came.removeAll(QString());
        transcript += (step + QStringLiteral(": ") + came.join(QStringLiteral("; "))).trimmed().toStdString() + "\n";
    }
    return transcript;
}

} // namespace quillbox
