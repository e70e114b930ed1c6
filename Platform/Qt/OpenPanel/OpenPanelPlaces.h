#pragma once

#include <QListWidget>

#include <functional>
#include <string>

namespace quillbox {

// The list at the open panel's side: the person's own directories, the root, and the volumes that are mounted where
// people's volumes are. Filled once, when it is made.
class OpenPanelPlaces final : public QListWidget {
public:
    // `open` is called with the path of a place that was clicked or chosen with Return.
    OpenPanelPlaces(QWidget* parent, std::function<void(const std::string&)> open);

    // Marks the place that is this directory, or none.
    void setShown(const std::string& directory);

    QSize sizeHint() const override;

protected:
    void keyPressEvent(QKeyEvent* event) override;

private:
    void add(const QString& title, const std::string& path, const QString& iconName = {});
    void addVolumes();

    std::function<void(const std::string&)> open_;
};

} // namespace quillbox
