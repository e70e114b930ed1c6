#include "ExportedMenu.h"

#include "ExportedLevel.h"
#include "NSAlert.h"
#include "NSApplication.h"

#include <algorithm>

namespace quillbox {

namespace {

    constexpr int kRoot = ExportedTree::kRoot;
    using Kind = ExportedRow::Kind;

    // For levels that were opened on the way to another one: any later announcement of them is a new one.
    constexpr unsigned kByAll = ~0U;

    bool contains(const std::vector<int>& ids, int id)
    {
        return std::find(ids.begin(), ids.end(), id) != ids.end();
    }

} // namespace

ExportedMenu::ExportedMenu(std::shared_ptr<NSMenu> menu, std::shared_ptr<NSMenu> reserve)
    : menu_(std::move(menu)),
      reserve_(std::move(reserve))
{
}

bool ExportedMenu::fill()
{
    settleClosing();
    isFillDue_ = NSAlert::isAnyRunning() || (isShownElsewhere && isShownElsewhere());
    if (!open_.empty() || isFillDue_)
        return false;
    dropClosedLevels({ kRoot });
    if (!openLevel(kRoot))
        return false;
    const bool hasOtherRows = open_.front().hasOtherRows;
    closeFrom(0);
    return hasOtherRows;
}

void ExportedMenu::close()
{
    closing_.reset();
    closingTimer_.reset();
    silenceTimer_.reset();
    closeFrom(0);
}

bool ExportedMenu::canOpen(int id) const
{
    return tree_.contains(id) && tree_.row(id).hasLevel() && !NSAlert::isAnyRunning();
}

bool ExportedMenu::announce(const std::vector<int>& ids, Announcement by)
{
    if (NSAlert::isAnyRunning()) {
        if (contains(ids, kRoot))
            NSApplication::shared().activate(true); // The alert waits for its answer.
        return false;
    }
    settleClosing();
    std::vector<int> news;
    std::vector<int> kept;
    for (const int id : ids) {
        if (!canOpen(id) || joinsOpening(id, by))
            continue;
        news.push_back(id);
        const std::vector<int> path = tree_.path(id);
        kept.insert(kept.end(), path.begin(), path.end());
    }
    if (contains(news, kRoot))
        closeFrom(0);
    if (!news.empty())
        dropClosedLevels(kept);
    std::optional<int> changed;
    for (const int id : news) {
        const auto changedBelow = open(id, by);
        if (changed && changedBelow && tree_.contains(*changed))
            changed = tree_.commonAncestor(*changed, *changedBelow);
        else if (changedBelow)
            changed = changedBelow;
    }
    if (changed && onLayoutChanged)
        onLayoutChanged(*changed);
    return contains(ids, kRoot) && !open_.empty() && open_.front().hasOtherRows;
}

std::vector<int> ExportedMenu::besideOpenLevels(std::size_t roomForRows) const
{
    const std::size_t count = closing_ ? openIndex(*closing_).value_or(open_.size()) : open_.size();
    std::size_t rows = 0;
    for (std::size_t level = 0; level < count; ++level)
        rows += tree_.children(open_[level].id).size();
    std::vector<int> beside;
    for (std::size_t level = 0; rows > roomForRows && level + 1 < count; ++level) {
        for (const int row : tree_.children(open_[level].id)) {
            if (row != open_[level + 1].id)
                beside.push_back(row);
        }
    }
    return beside;
}

std::optional<std::size_t> ExportedMenu::openIndex(int id) const
{
    const auto found =
        std::find_if(open_.begin(), open_.end(), [id](const OpenLevel& level) { return level.id == id; });
    return found == open_.end() ? std::nullopt : std::optional(static_cast<std::size_t>(found - open_.begin()));
}

bool ExportedMenu::joinsAnother(int id, Announcement by) const
{
    const auto index = openIndex(id);
    return index && (open_[*index].announcedBy & static_cast<unsigned>(by)) == 0;
}

int ExportedMenu::renew(int id)
{
    OpenLevel& level = open_.at(*openIndex(id));
    level.id = tree_.renew(id);
    level.announcedBy = 0;
    return level.id;
}

bool ExportedMenu::joinsOpening(int id, Announcement by)
{
    if (!joinsAnother(id, by))
        return false;
    open_[*openIndex(id)].announcedBy |= static_cast<unsigned>(by);
    return true;
}

// Opens the level of `id` again, and those above it that are not open. Returns the id below which rows are to be read.
std::optional<int> ExportedMenu::open(int id, Announcement by)
{
    if (!tree_.contains(id))
        return std::nullopt;
    const std::vector<int> path = tree_.path(id);
    std::size_t shared = 0;
    while (shared < open_.size() && shared + 1 < path.size() && open_[shared].id == path[shared])
        ++shared;
    closeFrom(shared);
    std::optional<int> changed;
    for (std::size_t step = shared; step < path.size(); ++step) {
        if (!tree_.contains(path[step]) || !openLevel(path[step]))
            return changed;
        const bool isAsked = step + 1 == path.size();
        if (!changed && (open_.back().hasOtherRows || (isAsked && id != kRoot)))
            changed = path[step];
    }
    open_.back().announcedBy = static_cast<unsigned>(by);
    return changed;
}

// Opens the level of a row in the deepest open level.
bool ExportedMenu::openLevel(int id)
{
    const ExportedRow& row = tree_.row(id);
    const bool isMore = row.kind == Kind::more;
    if (id == kRoot) {
        if (!openRoot())
            return false;
    } else if (!isMore && !openSubmenu(tracking_.levelCount() - 1, { id, row.kind, row.title, row.place })) {
        return false;
    }
    std::erase(closed_, id);
    const auto& menu = tracking_.menu(tracking_.levelCount() - 1);
    open_.push_back({ id, isMore, kByAll, tree_.setChildren(id, exportedLevel(*menu, row)) });
    isFilled_ = true;
    return true;
}

bool ExportedMenu::openRoot()
{
    if (onWillOpen)
        onWillOpen();
    return tracking_.open(menu_, reserve_);
}

std::shared_ptr<NSMenuItem> ExportedMenu::itemAt(std::size_t level, const Choice::Step& step) const
{
    const NSMenu::ItemArray& items = tracking_.menu(level)->itemArray();
    if (step.place >= items.size())
        return nullptr;
    const std::shared_ptr<NSMenuItem>& item = items[step.place];
    return exportedKind(*item) == step.kind && exportedTitle(*item) == step.title ? item : nullptr;
}

bool ExportedMenu::openSubmenu(std::size_t level, const Choice::Step& step)
{
    const auto item = itemAt(level, step);
    return item && tracking_.openSubmenu(level, item);
}

void ExportedMenu::closeFrom(std::size_t index)
{
    if (index >= open_.size())
        return;
    for (std::size_t level = index; level < open_.size(); ++level)
        if (open_[level].id != kRoot)
            closed_.push_back(open_[level].id);
    open_.resize(index);
    tracking_.closeToLevelCount(static_cast<std::size_t>(
        std::count_if(open_.begin(), open_.end(), [](const OpenLevel& level) { return !level.isMore; })));
}

void ExportedMenu::closed(int id)
{
    const auto index = openIndex(id);
    if (!index || (closing_ && openIndex(*closing_) <= index))
        return;
    closing_ = id;
    closingTimer_ = Clock::current().after(kClickWait, [this] {
        settleClosing();
        heard();
    });
}

void ExportedMenu::heard()
{
    silenceTimer_.reset();
    if (open_.size() == 1 && !closing_)
        silenceTimer_ = Clock::current().after(kSilence, [this] { close(); });
}

void ExportedMenu::settleClosing()
{
    closingTimer_.reset();
    if (!closing_)
        return;
    const auto index = openIndex(*closing_);
    closing_.reset();
    if (index)
        closeFrom(*index);
}

void ExportedMenu::dropClosedLevels(const std::vector<int>& kept)
{
    std::erase_if(closed_, [&](int id) {
        if (contains(kept, id))
            return false;
        if (tree_.contains(id))
            tree_.removeChildren(id);
        return true;
    });
}

ExportedMenu::Choice ExportedMenu::choice(int id) const
{
    if (!tree_.contains(id) || id == kRoot)
        return {};
    if (tree_.row(id).kind == Kind::openSuper)
        id = tree_.parent(id);
    const Kind kind = tree_.row(id).kind;
    if (kind != Kind::item && kind != Kind::submenuWithAction)
        return {};
    Choice choice;
    for (const int step : tree_.path(id)) {
        const ExportedRow& row = tree_.row(step);
        if (step != kRoot && row.kind != Kind::more)
            choice.steps.push_back({ step, row.kind, row.title, row.place });
    }
    return choice;
}

void ExportedMenu::perform(const Choice& choice)
{
    if (choice.steps.empty())
        return;
    if (NSAlert::isAnyRunning()) {
        NSApplication::shared().activate(true);
        return;
    }
    closing_.reset();
    closingTimer_.reset();
    silenceTimer_.reset();
    std::vector<int> openIds;
    for (const OpenLevel& level : open_)
        if (!level.isMore)
            openIds.push_back(level.id);

    bool isThere = tracking_.isOpen() || openRoot();
    for (std::size_t level = 0; isThere && level + 1 < choice.steps.size(); ++level) {
        const Choice::Step& step = choice.steps[level];
        const bool isOpen = level + 1 < openIds.size() && openIds[level + 1] == step.id;
        if (!isOpen)
            openIds.resize(level + 1);
        isThere = isOpen || openSubmenu(level, step);
    }
    const auto item = isThere ? itemAt(choice.steps.size() - 1, choice.steps.back()) : nullptr;
    // The action may make the host call this object again, which must consider everything closed by then.
    for (const OpenLevel& level : open_)
        if (level.id != kRoot)
            closed_.push_back(level.id);
    open_.clear();
    if (!item || !tracking_.choose(item))
        tracking_.closeAll();
}

} // namespace quillbox
