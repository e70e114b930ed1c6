#include "TitleSearch.h"

#include "MenuText.h"
#include "Unicode.h"

#include <QChar>

#include <array>
#include <cstring>
#include <unordered_map>

namespace quillbox {

namespace {

    constexpr char kBetween = '\0';

    // Folds titles. A character folds the same way wherever it stands, so each one that is not ASCII is looked up once.
    class Folder {
    public:
        // `wordBegins` gets an element for each byte that is appended to `text`.
        void append(const std::string& title, std::string& text, std::vector<char>& wordBegins)
        {
            bool isInWord = false;
            for (std::size_t position = 0; position < title.size();) {
                const auto byte = static_cast<unsigned char>(title[position]);
                if (byte >= 0x80) {
                    const Folded& folded = this->folded(unicode::nextCodePoint(title, position));
                    if (folded.text.empty())
                        continue;
                    text += folded.text;
                    wordBegins.push_back(isInWord ? 0 : 1);
                    wordBegins.resize(text.size());
                    isInWord = folded.isOfWord;
                    continue;
                }
                const bool isCapital = byte >= 'A' && byte <= 'Z';
                text += static_cast<char>(isCapital ? byte + ('a' - 'A') : byte == kBetween ? ' ' : byte);
                wordBegins.push_back(isInWord ? 0 : 1);
                isInWord = isCapital || (byte >= 'a' && byte <= 'z') || (byte >= '0' && byte <= '9');
                ++position;
            }
        }

    private:
        struct Folded {
            std::string text;
            // Whether it is a letter or a number.
            bool isOfWord = false;
        };

        const Folded& folded(char32_t character)
        {
            const auto [entry, isNew] = known_.try_emplace(character);
            if (isNew)
                entry->second = { foldedForSearch(QString::fromUcs4(&character, 1)).toStdString(),
                                  QChar::isLetterOrNumber(character) };
            return entry->second;
        }

        std::unordered_map<char32_t, Folded> known_;
    };

    enum Rank { kTitleBegin, kWordBegin, kAnywhere, kRankCount };

} // namespace

TitleSearch::TitleSearch(const NSMenu& menu)
{
    Folder folder;
    const NSMenu::ItemArray& items = menu.itemArray();
    std::size_t size = items.size();
    for (const auto& item : items)
        size += item->title().size();
    titles_.reserve(size);
    wordBegins_.reserve(size);
    begins_.reserve(items.size() + 1);
    rows_.reserve(items.size());
    for (std::size_t row = 0; row < items.size(); ++row) {
        const NSMenuItem& item = *items[row];
        if (item.isSeparatorItem() || !item.isEnabled())
            continue;
        begins_.push_back(static_cast<std::uint32_t>(titles_.size()));
        rows_.push_back(static_cast<std::uint32_t>(row));
        folder.append(item.attributedTitle() ? item.attributedTitle()->string() : item.title(), titles_, wordBegins_);
        titles_ += kBetween;
        wordBegins_.push_back(false);
    }
    begins_.push_back(static_cast<std::uint32_t>(titles_.size()));
}

TitleSearch::Rows TitleSearch::rowsContaining(const QString& typed) const
{
    const std::string wanted = foldedForSearch(typed).toStdString();
    if (wanted.empty())
        return {};
    std::array<Rows, kRankCount> found;
    const char* const begin = titles_.data();
    const char* const end = begin + titles_.size();
    const auto next = [&](const char* from, const char* to) {
        const void* at = ::memmem(from, static_cast<std::size_t>(to - from), wanted.data(), wanted.size());
        return static_cast<const char*>(at);
    };
    std::size_t title = 0;
    for (const char* at = begin; (at = next(at, end));) {
        while (begin + begins_[title + 1] <= at)
            ++title;
        const char* const titleBegin = begin + begins_[title];
        const char* const titleEnd = begin + begins_[title + 1];
        Rank rank = at == titleBegin ? kTitleBegin : kAnywhere;
        for (const char* word = at; rank == kAnywhere && word; word = next(word + 1, titleEnd))
            if (wordBegins_[static_cast<std::size_t>(word - begin)])
                rank = kWordBegin;
        found[rank].push_back(rows_[title]);
        at = titleEnd;
    }
    Rows rows = std::move(found[kTitleBegin]);
    for (const Rank rank : { kWordBegin, kAnywhere })
        rows.insert(rows.end(), found[rank].begin(), found[rank].end());
    return rows;
}

} // namespace quillbox
