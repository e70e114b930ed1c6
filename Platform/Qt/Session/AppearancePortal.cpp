#include "AppearancePortal.h"

#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusVariant>

namespace quillbox {

namespace {

    const QString kService = QStringLiteral("org.freedesktop.portal.Desktop");
    const QString kPath = QStringLiteral("/org/freedesktop/portal/desktop");
    const QString kInterface = QStringLiteral("org.freedesktop.portal.Settings");
    const QString kNamespace = QStringLiteral("org.freedesktop.appearance");

    // In milliseconds; the portal may have to be started first.
    constexpr int kAnswerTimeout = 10'000;

    // Returns 0, which stands for no preference, if there is no such setting or no answer. Every version of the portal
    // has this method, which wraps the value once more than a newer one does.
    unsigned numberIn(const QDBusMessage& answer)
    {
        QVariant value = answer.arguments().value(0);
        while (value.canConvert<QDBusVariant>())
            value = value.value<QDBusVariant>().variant();
        return answer.type() == QDBusMessage::ReplyMessage ? value.toUInt() : 0;
    }

} // namespace

AppearancePortal::AppearancePortal(QDBusConnection connection)
    : connection_(std::move(connection)),
      watcher_(kService, connection_, QDBusServiceWatcher::WatchForRegistration)
{
    changed_.setSingleShot(true);
    changed_.setInterval(0);
    QObject::connect(&changed_, &QTimer::timeout, &changed_, [this] { ask(); });
    QObject::connect(&watcher_, &QDBusServiceWatcher::serviceRegistered, &changed_, [this] { changed_.start(); });
    // Signals of any sender are accepted: to name one, the library would wait until the bus tells who that is.
    connection_.connect(QString(), kPath, kInterface, QStringLiteral("SettingChanged"), { kNamespace }, QString(),
                        &changed_, SLOT(start()));
    ask();
}

AppearancePortal::~AppearancePortal() = default;

void AppearancePortal::ask()
{
    const auto read = [this](const char* key) {
        QDBusMessage question = QDBusMessage::createMethodCall(kService, kPath, kInterface, QStringLiteral("Read"));
        question.setArguments({ kNamespace, QString::fromLatin1(key) });
        return std::make_unique<QDBusPendingCallWatcher>(connection_.asyncCall(question, kAnswerTimeout));
    };
    askedScheme_ = read("color-scheme");
    // The two answers come in the order of the questions.
    askedContrast_ = read("contrast");
    QObject::connect(askedContrast_.get(), &QDBusPendingCallWatcher::finished, askedContrast_.get(), [this] {
        if (askedScheme_->isFinished())
            take(numberIn(askedScheme_->reply()), numberIn(askedContrast_->reply()));
    });
}

void AppearancePortal::take(unsigned scheme, unsigned contrast)
{
    const auto known =
        scheme <= static_cast<unsigned>(Scheme::light) ? static_cast<Scheme>(scheme) : Scheme::noPreference;
    const bool isChanged = known != scheme_ || (contrast == 1) != wantsHighContrast_;
    scheme_ = known;
    wantsHighContrast_ = contrast == 1;
    if (isChanged && onChanged)
        onChanged();
}

} // namespace quillbox
