#pragma once

#include <QByteArray>
#include <QString>

#include <cstddef>
#include <optional>
#include <unordered_map>
#include <vector>

namespace quillbox {

// One row as a host shows it: a copy, so that the model's items can go.
struct ExportedRow {
    enum class Kind {
        text, // Disabled.
        item,
        submenu, // Opens, has no action.
        submenuWithAction,
        separator,
        openSuper, // Begins a level in place of a click on the row that the level hangs on.
        more, // One of those that end a long level; the level below it goes on.
    };

    Kind kind = Kind::text;
    // The whole title on one line, as it is read; what hosts are given may be cut.
    QString title;
    // A name of the icon theme; where there is none, a picture as PNG.
    QString iconName;
    QByteArray iconData;
    // Index of the item in the model's menu; of `more`, of the first item below it, which `count` items go on from.
    std::size_t place = 0;
    std::size_t count = 0;
    // None for a row without a check mark.
    std::optional<bool> isChecked = std::nullopt;

    bool hasLevel() const { return kind == Kind::submenu || kind == Kind::submenuWithAction || kind == Kind::more; }
    bool looksLike(const ExportedRow& other) const;
};

// The rows that hosts know, each with an id that no other row ever gets. Rows that look the same when their
// level is listed again keep their ids. The root has the id 0 and is always there.
class ExportedTree {
public:
    static constexpr int kRoot = 0;

    ExportedTree();

    bool contains(int id) const { return nodes_.contains(id); }

    // Of an id that is contained:
    const ExportedRow& row(int id) const { return nodes_.at(id).row; }
    int parent(int id) const { return nodes_.at(id).parent; }
    const std::vector<int>& children(int id) const { return nodes_.at(id).children; }
    // From the root to `id`, both included.
    std::vector<int> path(int id) const;
    // Replaces the level below `id`. Rows that are gone go with all below them. True where the level is
    // another than before.
    bool setChildren(int id, std::vector<ExportedRow> rows);
    void removeChildren(int id);

    int commonAncestor(int id, int other) const;
    // Every row, each before those below it.
    std::vector<int> allIds() const;

private:
    struct Node {
        ExportedRow row;
        int parent = kRoot;
        std::vector<int> children;
    };

    void remove(int id);

    std::unordered_map<int, Node> nodes_;
    int lastId_ = kRoot;
};

} // namespace quillbox
