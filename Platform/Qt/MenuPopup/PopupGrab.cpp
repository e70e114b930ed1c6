#include "PopupGrab.h"

#include <QGuiApplication>
#include <QWidget>
#include <QWindow>

namespace quillbox {

namespace {
    constexpr std::chrono::milliseconds kBetween { 75 };
    constexpr int kTimes = 40;
} // namespace

void PopupGrab::take(QWidget& popup)
{
    release();
    if (QGuiApplication::platformName() != QStringLiteral("xcb"))
        return;
    popup_ = &popup;
    ask(kTimes);
}

void PopupGrab::release()
{
    timer_.reset();
    popup_ = nullptr;
    awaitsKeyboard_ = false;
}

void PopupGrab::pointerWasHeardOf()
{
    if (!timer_ || awaitsKeyboard_)
        return;
    timer_.reset();
    ask(1);
}

void PopupGrab::ask(int timesLeft)
{
    if (QWindow* window = popup_->windowHandle()) {
        window->setMouseGrabEnabled(true);
        window->setKeyboardGrabEnabled(true);
    }
    if (timesLeft > 1)
        timer_ = Clock::current().after(kBetween, [this, timesLeft] { ask(timesLeft - 1); });
    else
        timer_.reset();
}

} // namespace quillbox
