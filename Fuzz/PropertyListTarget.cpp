#include "FuzzTarget.h"

#include "Check.h"
#include "MainMenuItemSaver.h"
#include "PropertyList.h"

namespace quillbox {

namespace {

    // Lists are compared by their bytes, because with == a "not a number" differs from itself.
    Data written(const PropertyList& list)
    {
        const Result<Data> bytes = list.binaryData();
        QB_CHECK(bytes);
        return *bytes;
    }

    // Reads lists in either form, and the records of menu items. Whatever can be read can be written, and is the same
    // when it is read again.
    void readPropertyList(const Data& bytes)
    {
        const Result<PropertyList> list = PropertyList::fromData(bytes);
        if (!list) {
            QB_CHECK(!list.error().what.empty());
            QB_CHECK(!MainMenuItemSaver::decodeList(bytes));
            return;
        }
        const Data once = written(*list);
        const Result<PropertyList> again = PropertyList::fromData(once);
        QB_CHECK(again && written(*again) == once);

        if (const auto records = MainMenuItemSaver::decodeList(bytes)) {
            const Result<Data> encoded = MainMenuItemSaver::encodeList(*records);
            QB_CHECK(encoded);
            const auto decoded = MainMenuItemSaver::decodeList(*encoded);
            QB_CHECK(decoded && *MainMenuItemSaver::encodeList(*decoded) == *encoded);
        }
        if (const auto old = MainMenuItemSaver_v1::decodeList(bytes)) {
            for (const MainMenuItemSaver_v1& record : *old)
                QB_CHECK(record.upgraded().optionFlags < 8);
        }
    }

    const FuzzTarget kTarget("property-list", readPropertyList);

} // namespace

} // namespace quillbox
