#include "AlertPresenter.h"
#include "QtClock.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <QDialog>
#include <QKeyEvent>
#include <QPushButton>
#include <QTextEdit>
#include <QTimer>

#include <functional>

using namespace quillbox;

namespace {

class AlertPresenterTest : public testing::Test {
protected:
    // Runs an alert and `look` while it is up; answers it where `look` did not.
    void run(const std::string& missingFile, const std::function<void(QDialog&)>& look, NSAlert alert = {})
    {
        alert.setMessageText("could not find this file:\n\n" + missingFile + "\n");
        alert.setInformativeText("It <b>may</b> have been deleted &amp; so on.");
        bool wasUp = false;
        QTimer::singleShot(0, [&] {
            QDialog* dialog = qobject_cast<QDialog*>(QApplication::activeModalWidget());
            ASSERT_TRUE(dialog);
            wasUp = presenter.isRunning();
            look(*dialog);
            dialog->accept();
        });
        presenter.run(alert);
        EXPECT_TRUE(wasUp);
        EXPECT_FALSE(presenter.isRunning());
    }

    AlertPresenter presenter;
};

TEST_F(AlertPresenterTest, ShowsTextsLetterByLetterToBeSelected)
{
    run("/a/<i>b</i>", [](QDialog& dialog) {
        const auto texts = dialog.findChildren<QTextEdit*>();
        ASSERT_EQ(texts.size(), 2);
        EXPECT_EQ(texts[0]->toPlainText(), "could not find this file:\n\n/a/<i>b</i>\n");
        EXPECT_EQ(texts[1]->toPlainText(), "It <b>may</b> have been deleted &amp; so on.");
        EXPECT_TRUE(texts[1]->textInteractionFlags().testFlag(Qt::TextSelectableByMouse));
    });
}

TEST_F(AlertPresenterTest, KeepsTheWidthThatWasSetAndGrowsToItsTexts)
{
    NSAlert alert;
    alert.setWindowFrame({ { 50, 60 }, { 600, 100 } });
    const auto look = [](QDialog& dialog) {
        EXPECT_EQ(dialog.width(), 600);
        EXPECT_EQ(dialog.geometry().topLeft(), QPoint(50, 60));
        for (const QTextEdit* text : dialog.findChildren<QTextEdit*>()) {
            // A long path is wrapped, not cut: nothing of it is outside.
            EXPECT_LE(text->document()->size().height(), text->height() + 1);
            EXPECT_LE(text->document()->idealWidth(), text->viewport()->width() + 1);
        }
    };
    run("/" + std::string(1500, 'x'), look, alert);
}

TEST_F(AlertPresenterTest, AnEndlessTextStaysOnTheScreen)
{
    run(std::string(50'000, 'x'), [](QDialog& dialog) {
        EXPECT_LE(dialog.height(), dialog.screen()->availableGeometry().height());
        const QPushButton* ok = dialog.findChildren<QPushButton*>()[0];
        EXPECT_TRUE(dialog.rect().contains(QRect(ok->mapTo(&dialog, QPoint()), ok->size())));
    });
}

TEST_F(AlertPresenterTest, ReturnAndEscapeAnswer)
{
    for (const int key : { Qt::Key_Return, Qt::Key_Enter, Qt::Key_Escape })
        for (const bool isInText : { false, true })
            run("/a", [&](QDialog& dialog) {
                if (isInText)
                    dialog.findChild<QTextEdit*>()->setFocus();
                QKeyEvent event(QEvent::KeyPress, key, Qt::NoModifier);
                QApplication::sendEvent(dialog.focusWidget(), &event);
                EXPECT_FALSE(dialog.isVisible()) << key << ' ' << isInText;
            });
}

TEST(QtClock, CallsOnceUnlessTheTimerGoesFirst)
{
    QtClock clock;
    int calls = 0;
    std::unique_ptr<Clock::Timer> own;
    // The action may let go of the timer that runs it.
    own = clock.after(std::chrono::milliseconds(0), [&] {
        own.reset();
        ++calls;
    });
    auto dropped = clock.after(std::chrono::milliseconds(0), [&] { calls += 100; });
    dropped.reset();
    while (calls == 0)
        QApplication::processEvents(QEventLoop::WaitForMoreEvents);
    QApplication::processEvents();
    EXPECT_EQ(calls, 1);
}

} // namespace
