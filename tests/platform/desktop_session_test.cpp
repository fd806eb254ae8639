// The end of the user's session is inhibited during a run, by whom answers on a private bus.
#include "platform/desktop_session.h"
#include "tests/platform/private_bus.h"

#include <QDBusArgument>
#include <QDBusError>
#include <QDBusObjectPath>
#include <QVariant>

namespace oxlade::test {
namespace {

const QString portalName = QStringLiteral("org.freedesktop.portal.Desktop");
const QString gnomeName = QStringLiteral("org.gnome.SessionManager");
const QDBusObjectPath handle{QStringLiteral("/request/1")};

/// Answers Inhibit with `granted`, or with an error; the next call gives it back.
class FakeInhibitor final {
  public:
    FakeInhibitor(const QString& name, const QString& path, QVariant granted)
        : granted_{std::move(granted)}, service_{name, path, [this](const QDBusMessage& call) {
                                                     return answer(call);
                                                 }} {}

    bool isCalled(std::size_t times) {
        return eventuallyInEventLoop([&] { return service_.calls.size() == times; });
    }
    const QDBusMessage& call(std::size_t index) const { return service_.calls.at(index); }
    void answerLate() { service_.send(*reply(call(0))); }

    bool isSilent = false;

  private:
    std::optional<QDBusMessage> answer(const QDBusMessage& call) const {
        return isSilent ? std::nullopt : reply(call);
    }
    std::optional<QDBusMessage> reply(const QDBusMessage& call) const {
        if (call.member() != QStringLiteral("Inhibit")) return call.createReply();
        if (!granted_.isValid()) return call.createErrorReply(QDBusError::NotSupported, {});
        return call.createReply(granted_);
    }

    QVariant granted_;
    FakeService service_;
};

struct FakePortal final {
    FakeInhibitor inhibitor{portalName, QStringLiteral("/"), QVariant::fromValue(handle)};
};

TEST(DesktopSession, ThePortalInhibitsTheLogOutUntilTheRunEnds) {
    FakePortal portal;
    QtDesktopSession session{"io.example.Test"};
    session.beginRun("Прошивка");
    ASSERT_TRUE(portal.inhibitor.isCalled(1));
    const auto asked = portal.inhibitor.call(0).arguments();
    EXPECT_EQ(asked.value(1).toUInt(), 1U);
    EXPECT_EQ(qdbus_cast<QVariantMap>(asked.value(2)).value(QStringLiteral("reason")).toString(),
              QStringLiteral("Прошивка"));
    session.endRun();
    ASSERT_TRUE(portal.inhibitor.isCalled(2));
    EXPECT_EQ(portal.inhibitor.call(1).path(), handle.path());
    EXPECT_EQ(portal.inhibitor.call(1).member(), QStringLiteral("Close"));
}

TEST(DesktopSession, WhatIsGrantedAfterTheRunIsGivenBack) {
    FakePortal portal;
    portal.inhibitor.isSilent = true;
    QtDesktopSession session{"io.example.Test"};
    session.beginRun("x");
    ASSERT_TRUE(portal.inhibitor.isCalled(1));
    session.endRun();
    portal.inhibitor.answerLate();
    ASSERT_TRUE(portal.inhibitor.isCalled(2));
    EXPECT_EQ(portal.inhibitor.call(1).member(), QStringLiteral("Close"));
}

TEST(DesktopSession, GnomesSessionManagerIsAskedWhereNoPortalCanDoIt) {
    FakeInhibitor manager{gnomeName, QStringLiteral("/org/gnome/SessionManager"), 42U};
    QtDesktopSession session{"io.example.Test"};
    session.beginRun("x");
    ASSERT_TRUE(manager.isCalled(1));
    EXPECT_EQ(manager.call(0).arguments(),
              (QVariantList{QStringLiteral("io.example.Test"), 0U, QStringLiteral("x"), 1U}));
    session.endRun();
    ASSERT_TRUE(manager.isCalled(2));
    EXPECT_EQ(manager.call(1).member(), QStringLiteral("Uninhibit"));
    EXPECT_EQ(manager.call(1).arguments(), QVariantList{42U});
}

} // namespace
} // namespace oxlade::test
