#pragma once

#include "NSWindow.h"
#include "OpenPanelSettings.h"
#include "URL.h"

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace quillbox {

// A sheet in which the user chooses existing files and directories. The caller sets what may be chosen, begins the
// sheet, and reads urls() once it has ended with OK. No file is looked at before the panel is shown. To the model it is
// a sheet without contents; the display knows what is in it. The settings keep how the user arranges the panel.
class NSOpenPanel final : public NSWindow {
public:
    NSOpenPanel();

    static constexpr NSModalResponse OK = NSModalResponseOK;
    static constexpr NSModalResponse cancel = NSModalResponseCancel;

    // The text that says what to choose. It may be empty.
    const std::string& message() const { return message_; }
    void setMessage(std::string message) { message_ = std::move(message); }
    // The text of the confirm button.
    const std::string& prompt() const { return prompt_; }
    void setPrompt(std::string prompt) { prompt_ = std::move(prompt); }
    // The directory that is shown first, unless a panel in this session was last used elsewhere. If it can't be shown,
    // the nearest directory above it is.
    const URL& directoryURL() const { return directoryURL_; }
    void setDirectoryURL(URL directory) { directoryURL_ = std::move(directory); }

    bool canChooseFiles() const { return canChooseFiles_; }
    void setCanChooseFiles(bool canChoose) { canChooseFiles_ = canChoose; }
    bool canChooseDirectories() const { return canChooseDirectories_; }
    void setCanChooseDirectories(bool canChoose) { canChooseDirectories_ = canChoose; }
    bool allowsMultipleSelection() const { return allowsMultipleSelection_; }
    void setAllowsMultipleSelection(bool allows) { allowsMultipleSelection_ = allows; }
    // Whether links and alias files are replaced by what they lead to, if that exists.
    bool resolvesAliases() const { return resolvesAliases_; }
    void setResolvesAliases(bool resolves) { resolvesAliases_ = resolves; }

    // Shows the panel on `parent`, which must have no sheet. `completion` is called once, later, with OK or cancel; it
    // is also cancel if the parent is closed meanwhile.
    void beginSheetModal(NSWindow& parent, std::function<void(NSModalResponse)> completion);
    // The chosen files in the order shown, with their paths byte for byte. Empty unless the panel ended with OK.
    const std::vector<URL>& urls() const { return urls_; }

    // The display calls the functions below. canChoose() tells whether these settings let the user choose the entry at
    // the path; packages count as files.
    bool canChoose(const std::string& path) const;
    // Returns the URL that urls() has for a chosen entry.
    URL urlOfChoice(const std::string& path) const;
    // Returns the directory to show when the entry is opened; nothing for files and packages.
    std::optional<std::string> directoryToEnter(const std::string& path) const;
    // Called before the panel ends.
    void setURLs(std::vector<URL> urls) { urls_ = std::move(urls); }
    // As stored when the panel began; what is set is stored when it ends.
    const OpenPanelSettings& settings() const { return settings_; }
    void setSettings(const OpenPanelSettings& settings) { settings_ = settings; }

private:
    std::string message_;
    std::string prompt_ = "Open";
    URL directoryURL_;
    bool canChooseFiles_ = true;
    bool canChooseDirectories_ = false;
    bool allowsMultipleSelection_ = false;
    bool resolvesAliases_ = true;
    std::vector<URL> urls_;
    OpenPanelSettings settings_;
};

} // namespace quillbox
