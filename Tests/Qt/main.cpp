#include "QtApplication.h"

#include <gtest/gtest.h>

#include <QStyleFactory>

// The tests of the display run in one application, on the platform that needs no display, with one style
// and none of the person's own settings.
int main(int argc, char** argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    qunsetenv("QT_QPA_PLATFORMTHEME");
    qunsetenv("QT_STYLE_OVERRIDE");
    testing::InitGoogleTest(&argc, argv);
    quillbox::QtApplication application(argc, argv);
    QApplication::setStyle(QStyleFactory::create("Fusion"));
    QApplication::setQuitOnLastWindowClosed(false);
    return RUN_ALL_TESTS();
}
