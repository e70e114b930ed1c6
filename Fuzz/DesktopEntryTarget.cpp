#include "FuzzTarget.h"

#include "BundleState.h"
#include "Check.h"
#include "DesktopEntry.h"
#include "FileContents.h"
#include "URL.h"

namespace quillbox {

namespace {

    const XdgEnvironment& environment()
    {
        static const XdgEnvironment value = [] {
            XdgEnvironment made;
            made.dataHome = scratchDirectory().path("data");
            made.languages = { "de_DE", "de" };
            made.programDirectories = { "/bin" };
            return made;
        }();
        return value;
    }

    // Returns the text of an empty state, up to its first count. The rest of a state is read only if it begins like
    // this.
    const std::string& beginningOfState()
    {
        static const std::string text = [] {
            const std::string file = scratchDirectory().path("state");
            QB_CHECK(BundleState(environment()).save(file));
            const std::string whole = textOf(*readFile(file, 1 << 20));
            constexpr std::string_view kThreeEmptyLists("0\0000\0000\000end\000", 10);
            QB_CHECK(whole.ends_with(kThreeEmptyLists));
            return whole.substr(0, whole.size() - kThreeEmptyLists.size());
        }();
        return text;
    }

    // Reads a desktop entry if the bytes begin like one, otherwise the part of the keeper's state that follows its
    // beginning.
    void readEntryOrState(const Data& bytes)
    {
        const std::string text = textOf(bytes);
        if (text.starts_with('[') || text.starts_with('#')) {
            const std::string path = scratchDirectory().writeFile("entry.desktop", text);
            const auto entry = DesktopEntry::read(path, environment().languages);
            QB_CHECK(entry);
            if (*entry) {
                QB_CHECK(!(*entry)->name.empty());
                static_cast<void>((*entry)->isShownOn({ "GNOME" }));
            }
            const Result<URL> target = URL::resolvingAliasFile(URL::fileURLWithPath(path));
            QB_CHECK(!target || target->path().starts_with('/'));
            return;
        }
        const std::string path = scratchDirectory().writeFile("state", beginningOfState() + text);
        if (const auto state = BundleState::load(path, environment())) {
            static_cast<void>(state->isCurrent());
            QB_CHECK(state->save(path));
            QB_CHECK(BundleState::load(path, environment())->bundles.size() == state->bundles.size());
        }
    }

    const FuzzTarget kTarget("desktop-entry", readEntryOrState);

} // namespace

} // namespace quillbox
