#include "MainMenuItemSaver.h"

#include "MainMenuItem.h"
#include "PropertyList.h"
#include "Unicode.h"

namespace quillbox {

namespace {

    // Reads the fields of one record. After a field that is missing or of another type, `failed` describes it.
    class FieldReader {
    public:
        explicit FieldReader(const PropertyList& record) : record_(record) { }

        template <class T>
        void read(const char* key, T& field)
        {
            const PropertyList* value = record_.value(key);
            if (!value || !take(*value, field))
                fail(key);
        }
        const std::optional<Error>& failure() const { return failure_; }

    private:
        template <class T>
        static bool take(const PropertyList& value, T& field)
        {
            if (const T* content = value.as<T>()) {
                field = *content;
                return true;
            }
            return false;
        }
        static bool take(const PropertyList& value, std::int64_t& field) { return assign(value.asInt64(), field); }
        static bool take(const PropertyList& value, std::uint64_t& field) { return assign(value.asUInt64(), field); }
        template <class T>
        static bool assign(const std::optional<T>& content, T& field)
        {
            field = content.value_or(field);
            return content.has_value();
        }
        void fail(const char* key)
        {
            if (!failure_)
                failure_ = Error { 0, std::string("a record has no usable \"") + key + "\"", {} };
        }

        const PropertyList& record_;
        std::optional<Error> failure_;
    };

    // Reads the fields that both versions have, in the order of the record.
    template <class Record>
    void readFirstFields(FieldReader& reader, Record& record)
    {
        reader.read("menuItemType", record.menuItemType);
        reader.read("displayString", record.displayString);
        reader.read("unixPath", record.unixPath);
        reader.read("bookmarkData", record.bookmarkData);
    }

    template <class Record>
    void readLastFields(FieldReader& reader, Record& record)
    {
        reader.read("noRecentItemsOlderThan", record.noRecentItemsOlderThan);
        reader.read("maxNumberOfRecentItems", record.maxNumberOfRecentItems);
    }

    void readOptions(FieldReader& reader, MainMenuItemSaver& record)
    {
        reader.read("optionFlags", record.optionFlags);
    }

    void readOptions(FieldReader& reader, MainMenuItemSaver_v1& record)
    {
        reader.read("showHiddenFiles", record.showHiddenFiles);
        reader.read("showPathAsTooltip", record.showPathAsTooltip);
        reader.read("showAsEnabled", record.showAsEnabled);
    }

    template <class Record>
    Result<std::vector<Record>> decodeRecords(const Data& bytes)
    {
        const Result<PropertyList> list = PropertyList::fromData(bytes);
        if (!list)
            return list.error();
        const auto* elements = list->template as<PropertyList::Array>();
        if (!elements)
            return Error { 0, "the stored value is no array", {} };
        std::vector<Record> records;
        records.reserve(elements->size());
        for (const PropertyList& element : *elements) {
            Record record;
            FieldReader reader(element);
            readFirstFields(reader, record);
            readOptions(reader, record);
            readLastFields(reader, record);
            if (reader.failure())
                return *reader.failure();
            records.push_back(std::move(record));
        }
        return records;
    }

} // namespace

MainMenuItemSaver::MainMenuItemSaver(const MainMenuItem& item)
    : menuItemType(rawValue(item.menuItemType)),
      displayString(unicode::displayText(item.displayString)),
      unixPath(unicode::displayText(item.unixPath.value_or(""))),
      optionFlags(item.optionFlagsSv.rawValue()),
      noRecentItemsOlderThan(item.noRecentItemsOlderThan ? *item.noRecentItemsOlderThan : Date::now()),
      maxNumberOfRecentItems(item.maxNumberOfRecentItems)
{
    if (item.fileURL) {
        if (const auto bookmark = item.fileURL->bookmarkData())
            bookmarkData = *bookmark;
    }
    if (bookmarkData.empty())
        bookmarkData = item.bookmarkDataRaw.value_or(Data {});
}

Result<std::vector<MainMenuItemSaver>> MainMenuItemSaver::decodeList(const Data& bytes)
{
    return decodeRecords<MainMenuItemSaver>(bytes);
}

Result<Data> MainMenuItemSaver::encodeList(const std::vector<MainMenuItemSaver>& records)
{
    PropertyList::Array list;
    list.reserve(records.size());
    for (const MainMenuItemSaver& record : records) {
        list.emplace_back(PropertyList::Dictionary {
            { "menuItemType", record.menuItemType },
            { "displayString", record.displayString },
            { "unixPath", record.unixPath },
            { "bookmarkData", record.bookmarkData },
            { "optionFlags", record.optionFlags },
            { "noRecentItemsOlderThan", record.noRecentItemsOlderThan },
            { "maxNumberOfRecentItems", record.maxNumberOfRecentItems },
        });
    }
    return PropertyList(std::move(list)).binaryData();
}

Result<std::vector<MainMenuItemSaver_v1>> MainMenuItemSaver_v1::decodeList(const Data& bytes)
{
    return decodeRecords<MainMenuItemSaver_v1>(bytes);
}

MainMenuItemSaver MainMenuItemSaver_v1::upgraded() const
{
    MenuOptionFlagsSv options;
    if (!showAsEnabled)
        options.insert(menuOptionFlagsSv::showPlaintextAsDisabled);
    if (showHiddenFiles)
        options.insert(menuOptionFlagsSv::showHiddenItems);
    if (showPathAsTooltip)
        options.insert(menuOptionFlagsSv::showPathAsTooltip);

    MainMenuItemSaver record;
    record.menuItemType = menuItemType;
    record.displayString = displayString;
    record.unixPath = unixPath;
    record.bookmarkData = bookmarkData;
    record.optionFlags = options.rawValue();
    record.noRecentItemsOlderThan = noRecentItemsOlderThan;
    record.maxNumberOfRecentItems = maxNumberOfRecentItems;
    return record;
}

} // namespace quillbox
