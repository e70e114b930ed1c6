#include "NSImage.h"

#include "Bundle.h"
#include "Check.h"
#include "NSWorkspace.h"

#include <unordered_map>

namespace quillbox {

namespace {

    // The size of the application's own pictures, in points, until they are given another: that of an icon
    // in a status bar.
    constexpr NSSize kAssetSize { 18, 18 };

    std::shared_ptr<const ImageSource> assetSource(const std::string& name, const std::string& path)
    {
        // One source a picture, so that the display's pixels for it are made once.
        static std::unordered_map<std::string, std::shared_ptr<const ImageSource>> sources;
        auto& source = sources[path];
        if (!source)
            source = std::make_shared<KnownImageSource>(name, ImageFile { path });
        return source;
    }

    // A picture that is drawn by the program; NSImage::draw adds to it.
    class CanvasSource final : public ImageSource {
    public:
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

} // namespace

std::optional<NSImage> NSImage::imageNamed(std::string_view name)
{
    const std::string text(name);
    if (const auto path = Bundle::main().pathForResource(text + ".svg"))
        return NSImage(assetSource(text, *path), kAssetSize);
    return NSWorkspace::sharedWorkspace().systemImage(name);
}

NSImage::NSImage(NSSize size) : source_(std::make_shared<CanvasSource>()), size_(size) { }

void NSImage::draw(const NSImage& image, NSRect rect)
{
    const auto* canvas = dynamic_cast<const CanvasSource*>(source_.get());
    QB_CHECK(canvas);
    if (image.isEmpty())
        return;
    // Copies made before keep what they showed.
    auto drawn = std::make_shared<CanvasSource>();
    drawn->drawing = canvas->drawing;
    drawn->drawing.layers.push_back({ image, rect });
    source_ = std::move(drawn);
}

} // namespace quillbox
