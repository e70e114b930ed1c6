#include "MenuText.h"

#include <algorithm>

namespace quillbox {

namespace {

    constexpr qsizetype kLongestShown = 2000;
    constexpr QChar kZeroWidthSpace(0x200B);
    constexpr qsizetype kLongestUnbroken = 60;
    constexpr qsizetype kLongestToolTipLine = 100;

    QChar visibleSign(QChar character)
    {
        switch (character.unicode()) {
        case '\n':
        case '\r':
        case 0x2028:
        case 0x2029:
            return QChar(0x21B5);
        case '\t':
            return QChar(0x2192);
        default:
            return character.category() == QChar::Other_Control ? QChar(QChar::ReplacementCharacter) : character;
        }
    }

} // namespace

QString shownOnOneLine(const std::string& title)
{
    QString shown = QString::fromStdString(title);
    if (shown.size() > kLongestShown)
        shown = shown.left(kLongestShown / 2) + QChar(0x2026) + shown.right(kLongestShown / 2);
    std::transform(shown.begin(), shown.end(), shown.begin(), visibleSign);
    return shown;
}

QStringList shownLines(const NSMenuItem& item)
{
    if (!item.attributedTitle())
        return { shownOnOneLine(item.title()) };
    QStringList lines;
    for (const QString& line : QString::fromStdString(item.attributedTitle()->string()).split(QChar('\n')))
        lines.append(shownOnOneLine(line.toStdString()));
    return lines;
}

QString toolTipMarkup(const QString& text)
{
    const QStringList lines = text.split(QChar('\n'));
    const bool isShort =
        std::all_of(lines.begin(), lines.end(), [](const QString& line) { return line.size() <= kLongestToolTipLine; });
    // If told that it may wrap, the toolkit makes even short texts narrow.
    if (isShort)
        return QStringLiteral("<p style='white-space:pre'>") + text.toHtmlEscaped() + QStringLiteral("</p>");
    QString broken;
    qsizetype unbroken = 0;
    for (const QChar character : text) {
        broken.append(character);
        unbroken = character.isSpace() ? 0 : unbroken + 1;
        if (character == QChar('/') || (unbroken >= kLongestUnbroken && !character.isHighSurrogate())) {
            broken.append(kZeroWidthSpace);
            unbroken = 0;
        }
    }
    return QStringLiteral("<p style='white-space:pre-wrap'>") + broken.toHtmlEscaped() + QStringLiteral("</p>");
}

QString foldedForSearch(const QString& text)
{
    QString result;
    for (const QChar character : text.normalized(QString::NormalizationForm_KD).toCaseFolded())
        if (!character.isMark())
            result.append(character);
    return result;
}

TitlePrefix::TitlePrefix(const QString& typed) : folded_(foldedForSearch(typed)) { }

bool TitlePrefix::matches(const NSMenuItem& item) const
{
    const std::string attributed = item.attributedTitle() ? item.attributedTitle()->string() : std::string();
    const std::string& title = item.attributedTitle() ? attributed : item.title();
    // Most titles differ in their first plain letters. Only the others are folded, and no more of them than can matter.
    const auto compared = std::min(title.size(), static_cast<std::size_t>(folded_.size()));
    for (std::size_t i = 0; i < compared; ++i) {
        const auto byte = static_cast<unsigned char>(title[i]);
        if (byte >= 0x80)
            break;
        if (QChar(byte).toLower() != folded_[static_cast<qsizetype>(i)])
            return false;
    }
    constexpr std::size_t kBytesPerTypedCharacter = 32;
    const QString beginning =
        QString::fromUtf8(title.data(),
                          static_cast<qsizetype>(std::min(
                              title.size(), static_cast<std::size_t>(folded_.size()) * kBytesPerTypedCharacter)));
    return !folded_.isEmpty() && foldedForSearch(beginning).startsWith(folded_);
}

} // namespace quillbox
