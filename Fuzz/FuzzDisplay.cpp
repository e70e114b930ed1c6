#include "FuzzTarget.h"

#include "HeadlessDesktop.h"

#include <QApplication>

#include <array>

namespace quillbox {

void startDisplay()
{
    static const bool isOffscreen = qputenv("QT_QPA_PLATFORM", "offscreen");
    static int argumentCount = isOffscreen ? 1 : 0;
    static std::array<char, 5> name { 'f', 'u', 'z', 'z', 0 };
    static std::array<char*, 2> arguments { name.data(), nullptr };
    static const QApplication application(argumentCount, arguments.data());
    static const HeadlessDesktop desktop;
}

} // namespace quillbox
