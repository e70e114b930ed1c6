#include "OpenPanelPresenter.h"
#include "Installed.h"
#include "Places.h"
#include "SheetShield.h"
#include "TemporaryDirectory.h"
#include "Unprivileged.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QApplication>
#include <QCheckBox>
#include <QCompleter>
#include <QDialog>
#include <QHeaderView>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
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
        presenter.begin(panel, parent.get(), [this](int response) { responses.push_back(response); });
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
    QLineEdit& field(const QString& name) const
    {
        const auto all = parent->findChildren<QLineEdit*>();
        return **std::find_if(all.begin(), all.end(),
                              [&](const QLineEdit* each) { return each->accessibleName() == name; });
    }
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
    std::vector<std::string> selected() const
    {
        std::vector<std::string> names;
        for (const QModelIndex& row : table().selectionModel()->selectedRows())
            names.push_back(row.data().toString().toStdString());
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
    OpenPanelPresenter presenter;
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
             { {}, true, { "" } },
             { { "file 10.txt" }, true, { "file 10.txt" } },
             { { "Folder" }, true, { "Folder" } },
             { { "Tool.app" }, true, { "Tool.app" } },
             { { "file 10.txt", "file 2.txt", "Folder" }, true, { "Folder", "file 2.txt", "file 10.txt" } },
             { { "link", "alias.desktop", "broken" }, true, { "Folder", "file 2.txt", "broken" } },
             { { "link", "alias.desktop" }, false, { "link", "alias.desktop" } },
             { { odd, "caf\uFFFD" }, true, { "caf\xe9", "odd\xff\xfe.txt" } },
         }) {
        SCOPED_TRACE(testing::PrintToString(example.selected));
        responses.clear();
        panel->setResolvesAliases(example.resolves);
        begin();
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
    press(table(), Qt::Key_Backspace);
    EXPECT_EQ(table().selectionModel()->selectedRows().at(0).data(), "caf\uFFFD");
    press(table(), Qt::Key_Return);
    select({ "in\uFFFD.txt" });
    press(table(), Qt::Key_Return);
    EXPECT_EQ(answer(), NSOpenPanel::OK);
    EXPECT_THAT(chosen(), ElementsAre("caf\xe9/in\xe9.txt"));
    responses.clear();
    presenter = OpenPanelPresenter();
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

TEST_F(OpenPanel, TakesAPathThatAssistiveTechnologyPutsIntoTheField)
{
    begin();
    field("Path").setText("Folder");
    confirm().click();
    EXPECT_EQ(answer(), NSOpenPanel::OK);
    EXPECT_THAT(chosen(), ElementsAre("Folder"));
}

TEST_F(OpenPanel, WithoutDirectoriesTheConfirmButtonOpensThem)
{
    panel->setCanChooseDirectories(false);
    begin();
    EXPECT_FALSE(confirm().isEnabled());
    select({ "Folder" });
    confirm().click();
    EXPECT_THAT(shown(), ElementsAre("inside.txt"));
}

TEST_F(OpenPanel, FindsWhatIsTypedInTheList)
{
    begin();
    for (const char key : { 'T', 'X', 'T' })
        press(table(), key, QString(QChar(key)));
    EXPECT_THAT(shown(), ElementsAre("file 2.txt", "file 10.txt", "odd\uFFFD.txt"));
    field("Search").setText("o");
    EXPECT_THAT(selected(), ElementsAre("odd\uFFFD.txt")) << "which begins with it, unlike Folder";
    press(field("Search"), Qt::Key_Up);
    EXPECT_THAT(selected(), ElementsAre("broken"));
    press(table(), Qt::Key_Escape);
    EXPECT_EQ(shown().size(), 9U);
    EXPECT_THAT(selected(), ElementsAre("broken"));
    field("Search").setText("nowhere");
    EXPECT_FALSE(confirm().isEnabled()) << "nothing found is not the directory";
    field("Search").setText("folder");
    press(field("Search"), Qt::Key_Return);
    EXPECT_THAT(shown(), ElementsAre("inside.txt"));
    EXPECT_TRUE(field("Search").text().isEmpty());
}

TEST_F(OpenPanel, HiddenFilesAreShownAndContinuedWhenAskedFor)
{
    home.writeFile(".config/.deep");
    home.writeFile(".config/plain");
    const auto continuations = [&](const std::string& text) {
        type(text);
        std::vector<std::string> all;
        const QAbstractItemModel& model = *field("Path").completer()->model();
        for (int row = 0; row < model.rowCount(); ++row)
            all.push_back(model.index(row, 0).data().toString().toStdString());
        return all;
    };
    begin();
    EXPECT_THAT(continuations(".config/p"), ElementsAre(".config/plain"));
    EXPECT_THAT(continuations(".config/."), testing::Contains(".config/.deep"));
    EXPECT_THAT(continuations(".config/"), ElementsAre(".config/plain"));
    select({ "Folder" });
    part<QCheckBox>().click();
    EXPECT_THAT(shown(), testing::IsSupersetOf({ ".config", ".hidden" }));
    EXPECT_THAT(selected(), ElementsAre("Folder"));
    EXPECT_THAT(continuations(".config/"), ElementsAre(".config/.deep", ".config/plain"));
}

TEST_F(OpenPanel, IsAsItWasLeft)
{
    begin();
    parent->findChild<QDialog*>()->resize(640, 444);
    part<QCheckBox>().click();
    table().sortByColumn(1, Qt::DescendingOrder);
    select({ "Folder" });
    press(table(), Qt::Key_Return);
    button("Cancel").click();
    answer();
    const OpenPanelSettings left { { 640, 444 }, OpenPanelSettings::Order::size, false, true };
    EXPECT_EQ(panel->settings(), left);
    responses.clear();
    begin();
    EXPECT_THAT(shown(), ElementsAre("inside.txt"));
    EXPECT_EQ(parent->findChild<QDialog*>()->size(), QSize(640, 444));
    EXPECT_TRUE(part<QCheckBox>().isChecked());
    button("Cancel").click();
    answer();
    EXPECT_EQ(panel->settings(), left);
}

struct TwoPlaces final : Places {
    std::vector<Place> places() override { return list; }
    std::vector<Place> list;
};

TEST_F(OpenPanel, ListsPlacesThatOpen)
{
    TwoPlaces places;
    const Installed<Places> installed(places);
    places.list = { { Place::Kind::home, "Home", home.path() },
                    { Place::Kind::bookmark, "Work", home.path("Folder"), true } };
    begin();
    auto& list = part<QListWidget>();
    ASSERT_EQ(list.count(), 3);
    EXPECT_EQ(list.item(1)->text(), "Bookmarks");
    EXPECT_EQ(list.currentRow(), 0);
    press(list, Qt::Key_Down);
    EXPECT_EQ(list.currentItem()->text(), "Work") << "a heading is passed over";
    press(list, Qt::Key_Return);
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

} // namespace
