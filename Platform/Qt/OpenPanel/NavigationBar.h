#pragma once

#include <QStyle>
#include <QWidget>

#include <functional>

class QToolButton;

namespace quillbox {

class PathField;
class SearchField;

// The open panel's top row: the ways back and up, the path, and the search, with the keys that lead to them. It holds
// the parts together; what is done in them is carried out by the dialog.
class NavigationBar final : public QWidget {
public:
    explicit NavigationBar(QWidget* parent);

    std::function<void()> onBack;
    std::function<void()> onUp;

    PathField& path() const { return *path_; }
    SearchField& search() const { return *search_; }
    // Which of the two ways there are from the directory shown.
    void setWays(bool canGoBack, bool canGoUp);

private:
    QToolButton* makeButton(const char* iconName, QStyle::StandardPixmap icon, const char* name, const char* key);

    QToolButton* back_;
    QToolButton* up_;
    PathField* path_;
    SearchField* search_;
};

} // namespace quillbox
