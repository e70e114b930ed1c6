#include "MenuWarmUp.h"

#include "ImageRenderer.h"
#include "MenuPopup.h"
#include "NSMenu.h"
#include "NSWorkspace.h"
#include "WorkArea.h"

#include <QGuiApplication>
#include <QPixmap>
#include <QScreen>

#include <algorithm>
#include <string>
#include <utility>

namespace quillbox {

namespace {

    // By then the panel has drawn the icon and the desktop has told its colours.
    constexpr std::chrono::milliseconds kUntilFirstPiece { 300 };
    constexpr std::chrono::milliseconds kUntilNextPiece { 0 };

    // Endings of files that most people have. An icon follows from the ending alone, so these files need not exist.
    constexpr const char* kFiles[] = { "/a.txt", "/a.pdf",  "/a.jpg", "/a.png", "/a.mp3",
                                       "/a.mp4", "/a.html", "/a.zip", "/a.odt", "/a.docx" };

    // Has a row of each kind and the letters of most names.
    std::shared_ptr<NSMenu> sampleMenu()
    {
        std::string letters;
        for (char letter = ' '; letter <= '~'; ++letter)
            letters += letter;
        auto directory = std::make_shared<NSMenuItem>(std::move(letters));
        directory->setSubmenu(std::make_shared<NSMenu>(""));
        auto menu = std::make_shared<NSMenu>("");
        menu->setItemArray({ std::move(directory), NSMenuItem::separatorItem(), std::make_shared<NSMenuItem>("a") });
        return menu;
    }

    void paintIcon(const char* path, NSWorkspace::EntryKind kind)
    {
        NSImage icon = NSWorkspace::sharedWorkspace().icon(path, kind);
        icon.setSize({ MenuRowPainter::kIconSide, MenuRowPainter::kIconSide });
        ImageRenderer::pixmap(icon, QGuiApplication::primaryScreen()->devicePixelRatio(), Qt::black);
    }

} // namespace

MenuWarmUp::MenuWarmUp(MenuPopupEvents& events) : events_(events) { }

MenuWarmUp::~MenuWarmUp() = default;

void MenuWarmUp::begin()
{
    if (std::exchange(hasBegun_, true))
        return;
    left_ = piecesInReverse();
    timer_ = Clock::current().after(kUntilFirstPiece, [this] { doNext(); });
}

void MenuWarmUp::end()
{
    hasBegun_ = true;
    timer_.reset();
    left_.clear();
    sample_.reset();
}

void MenuWarmUp::doNext()
{
    const Piece piece = std::move(left_.back());
    left_.pop_back();
    piece();
    if (left_.empty())
        end();
    else
        timer_ = Clock::current().after(kUntilNextPiece, [this] { doNext(); });
}

std::vector<MenuWarmUp::Piece> MenuWarmUp::piecesInReverse()
{
    std::vector<Piece> pieces;
    pieces.push_back([this] {
        sample_ = std::make_unique<MenuPopup>(events_, workAreaOf(*QGuiApplication::primaryScreen()));
        sample_->setMenu(sampleMenu());
    });
    pieces.push_back([this] { sample_->resize(sample_->wantedSize()); });
    pieces.push_back([this] { sample_->grab(); });
    // Elsewhere a window can't be made before it is shown.
    if (QGuiApplication::platformName() == QStringLiteral("xcb"))
        pieces.push_back([this] { sample_->makeWindow(); });
    pieces.push_back([this] { sample_.reset(); });
    pieces.push_back([] { paintIcon("/a", NSWorkspace::EntryKind::directory); });
    for (const char* file : kFiles)
        pieces.push_back([file] { paintIcon(file, NSWorkspace::EntryKind::file); });
    std::reverse(pieces.begin(), pieces.end());
    return pieces;
}

} // namespace quillbox
