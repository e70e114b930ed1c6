#include "OpenPanelPresenter.h"

#include "Installed.h"
#include "OpenPanelDialog.h"
#include "SheetShield.h"

#include <QCoreApplication>
#include <QPointer>

namespace quillbox {

namespace {

    // The panel's answer on its way; the first one counts.
    struct Answer {
        std::shared_ptr<NSOpenPanel> panel;
        std::function<void(int)> completion;

        void give(int response)
        {
            if (!completion)
                return;
            // The panel is held until then.
            QMetaObject::invokeMethod(
                qApp, [held = std::move(panel), complete = std::move(completion), response] { complete(response); },
                Qt::QueuedConnection);
            completion = nullptr;
        }
    };

} // namespace

void OpenPanelPresenter::begin(std::shared_ptr<NSOpenPanel> panel, QWidget* parentWindow,
                               std::function<void(int response)> completion)
{
    Places* const places = Installed<Places>::current();
    auto* dialog =
        new OpenPanelDialog(*panel, places ? places->places() : std::vector<Place>(),
                            lastDirectory_->empty() ? panel->directoryURL().path() : *lastDirectory_, parentWindow);
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    const auto answer = std::make_shared<Answer>(Answer { std::move(panel), std::move(completion) });
    const QPointer<SheetShield> shield = parentWindow ? new SheetShield(*parentWindow, *dialog) : nullptr;
    QObject::connect(dialog, &QDialog::finished, dialog, [answer, dialog, shield, last = lastDirectory_](int result) {
        delete shield.data();
        answer->panel->setSettings(dialog->settings());
        if (const auto directory = dialog->directoryShown())
            *last = *directory;
        const bool isOK = result == QDialog::Accepted;
        if (isOK)
            answer->panel->setURLs(dialog->urls());
        answer->give(isOK ? NSOpenPanel::OK : NSOpenPanel::cancel);
    });
    // A parent that is deleted takes the dialog along.
    QObject::connect(dialog, &QObject::destroyed, qApp, [answer] { answer->give(NSOpenPanel::cancel); });
    dialog->show();
    dialog->raise();
    dialog->activateWindow();
}

} // namespace quillbox
