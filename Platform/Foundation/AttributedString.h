#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace quillbox {

// A font described by its role; the desktop chooses the real font.
struct FontAttribute {
    enum class Role { system, user };
    enum class Weight { light, regular, bold };

    Role role = Role::system;
    Weight weight = Weight::regular;
    // The size in points. 0 stands for the role's default size, kSmallSize for the desktop's small system size.
    double size = 0;
    static constexpr double kSmallSize = -1;

    friend bool operator==(const FontAttribute&, const FontAttribute&) = default;
};

struct TextAttributes {
    std::optional<FontAttribute> font;
    // An address to open when the text is clicked.
    std::optional<std::string> link;

    friend bool operator==(const TextAttributes&, const TextAttributes&) = default;
};

// Text divided into runs, each with its own attributes. Neighbouring runs with equal attributes are joined.
class AttributedString {
public:
    struct Run {
        std::string text;
        TextAttributes attributes;
        friend bool operator==(const Run&, const Run&) = default;
    };

    AttributedString() = default;
    explicit AttributedString(std::string_view text, TextAttributes attributes = {});

    void append(std::string_view text, TextAttributes attributes = {});
    void append(const AttributedString& other);

    std::string string() const;
    const std::vector<Run>& runs() const { return runs_; }

    friend bool operator==(const AttributedString&, const AttributedString&) = default;

private:
    std::vector<Run> runs_;
};

} // namespace quillbox
