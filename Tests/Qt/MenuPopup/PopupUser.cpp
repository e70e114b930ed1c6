#include "PopupUser.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <QMouseEvent>
#include <QWheelEvent>
#include <QWindow>

#include <algorithm>

namespace quillbox {

namespace {

    int depth(const QWindow* window)
    {
        return window ? depth(window->transientParent()) + 1 : 0;
    }

} // namespace

std::vector<MenuPopup*> PopupUser::popups()
{
    std::vector<MenuPopup*> found;
    for (QWidget* widget : QApplication::topLevelWidgets())
        if (auto* popup = dynamic_cast<MenuPopup*>(widget); popup && popup->isVisible())
            found.push_back(popup);
    std::sort(found.begin(), found.end(),
              [](auto* a, auto* b) { return depth(a->windowHandle()) < depth(b->windowHandle()); });
    return found;
}

QRect PopupUser::rectOf(const std::string& title)
{
    for (MenuPopup* popup : popups())
        for (const auto& visible : popup->rows().visibleRows())
            if (popup->item(visible.row)->title() == title)
                return popup->rowRect(visible.row);
    ADD_FAILURE() << "no row " << title << " in sight";
    return {};
}

std::string PopupUser::selected()
{
    std::string titles;
    for (MenuPopup* popup : popups())
        titles += (titles.empty() ? "" : "/") + (popup->selection() ? popup->item(*popup->selection())->title() : "-");
    return titles;
}

void PopupUser::send(QEvent::Type type, QPoint position, Qt::MouseButton button, Qt::MouseButtons buttons,
                     Qt::KeyboardModifiers modifiers)
{
    QWidget* receiver = QApplication::activePopupWidget();
    ASSERT_TRUE(receiver);
    QMouseEvent event(type, receiver->mapFromGlobal(position), position, button, buttons, modifiers);
    QApplication::sendEvent(receiver, &event);
}

void PopupUser::click(QPoint position, Qt::MouseButton button, Qt::KeyboardModifiers modifiers)
{
    moveTo(position);
    press(position, button);
    // A press outside has closed the menu, and nobody here hears of its release.
    if (QApplication::activePopupWidget())
        release(position, button, modifiers);
}

void PopupUser::wheel(QPoint position, int notches)
{
    QWidget* receiver = QApplication::activePopupWidget();
    ASSERT_TRUE(receiver);
    QWheelEvent event(receiver->mapFromGlobal(position), position, {}, { 0, notches * -120 }, Qt::NoButton,
                      Qt::NoModifier, Qt::NoScrollPhase, false);
    QApplication::sendEvent(receiver, &event);
}

void PopupUser::key(int key, const QString& text, Qt::KeyboardModifiers modifiers)
{
    ASSERT_TRUE(QApplication::activePopupWidget());
    QKeyEvent event(QEvent::KeyPress, key, modifiers, text);
    QApplication::sendEvent(QApplication::activePopupWidget(), &event);
}

void PopupUser::type(const QString& text)
{
    for (const QChar character : text)
        key(character.toUpper().unicode(), character);
}

} // namespace quillbox
