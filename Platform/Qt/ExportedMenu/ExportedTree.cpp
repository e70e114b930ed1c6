#include "ExportedTree.h"

#include <algorithm>
#include <map>
#include <utility>

namespace quillbox {

bool ExportedRow::looksLike(const ExportedRow& other) const
{
    return kind == other.kind && title == other.title && iconName == other.iconName && iconData == other.iconData
        && isChecked == other.isChecked;
}

ExportedTree::ExportedTree()
{
    nodes_[kRoot].row.kind = ExportedRow::Kind::submenu;
}

std::vector<int> ExportedTree::path(int id) const
{
    std::vector<int> ids { id };
    while (ids.back() != kRoot)
        ids.push_back(parent(ids.back()));
    std::reverse(ids.begin(), ids.end());
    return ids;
}

bool ExportedTree::setChildren(int id, std::vector<ExportedRow> rows)
{
    const std::vector<int> former = std::move(nodes_.at(id).children);
    std::multimap<QString, int> unclaimed;
    for (const int child : former)
        unclaimed.emplace(row(child).title, child);

    std::vector<int> children;
    children.reserve(rows.size());
    bool isAsBefore = true;
    for (ExportedRow& newRow : rows) {
        const auto [begin, end] = unclaimed.equal_range(newRow.title);
        const auto same =
            std::find_if(begin, end, [&](const auto& candidate) { return row(candidate.second).looksLike(newRow); });
        isAsBefore = isAsBefore && same != end && former[children.size()] == same->second;
        if (same != end && (mayMoveRows_ || isAsBefore)) {
            children.push_back(same->second);
            unclaimed.erase(same);
        } else {
            children.push_back(++lastId_);
        }
        Node& node = nodes_[children.back()];
        node.row = std::move(newRow);
        node.parent = id;
    }
    for (const auto& [title, child] : unclaimed)
        remove(child);
    const bool isOther = children != former;
    nodes_.at(id).children = std::move(children);
    return isOther;
}

void ExportedTree::removeChildren(int id)
{
    for (const int child : std::exchange(nodes_.at(id).children, {}))
        remove(child);
}

int ExportedTree::renew(int id)
{
    Node node = std::move(nodes_.at(id));
    nodes_.erase(id);
    const int newId = ++lastId_;
    std::vector<int>& siblings = nodes_.at(node.parent).children;
    std::replace(siblings.begin(), siblings.end(), id, newId);
    for (const int child : node.children)
        nodes_.at(child).parent = newId;
    nodes_[newId] = std::move(node);
    return newId;
}

void ExportedTree::remove(int id)
{
    removeChildren(id);
    nodes_.erase(id);
}

int ExportedTree::commonAncestor(int id, int other) const
{
    const std::vector<int> path1 = path(id);
    const std::vector<int> path2 = path(other);
    const auto parted = std::mismatch(path1.begin(), path1.end(), path2.begin(), path2.end());
    return *std::prev(parted.first);
}

std::vector<int> ExportedTree::allIds() const
{
    std::vector<int> ids;
    std::vector<int> pending { kRoot };
    while (!pending.empty()) {
        ids.push_back(pending.back());
        pending.pop_back();
        const std::vector<int>& below = children(ids.back());
        pending.insert(pending.end(), below.rbegin(), below.rend());
    }
    return ids;
}

} // namespace quillbox
