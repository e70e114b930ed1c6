#pragma once

#include "AppearancePortal.h"
#include "Palettes.h"
#include "SessionBus.h"
#include "XSettings.h"

#include <QTimer>

#include <memory>
#include <optional>

namespace quillbox {

// Keeps the application's colours and its icon theme as the desktop has them, from when it is made and as the person
// changes them: Plasma's own colours, the portal's light or dark and strong contrast, the theme that GTK desktops
// share. The toolkit's palette is left alone where it follows by itself. Listens, and asks nothing at rest.
class DesktopAppearance {
public:
    DesktopAppearance();
    ~DesktopAppearance();
    DesktopAppearance(const DesktopAppearance&) = delete;
    DesktopAppearance& operator=(const DesktopAppearance&) = delete;

private:
    void update();
    ColourWish wish() const;
    std::optional<QPalette> ownPalette(const QPalette& given) const;

    SessionBus bus_;
    // Null without a session bus.
    std::unique_ptr<AppearancePortal> portal_;
    // Null without an X server.
    std::unique_ptr<XSettings> xSettings_;
    // Desktops tell of one change in several ways, and the toolkit may hear of it a little later.
    QTimer changed_;
    bool hasOwnPalette_ = false;
};

} // namespace quillbox
