#pragma once

#include "Places.h"

#include <QListWidget>

#include <functional>
#include <string>
#include <vector>

namespace quillbox {

// The list at the open panel's side, with the places that it is given when it is made, bookmarks and volumes below
// headings of their own. A click on a place, or Return, opens it, also where it is shown already: the person may have
// left it for another directory and come back.
class OpenPanelPlaces final : public QListWidget {
public:
    OpenPanelPlaces(const std::vector<Place>& places, QWidget* parent);

    // Called with the path of a place that the person opens.
    std::function<void(const std::string& path)> onOpen;

    // Marks the place that is this directory, or none.
    void setShown(const std::string& directory);

    QSize sizeHint() const override;

protected:
    void keyPressEvent(QKeyEvent* event) override;

private:
    void addHeading(const QString& title);
    void add(const Place& place);
    QIcon iconOf(const Place& place) const;
};

} // namespace quillbox
