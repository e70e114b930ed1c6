#include "AlertPresenter.h"

#include "ImageRenderer.h"
#include "SelectableText.h"

#include <QApplication>
#include <QCursor>
#include <QDialog>
#include <QDialogButtonBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QScreen>
#include <QVBoxLayout>

#include <algorithm>

namespace quillbox {

namespace {

    // In logical pixels.
    constexpr int kIconSide = 64;
    constexpr int kNaturalWidth = 420;
    constexpr int kNarrowest = 280;
    constexpr int kMargin = 20;
    constexpr int kGap = 16;
    constexpr double kTallestPart = 0.9;

    class AlertDialog final : public QDialog {
    public:
        explicit AlertDialog(const NSAlert& alert)
        {
            setWindowTitle(QApplication::applicationDisplayName());
            setModal(true);
            auto* across = new QHBoxLayout(this);
            across->setContentsMargins(kMargin, kMargin, kMargin, kMargin);
            across->setSpacing(kGap);
            if (!alert.icon().isEmpty())
                across->addWidget(makeIcon(alert.icon()), 0, Qt::AlignTop);

            auto* down = new QVBoxLayout;
            down->setSpacing(kGap / 2);
            across->addLayout(down, 1);
            down->addWidget(makeText(alert.messageText(), true));
            if (!alert.informativeText().empty())
                down->addWidget(makeText(alert.informativeText(), false));
            down->addStretch(1);
            auto* buttons = new QDialogButtonBox(this);
            QPushButton* ok = buttons->addButton(QStringLiteral("OK"), QDialogButtonBox::AcceptRole);
            ok->setDefault(true);
            ok->setFocus();
            connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
            down->addWidget(buttons);
        }

        // Returns a frame of that width, as tall as the texts need, moved onto the screen.
        QRect frame(QPoint origin, int wantedWidth, int leastHeight, const QRect& available)
        {
            const int width = std::clamp(wantedWidth, std::min(kNarrowest, available.width()), available.width());
            layout()->activate();
            const int tallest = static_cast<int>(available.height() * kTallestPart);
            const int height = std::min(std::max(layout()->totalHeightForWidth(width), leastHeight), tallest);
            const QPoint last(available.x() + available.width() - width, available.y() + available.height() - height);
            return { std::clamp(origin.x(), available.x(), last.x()), std::clamp(origin.y(), available.y(), last.y()),
                     width, height };
        }

    private:
        QWidget* makeText(const std::string& text, bool isBold)
        {
            auto* shown = new SelectableText(this);
            // A text that is too tall for the screen scrolls.
            shown->setVerticalScrollBarPolicy(Qt::ScrollBarAsNeeded);
            shown->setFocusPolicy(Qt::ClickFocus);
            QFont font = shown->font();
            font.setBold(isBold);
            shown->setFont(font);
            shown->showText(AttributedString(text));
            return shown;
        }

        QLabel* makeIcon(NSImage icon)
        {
            icon.setSize({ kIconSide, kIconSide });
            auto* label = new QLabel(this);
            label->setFixedSize(kIconSide, kIconSide);
            label->setPixmap(ImageRenderer::pixmap(icon, devicePixelRatioF(), palette().color(QPalette::WindowText)));
            return label;
        }
    };

    QRect availableAt(QPoint point)
    {
        const QScreen* screen = QGuiApplication::screenAt(point);
        return (screen ? screen : QGuiApplication::primaryScreen())->availableGeometry();
    }

    QRect naturalRect(AlertDialog& dialog)
    {
        const QRect available = availableAt(QCursor::pos());
        const QRect frame = dialog.frame({}, kNaturalWidth, 0, available);
        return { available.center() - QPoint(frame.width() / 2, frame.height() / 2), frame.size() };
    }

} // namespace

void AlertPresenter::run(const NSAlert& alert)
{
    AlertDialog dialog(alert);
    if (alert.hasWindowFrame()) {
        const NSRect frame = alert.windowFrame();
        const QPoint origin(static_cast<int>(frame.origin.x), static_cast<int>(frame.origin.y));
        dialog.setGeometry(dialog.frame(origin, static_cast<int>(frame.size.width), static_cast<int>(frame.size.height),
                                        availableAt(origin)));
    } else {
        dialog.setGeometry(naturalRect(dialog));
    }
    running_.push_back(&dialog);
    dialog.show();
    raise();
    dialog.exec();
    running_.pop_back();
}

NSRect AlertPresenter::naturalFrame(const NSAlert& alert)
{
    AlertDialog dialog(alert);
    const QRect frame = naturalRect(dialog);
    return { { static_cast<double>(frame.x()), static_cast<double>(frame.y()) },
             { static_cast<double>(frame.width()), static_cast<double>(frame.height()) } };
}

void AlertPresenter::raise()
{
    if (running_.empty())
        return;
    running_.back()->raise();
    running_.back()->activateWindow();
}

} // namespace quillbox
