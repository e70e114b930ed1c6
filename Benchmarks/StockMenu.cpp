#include <QApplication>
#include <QCollator>
#include <QDirIterator>
#include <QMenu>
#include <QPushButton>
#include <QStyle>

#include <algorithm>
#include <vector>

// A stock menu of a directory, for comparison: a button in the upper left corner of the screen that lists the
// directory, sorts it by name and shows files and subdirectories in a QMenu.
int main(int argc, char** argv)
{
    QApplication application(argc, argv);
    if (argc != 2)
        return EXIT_FAILURE;
    const QString directory = QString::fromLocal8Bit(argv[1]);
    QPushButton button(QStringLiteral("menu"), nullptr);
    button.setWindowFlags(Qt::X11BypassWindowManagerHint);
    button.setGeometry(0, 0, 64, 32);
    QObject::connect(&button, &QPushButton::pressed, [&] {
        struct Entry {
            QCollatorSortKey key;
            QString name;
            bool isDirectory;
        };
        QCollator collator;
        collator.setNumericMode(true);
        std::vector<Entry> entries;
        for (QDirIterator each(directory, QDir::AllEntries | QDir::NoDotAndDotDot); each.hasNext();) {
            each.next();
            entries.push_back({ collator.sortKey(each.fileName()), each.fileName(), each.fileInfo().isDir() });
        }
        std::sort(entries.begin(), entries.end(), [](const Entry& a, const Entry& b) { return a.key < b.key; });
        const QIcon folderIcon = QApplication::style()->standardIcon(QStyle::SP_DirIcon);
        const QIcon fileIcon = QApplication::style()->standardIcon(QStyle::SP_FileIcon);
        auto* menu = new QMenu;
        menu->setAttribute(Qt::WA_DeleteOnClose);
        for (const Entry& entry : entries) {
            if (entry.isDirectory)
                menu->addMenu(folderIcon, entry.name);
            else
                menu->addAction(fileIcon, entry.name);
        }
        menu->popup(button.geometry().bottomLeft());
    });
    button.show();
    return QApplication::exec();
}
