// The desktop's wishes, from a stand-in for the portal.
#include "platform/desktop_settings.h"
#include "tests/platform/private_bus.h"

#include <QDBusVariant>
#include <QVariant>

#include <map>

namespace oxlade {
namespace {

const auto* const environment = testing::AddGlobalTestEnvironment(new BusEnvironment);

constexpr const char* appearance = "org.freedesktop.appearance";
constexpr const char* gnome = "org.gnome.desktop.interface";
const QString portalPath = QStringLiteral("/org/freedesktop/portal/desktop");
const QString settings = QStringLiteral("org.freedesktop.portal.Settings");

QString text(const char* latin) { return QString::fromLatin1(latin); }

class DesktopSettingsTest : public testing::Test {
  protected:
    static void SetUpTestSuite() {
        folder_ = std::make_unique<TemporaryFolder>();
        setenv("XDG_CONFIG_HOME", folder_->path().c_str(), 1);
        setenv("XDG_CONFIG_DIRS", folder_->path("none").c_str(), 1);
    }
    static void TearDownTestSuite() { folder_.reset(); }
    ~DesktopSettingsTest() override { folder_->remove("kdeglobals"); }

    void startPortal() {
        portal_ =
            std::make_unique<StandIn>(text("org.freedesktop.portal.Desktop"), portalPath,
                                      [this](const QDBusMessage& call) { return answer(call); });
    }
    // All that the settings ask for has been asked, and answered.
    bool isAnswered() {
        return eventuallyInEventLoop([this] { return portal_->calls.size() == 3; }) &&
               eventuallyInEventLoop([this] { return sawLastAnswer(); });
    }
    void change(const char* group, const char* key, const QVariant& value) {
        auto signal = QDBusMessage::createSignal(portalPath, settings, text("SettingChanged"));
        signal << text(group) << text(key) << QVariant::fromValue(QDBusVariant(value));
        portal_->send(signal);
    }

    std::map<std::pair<QString, QString>, QVariant> values_;
    bool isSilent_ = false;
    std::unique_ptr<StandIn> portal_;
    static std::unique_ptr<TemporaryFolder> folder_;

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
    // A round trip of our own behind the answers: on one connection they keep their order.
    bool sawLastAnswer() {
        const auto ping = QDBusMessage::createMethodCall(
            text("org.freedesktop.DBus"), text("/"), text("org.freedesktop.DBus"), text("GetId"));
        if (roundTrips_++ == 0) QDBusConnection::sessionBus().call(ping);
        return roundTrips_ > 20;
    }

    int roundTrips_ = 0;
};

std::unique_ptr<TemporaryFolder> DesktopSettingsTest::folder_;

TEST_F(DesktopSettingsTest, WithoutAPortalThereIsNoWish) {
    const DesktopSettings desktop;
    EXPECT_FALSE(desktop.shouldReduceMotion());
    EXPECT_EQ(desktop.colorScheme(), std::nullopt);
}

TEST_F(DesktopSettingsTest, ASilentPortalIsNotWaitedFor) {
    isSilent_ = true;
    startPortal();
    const auto start = std::chrono::steady_clock::now();
    const DesktopSettings desktop;
    EXPECT_FALSE(desktop.shouldReduceMotion());
    EXPECT_EQ(desktop.colorScheme(), std::nullopt);
    EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(2));
    EXPECT_TRUE(eventuallyInEventLoop([this] { return portal_->calls.size() == 3; }));
    EXPECT_FALSE(desktop.shouldReduceMotion());
}

TEST_F(DesktopSettingsTest, ThePreferredColoursAreKnown) {
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
        EXPECT_TRUE(eventuallyInEventLoop(
            [&, wanted = expected] { return desktop.colorScheme() == wanted; }));
        EXPECT_TRUE(isAnswered());
        EXPECT_EQ(desktop.colorScheme(), expected);
        portal_.reset();
    }
}

TEST_F(DesktopSettingsTest, ReducedMotionIsAskedForInItsNewFormFirst) {
    values_[{text(appearance), text("reduced-motion")}] = 1u;
    values_[{text(gnome), text("enable-animations")}] = true;
    startPortal();
    const DesktopSettings desktop;
    EXPECT_TRUE(eventuallyInEventLoop([&] { return desktop.shouldReduceMotion(); }));
    EXPECT_TRUE(isAnswered());
    EXPECT_TRUE(desktop.shouldReduceMotion());
}

TEST_F(DesktopSettingsTest, NoReducedMotionInTheNewFormOutweighsTheOld) {
    values_[{text(appearance), text("reduced-motion")}] = 0u;
    values_[{text(gnome), text("enable-animations")}] = false;
    startPortal();
    const DesktopSettings desktop;
    EXPECT_TRUE(isAnswered());
    EXPECT_FALSE(desktop.shouldReduceMotion());
}

TEST_F(DesktopSettingsTest, WithoutTheNewFormAnimationsSwitchedOffMeanReducedMotion) {
    values_[{text(gnome), text("enable-animations")}] = false;
    startPortal();
    const DesktopSettings desktop;
    EXPECT_TRUE(eventuallyInEventLoop([&] { return desktop.shouldReduceMotion(); }));
}

TEST_F(DesktopSettingsTest, AChangeIsSeenAndToldOnce) {
    startPortal();
    DesktopSettings desktop;
    int changes = 0;
    desktop.setChangeHandler([&changes] { ++changes; });
    ASSERT_TRUE(isAnswered());
    EXPECT_EQ(changes, 0);
    change(appearance, "color-scheme", 1u);
    EXPECT_TRUE(eventuallyInEventLoop([&] { return desktop.colorScheme() == ColorScheme::dark; }));
    EXPECT_EQ(changes, 1);
    change(appearance, "color-scheme", 1u);    // what it was
    change("org.example", "color-scheme", 2u); // somebody else's
    change(gnome, "enable-animations", false);
    EXPECT_TRUE(eventuallyInEventLoop([&] { return desktop.shouldReduceMotion(); }));
    EXPECT_EQ(changes, 2);
    EXPECT_EQ(desktop.colorScheme(), ColorScheme::dark);
    desktop.setChangeHandler({});
    change(gnome, "enable-animations", true);
    EXPECT_TRUE(eventuallyInEventLoop([&] { return !desktop.shouldReduceMotion(); }));
    EXPECT_EQ(changes, 2);
}

TEST_F(DesktopSettingsTest, TheSettingsMayGoBeforeTheAnswerComes) {
    startPortal();
    { const DesktopSettings desktop; }
    EXPECT_TRUE(isAnswered());
}

TEST_F(DesktopSettingsTest, AnimationsOfNoDurationInKdeMeanReducedMotion) {
    folder_->file("kdeglobals", "[KDE]\nAnimationDurationFactor=0\n");
    const DesktopSettings desktop;
    EXPECT_TRUE(desktop.shouldReduceMotion());
}

TEST_F(DesktopSettingsTest, OtherDurationsInKdeDoNot) {
    for (const char* const line : {"AnimationDurationFactor=0.5", "AnimationDurationFactor=",
                                   "AnimationDurationFactor=a, b", "SingleClick=0"}) {
        folder_->file("kdeglobals", "[KDE]\n" + std::string(line) + '\n');
        const DesktopSettings desktop;
        EXPECT_FALSE(desktop.shouldReduceMotion()) << line;
        folder_->remove("kdeglobals");
    }
}

TEST_F(DesktopSettingsTest, WhatThePortalSaysOutweighsKdesFile) {
    folder_->file("kdeglobals", "[KDE]\nAnimationDurationFactor=0\n");
    values_[{text(gnome), text("enable-animations")}] = true;
    startPortal();
    const DesktopSettings desktop;
    EXPECT_TRUE(eventuallyInEventLoop([&] { return !desktop.shouldReduceMotion(); }));
}

} // namespace
} // namespace oxlade
