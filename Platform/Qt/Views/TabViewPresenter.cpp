#include "TabViewPresenter.h"

#include <QEvent>
#include <QSignalBlocker>
#include <QStyleOptionTabWidgetFrame>
#include <QStylePainter>
#include <QTabBar>

namespace quillbox {

namespace {

    // Puts the tab bar and the frame where the style puts those of its tab widget.
    class TabViewWidget final : public QWidget {
    public:
        TabViewWidget(std::weak_ptr<NSTabView> view, QWidget* parent)
            : QWidget(parent),
              bar(new QTabBar(this)),
              view_(std::move(view))
        {
            bar->setDrawBase(false);
            bar->setExpanding(false);
            bar->setElideMode(Qt::ElideNone);
            bar->setUsesScrollButtons(true);
            connect(bar, &QTabBar::currentChanged, this, [this](int at) {
                if (const auto shown = view_.lock(); shown && at >= 0)
                    shown->userSelectsTabViewItem(at);
                update();
            });
        }

        void placeBar()
        {
            bar->setGeometry(style()->subElementRect(QStyle::SE_TabWidgetTabBar, &option(), this));
            update();
        }

        QTabBar* const bar;

    protected:
        void resizeEvent(QResizeEvent*) override { placeBar(); }

        void paintEvent(QPaintEvent*) override
        {
            QStyleOptionTabWidgetFrame frame = option();
            frame.rect = style()->subElementRect(QStyle::SE_TabWidgetTabPane, &frame, this);
            QStylePainter(this).drawPrimitive(QStyle::PE_FrameTabWidget, frame);
        }

        void changeEvent(QEvent* event) override
        {
            QWidget::changeEvent(event);
            if (event->type() == QEvent::StyleChange || event->type() == QEvent::FontChange)
                placeBar();
        }

    private:
        QStyleOptionTabWidgetFrame& option()
        {
            option_.initFrom(this);
            option_.lineWidth = style()->pixelMetric(QStyle::PM_DefaultFrameWidth, nullptr, this);
            option_.shape = QTabBar::RoundedNorth;
            option_.tabBarSize = bar->sizeHint().boundedTo(QSize(width(), height()));
            option_.tabBarRect = bar->geometry();
            option_.selectedTabRect = bar->tabRect(bar->currentIndex()).translated(bar->pos());
            return option_;
        }

        std::weak_ptr<NSTabView> view_;
        QStyleOptionTabWidgetFrame option_;
    };

} // namespace

TabViewPresenter::TabViewPresenter(const std::shared_ptr<NSTabView>& tabView, QWidget& parent)
    : ViewPresenter(tabView, new TabViewWidget(tabView, &parent))
{
}

QWidget* TabViewPresenter::keyWidget() const
{
    return static_cast<TabViewWidget*>(widget())->bar;
}

void TabViewPresenter::showContent(NSView& view)
{
    const auto& tabView = dynamic_cast<const NSTabView&>(view);
    auto* widget = static_cast<TabViewWidget*>(this->widget());
    const QSignalBlocker selectsNothing(widget->bar);
    int at = 0;
    for (const auto& item : tabView.tabViewItems()) {
        const QString label = QString::fromStdString(item->label()).replace(QChar('&'), QStringLiteral("&&"));
        if (at == widget->bar->count())
            widget->bar->addTab(label);
        else
            widget->bar->setTabText(at, label);
        ++at;
    }
    widget->bar->setCurrentIndex(tabView.indexOfSelectedItem());
    widget->placeBar();
}

} // namespace quillbox
