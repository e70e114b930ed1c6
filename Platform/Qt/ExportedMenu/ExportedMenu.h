#pragma once

#include "Clock.h"
#include "ExportedTree.h"
#include "MenuTracking.h"

#include <chrono>
#include <functional>
#include <memory>
#include <optional>
#include <vector>

namespace quillbox {

// A menu of the model, as seen by a host that draws menus itself. Hosts refer to rows by id, announce levels in any
// order, twice or not at all, keep copies, and click rows of menus that have closed; this object translates that into
// well-ordered openings, closings and choices of a MenuTracking. Only one branch of levels is open in the model at a
// time.
//
// It keeps the two menus alive, and items only through menus that are open. MenuExporter puts it on the bus.
class ExportedMenu {
public:
    // If `menu` is still empty after it was updated, `reserve` (which may be null) is shown in its place.
    ExportedMenu(std::shared_ptr<NSMenu> menu, std::shared_ptr<NSMenu> reserve);

    const ExportedTree& tree() const { return tree_; }

    // Gives the root its rows by opening and closing the model's menu once, because hosts never ask an empty menu for
    // anything. Returns true if the rows have changed. Nothing happens while the host has the menu open. While an alert
    // runs or the menu is shown in another way, the filling is put off and becomes due.
    bool fill();
    // Whether a filling was put off.
    bool isFillDue() const { return isFillDue_; }
    bool isFilled() const { return isFilled_; }
    // Must be called if there is a host that can't move a row to another place.
    void neverMoveRows() { tree_.neverMoveRows(); }
    // Must be called when the host is gone, or before the menu is shown in another way.
    void close();

    // The functions below take what hosts say. Unknown ids are ignored.

    // The ways in which a host announces a level: by asking whether it changes before it is shown, or by saying that it
    // was opened. Both, in either order, are one opening; the same one again is another opening.
    enum class Announcement : unsigned { aboutToShow = 1, opened = 2 };
    // Opens the levels of one announcement one after another; none of them removes the rows of another. Returns true if
    // this opening gave the root other rows.
    bool announce(const std::vector<int>& ids, Announcement by);
    // Returns the rows that a host hides if it shows all levels in one column with room for `roomForRows` rows: those
    // beside the way to its deepest open level, if there is no room for all.
    std::vector<int> besideOpenLevels(std::size_t roomForRows) const;
    // Whether the level of that row is open and was announced in the other way, so that this announcement adds nothing.
    bool joinsAnother(int id, Announcement by) const;
    bool isOpen(int id) const { return openIndex(id).has_value(); }
    // Replaces the row of an open level, which stays open and counts as not announced yet. Returns the new row's id.
    int renew(int id);
    // Whether an announcement of that row would show a level.
    bool canOpen(int id) const;
    // The host has closed this level. The model's menus stay open for kClickWait, because a click may follow.
    void closed(int id);

    // Must be called for every call from the host. Not all hosts say that the menu was dismissed: one that has nothing
    // open below the top level, and is then silent for kSilence, has closed it.
    void heard();

    // The way to a row. It can still be followed if the rows have gone by the time that it is clicked.
    struct Choice {
        struct Step {
            int id;
            ExportedRow::Kind kind;
            QString title;
            std::size_t place;
        };
        // Rows of the model from the top level to the chosen one; empty if nothing can be chosen.
        std::vector<Step> steps;
    };
    Choice choice(int id) const;
    // Opens what has to be opened first, closes the menus and runs the action. Nothing is run if another row has taken
    // one of the places in the meantime. This object may have been destroyed when the call returns.
    void perform(const Choice& choice);

    static constexpr std::chrono::milliseconds kClickWait { 1000 };
    static constexpr std::chrono::milliseconds kSilence { 5000 };

    // Called once after each announcement that changed rows, with the id of the row below which all changes are.
    std::function<void(int id)> onLayoutChanged;
    // Called before the model's top menu is opened.
    std::function<void()> onWillOpen;
    // Returns whether the model's menu is open in another way, which a filling must not disturb.
    std::function<bool()> isShownElsewhere;

private:
    // A level that is open in the model, or, with `isMore`, a continued part of the level before it.
    struct OpenLevel {
        int id;
        bool isMore;
        unsigned announcedBy;
        bool hasOtherRows;
    };

    std::optional<std::size_t> openIndex(int id) const;
    bool joinsOpening(int id, Announcement by);
    std::optional<int> open(int id, Announcement by);
    bool openLevel(int id);
    bool openRoot();
    bool openSubmenu(std::size_t level, const Choice::Step& step);
    std::shared_ptr<NSMenuItem> itemAt(std::size_t level, const Choice::Step& step) const;
    void closeFrom(std::size_t index);
    void settleClosing();
    void dropClosedLevels(const std::vector<int>& kept);

    std::shared_ptr<NSMenu> menu_;
    std::shared_ptr<NSMenu> reserve_;
    MenuTracking tracking_;
    ExportedTree tree_;
    bool isFilled_ = false;
    bool isFillDue_ = false;
    // From the root downwards; each level is below the one before it.
    std::vector<OpenLevel> open_;
    // Levels that were closed, but whose rows the host may still click. They are removed at the next opening.
    std::vector<int> closed_;
    // The topmost level that the host has closed, as long as a click may follow.
    std::optional<int> closing_;
    std::unique_ptr<Clock::Timer> closingTimer_;
    std::unique_ptr<Clock::Timer> silenceTimer_;
};

} // namespace quillbox
