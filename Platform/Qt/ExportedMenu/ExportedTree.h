#pragma once

#include <QByteArray>
#include <QString>

#include <cstddef>
#include <optional>
#include <unordered_map>
#include <vector>

namespace quillbox {

// One row as a host shows it. It is a copy, so that the model's items can be released.
struct ExportedRow {
    enum class Kind {
        text, // Shown disabled.
        item,
        submenu, // Opens a level and has no action.
        submenuWithAction,
        separator,
        openSuper, // Begins a level, in place of a click on the row to which the level belongs.
        more, // Ends a long level; the level below this row continues it.
    };

    Kind kind = Kind::text;
    // The whole title on one line. Hosts may be given a shortened one.
    QString title;
    // A name in the icon theme; if there is none, a picture as PNG.
    QString iconName;
    QByteArray iconData;
    // The index of the item in the model's menu. For `more`, the index of the first item below the row, and the number
    // of items there.
    std::size_t place = 0;
    std::size_t count = 0;
    // None for a row without a check mark.
    std::optional<bool> isChecked = std::nullopt;

    bool hasLevel() const { return kind == Kind::submenu || kind == Kind::submenuWithAction || kind == Kind::more; }
    bool looksLike(const ExportedRow& other) const;
};

// The rows that hosts know. An id is never used for another row; rows that look the same when their level is listed
// again keep their ids. The root has the id 0 and always exists.
class ExportedTree {
public:
    static constexpr int kRoot = 0;

    ExportedTree();

    bool contains(int id) const { return nodes_.contains(id); }

    // These must be called only with an id that is contained.
    const ExportedRow& row(int id) const { return nodes_.at(id).row; }
    int parent(int id) const { return nodes_.at(id).parent; }
    const std::vector<int>& children(int id) const { return nodes_.at(id).children; }
    // Returns the ids from the root to `id`, both included.
    std::vector<int> path(int id) const;
    // Replaces the level below `id`. Rows that are gone are removed with everything below them. Returns true if the
    // level has changed.
    bool setChildren(int id, std::vector<ExportedRow> rows);
    void removeChildren(int id);
    // Replaces a row by one with the same contents and level. Returns its id.
    int renew(int id);
    // From now on, a row keeps its id only if it and all rows above it in its level are as before.
    void neverMoveRows() { mayMoveRows_ = false; }

    int commonAncestor(int id, int other) const;
    // Returns all ids, each before those below it.
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
    bool mayMoveRows_ = true;
};

} // namespace quillbox
