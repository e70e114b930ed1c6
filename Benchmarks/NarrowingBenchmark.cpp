#include "HeadlessDesktop.h"
#include "ManualClock.h"
#include "MenuPresenter.h"
#include "PopupUser.h"

#include <QApplication>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <functional>
#include <string>
#include <vector>

// Measures what a letter takes that narrows a level of 100,000 rows, from the key to the painted popup, and compares
// that with the plainest search there is: std::string::find on each title for the same text. Each figure is the median
// of nine runs. Exits 1 if a letter takes longer than it may.

namespace quillbox {

namespace {

    using SteadyClock = std::chrono::steady_clock;
    using Milliseconds = std::chrono::duration<double, std::milli>;

    constexpr std::size_t kRows = 100'000;
    constexpr int kRuns = 9;
    constexpr double kMostMilliseconds = 8;

    class Target final : public NSObject {
    public:
        void choose(NSObject*) { }
    };
    constexpr Selector kChoose = makeSelector<&Target::choose>("chooseWithSender:");

    double median(std::vector<double> values)
    {
        std::sort(values.begin(), values.end());
        return values[values.size() / 2];
    }

    double timeOf(const std::function<void()>& act)
    {
        const auto start = SteadyClock::now();
        act();
        return Milliseconds(SteadyClock::now() - start).count();
    }

    // Titles such as directories have them: words, numbers and endings. Their words are given.
    std::vector<std::string> titles(const std::vector<std::string>& words)
    {
        std::vector<std::string> result;
        for (std::size_t i = 0; i < kRows; ++i)
            result.push_back(words[i % words.size()] + (i % 3 ? " " : "-") + words[i / 7 % words.size()] + " "
                             + std::to_string(i) + ".txt");
        return result;
    }

    struct Alphabet {
        const char* name;
        std::vector<std::string> words;
        QString typed;
    };

    // Returns whether every letter was fast enough.
    bool measure(const Alphabet& alphabet)
    {
        const std::vector<std::string> all = titles(alphabet.words);
        auto menu = std::make_shared<NSMenu>("many");
        for (const std::string& title : all)
            menu->addItem(std::make_shared<NSMenuItem>(title, &kChoose));
        ManualClock clock;
        HeadlessDesktop desktop;
        const auto letters = static_cast<std::size_t>(alphabet.typed.size());
        std::vector<double> opening;
        std::vector<std::vector<double>> narrowing(letters);
        std::vector<std::vector<double>> finding(letters);
        for (int run = 0; run < kRuns; ++run) {
            MenuPresenter presenter;
            presenter.popUp(menu, QRect(0, 0, 24, 24), nullptr);
            QCoreApplication::processEvents();
            const auto press = [](int key, const QString& text) {
                return timeOf([&] {
                    PopupUser::key(key, text);
                    PopupUser::popups().front()->repaint();
                });
            };
            opening.push_back(press(Qt::Key_Slash, QStringLiteral("/")));
            for (std::size_t i = 0; i < letters; ++i) {
                const QChar letter = alphabet.typed[static_cast<qsizetype>(i)];
                narrowing[i].push_back(press(letter.toUpper().unicode(), letter));
                const std::string plain = alphabet.typed.left(static_cast<qsizetype>(i) + 1).toStdString();
                finding[i].push_back(timeOf([&] {
                    std::size_t count = 0;
                    for (const auto& item : menu->itemArray())
                        count += item->title().find(plain) != std::string::npos;
                    if (count > kRows)
                        std::abort();
                }));
            }
        }
        std::printf("%s: \"/\" takes %.1f ms\n", alphabet.name, median(opening));
        bool isFast = true;
        for (std::size_t i = 0; i < letters; ++i) {
            const double time = median(narrowing[i]);
            std::printf("  \"%s\": %.2f ms, at most %.0f; %.2f times a plain search\n",
                        alphabet.typed.left(static_cast<qsizetype>(i) + 1).toUtf8().constData(), time,
                        kMostMilliseconds, time / median(finding[i]));
            isFast = isFast && time <= kMostMilliseconds;
        }
        return isFast;
    }

} // namespace

} // namespace quillbox

int main(int argc, char** argv)
{
    using namespace quillbox;
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const QApplication application(argc, argv);
    const Alphabet alphabets[] = {
        { "Latin", { "report", "letter", "Résumé", "photo", "notes of the meeting" }, QStringLiteral("etter 4") },
        { "Cyrillic", { "отчёт", "Письмо", "заметки о встрече", "фото" }, QString::fromUtf8("отчет") },
    };
    bool isFast = true;
    for (const Alphabet& alphabet : alphabets)
        isFast = measure(alphabet) && isFast;
    return isFast ? EXIT_SUCCESS : EXIT_FAILURE;
}
