#include "OpenPanelPresenter.h"
#include "FileManager.h"
#include "Installed.h"
#include "SheetShield.h"
#include "TemporaryDirectory.h"
#include "TypedPath.h"
#include "Unprivileged.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QApplication>
#include <QDialog>
#include <QHeaderView>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTreeView>

#include <algorithm>
#include <sys/stat.h>

using namespace quillbox;
using testing::ElementsAre;

namespace {

// A panel that is up on a window, over a directory of its own, and a person at its keyboard.
class OpenPanel : public testing::Test {
protected:
    OpenPanel()
    {
        home.makeDirectory("Folder");
        home.makeDirectory("Tool.app");
        home.writeFile("Folder/inside.txt");
        home.writeFile("file 2.txt", "22");
        home.writeFile("file 10.txt", "1");
        home.writeFile(".hidden");
        home.makeLink("link", "Folder");
        home.makeLink("broken", "nowhere");
        home.writeFile("alias.desktop", "[Desktop Entry]\nType=Link\nURL=file://" + home.path("file 2.txt") + "\n");
        home.writeFile("odd\xff\xfe.txt");
        home.makeDirectory("caf\xe9");
        home.writeFile("caf\xe9/in\xe9.txt");
        panel->setCanChooseDirectories(true);
        panel->setAllowsMultipleSelection(true);
        panel->setPrompt("Add This Item");
    }

    ~OpenPanel() override
    {
        // The answer of a panel that is still up.
        parent.reset();
        QApplication::processEvents();
    }

    void begin()
    {
        panel->setDirectoryURL(URL::fileURLWithPath(home.path()));
        parent->show();
        OpenPanelPresenter::begin(panel, parent.get(), [this](int response) { responses.push_back(response); });
    }
    // What the person is told at the end; waits for it.
    int answer()
    {
        EXPECT_TRUE(responses.empty()) << "answered before the event had ended";
        while (responses.empty())
            QApplication::processEvents(QEventLoop::WaitForMoreEvents);
        QApplication::processEvents();
        EXPECT_EQ(responses.size(), 1U);
        return responses.front();
    }
    std::vector<std::string> chosen() const
    {
        std::vector<std::string> paths;
        for (const URL& url : panel->urls())
            paths.push_back(url.path().substr(std::min(url.path().size(), home.path().size() + 1)));
        return paths;
    }

    template <class Widget>
    Widget& part() const
    {
        return *parent->findChild<QDialog*>()->findChild<Widget*>();
    }
    QTreeView& table() const { return part<QTreeView>(); }
    QPushButton& button(const QString& text) const
    {
        for (QPushButton* button : parent->findChildren<QPushButton*>()) {
            if (button->text().remove(QChar('&')) == text)
                return *button;
        }
        throw std::runtime_error("no such button");
    }
    QPushButton& confirm() const { return button("Add This Item"); }
    std::vector<std::string> shown() const
    {
        std::vector<std::string> names;
        for (int row = 0; row < table().model()->rowCount(); ++row)
            names.push_back(table().model()->index(row, 0).data().toString().toStdString());
        return names;
    }
    void select(const std::vector<std::string>& names)
    {
        const auto rows = shown();
        table().clearSelection();
        for (std::size_t row = 0; row < rows.size(); ++row) {
            if (std::find(names.begin(), names.end(), rows[row]) != names.end())
                table().selectionModel()->select(table().model()->index(static_cast<int>(row), 0),
                                                 QItemSelectionModel::Select | QItemSelectionModel::Rows);
        }
    }
    static void press(QWidget& widget, int key, const QString& text = {})
    {
        QKeyEvent event(QEvent::KeyPress, key, Qt::NoModifier, text);
        QApplication::sendEvent(&widget, &event);
    }
    void type(const std::string& text) const
    {
        part<QLineEdit>().setFocus();
        part<QLineEdit>().selectAll();
        press(part<QLineEdit>(), Qt::Key_A, QString::fromStdString(text));
    }

    TemporaryDirectory home;
    std::unique_ptr<QWidget> parent = std::make_unique<QWidget>();
    std::shared_ptr<NSOpenPanel> panel = std::make_shared<NSOpenPanel>();
    std::vector<int> responses;
};

TEST_F(OpenPanel, ListsDirectoriesFirstThenByTheColumnThatIsChosen)
{
    begin();
    EXPECT_THAT(shown(),
                ElementsAre("caf\uFFFD", "Folder", "link", "Tool.app", "alias.desktop", "broken", "file 2.txt",
                            "file 10.txt", "odd\uFFFD.txt"));
    select({ "broken" });
    table().sortByColumn(1, Qt::DescendingOrder);
    EXPECT_THAT(shown(),
                ElementsAre("caf\uFFFD", "Folder", "link", "Tool.app", "alias.desktop", "broken", "file 2.txt",
                            "file 10.txt", "odd\uFFFD.txt"));
    EXPECT_EQ(table().selectionModel()->selectedRows().at(0).data(), "broken");
}

TEST_F(OpenPanel, GivesWhatIsSelected)
{
    struct Case {
        std::vector<std::string> selected;
        bool resolves;
        std::vector<std::string> given;
    };
    const std::string odd = "odd\uFFFD.txt";
    for (const Case& example : std::vector<Case> {
             { { "file 10.txt" }, true, { "file 10.txt" } },
             { { "Folder" }, true, { "Folder" } },
             { { "Tool.app" }, true, { "Tool.app" } },
             { { "file 10.txt", "file 2.txt", "Folder" }, true, { "Folder", "file 2.txt", "file 10.txt" } },
             { { "link", "alias.desktop", "broken" }, true, { "Folder", "file 2.txt", "broken" } },
             { { "link", "alias.desktop" }, false, { "link", "alias.desktop" } },
             { { odd, "caf\uFFFD" }, true, { "caf\xe9", "odd\xff\xfe.txt" } },
         }) {
        SCOPED_TRACE(example.selected.front());
        responses.clear();
        panel->setResolvesAliases(example.resolves);
        begin();
        EXPECT_FALSE(confirm().isEnabled());
        select(example.selected);
        EXPECT_TRUE(confirm().isEnabled());
        confirm().click();
        EXPECT_EQ(answer(), NSOpenPanel::OK);
        EXPECT_EQ(chosen(), example.given);
        EXPECT_FALSE(parent->findChild<QDialog*>());
    }
}

TEST_F(OpenPanel, ReturnEntersADirectoryAndTakesAFileOrAPackage)
{
    begin();
    select({ "caf\uFFFD" });
    press(table(), Qt::Key_Return);
    EXPECT_THAT(shown(), ElementsAre("in\uFFFD.txt"));
    EXPECT_FALSE(confirm().isEnabled());
    press(table(), Qt::Key_Backspace);
    EXPECT_EQ(table().selectionModel()->selectedRows().at(0).data(), "caf\uFFFD");
    press(table(), Qt::Key_Return);
    select({ "in\uFFFD.txt" });
    press(table(), Qt::Key_Return);
    EXPECT_EQ(answer(), NSOpenPanel::OK);
    EXPECT_THAT(chosen(), ElementsAre("caf\xe9/in\xe9.txt"));
    responses.clear();
    begin();
    select({ "Tool.app" });
    press(table(), Qt::Key_Return);
    EXPECT_EQ(answer(), NSOpenPanel::OK);
}

TEST_F(OpenPanel, TakesATypedPath)
{
    begin();
    type("Folder/nothing");
    EXPECT_FALSE(confirm().isEnabled());
    press(part<QLineEdit>(), Qt::Key_Return);
    EXPECT_TRUE(parent->findChild<QDialog*>()->isVisible());
    type("Folder");
    EXPECT_TRUE(confirm().isEnabled());
    press(part<QLineEdit>(), Qt::Key_Return);
    EXPECT_THAT(shown(), ElementsAre("inside.txt"));
    type(home.path("odd\uFFFD.txt"));
    confirm().click();
    EXPECT_EQ(answer(), NSOpenPanel::OK);
    EXPECT_THAT(chosen(), ElementsAre("odd\xff\xfe.txt"));
}

TEST_F(OpenPanel, WithoutDirectoriesTheConfirmButtonOpensThem)
{
    panel->setCanChooseDirectories(false);
    begin();
    select({ "Folder" });
    confirm().click();
    EXPECT_THAT(shown(), ElementsAre("inside.txt"));
}

TEST_F(OpenPanel, SaysWhyADirectoryCanNotBeShown)
{
    home.makeDirectory("locked/in");
    ASSERT_EQ(chmod(home.path("locked").c_str(), 0), 0);
    ASSERT_EQ(chmod(home.path().c_str(), 0755), 0);
    const std::string told = runWithoutPrivileges([this] {
        begin();
        const std::string before = std::to_string(shown().size()) + " rows, then ";
        select({ "locked" });
        press(table(), Qt::Key_Return);
        return before + table().viewport()->findChild<QLabel*>()->text().toStdString();
    });
    ASSERT_EQ(chmod(home.path("locked").c_str(), 0755), 0);
    EXPECT_EQ(told, "10 rows, then This directory can't be shown: Permission denied");
}

TEST_F(OpenPanel, EndsOnceWithCancel)
{
    const std::vector<std::pair<const char*, std::function<void()>>> ways {
        { "Escape", [this] { press(table(), Qt::Key_Escape); } },
        { "the button", [this] { button("Cancel").click(); } },
        { "the parent is closed", [this] { parent->close(); } },
        { "the parent is deleted", [this] { parent = std::make_unique<QWidget>(); } },
    };
    for (const auto& [name, end] : ways) {
        SCOPED_TRACE(name);
        responses.clear();
        begin();
        select({ "Folder" });
        end();
        EXPECT_EQ(answer(), NSOpenPanel::cancel);
        EXPECT_TRUE(panel->urls().empty());
    }
}

TEST_F(OpenPanel, BlocksItsWindowAlone)
{
    begin();
    EXPECT_FALSE(QApplication::activeModalWidget());
    EXPECT_TRUE(dynamic_cast<SheetShield*>(parent->childAt(parent->rect().center())));
    parent->close();
    answer();
    const auto below = parent->findChildren<QWidget*>();
    EXPECT_TRUE(std::ranges::none_of(below, [](QWidget* widget) { return dynamic_cast<SheetShield*>(widget); }));
}

struct Homes final : StandardDirectories {
    std::vector<URL> urls(SearchPathDirectory, SearchPathDomainMask) override { return {}; }
    URL homeDirectory() override { return URL::fileURLWithPath("/home/me"); }
};

TEST(TypedPath, StandsForTheBytesThatAreShownLikeIt)
{
    Homes homes;
    const Installed<StandardDirectories> installed(homes);
    const TemporaryDirectory directory;
    directory.writeFile("a\xe9/x\xff");
    const std::string base = directory.path("a\xe9");
    const std::string shownBase = directory.path("a\uFFFD");
    const std::pair<std::string, std::string> cases[] = {
        { "~", "/home/me" },
        { "~/b/../c/", "/home/me/c" },
        { "/", "/" },
        { "/../x", "/x" },
        { "y/./z", base + "/y/z" },
        { "..", directory.path() },
        { shownBase, base },
        { shownBase + "/x\uFFFD", base + "/x\xff" },
        // Not below the directory shown, and not there at all.
        { directory.path("a\uFFFDb"), directory.path("a\uFFFDb") },
    };
    for (const auto& [text, path] : cases)
        EXPECT_EQ(typedPath(QString::fromStdString(text), base), path) << text;
    EXPECT_EQ(typedContinuations("x", base), QStringList("x\uFFFD"));
    EXPECT_EQ(typedContinuations("../", base), QStringList("../a\uFFFD/"));
}

} // namespace
