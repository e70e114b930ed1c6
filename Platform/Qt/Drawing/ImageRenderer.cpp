#include "ImageRenderer.h"

#include "FileContents.h"
#include "PathStatus.h"

#include <QBuffer>
#include <QCache>
#include <QDataStream>
#include <QGuiApplication>
#include <QHashFunctions>
#include <QIcon>
#include <QImageReader>
#include <QPainter>
#include <QPalette>
#include <QSvgRenderer>

#include <algorithm>
#include <cerrno>
#include <cmath>
#include <optional>

namespace quillbox {

namespace {

    // The largest side of a picture in pixels; a larger request is a mistake.
    constexpr double kLargestSide = 4096;
    constexpr std::size_t kLargestFile = std::size_t { 64 } << 20;
    constexpr qsizetype kKeptBytes = qsizetype { 16 } << 20;
    // This is more than the rows that several open levels show at once.
    constexpr qsizetype kKeptContents = 512;

    struct Key {
        // Identifies what the picture shows, see identityOf().
        QByteArray identity;
        double width = 0;
        double height = 0;
        double devicePixelRatio = 1;
        // Zero for pixels that are the same in every colour.
        QRgb colour = 0;

        friend bool operator==(const Key&, const Key&) = default;
        friend std::size_t qHash(const Key& key, std::size_t seed = 0)
        {
            return qHashMulti(seed, key.identity, key.width, key.height, key.devicePixelRatio, key.colour);
        }
    };

    // What a source has given. Sources are made anew at every opening of a menu, and each is asked once. Pixels are
    // found by the content, so that the next opening finds those of the previous one.
    struct Content {
        // The image is kept alive so that no other source can get the address that is the key.
        NSImage image;
        ImageContent content;
        QByteArray identity;
        // Whether the file did not answer in time. If so, the source is asked again the next time.
        bool isOutOfReach = false;
    };

    struct Kept {
        QCache<const ImageSource*, Content> contents { kKeptContents };
        QCache<Key, QPixmap> pixels { kKeptBytes };
        QString themeName;
        qint64 paletteKey = 0;
    };

    Kept& kept()
    {
        static Kept everything;
        return everything;
    }

    // Theme and palette are compared whenever something is painted, so that nothing has to listen while no menu is
    // open.
    void dropIfThemeChanged()
    {
        const QString themeName = QIcon::themeName();
        const qint64 paletteKey = QGuiApplication::palette().cacheKey();
        if (themeName == kept().themeName && paletteKey == kept().paletteKey)
            return;
        ImageRenderer::dropAll();
        kept().themeName = themeName;
        kept().paletteKey = paletteKey;
    }

    const Content& contentOf(const NSImage& image);

    void write(QDataStream& out, NSRect rect)
    {
        out << rect.origin.x << rect.origin.y << rect.size.width << rect.size.height;
    }

    void write(QDataStream& out, const ThemedImage& themed)
    {
        for (const std::string& name : themed.names)
            out << QByteArray::fromStdString(name);
        out << QByteArray::fromStdString(themed.reserveFile);
    }

    // A file that was written again counts as another picture.
    void write(QDataStream& out, const ImageFile& file)
    {
        const Result<struct stat> status = statusOfPath(file.path);
        out << QByteArray::fromStdString(file.path) << qint64 { status ? status->st_size : 0 }
            << qint64 { status ? status->st_mtim.tv_sec : 0 } << qint64 { status ? status->st_mtim.tv_nsec : 0 };
    }

    void write(QDataStream& out, const DrawnImage& drawn)
    {
        out << drawn.size.width << drawn.size.height;
        for (const DrawnImage::Layer& layer : drawn.layers) {
            if (layer.image.isEmpty())
                continue;
            out << contentOf(layer.image).identity << layer.image.size().width << layer.image.size().height
                << layer.image.isTemplate() << static_cast<int>(layer.operation) << layer.fraction
                << layer.from.has_value();
            write(out, layer.rect);
            write(out, layer.from.value_or(NSRect {}));
        }
    }

    // Returns the same bytes for all contents that show the same picture.
    QByteArray identityOf(const ImageContent& content)
    {
        QByteArray identity;
        QDataStream out(&identity, QIODevice::WriteOnly);
        out << static_cast<quint64>(content.index());
        std::visit([&out](const auto& kind) { write(out, kind); }, content);
        return identity;
    }

    bool isOutOfReach(const ImageContent& content)
    {
        const auto* file = std::get_if<ImageFile>(&content);
        if (!file)
            return false;
        const Result<struct stat> status = statusOfPath(file->path);
        return !status && status.error().code == ETIMEDOUT;
    }

    // The result is valid until the next call, at which the cache may drop it.
    const Content& contentOf(const NSImage& image)
    {
        if (const Content* known = kept().contents.object(image.source()); known && !known->isOutOfReach)
            return *known;
        auto* asked = new Content { image, image.source()->content(), {}, false };
        asked->isOutOfReach = isOutOfReach(asked->content);
        asked->identity = identityOf(asked->content);
        kept().contents.insert(image.source(), asked);
        return *asked;
    }

    QImage canvas(NSSize size, double devicePixelRatio)
    {
        const auto pixelCount = [devicePixelRatio](double points) {
            return static_cast<int>(std::lround(std::clamp(points * devicePixelRatio, 1.0, kLargestSide)));
        };
        QImage image(pixelCount(size.width), pixelCount(size.height), QImage::Format_ARGB32_Premultiplied);
        image.setDevicePixelRatio(devicePixelRatio);
        image.fill(Qt::transparent);
        return image;
    }

    QRectF qtRect(NSRect rect)
    {
        return { rect.origin.x, rect.origin.y, rect.size.width, rect.size.height };
    }

    // Returns the largest rectangle with the proportions of `picture` inside `room`, centred.
    QRectF fitted(QSizeF picture, QSizeF room)
    {
        const QSizeF size = picture.scaled(room, Qt::KeepAspectRatio);
        return { QPointF((room.width() - size.width()) / 2, (room.height() - size.height()) / 2), size };
    }

    bool paintFile(QPainter& painter, const std::string& path, QSizeF room, double devicePixelRatio)
    {
        // readFile() refuses pipes and devices, for which a plain read could wait, and gives up on a mount that does
        // not answer.
        const Result<Data> contents = readFile(path, kLargestFile);
        if (!contents)
            return false;
        QByteArray bytes(reinterpret_cast<const char*>(contents->data()), static_cast<qsizetype>(contents->size()));
        if (path.ends_with(".svg") || path.ends_with(".svgz") || path.ends_with(".SVG") || path.ends_with(".SVGZ")) {
            QSvgRenderer renderer(bytes);
            if (!renderer.isValid())
                return false;
            renderer.render(&painter, fitted(renderer.viewBoxF().size(), room));
            return true;
        }
        QBuffer buffer(&bytes);
        QImageReader reader(&buffer);
        reader.setDecideFormatFromContent(true);
        const QSize natural = reader.size();
        const QSizeF inPixels = room * devicePixelRatio;
        // Large photographs are already scaled while they are decoded.
        if (natural.width() > 2 * inPixels.width() && natural.height() > 2 * inPixels.height())
            reader.setScaledSize(natural.scaled((inPixels * 2).toSize(), Qt::KeepAspectRatio));
        const QImage image = reader.read();
        if (image.isNull())
            return false;
        painter.drawImage(fitted(image.size(), room), image);
        return true;
    }

    bool paintThemed(QPainter& painter, const ThemedImage& themed, QSizeF room, double devicePixelRatio)
    {
        for (const std::string& name : themed.names) {
            const QIcon icon = QIcon::fromTheme(QString::fromStdString(name));
            const QPixmap pixmap = icon.isNull() ? QPixmap() : icon.pixmap(room.toSize(), devicePixelRatio);
            if (pixmap.isNull())
                continue;
            painter.drawPixmap(fitted(pixmap.size(), room), pixmap, QRectF(QPointF(), QSizeF(pixmap.size())));
            return true;
        }
        return !themed.reserveFile.empty() && paintFile(painter, themed.reserveFile, room, devicePixelRatio);
    }

    QPixmap render(const NSImage& image, const ImageContent& content, double devicePixelRatio,
                   const QColor& templateColour, const std::optional<QRectF>& part = std::nullopt);

    // Returns the layer's pixels for a display of `size`. If only a part of the picture is shown, only that is painted,
    // straight from the picture's content and at the scale of the display.
    QPixmap layerPixmap(const DrawnImage::Layer& layer, QSizeF size, double devicePixelRatio,
                        const QColor& templateColour)
    {
        NSImage image = layer.image;
        if (!layer.from) {
            image.setSize({ size.width(), size.height() });
            return ImageRenderer::pixmap(image, devicePixelRatio, templateColour);
        }
        const QRectF from = qtRect(*layer.from);
        if (!from.intersects(QRectF(0, 0, image.size().width, image.size().height)))
            return {};
        const double across = size.width() / from.width();
        const double down = size.height() / from.height();
        image.setSize({ image.size().width * across, image.size().height * down });
        const ImageContent content = contentOf(image).content;
        return render(image, content, devicePixelRatio, templateColour,
                      QTransform::fromScale(across, down).mapRect(from));
    }

    bool paintDrawn(QPainter& painter, const DrawnImage& drawn, QSizeF room, double devicePixelRatio,
                    const QColor& templateColour)
    {
        if (drawn.size.width <= 0 || drawn.size.height <= 0)
            return false;
        bool isAnythingPainted = false;
        const auto scale = QTransform::fromScale(room.width() / drawn.size.width, room.height() / drawn.size.height);
        for (const DrawnImage::Layer& layer : drawn.layers) {
            const QRectF rect = scale.mapRect(qtRect(layer.rect));
            if (!rect.intersects(QRectF(QPointF(), room)))
                continue;
            const QPixmap pixmap = layerPixmap(layer, rect.size(), devicePixelRatio, templateColour);
            if (pixmap.isNull())
                continue;
            if (layer.operation == NSCompositingOperation::copy) {
                painter.setCompositionMode(QPainter::CompositionMode_Clear);
                painter.fillRect(rect, Qt::black);
                painter.setCompositionMode(QPainter::CompositionMode_SourceOver);
            }
            painter.setOpacity(layer.fraction);
            painter.drawPixmap(rect, pixmap, QRectF(QPointF(), QSizeF(pixmap.size())));
            painter.setOpacity(1);
            isAnythingPainted = true;
        }
        return isAnythingPainted;
    }

    // Draws this part of the image, given in points of its size, or all of it.
    QPixmap render(const NSImage& image, const ImageContent& content, double devicePixelRatio,
                   const QColor& templateColour, const std::optional<QRectF>& part)
    {
        QImage result = canvas(part ? NSSize { part->width(), part->height() } : image.size(), devicePixelRatio);
        const QSizeF room = part ? QSizeF(image.size().width, image.size().height) : result.deviceIndependentSize();
        QPainter painter(&result);
        painter.setRenderHints(QPainter::Antialiasing | QPainter::SmoothPixmapTransform);
        if (part)
            painter.translate(-part->topLeft());
        bool isPainted = false;
        if (const auto* themed = std::get_if<ThemedImage>(&content))
            isPainted = paintThemed(painter, *themed, room, devicePixelRatio);
        else if (const auto* file = std::get_if<ImageFile>(&content))
            isPainted = paintFile(painter, file->path, room, devicePixelRatio);
        else if (const auto* drawn = std::get_if<DrawnImage>(&content))
            isPainted = paintDrawn(painter, *drawn, room, devicePixelRatio, templateColour);
        if (!isPainted)
            return {};
        if (image.isTemplate()) {
            painter.setCompositionMode(QPainter::CompositionMode_SourceIn);
            painter.fillRect(QRectF(QPointF(), room), templateColour);
        }
        painter.end();
        return QPixmap::fromImage(std::move(result));
    }

} // namespace

QPixmap ImageRenderer::pixmap(const NSImage& image, double devicePixelRatio, const QColor& templateColour)
{
    if (image.isEmpty() || image.size().width <= 0 || image.size().height <= 0)
        return {};
    dropIfThemeChanged();
    const Content& content = contentOf(image);
    // A drawing may contain templates.
    const bool usesColour = image.isTemplate() || std::holds_alternative<DrawnImage>(content.content);
    const Key key { content.identity, image.size().width, image.size().height, devicePixelRatio,
                    usesColour ? templateColour.rgba() : 0 };
    if (const QPixmap* known = kept().pixels.object(key))
        return *known;
    const bool isKept = !content.isOutOfReach;
    // The content is copied, since drawing may ask other sources.
    QPixmap rendered = render(image, ImageContent(content.content), devicePixelRatio, templateColour);
    // The result is kept even if the image could not be found, or it would be looked for at every paint.
    const qsizetype cost = 256 + static_cast<qsizetype>(rendered.width()) * rendered.height() * 4;
    if (isKept)
        kept().pixels.insert(key, new QPixmap(rendered), cost);
    return rendered;
}

void ImageRenderer::dropAll()
{
    kept().contents.clear();
    kept().pixels.clear();
}

} // namespace quillbox
