#include "StatusIcon.h"

#include "Bundle.h"
#include "ImageRenderer.h"

#include <QIcon>

namespace quillbox {

StatusIcon::StatusIcon(NSImage image) : image_(std::move(image))
{
    const QString name = QStringLiteral("org.quillbox.Quillbox-symbolic");
    const QString fileInTheme = QStringLiteral("/hicolor/symbolic/apps/%1.svg").arg(name);
    if (const auto file = Bundle::main().pathForResource("icons" + fileInTheme.toStdString())) {
        themeName_ = name;
        themePath_ = QString::fromStdString(*file).chopped(fileInTheme.size());
    } else if (QIcon::hasThemeIcon(name)) {
        themeName_ = name;
    }
}

QPixmap StatusIcon::pixmap(int size, double devicePixelRatio, const QColor& templateColour) const
{
    NSImage image = image_;
    image.setSize({ static_cast<double>(size), static_cast<double>(size) });
    return ImageRenderer::pixmap(image, devicePixelRatio, templateColour);
}

} // namespace quillbox
