#pragma once

#include "AppearancePortal.h"
#include "Palettes.h"
#include "SessionBus.h"
#include "XSettings.h"

#include <QTimer>

#include <memory>
#include <optional>

namespace quillbox {

// Keeps the application's colours and icon theme as the desktop has them, also when the user changes them: Plasma's own
// colours, the portal's choice of light or dark and of strong contrast, and the theme that GTK desktops share. Where
// the toolkit follows the desktop by itself, its palette is left alone. It listens for changes and asks nothing at
// rest.
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
    // Null if there is no session bus.
    std::unique_ptr<AppearancePortal> portal_;
    // Null if there is no X server.
    std::unique_ptr<XSettings> xSettings_;
    // Delays the update after a change: desktops announce one change in several ways, and the toolkit may hear of it a
    // little later.
    QTimer changed_;
    bool hasOwnPalette_ = false;
};

} // namespace quillbox
