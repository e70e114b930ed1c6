#pragma once

#include "Desktop.h"
#include "HeadlessWindows.h"
#include "Installed.h"
#include "NSAlert.h"
#include "NSStatusItem.h"

#include <functional>
#include <vector>

namespace quillbox {

// A desktop without a display: it records what it was asked to show. It is the application's desktop for
// as long as it lives.
class HeadlessDesktop final : public Desktop {
public:
    ~HeadlessDesktop() override;

    void showStatusItem(NSStatusItem& item) override { statusItem = &item; }
    void hideStatusItem(NSStatusItem&) override { statusItem = nullptr; }
    void runModal(const NSAlert& alert) override;
    NSRect naturalFrame(const NSAlert&) override { return kNaturalAlertFrame; }
    WindowDisplay& windows() override { return shownWindows; }
    void copyText(const std::string& text) override { clipboard = text; }
    void activate() override { ++activations; }
    int run() override { return 0; }
    void stop() override { isStopped = true; }

    static constexpr NSRect kNaturalAlertFrame { { 100, 200 }, { 420, 150 } };

    NSStatusItem* statusItem = nullptr;
    // What each alert said, in the order they were run.
    std::vector<NSAlert> alerts;
    // Runs while an alert is up.
    std::function<void()> duringAlert;
    HeadlessWindows shownWindows;
    std::string clipboard;
    int activations = 0;
    bool isStopped = false;

private:
    const Installed<Desktop> installed_ { *this };
};

} // namespace quillbox
