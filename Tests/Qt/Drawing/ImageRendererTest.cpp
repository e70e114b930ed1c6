#include "ImageRenderer.h"
#include "CountedSource.h"
#include "IconThemes.h"

#include <gtest/gtest.h>

#include <QImage>
#include <QSet>

#include <sys/stat.h>

#include <algorithm>
#include <cmath>
#include <cstdlib>

using namespace quillbox;

namespace {

NSImage image(ImageContent content, double side = 16)
{
    return NSImage(std::make_shared<KnownImageSource>("test", std::move(content)), { side, side });
}

QColor centre(const QPixmap& pixmap)
{
    return pixmap.isNull() ? QColor() : pixmap.toImage().pixelColor(pixmap.width() / 2, pixmap.height() / 2);
}

const NSImage kKnown = image(ThemedImage { { "known" }, "" });

struct Images : testing::Test {
    std::string write(const std::string& name, const std::string& contents) const
    {
        return themes.directory.writeFile(name, contents);
    }

    IconThemes themes;
};

TEST_F(Images, ComeFromTheThemeByTheirFirstKnownNameElseFromTheReserve)
{
    const std::string reserve = write("reserve.svg", plainSvg("#0000ff"));
    const NSImage known = image(ThemedImage { { "unknown", "known" }, reserve });
    EXPECT_EQ(centre(ImageRenderer::pixmap(known, 1, {})), QColor(Qt::green));
    QIcon::setThemeName("red");
    EXPECT_EQ(centre(ImageRenderer::pixmap(known, 1, {})), QColor(Qt::red));
    EXPECT_EQ(centre(ImageRenderer::pixmap(image(ThemedImage { { "unknown" }, reserve }), 1, {})), QColor(Qt::blue));
    EXPECT_TRUE(ImageRenderer::pixmap(image(ThemedImage { { "unknown" }, "" }), 1, {}).isNull());
}

TEST_F(Images, HaveTheirSizeTimesTheScale)
{
    const QPixmap pixmap = ImageRenderer::pixmap(image(ThemedImage { { "known" }, "" }, 64), 1.5, {});
    EXPECT_EQ(pixmap.size(), QSize(96, 96));
    EXPECT_EQ(pixmap.devicePixelRatio(), 1.5);
}

TEST_F(Images, TemplatesTakeTheColourAround)
{
    NSImage marked = kKnown;
    marked.setTemplate(true);
    EXPECT_EQ(centre(ImageRenderer::pixmap(marked, 1, Qt::white)), QColor(Qt::white));
    EXPECT_EQ(centre(ImageRenderer::pixmap(marked, 1, Qt::black)), QColor(Qt::black));
    marked.setTemplate(false);
    EXPECT_EQ(centre(ImageRenderer::pixmap(marked, 1, Qt::black)), QColor(Qt::green));
}

TEST_F(Images, AreDrawnOverOneAnother)
{
    NSImage drawn(NSSize { 16, 16 });
    drawn.draw(kKnown, { { 0, 0 }, { 16, 16 } });
    drawn.draw(image(ImageFile { write("dot.svg", plainSvg("#ff0000")) }), { { 6, 6 }, { 4, 4 } });
    const QImage picture = ImageRenderer::pixmap(drawn, 2, {}).toImage();
    ASSERT_EQ(picture.size(), QSize(32, 32));
    EXPECT_EQ(picture.pixelColor(16, 16), QColor(Qt::red));
    EXPECT_EQ(picture.pixelColor(4, 4), QColor(Qt::green));
}

TEST_F(Images, APartIsCutOutWithNothingOfItsNeighbours)
{
    const std::string strip = write("strip.svg",
                                    "<svg xmlns='http://www.w3.org/2000/svg' width='384' height='128'>"
                                    "<rect width='128' height='128' fill='#ff0000'/>"
                                    "<rect x='128' width='128' height='128' fill='#00ff00'/>"
                                    "<rect x='256' width='128' height='128' fill='#0000ff'/></svg>");
    const NSImage source(std::make_shared<KnownImageSource>("strip", ImageFile { strip }), { 384, 128 });
    for (const double scale : { 1.0, 1.25, 2.0 }) {
        NSImage frame(NSSize { 128, 128 });
        // Taken away by the copy above it.
        frame.draw(kKnown, { { 0, 0 }, { 128, 128 } });
        frame.draw(source, { { 0, 0 }, { 64, 128 } }, { { 128, 0 }, { 64, 128 } }, NSCompositingOperation::copy, 1);
        frame.draw(source, { { 64, 0 }, { 64, 128 } }, { { 320, 0 }, { 64, 128 } }, NSCompositingOperation::copy, 0.5);
        frame.setSize({ 80, 80 });
        const QImage picture = ImageRenderer::pixmap(frame, scale, {}).toImage();
        const int side = static_cast<int>(std::lround(80 * scale));
        ASSERT_EQ(picture.size(), QSize(side, side));
        for (int x = 0; x < side; ++x) {
            const QColor colour = picture.pixelColor(x, x);
            // Between the halves a pixel may be of both.
            const bool isGreen = x <= side / 2 && colour == QColor(Qt::green);
            const bool isHalfBlue = x >= side / 2 && colour.blue() == 255 && colour.red() + colour.green() == 0
                && std::abs(colour.alpha() - 128) < 2;
            EXPECT_TRUE(x == side / 2 || isGreen || isHalfBlue)
                << x << " at " << scale << ": " << colour.name(QColor::HexArgb).toStdString();
        }
    }
}

TEST_F(Images, OfSourcesMadeAnewAreDrawnOnceAndTheSourcesLetGo)
{
    const ThemedImage dot { { "known" }, "" };
    const std::string file = write("dot.svg", plainSvg("#ff0000"));
    QSet<qint64> drawn;
    int mostAlive = 0;
    for (int opening = 0; opening < 2000; ++opening) {
        for (const ImageContent& content : { ImageContent(dot), ImageContent(ImageFile { file }) }) {
            const NSImage picture(std::make_shared<CountedSource>(content), { 16, 16 });
            NSImage around(NSSize { 32, 32 });
            around.draw(picture, { { 0, 0 }, { 16, 16 } });
            drawn +=
                { ImageRenderer::pixmap(picture, 1, {}).cacheKey(), ImageRenderer::pixmap(around, 1, {}).cacheKey() };
        }
        mostAlive = std::max(mostAlive, CountedSource::alive);
    }
    EXPECT_EQ(drawn.size(), 4);
    EXPECT_LE(mostAlive, 1024);
    ImageRenderer::dropAll();
    EXPECT_EQ(CountedSource::alive, 0);

    write("dot.svg", plainSvg("#0000ff"));
    EXPECT_EQ(centre(ImageRenderer::pixmap(image(ImageFile { file }), 1, {})), QColor(Qt::blue));
}

TEST_F(Images, BadFilesShowNothing)
{
    const std::string pipe = themes.directory.path("pipe.png");
    ASSERT_EQ(mkfifo(pipe.c_str(), 0600), 0);
    for (const std::string& path : { write("damaged.png", "\x89PNG\r\n\x1a\nno more"), write("damaged.svg", "<svg"),
                                     themes.directory.path("missing.png"), pipe, themes.directory.path() })
        EXPECT_TRUE(ImageRenderer::pixmap(image(ImageFile { path }), 1, {}).isNull()) << path;
}

} // namespace
