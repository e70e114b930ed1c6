#include "Palettes.h"

#include <QFileInfo>
#include <QSettings>

#include <algorithm>
#include <cmath>
#include <utility>

namespace quillbox {

namespace {

    // The least contrast ratio for users who ask for strong contrast. The best grade of the Web Content Accessibility
    // Guidelines asks for 7.
    constexpr double kHighContrast = 15;
    // Disabled text is a mixture of its colour and the background's; this is the share of the text's colour.
    constexpr double kDisabledPart = 0.5;

    struct Colours {
        QColor window;
        QColor text;
        QColor base;
        QColor alternateBase;
        QColor button;
        QColor highlight;
        QColor highlightedText;
        QColor toolTip;
        QColor link;
        QColor linkVisited;
    };

    QColor mixed(const QColor& one, const QColor& other, double part)
    {
        const auto channel = [part](int a, int b) { return static_cast<int>(std::lround(a * part + b * (1 - part))); };
        return { channel(one.red(), other.red()), channel(one.green(), other.green()),
                 channel(one.blue(), other.blue()) };
    }

    void addDisabled(QPalette& palette)
    {
        for (const auto& [text, background] :
             { std::pair(QPalette::WindowText, QPalette::Window), std::pair(QPalette::Text, QPalette::Base),
               std::pair(QPalette::ButtonText, QPalette::Button),
               std::pair(QPalette::HighlightedText, QPalette::Highlight) })
            palette.setColor(QPalette::Disabled, text,
                             mixed(palette.color(text), palette.color(background), kDisabledPart));
    }

    QPalette paletteOf(const Colours& colours)
    {
        QPalette palette(colours.button, colours.window);
        for (const auto role : { QPalette::WindowText, QPalette::Text, QPalette::ButtonText, QPalette::ToolTipText,
                                 QPalette::BrightText })
            palette.setColor(role, colours.text);
        palette.setColor(QPalette::Base, colours.base);
        palette.setColor(QPalette::AlternateBase, colours.alternateBase);
        palette.setColor(QPalette::Highlight, colours.highlight);
        palette.setColor(QPalette::HighlightedText, colours.highlightedText);
        palette.setColor(QPalette::ToolTipBase, colours.toolTip);
        palette.setColor(QPalette::Link, colours.link);
        palette.setColor(QPalette::LinkVisited, colours.linkVisited);
        palette.setColor(QPalette::PlaceholderText, mixed(colours.text, colours.base, kDisabledPart));
        addDisabled(palette);
        return palette;
    }

    const Colours kLight { { 246, 245, 244 }, { 32, 32, 32 },  { 255, 255, 255 }, { 246, 246, 246 },
                           { 240, 240, 240 }, { 21, 83, 158 }, { 255, 255, 255 }, { 255, 255, 255 },
                           { 0, 87, 174 },    { 110, 50, 140 } };
    const Colours kDark { { 48, 48, 48 },   { 238, 238, 238 }, { 36, 36, 36 }, { 43, 43, 43 },    { 58, 58, 58 },
                          { 53, 110, 180 }, { 255, 255, 255 }, { 28, 28, 28 }, { 120, 175, 255 }, { 200, 160, 240 } };
    const Colours kLightContrast { Qt::white,     Qt::black, Qt::white, Qt::white,     Qt::white,
                                   { 0, 0, 110 }, Qt::white, Qt::white, { 0, 0, 170 }, { 90, 0, 120 } };
    const Colours kDarkContrast { Qt::black,         Qt::white, Qt::black, Qt::black,         Qt::black,
                                  { 255, 240, 120 }, Qt::black, Qt::black, { 160, 205, 255 }, { 230, 190, 255 } };

} // namespace

bool isDark(const QPalette& palette)
{
    return palette.color(QPalette::Window).lightness() < palette.color(QPalette::WindowText).lightness();
}

double contrast(const QColor& one, const QColor& other)
{
    const auto luminance = [](const QColor& colour) {
        const auto linear = [](double part) {
            return part <= 0.04045 ? part / 12.92 : std::pow((part + 0.055) / 1.055, 2.4);
        };
        return 0.2126 * linear(colour.redF()) + 0.7152 * linear(colour.greenF()) + 0.0722 * linear(colour.blueF());
    };
    const auto [darker, lighter] = std::minmax({ luminance(one), luminance(other) });
    return (lighter + 0.05) / (darker + 0.05);
}

std::optional<QPalette> paletteFor(ColourWish wish, const QPalette& given)
{
    const bool wantsDark = wish.isDark.value_or(isDark(given));
    const double readability = contrast(given.color(QPalette::Window), given.color(QPalette::WindowText));
    if (wantsDark == isDark(given) && (!wish.isHighContrast || readability >= kHighContrast))
        return std::nullopt;
    if (wish.isHighContrast)
        return paletteOf(wantsDark ? kDarkContrast : kLightContrast);
    return paletteOf(wantsDark ? kDark : kLight);
}

ColourWish wishOfGtkTheme(const QString& name)
{
    if (name.isEmpty())
        return {};
    // Dark themes have names such as "Adwaita-dark", "Yaru-blue-dark", "Arc-Dark", "Adwaita:dark" and
    // "Mint-Y-Dark-Aqua". A theme that is not dark is no wish for light colours, since the user may have chosen dark
    // ones for the toolkit alone.
    const QStringList parts = QString(name).replace(u':', u'-').replace(u'_', u'-').split(u'-');
    const bool hasHighContrast = name.startsWith(QLatin1String("HighContrast"));
    const bool isDark =
        parts.contains(QLatin1String("dark"), Qt::CaseInsensitive) || name.endsWith(QLatin1String("Inverse"));
    return { isDark || hasHighContrast ? std::optional(isDark) : std::nullopt, hasHighContrast };
}

std::optional<QPalette> plasmaPalette(const QString& file)
{
    const QSettings settings(file, QSettings::IniFormat);
    const auto colour = [&settings](const char* group, const char* key, const QColor& reserve = {}) {
        const QStringList channels =
            settings.value(QStringLiteral("Colors:%1/%2").arg(QLatin1String(group), QLatin1String(key))).toStringList();
        if (channels.size() < 3)
            return reserve;
        const QColor named(channels[0].toInt(), channels[1].toInt(), channels[2].toInt());
        return named.isValid() ? named : reserve;
    };
    const QColor window = colour("Window", "BackgroundNormal");
    const QColor text = colour("Window", "ForegroundNormal");
    if (!window.isValid() || !text.isValid())
        return std::nullopt;
    Colours colours;
    colours.window = window;
    colours.text = text;
    colours.base = colour("View", "BackgroundNormal", window);
    colours.alternateBase = colour("View", "BackgroundAlternate", colours.base);
    colours.button = colour("Button", "BackgroundNormal", window);
    colours.highlight = colour("Selection", "BackgroundNormal", text);
    colours.highlightedText = colour("Selection", "ForegroundNormal", window);
    colours.toolTip = colour("Tooltip", "BackgroundNormal", window);
    colours.link = colour("View", "ForegroundLink", text);
    colours.linkVisited = colour("View", "ForegroundVisited", colours.link);
    QPalette palette = paletteOf(colours);
    palette.setColor(QPalette::Text, colour("View", "ForegroundNormal", text));
    palette.setColor(QPalette::ButtonText, colour("Button", "ForegroundNormal", text));
    palette.setColor(QPalette::ToolTipText, colour("Tooltip", "ForegroundNormal", text));
    palette.setColor(QPalette::PlaceholderText,
                     colour("View", "ForegroundInactive", palette.color(QPalette::PlaceholderText)));
    addDisabled(palette);
    return palette;
}

bool looksLike(const QPalette& one, const QPalette& other)
{
    const auto roles = { QPalette::Window, QPalette::WindowText, QPalette::Base,      QPalette::Text,
                         QPalette::Button, QPalette::ButtonText, QPalette::Highlight, QPalette::HighlightedText };
    return std::all_of(roles.begin(), roles.end(), [&](QPalette::ColorRole role) {
        return one.color(QPalette::Active, role).rgb() == other.color(QPalette::Active, role).rgb();
    });
}

QString iconThemeFor(const QString& theme, bool isDark, const QStringList& directories)
{
    const auto isThere = [&directories](const QString& name) {
        return std::any_of(directories.begin(), directories.end(), [&name](const QString& directory) {
            return QFileInfo::exists(QStringLiteral("%1/%2/index.theme").arg(directory, name));
        });
    };
    for (const char* ending : { "-dark", "-Dark", "_dark" }) {
        const QString mark = QLatin1String(ending);
        QString sibling = isDark ? theme + mark : theme.chopped(theme.endsWith(mark) ? mark.size() : 0);
        if (!theme.isEmpty() && sibling != theme && !(isDark && theme.endsWith(mark)) && isThere(sibling))
            return sibling;
    }
    return theme;
}

} // namespace quillbox
