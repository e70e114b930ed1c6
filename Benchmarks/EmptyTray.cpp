#include <QApplication>
#include <QMenu>
#include <QStyle>
#include <QSystemTrayIcon>

// The smallest Qt program with an icon in the status bar, for comparison.
int main(int argc, char** argv)
{
    QApplication application(argc, argv);
    QSystemTrayIcon icon(QApplication::style()->standardIcon(QStyle::SP_DirIcon));
    QMenu menu;
    menu.addAction("Quit", &application, &QApplication::quit);
    icon.setContextMenu(&menu);
    icon.show();
    return QApplication::exec();
}
