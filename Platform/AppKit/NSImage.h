#pragma once

#include "NSGeometry.h"

#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

namespace quillbox {

class ImageSource;

// How a picture that is drawn meets what is there already.
enum class NSCompositingOperation {
    // Takes its place: what is there goes, also where the picture is clear.
    copy = 1,
    // Lies over it.
    sourceOver = 2,
};

// A picture that has not been looked up yet: where it comes from and the size it is shown at. Copies share
// the source. Making, sizing and copying one costs no look at a theme or a file; the display asks the
// source for its content when it first paints it. A default-made image shows nothing.
class NSImage {
public:
    NSImage() = default;
    NSImage(std::shared_ptr<const ImageSource> source, NSSize size) : source_(std::move(source)), size_(size) { }

    // The application's own picture of that name, else the system's; none where there is neither.
    static std::optional<NSImage> imageNamed(std::string_view name);

    // An empty picture to draw into.
    explicit NSImage(NSSize size);
    // Draws the whole of `image` into `rect` of this picture, source over, at full opacity. Only pictures
    // made from a size can be drawn into. What is drawn is looked up when this picture is first painted; where
    // it is shown at another size, the drawing is scaled with it.
    void draw(const NSImage& image, NSRect rect);
    // Draws the part `from` of `image`, in the points of `image`'s own size, and nothing of what is around it.
    // `fraction` is the opacity, 0 to 1.
    void draw(const NSImage& image, NSRect rect, NSRect from, NSCompositingOperation operation, double fraction);

    bool isEmpty() const { return !source_; }
    const ImageSource* source() const { return source_.get(); }
    NSSize size() const { return size_; }
    void setSize(NSSize size) { size_ = size; }
    // A template is drawn in the colour of what surrounds it.
    bool isTemplate() const { return isTemplate_; }
    void setTemplate(bool isTemplate) { isTemplate_ = isTemplate; }

    friend bool operator==(const NSImage&, const NSImage&) = default;

private:
    std::shared_ptr<const ImageSource> source_;
    NSSize size_;
    bool isTemplate_ = false;
};

// Names to try in the icon theme, best first, and a picture file where the theme has none of them (empty:
// no such file).
struct ThemedImage {
    std::vector<std::string> names;
    std::string reserveFile;
    friend bool operator==(const ThemedImage&, const ThemedImage&) = default;
};

// A picture file of the application or of an application's entry.
struct ImageFile {
    std::string path;
    friend bool operator==(const ImageFile&, const ImageFile&) = default;
};

// Pictures drawn over one another, first one lowest.
struct DrawnImage {
    struct Layer {
        NSImage image;
        // In the points of the drawing's size.
        NSRect rect;
        // In the points of the image's size; the whole of it where there is none.
        std::optional<NSRect> from;
        NSCompositingOperation operation = NSCompositingOperation::sourceOver;
        double fraction = 1;
    };
    NSSize size;
    std::vector<Layer> layers;
};

using ImageContent = std::variant<ThemedImage, ImageFile, DrawnImage>;

// Where an image comes from. Sources are shared between images that show the same thing where that is cheap to tell;
// the display keeps pixels by what their content says.
class ImageSource {
public:
    virtual ~ImageSource() = default;
    // What to paint; may look at the disk, and is asked only when a picture is first painted.
    virtual ImageContent content() const = 0;
    // What the picture is of, for dumps: "NSStatusUnavailable", "Quillbox Icon", "icon of /a/b".
    virtual std::string name() const = 0;
};

// A source that is known from the start.
class KnownImageSource final : public ImageSource {
public:
    KnownImageSource(std::string name, ImageContent content) : name_(std::move(name)), content_(std::move(content)) { }
    ImageContent content() const override { return content_; }
    std::string name() const override { return name_; }

private:
    std::string name_;
    ImageContent content_;
};

// Names of the system's images that the application uses.
inline constexpr std::string_view NSImageNameStatusUnavailable = "NSStatusUnavailable";
inline constexpr std::string_view NSImageNameStatusNone = "NSStatusNone";
inline constexpr std::string_view NSImageNameAdvanced = "NSAdvanced";
inline constexpr std::string_view NSImageNameRevealFreestandingTemplate = "NSRevealFreestandingTemplate";
inline constexpr std::string_view NSImageNamePreferencesGeneral = "NSPreferencesGeneral";
inline constexpr std::string_view NSImageNameInfo = "NSInfo";
inline constexpr std::string_view NSImageNameTrashFull = "NSTrashFull";

} // namespace quillbox
