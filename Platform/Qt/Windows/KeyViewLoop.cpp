#include "KeyViewLoop.h"

#include <QWidget>

#include <algorithm>
#include <vector>

namespace quillbox {

void sortAsRead(std::vector<QWidget*>& widgets)
{
    std::sort(widgets.begin(), widgets.end(),
              [](const QWidget* one, const QWidget* other) { return one->y() < other->y(); });
    for (auto line = widgets.begin(); line != widgets.end();) {
        // Those whose top is above the first one's middle are on one line with it.
        // A widget without a height has its middle above its top.
        const int middle = std::max((*line)->y(), (*line)->geometry().center().y());
        const auto next =
            std::find_if(line, widgets.end(), [middle](const QWidget* widget) { return widget->y() > middle; });
        std::stable_sort(line, next, [](const QWidget* one, const QWidget* other) { return one->x() < other->x(); });
        line = next;
    }
}

namespace {

    void collect(const QWidget& around, std::vector<QWidget*>& found)
    {
        std::vector<QWidget*> inside;
        for (QObject* child : around.children()) {
            auto* widget = qobject_cast<QWidget*>(child);
            if (widget && !widget->isWindow() && widget->isVisibleTo(&around) && widget->isEnabled())
                inside.push_back(widget);
        }
        sortAsRead(inside);
        for (QWidget* widget : inside) {
            if (widget->focusPolicy() & Qt::TabFocus)
                found.push_back(widget);
            // The toolkit handles the parts of its own controls.
            if (!widget->focusProxy() && !widget->inherits("QAbstractScrollArea") && !widget->inherits("QComboBox")
                && !widget->inherits("QTabBar"))
                collect(*widget, found);
        }
    }

} // namespace

std::vector<QWidget*> keyWidgets(const QWidget& window)
{
    std::vector<QWidget*> widgets;
    collect(window, widgets);
    return widgets;
}

QWidget* nextKeyWidget(const QWidget& window, const QWidget* from, bool forward)
{
    const std::vector<QWidget*> widgets = keyWidgets(window);
    if (widgets.empty())
        return nullptr;
    const auto at = std::find(widgets.begin(), widgets.end(), from);
    if (forward)
        return at == widgets.end() || at + 1 == widgets.end() ? widgets.front() : *(at + 1);
    return at == widgets.begin() || at == widgets.end() ? widgets.back() : *(at - 1);
}

} // namespace quillbox
