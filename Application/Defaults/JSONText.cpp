#include "JSONText.h"

#include <QDateTime>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <cmath>

namespace quillbox::jsontext {

namespace {

    QJsonValue valueOf(const PropertyList& list)
    {
        if (const auto* array = list.as<PropertyList::Array>()) {
            QJsonArray values;
            for (const PropertyList& element : *array)
                values.append(valueOf(element));
            return values;
        }
        if (const auto* entries = list.as<PropertyList::Dictionary>()) {
            QJsonObject object;
            for (const auto& [key, entry] : *entries)
                object.insert(QString::fromStdString(key), valueOf(entry));
            return object;
        }
        if (const auto* boolean = list.as<bool>())
            return *boolean;
        if (const auto number = list.asInt64())
            return qint64 { *number };
        if (const auto large = list.asUInt64())
            return static_cast<double>(*large);
        if (const auto* real = list.as<double>())
            return *real;
        if (const auto* date = list.as<Date>()) {
            const auto seconds = static_cast<qint64>(std::floor(date->secondsSinceUnixEpoch()));
            return QDateTime::fromSecsSinceEpoch(seconds).toUTC().toString(Qt::ISODate);
        }
        if (const auto* bytes = list.as<Data>())
            return QString::fromLatin1(
                QByteArray(reinterpret_cast<const char*>(bytes->data()), static_cast<qsizetype>(bytes->size()))
                    .toBase64());
        return QString::fromStdString(*list.as<std::string>());
    }

    // JSON's null stands for nothing here.
    PropertyList listOf(const QJsonValue& value)
    {
        switch (value.type()) {
        case QJsonValue::Array: {
            PropertyList::Array array;
            const QJsonArray elements = value.toArray();
            for (const auto& element : elements)
                array.push_back(listOf(element));
            return array;
        }
        case QJsonValue::Object: {
            PropertyList::Dictionary entries;
            const QJsonObject object = value.toObject();
            for (auto entry = object.begin(); entry != object.end(); ++entry)
                if (!entry.value().isNull())
                    entries.insert_or_assign(entry.key().toStdString(), listOf(entry.value()));
            return entries;
        }
        case QJsonValue::Bool:
            return value.toBool();
        case QJsonValue::Double: {
            const double real = value.toDouble();
            const qint64 number = value.toInteger();
            return static_cast<double>(number) == real ? PropertyList(std::int64_t { number }) : PropertyList(real);
        }
        default:
            return value.toString().toStdString();
        }
    }

} // namespace

std::string write(const PropertyList& list)
{
    const QJsonValue value = valueOf(list);
    const QJsonDocument document = value.isArray() ? QJsonDocument(value.toArray()) : QJsonDocument(value.toObject());
    return document.toJson().toStdString();
}

Result<PropertyList> read(const std::string& text)
{
    QJsonParseError problem;
    const QJsonDocument document = QJsonDocument::fromJson(QByteArray::fromStdString(text), &problem);
    if (problem.error != QJsonParseError::NoError)
        return Error { 0,
                       "the JSON is damaged at byte " + std::to_string(problem.offset) + ": "
                           + problem.errorString().toStdString(),
                       {} };
    return listOf(document.isArray() ? QJsonValue(document.array()) : QJsonValue(document.object()));
}

} // namespace quillbox::jsontext
