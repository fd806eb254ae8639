// The desktop's settings, from a fake portal.
#include "platform/desktop_settings.h"
#include "tests/platform/private_bus.h"

#include <QDBusPendingCallWatcher>
#include <QDBusVariant>
#include <QEventLoop>
#include <QSemaphore>
#include <QThread>
#include <QTimer>
#include <QVariant>

#include <functional>
#include <sys/stat.h>
#include <tuple>
#include <utility>

namespace oxlade::test {
namespace {

const auto* const environment = testing::AddGlobalTestEnvironment(new BusEnvironment);

constexpr const char* appearance = "org.freedesktop.appearance";
constexpr const char* gnome = "org.gnome.desktop.interface";
const QString portalPath = QStringLiteral("/org/freedesktop/portal/desktop");
const QString settings = QStringLiteral("org.freedesktop.portal.Settings");

QString text(const char* latin) { return QString::fromLatin1(latin); }

class DesktopSettingsTest : public testing::Test {
  protected:
    DesktopSettingsTest() {
        setenv("XDG_CONFIG_HOME", folder_.path().c_str(), 1);
        setenv("XDG_CONFIG_DIRS", folder_.path("none").c_str(), 1);
    }

    void startPortal() {
        portal_ = std::make_unique<FakeService>(
            text("org.freedesktop.portal.Desktop"), portalPath,
            [this](const QDBusMessage& call) { return answer(call); });
    }
    // All that the settings ask for was asked, and the answers were handled: the answer to a
    // further call comes after them.
    bool isAnswered() {
        if (!eventuallyInEventLoop([this] { return portal_->calls.size() == 3; })) return false;
        const auto call = QDBusMessage::createMethodCall(text("org.freedesktop.portal.Desktop"),
                                                         portalPath, settings, text("Read"));
        const QDBusPendingCallWatcher last(QDBusConnection::sessionBus().asyncCall(call));
        bool hasCome = false;
        QObject::connect(&last, &QDBusPendingCallWatcher::finished, [&] { hasCome = true; });
        return eventuallyInEventLoop([&] { return hasCome; });
    }
    void change(const char* group, const char* key, const QVariant& value) {
        auto signal = QDBusMessage::createSignal(portalPath, settings, text("SettingChanged"));
        signal << text(group) << text(key) << QVariant::fromValue(QDBusVariant(value));
        portal_->send(signal);
    }

    std::map<std::pair<QString, QString>, QVariant> values_;
    bool isSilent_ = false;
    std::unique_ptr<FakeService> portal_;
    const TemporaryFolder folder_;

  private:
    std::optional<QDBusMessage> answer(const QDBusMessage& call) const {
        if (isSilent_) return std::nullopt;
        const auto found = values_.find(
            {call.arguments().value(0).toString(), call.arguments().value(1).toString()});
        if (found == values_.end())
            return call.createErrorReply(text("org.freedesktop.portal.Error.NotFound"), text("no"));
        const QVariant inner = QVariant::fromValue(QDBusVariant(found->second));
        return call.createReply(QVariant::fromValue(QDBusVariant(inner)));
    }
};

/// Runs the portal and its event loop in a thread of its own.
class PortalThread final {
  public:
    PortalThread(std::function<void()> start, std::function<void()> stop)
        : thread_(QThread::create([this, start = std::move(start), stop = std::move(stop)] {
              start();
              isStarted_.release();
              QEventLoop().exec();
              stop();
          })) {
        thread_->start();
        isStarted_.acquire();
    }
    ~PortalThread() {
        thread_->quit();
        thread_->wait();
    }
    PortalThread(const PortalThread&) = delete;
    PortalThread& operator=(const PortalThread&) = delete;

  private:
    QSemaphore isStarted_;
    const std::unique_ptr<QThread> thread_;
};

// A constructor that waited for its three answers would exceed the test's time-out.
TEST_F(DesktopSettingsTest, ASilentPortalIsNotWaitedFor) {
    isSilent_ = true;
    startPortal();
    const DesktopSettings desktop;
    EXPECT_TRUE(eventuallyInEventLoop([this] { return portal_->calls.size() == 3; }));
    EXPECT_FALSE(desktop.shouldReduceMotion());
    EXPECT_EQ(desktop.colorScheme(), std::nullopt);
}

TEST_F(DesktopSettingsTest, TheColorSchemeIsAwaitedAndNoEventHandledMeanwhile) {
    values_[{text(appearance), text("color-scheme")}] = 1u;
    const PortalThread portal([this] { startPortal(); }, [this] { portal_.reset(); });
    DesktopSettings desktop;
    bool handled = false;
    QTimer::singleShot(0, [&handled] { handled = true; });
    desktop.awaitColorScheme(60'000);
    EXPECT_EQ(desktop.colorScheme(), ColorScheme::dark);
    EXPECT_FALSE(handled);
}

TEST_F(DesktopSettingsTest, ASilentPortalIsNotAwaitedForLongerThanTheLimit) {
    isSilent_ = true;
    const PortalThread portal([this] { startPortal(); }, [this] { portal_.reset(); });
    DesktopSettings desktop;
    desktop.awaitColorScheme(1);
    EXPECT_EQ(desktop.colorScheme(), std::nullopt);
}

TEST_F(DesktopSettingsTest, ColorsComeFromThePortal) {
    const std::vector<std::pair<QVariant, std::optional<ColorScheme>>> cases{
        {QVariant(0u), std::nullopt},
        {QVariant(1u), ColorScheme::dark},
        {QVariant(2u), ColorScheme::light},
        {QVariant(7u), std::nullopt},
        {QVariant(text("1")), std::nullopt}};
    for (const auto& [value, expected] : cases) {
        values_[{text(appearance), text("color-scheme")}] = value;
        startPortal();
        const DesktopSettings desktop;
        EXPECT_TRUE(isAnswered());
        EXPECT_EQ(desktop.colorScheme(), expected);
        portal_.reset();
    }
}

// The portal's key for reduced motion, then its older one for animations, then KDE's file.
TEST_F(DesktopSettingsTest, MotionComesFromTheFirstSourceThatKnowsIt) {
    const std::vector<std::tuple<std::optional<unsigned>, std::optional<bool>, std::string, bool>>
        cases{
            {1u, true, "", true},
            {0u, false, "AnimationDurationFactor=0", false},
            {std::nullopt, false, "", true},
            {std::nullopt, true, "AnimationDurationFactor=0", false},
            {std::nullopt, std::nullopt, "AnimationDurationFactor=0", true},
            {std::nullopt, std::nullopt, "AnimationDurationFactor=0.5", false},
            {std::nullopt, std::nullopt, "AnimationDurationFactor=", false},
            {std::nullopt, std::nullopt, "AnimationDurationFactor=a, b", false},
            {std::nullopt, std::nullopt, "SingleClick=0", false},
            {std::nullopt, std::nullopt, "", false},
        };
    for (const auto& [motion, animations, line, expected] : cases) {
        values_.clear();
        if (motion) values_[{text(appearance), text("reduced-motion")}] = *motion;
        if (animations) values_[{text(gnome), text("enable-animations")}] = *animations;
        folder_.file("kdeglobals", "[KDE]\n" + line + '\n');
        startPortal();
        const DesktopSettings desktop;
        EXPECT_TRUE(isAnswered());
        EXPECT_EQ(desktop.shouldReduceMotion(), expected) << line;
        portal_.reset();
    }
}

TEST_F(DesktopSettingsTest, APipeInThePlaceOfKdesFileIsNotOpened) {
    ASSERT_EQ(mkfifo(folder_.path("kdeglobals").c_str(), 0600), 0);
    EXPECT_FALSE(DesktopSettings().shouldReduceMotion());
}

TEST_F(DesktopSettingsTest, AChangeIsReportedOnce) {
    startPortal();
    DesktopSettings desktop;
    int changes = 0;
    desktop.setChangeHandler([&changes] { ++changes; });
    ASSERT_TRUE(isAnswered());
    EXPECT_EQ(changes, 0);
    change(appearance, "color-scheme", 1u);
    EXPECT_TRUE(eventuallyInEventLoop([&] { return desktop.colorScheme() == ColorScheme::dark; }));
    EXPECT_EQ(changes, 1);
    change(appearance, "color-scheme", 1u);    // unchanged
    change("org.example", "color-scheme", 2u); // of another group
    change(gnome, "enable-animations", false);
    EXPECT_TRUE(eventuallyInEventLoop([&] { return desktop.shouldReduceMotion(); }));
    EXPECT_EQ(changes, 2);
    EXPECT_EQ(desktop.colorScheme(), ColorScheme::dark);
    desktop.setChangeHandler({});
    change(gnome, "enable-animations", true);
    EXPECT_TRUE(eventuallyInEventLoop([&] { return !desktop.shouldReduceMotion(); }));
    EXPECT_EQ(changes, 2);
}

TEST_F(DesktopSettingsTest, MayBeDestroyedBeforeTheAnswerArrives) {
    startPortal();
    { const DesktopSettings desktop; }
    EXPECT_TRUE(isAnswered());
}

} // namespace
} // namespace oxlade::test
