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

// A sheet in which the person chooses files and directories that exist. Whoever wants them sets what may be chosen,
// begins the sheet and reads urls() once it has ended with OK. Nothing is looked at before it is shown. To the model
// it is a sheet without contents: what is in it is the display's. How the person arranges it is kept in the settings.
class NSOpenPanel final : public NSWindow {
public:
    NSOpenPanel();

    static constexpr NSModalResponse OK = NSModalResponseOK;
    static constexpr NSModalResponse cancel = NSModalResponseCancel;

    // What the person is asked for; may be empty.
    const std::string& message() const { return message_; }
    void setMessage(std::string message) { message_ = std::move(message); }
    // The confirm button's text.
    const std::string& prompt() const { return prompt_; }
    void setPrompt(std::string prompt) { prompt_ = std::move(prompt); }
    // Shown first, unless a panel of this session was left elsewhere. Where it can't be shown, the nearest directory
    // above it is.
    const URL& directoryURL() const { return directoryURL_; }
    void setDirectoryURL(URL directory) { directoryURL_ = std::move(directory); }

    bool canChooseFiles() const { return canChooseFiles_; }
    void setCanChooseFiles(bool canChoose) { canChooseFiles_ = canChoose; }
    bool canChooseDirectories() const { return canChooseDirectories_; }
    void setCanChooseDirectories(bool canChoose) { canChooseDirectories_ = canChoose; }
    bool allowsMultipleSelection() const { return allowsMultipleSelection_; }
    void setAllowsMultipleSelection(bool allows) { allowsMultipleSelection_ = allows; }
    // Links and alias files give what they lead to, as long as that is there.
    bool resolvesAliases() const { return resolvesAliases_; }
    void setResolvesAliases(bool resolves) { resolvesAliases_ = resolves; }

    // Shows the panel on `parent`, which has no sheet. `completion` is called once, later, with OK or cancel; cancel
    // also where the parent is closed meanwhile.
    void beginSheetModal(NSWindow& parent, std::function<void(NSModalResponse)> completion);
    // What was chosen, in the order shown; with the file system's bytes. Empty unless the panel ended with OK.
    const std::vector<URL>& urls() const { return urls_; }

    // For the display: what these settings mean for an entry that the person points at. Packages are taken for files.
    bool canChoose(const std::string& path) const;
    // What urls() has for an entry that was chosen.
    URL urlOfChoice(const std::string& path) const;
    // The directory to show when the entry is opened; none for files and packages.
    std::optional<std::string> directoryToEnter(const std::string& path) const;
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
