#include "MenuPresenter.h"

#include "Clock.h"
#include "MenuKeyboard.h"
#include "MenuLevels.h"
#include "MenuPointer.h"
#include "MenuText.h"
#include "MenuWarmUp.h"

#include <QCursor>
#include <QScreen>
#include <QToolTip>

#include <cmath>
#include <optional>
#include <sstream>

namespace quillbox {

namespace {

    // If the anchor has no size, a press within this distance counts as one on the icon.
    constexpr int kNearAnchor = 24;

    QRect inDevicePixels(const QRect& rect, const QScreen& screen)
    {
        const QPoint origin = screen.geometry().topLeft();
        const double ratio = screen.devicePixelRatio();
        const auto scaled = [ratio](int length) { return static_cast<int>(std::lround(length * ratio)); };
        const QPoint offset = rect.topLeft() - origin;
        return { origin.x() + scaled(offset.x()), origin.y() + scaled(offset.y()), scaled(rect.width()),
                 scaled(rect.height()) };
    }

    std::ostream& operator<<(std::ostream& out, const QRect& rect)
    {
        return out << rect.x() << ',' << rect.y() << ' ' << rect.width() << 'x' << rect.height();
    }

} // namespace

// The popups, and the objects that control them. These are kept until the next opening, so that an event in which the
// menu closes can still return through them.
class MenuPresenter::Session final : public MenuPopupEvents {
public:
    Session(const MenuPresenter& presenter, AssistiveTechnology listener) : levels(*this, listener)
    {
        levels.runDrag = [&presenter](const FileDrag& drag) { presenter.runDrag(drag); };
        levels.onClosed = [this, &presenter] {
            if (pointer_)
                pointer_->stop();
            if (keyboard_)
                keyboard_->stop();
            if (presenter.onClosed)
                presenter.onClosed();
        };
    }

    bool open(const std::shared_ptr<NSMenu>& menu, QRect anchor, const std::shared_ptr<NSMenu>& reserve, QWindow* owner)
    {
        if (isSameClick(anchor))
            return false;
        warmUp.end();
        levels.closeToCount(0);
        if (!levels.open(menu, anchor, reserve, owner))
            return false;
        pointer_.emplace(levels, QCursor::pos());
        keyboard_.emplace(levels);
        return true;
    }

    void beginByKeyboard()
    {
        if (!levels.isOpen())
            return;
        levels.awaitKeyboard();
        keyboard_->selectFirst();
    }

    void pointerMoved(QPoint position, Qt::MouseButtons buttons) override
    {
        levels.pointerWasHeardOf();
        pointer_->moved(position, buttons);
    }

    void pointerPressed(QPoint position, Qt::MouseButton button) override
    {
        if (levels.levelAt(position)) {
            pointer_->pressed(position, button);
            return;
        }
        pressThatClosed_ = Press { position, Clock::current().uptime() };
        levels.closeToCount(0);
    }

    void pointerReleased(QPoint position, Qt::KeyboardModifiers modifiers) override
    {
        pointer_->released(position, modifiers);
    }

    void wheelTurned(QPoint position, double pixels) override { pointer_->wheelTurned(position, pixels); }

    void keyPressed(QKeyEvent& event) override
    {
        pointer_->cancelPending();
        keyboard_->pressed(event);
        if (levels.isOpen())
            pointer_->explain(levels.activeLevel(), levels.popup(levels.activeLevel()).selection());
    }

    void rowRequested(MenuPopup& popup, std::size_t row, RowRequest request) override
    {
        const std::optional<std::size_t> level = levelOf(popup);
        if (!level || !popup.isSelectable(row))
            return;
        pointer_->cancelPending();
        popup.bringIntoSight(row);
        levels.select(*level, row);
        if (request == RowRequest::choose)
            keyboard_->activateSelected(MenuTracking::Choice::ordinary);
        else if (request == RowRequest::openSubmenu)
            keyboard_->openSelected();
        else if (request == RowRequest::openItemMenu)
            keyboard_->openItemMenu();
    }

    void narrowingTextChanged(MenuPopup& popup) override
    {
        if (const std::optional<std::size_t> level = levelOf(popup)) {
            pointer_->cancelPending();
            pointer_->explain(*level, std::nullopt);
            levels.narrow(*level);
        }
    }

    void wasHidden(MenuPopup& popup) override
    {
        if (const std::optional<std::size_t> level = levelOf(popup))
            levels.closeToCount(*level);
    }

    MenuLevels levels;
    MenuWarmUp warmUp { *this };

private:
    std::optional<std::size_t> levelOf(const MenuPopup& popup) const
    {
        for (std::size_t level = 0; level < levels.count(); ++level)
            if (&levels.popup(level) == &popup)
                return level;
        return std::nullopt;
    }

    bool isSameClick(QRect anchor) const
    {
        if (!pressThatClosed_ || Clock::current().uptime() - pressThatClosed_->time > kSameClick)
            return false;
        if (anchor.isEmpty())
            return (pressThatClosed_->position - anchor.topLeft()).manhattanLength() <= kNearAnchor;
        return anchor.contains(pressThatClosed_->position);
    }

    struct Press {
        QPoint position;
        std::chrono::milliseconds time;
    };

    std::optional<MenuPointer> pointer_;
    std::optional<MenuKeyboard> keyboard_;
    std::optional<Press> pressThatClosed_;
};

MenuPresenter::MenuPresenter(AssistiveTechnology listener) : session_(std::make_unique<Session>(*this, listener)) { }

MenuPresenter::~MenuPresenter() = default;

void MenuPresenter::warmUp()
{
    session_->warmUp.begin();
}

bool MenuPresenter::popUp(std::shared_ptr<NSMenu> menu, QRect anchor, std::shared_ptr<NSMenu> reserve, QWindow* owner)
{
    return session_->open(menu, anchor, reserve, owner);
}

void MenuPresenter::beginByKeyboard()
{
    session_->beginByKeyboard();
}

bool MenuPresenter::isOpen() const
{
    return session_->levels.isOpen();
}

void MenuPresenter::close()
{
    session_->levels.closeToCount(0);
}

std::string MenuPresenter::describeOpenLevels() const
{
    std::ostringstream out;
    for (std::size_t level = 0; level < session_->levels.count(); ++level) {
        const MenuPopup& popup = session_->levels.popup(level);
        out << "level " << level << ": " << inDevicePixels(popup.geometry(), *popup.screen()) << '\n';
        for (const MenuLayout::VisibleRow& visible : popup.rows().visibleRows()) {
            const NSMenuItem& item = *popup.item(visible.row);
            const QString title = item.isSeparatorItem() ? QStringLiteral("---") : shownLines(item).join(QChar(' '));
            out << "  " << inDevicePixels(popup.rowRect(visible.row), *popup.screen()) << ' ' << title.toStdString()
                << '\n';
        }
    }
    return out.str();
}

} // namespace quillbox
