#include "AlertPresenter.h"

#include "ImageRenderer.h"

#include <QAbstractTextDocumentLayout>
#include <QApplication>
#include <QCursor>
#include <QDialog>
#include <QDialogButtonBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QScreen>
#include <QTextEdit>
#include <QVBoxLayout>
#include <QWindow>

#include <algorithm>
#include <cmath>

namespace quillbox {

namespace {

    // Logical pixels.
    constexpr int kIconSide = 64;
    constexpr int kNaturalWidth = 420;
    constexpr int kNarrowest = 280;
    constexpr int kMargin = 20;
    constexpr int kGap = 16;
    constexpr double kTallestPart = 0.9;

    // Plain text that can be selected, on the colour of what is behind it, as tall as it needs at its width.
    class SelectableText final : public QTextEdit {
    public:
        SelectableText(const std::string& text, bool isBold, QWidget* parent) : QTextEdit(parent)
        {
            setReadOnly(true);
            setTextInteractionFlags(Qt::TextSelectableByMouse);
            setFocusPolicy(Qt::ClickFocus);
            setFrameShape(QFrame::NoFrame);
            setWordWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
            setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
            setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Preferred);
            document()->setDocumentMargin(0);
            QPalette colours = palette();
            colours.setColor(QPalette::Base, Qt::transparent);
            colours.setColor(QPalette::Text, colours.color(QPalette::WindowText));
            setPalette(colours);
            QFont shown = font();
            shown.setBold(isBold);
            setFont(shown);
            setPlainText(QString::fromStdString(text));
        }

        bool hasHeightForWidth() const override { return true; }

        int heightForWidth(int width) const override
        {
            const std::unique_ptr<QTextDocument> measured(document()->clone());
            measured->setDocumentMargin(0);
            measured->setDefaultFont(font());
            measured->setDefaultTextOption(document()->defaultTextOption());
            measured->setTextWidth(width);
            return static_cast<int>(std::ceil(measured->size().height()));
        }

        QSize sizeHint() const override { return { kNarrowest, heightForWidth(kNarrowest) }; }
        QSize minimumSizeHint() const override { return { 0, fontMetrics().height() }; }
    };

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
            down->addWidget(new SelectableText(alert.messageText(), true, this));
            if (!alert.informativeText().empty())
                down->addWidget(new SelectableText(alert.informativeText(), false, this));
            down->addStretch(1);
            auto* buttons = new QDialogButtonBox(this);
            QPushButton* ok = buttons->addButton(QStringLiteral("OK"), QDialogButtonBox::AcceptRole);
            ok->setDefault(true);
            ok->setFocus();
            connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
            down->addWidget(buttons);
        }

        // Of that width, as tall as the texts need there, moved onto the screen.
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
