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

// How a picture is combined with what was drawn before.
enum class NSCompositingOperation {
    // It replaces what was there, even where the picture is transparent.
    copy = 1,
    // It is laid over what was there.
    sourceOver = 2,
};

// A picture that has not been looked up yet: where it comes from and the size at which it is shown. Copies share the
// source. Making, sizing and copying an image looks at no theme and no file; the display asks the source for its
// content when it first paints it. A default-constructed image shows nothing.
class NSImage {
public:
    NSImage() = default;
    NSImage(std::shared_ptr<const ImageSource> source, NSSize size) : source_(std::move(source)), size_(size) { }

    // Returns the application's own picture of that name, otherwise the system's; nothing if neither exists.
    static std::optional<NSImage> imageNamed(std::string_view name);

    // Makes an empty picture of this size, in points, to draw into.
    explicit NSImage(NSSize size);
    // Draws the whole of `image` into `rect` of this picture, over what is there and at full opacity. Only pictures
    // made from a size can be drawn into. The drawn image is looked up when this picture is first painted. If this
    // picture is shown at another size, the drawing is scaled with it.
    void draw(const NSImage& image, NSRect rect);
    // Draws the part `from` of `image`, given in the points of that image's own size, and nothing around it. `fraction`
    // is the opacity, from 0 to 1.
    void draw(const NSImage& image, NSRect rect, NSRect from, NSCompositingOperation operation, double fraction);

    bool isEmpty() const { return !source_; }
    const ImageSource* source() const { return source_.get(); }
    NSSize size() const { return size_; }
    void setSize(NSSize size) { size_ = size; }
    // A template is drawn in the text colour of its surroundings; only its shape counts.
    bool isTemplate() const { return isTemplate_; }
    void setTemplate(bool isTemplate) { isTemplate_ = isTemplate; }

    friend bool operator==(const NSImage&, const NSImage&) = default;

private:
    std::shared_ptr<const ImageSource> source_;
    NSSize size_;
    bool isTemplate_ = false;
};

// Names to try in the icon theme, best first, and a picture file to use if the theme has none of them; the path is
// empty if there is no such file.
struct ThemedImage {
    std::vector<std::string> names;
    std::string reserveFile;
    friend bool operator==(const ThemedImage&, const ThemedImage&) = default;
};

// A picture file of the application, or one that an application's desktop entry names.
struct ImageFile {
    std::string path;
    friend bool operator==(const ImageFile&, const ImageFile&) = default;
};

// Pictures drawn over one another; the first one is the lowest.
struct DrawnImage {
    struct Layer {
        NSImage image;
        // In points, in the coordinates of the whole drawing.
        NSRect rect;
        // In points, in the coordinates of the image; nothing means the whole image.
        std::optional<NSRect> from;
        NSCompositingOperation operation = NSCompositingOperation::sourceOver;
        double fraction = 1;
    };
    NSSize size;
    std::vector<Layer> layers;
};

using ImageContent = std::variant<ThemedImage, ImageFile, DrawnImage>;

// Where an image comes from. Images that show the same thing share a source if that is easy to tell; the display keeps
// pixels by the content that the source gives.
class ImageSource {
public:
    virtual ~ImageSource() = default;
    // Returns what to paint. It may read from the disk, and is called only when a picture is first painted.
    virtual ImageContent content() const = 0;
    // Describes the picture in dumps: "NSStatusUnavailable", "Quillbox Icon", "icon of /a/b".
    virtual std::string name() const = 0;
};

// A source whose content is known from the start.
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
