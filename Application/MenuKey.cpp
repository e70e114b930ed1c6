#include "MenuKey.h"

#include "Bundle.h"
#include "Debug.h"
#include "FileContents.h"
#include "PathStatus.h"
#include "ShortcutPortal.h"

namespace quillbox {

MenuKey::MenuKey(const std::string& name, const std::string& refusal,
                 std::function<void(const std::string& activationToken)> onPressed)
{
    const auto identifier = Bundle::main().bundleIdentifier();
    if (!identifier || statusOfPath(refusal))
        return;
    portal_ = std::make_unique<ShortcutPortal>(*identifier, name, "Open the menu");
    portal_->onPressed = std::move(onPressed);
    portal_->onRefused = [refusal] {
        if (const Result<void> written = replaceFile(refusal, {}, 0600); !written)
            Debug::addErrorLogEntry("MenuKey", "onRefused()", __FILE__, __LINE__, false, written.error().description());
    };
}

MenuKey::~MenuKey() = default;

} // namespace quillbox
