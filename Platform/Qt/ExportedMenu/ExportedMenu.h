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

// A menu of the model as a host shows it that draws menus itself. Hosts speak of rows by id, announce levels
// in any order, twice or not at all, keep copies, and click rows of menus that have closed; this object
// makes orderly openings, closings and choices of a MenuTracking out of it. One branch of levels is open in
// the model at a time.
//
// It keeps the two menus alive, and items only through menus that are open. MenuExporter puts it on the bus.
class ExportedMenu {
public:
    // Where `menu` is empty once it was brought up to date, `reserve` (may be null) is shown in its place.
    ExportedMenu(std::shared_ptr<NSMenu> menu, std::shared_ptr<NSMenu> reserve);

    const ExportedTree& tree() const { return tree_; }

    // Gives the root its rows by one opening and closing of the model, for hosts never ask an empty menu
    // anything. True where the rows are others than before. Nothing happens while the host has the menu open;
    // while an alert runs or the menu is shown in another way, filling falls due.
    bool fill();
    // Whether a filling had to be put off.
    bool isFillDue() const { return isFillDue_; }
    bool isFilled() const { return isFilled_; }
    // The host is gone, or the menu is about to be shown in another way.
    void close();

    // What hosts say. Ids that are not contained mean nothing.

    // A level is announced by asking whether it changes before it is shown, by saying that it was opened, or
    // by both in either order, which is one opening; the same again is another one.
    enum class Announcement : unsigned { aboutToShow = 1, opened = 2 };
    // Levels of one announcement are opened one after another; none of them takes another one's rows away.
    // True where this opening gave the root other rows.
    bool announce(const std::vector<int>& ids, Announcement by);
    // What a host hides that shows all levels in one column with room for `roomForRows` rows: the rows beside the way
    // to the deepest level that it has open, where it has not room for all.
    std::vector<int> besideOpenLevels(std::size_t roomForRows) const;
    // Whether the level of that row is open, and was announced in the other way, so that this announcement adds
    // nothing.
    bool joinsAnother(int id, Announcement by) const;
    // Whether an announcement of that row would show a level.
    bool canOpen(int id) const;
    // The menus of the model stay open for kClickWait, for a click may follow.
    void closed(int id);

    // A host has called, whatever it asked or told. Not all hosts say that the menu was dismissed: one that has nothing
    // open below the top level, and then is silent for kSilence, has closed it.
    void heard();

    // The way to a row, which is good even when the rows are gone by the time it is clicked.
    struct Choice {
        struct Step {
            int id;
            ExportedRow::Kind kind;
            QString title;
            std::size_t place;
        };
        // Rows of the model from the top level to the chosen one; empty where nothing can be chosen.
        std::vector<Step> steps;
    };
    Choice choice(int id) const;
    // Closes the menus and runs the action; opens what has to be opened first. Nothing is run where another
    // row is in one of the places by now. May return after the end of this object.
    void perform(const Choice& choice);

    static constexpr std::chrono::milliseconds kClickWait { 1000 };
    static constexpr std::chrono::milliseconds kSilence { 5000 };

    // Called once after each announcement that gave hosts something to read, with the id of the row below
    // which it all is.
    std::function<void(int id)> onLayoutChanged;
    // Called before the model's menu is opened at the top.
    std::function<void()> onWillOpen;
    // Whether the model's menu is open in another way, which no filling may disturb.
    std::function<bool()> isShownElsewhere;

private:
    // A level that is open in the model, or, with `isMore`, the part of the one before that it goes on with.
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
    // From the root down, each below the one before.
    std::vector<OpenLevel> open_;
    // Levels that closed and whose rows the host may still click; dropped at the next opening.
    std::vector<int> closed_;
    // The topmost level that the host has closed, while a click may follow.
    std::optional<int> closing_;
    std::unique_ptr<Clock::Timer> closingTimer_;
    std::unique_ptr<Clock::Timer> silenceTimer_;
};

} // namespace quillbox
