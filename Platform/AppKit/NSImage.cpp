#include "NSImage.h"

#include "Bundle.h"
#include "Check.h"
#include "NSWorkspace.h"

#include <unordered_map>
#include <utility>

namespace quillbox {

namespace {

    // The initial sizes of the application's own pictures, in points: those listed here, and the size of all others,
    // which are icons for a status bar.
    constexpr std::pair<std::string_view, NSSize> kAssetSizes[] = { { "Circle Smoke", { 1280, 128 } } };
    constexpr NSSize kIconSize { 18, 18 };

    NSSize assetSize(std::string_view name)
    {
        for (const auto& [asset, size] : kAssetSizes) {
            if (asset == name)
                return size;
        }
        return kIconSize;
    }

    std::shared_ptr<const ImageSource> assetSource(const std::string& name, const std::string& path)
    {
        // All images of one picture share a source, so that the display makes its pixels once.
        static std::unordered_map<std::string, std::shared_ptr<const ImageSource>> sources;
        auto& source = sources[path];
        if (!source)
            source = std::make_shared<KnownImageSource>(name, ImageFile { path });
        return source;
    }

    // A picture that the program draws; NSImage::draw adds layers to it.
    class CanvasSource final : public ImageSource {
    public:
        explicit CanvasSource(DrawnImage before) : drawing(std::move(before)) { }
        ImageContent content() const override { return drawing; }
        std::string name() const override
        {
            std::string names = "drawn";
            for (const DrawnImage::Layer& layer : drawing.layers)
                names += " " + layer.image.source()->name();
            return names;
        }

        DrawnImage drawing;
    };

    // Returns the drawing of `source` with one more layer. `source` itself is unchanged, so that earlier copies of the
    // image keep what they showed.
    std::shared_ptr<const ImageSource> adding(DrawnImage::Layer layer, const ImageSource* source)
    {
        const auto* canvas = dynamic_cast<const CanvasSource*>(source);
        QB_CHECK(canvas);
        auto drawn = std::make_shared<CanvasSource>(canvas->drawing);
        if (!layer.image.isEmpty())
            drawn->drawing.layers.push_back(std::move(layer));
        return drawn;
    }

} // namespace

std::optional<NSImage> NSImage::imageNamed(std::string_view name)
{
    const std::string text(name);
    if (const auto path = Bundle::main().pathForResource(text + ".svg"))
        return NSImage(assetSource(text, *path), assetSize(name));
    return NSWorkspace::sharedWorkspace().systemImage(name);
}

NSImage::NSImage(NSSize size) : source_(std::make_shared<CanvasSource>(DrawnImage { size, {} })), size_(size) { }

void NSImage::draw(const NSImage& image, NSRect rect)
{
    source_ = adding({ image, rect, std::nullopt, NSCompositingOperation::sourceOver, 1 }, source_.get());
}

void NSImage::draw(const NSImage& image, NSRect rect, NSRect from, NSCompositingOperation operation, double fraction)
{
    source_ = adding({ image, rect, from, operation, fraction }, source_.get());
}

} // namespace quillbox
